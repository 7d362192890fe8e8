// edi_channels.h: the sensors that the head of an EDI file defines.
#pragma once
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace formats::edi {

/// A sensor as the head of the file defines it; X is north, Y is east, Z the elevation, all in m.
struct EdiChannel {
  std::string ID;
  std::string CHTYPE;     // HX, HY, HZ, EX, EY
  bool is_local = false;  // false: belongs to the remote reference
  double X = 0.0;
  double Y = 0.0;
  double Z = 0.0;
  double AZM = 0.0;  // degrees
};

/// A channel as the head of a section names it.
struct NamedChannel {
  std::string keyword;  // "HX" of "HX=1.001"; empty in a list of ids
  std::string ID;
};

/// The channels that a line of a section's head names, given in upper case: "HX=1.001 HY=2.001".
std::vector<NamedChannel> named_channels(std::string_view line);

/// Whether two ids mean the same channel: those that differ in zeros only do ("05371.0537", "5371.0537"; "1",
/// "1.0").
bool same_id(const std::string& a, const std::string& b);

/// The definition that the n-th mention of an id means, n from 0, the last one if there are fewer; null if
/// there is none. Those of the very same text come before those that differ in zeros: "1.1" and "1.10" may
/// be two channels.
const EdiChannel* find_channel(const std::vector<EdiChannel>& defined, const std::string& id,
                               std::size_t mention = 0);

/// What a report says of a channel whose id the head doesn't define.
std::string undefined_channel_text(const NamedChannel& channel);

/// What the readers of sections of any kind take from a section's head.
struct EdiSectionHead {
  std::int64_t line_number = 0;       // of its tag
  std::optional<std::string> SECTID;  // without its quotes
  std::optional<EdiChannel> local_hx;
};

/// Collects the >HMEAS and >EMEAS lines of a head.
class EdiChannelList {
 public:
  /// Adds the channel of such a line, given in upper case; other lines are skipped.
  void take(std::string_view line, std::string_view tag);
  /// To be called when the head ends: the station's own channels come first, up to its electric ones; the
  /// remote reference follows. Without electric ones they go up to the first type that comes again.
  void mark_local();
  [[nodiscard]] const std::vector<EdiChannel>& all() const { return channels_; }
  /// Whether there are magnetic channels of a remote reference, beside those of the station. Files that write
  /// the station's own once more have none.
  [[nodiscard]] bool has_remote() const;

 private:
  void mark_first_group();

  std::vector<EdiChannel> channels_;
  std::string reference_id_;  // of the magnetic channels so far
};

}  // namespace formats::edi
