// edi_parser.h: the impedance sections of an EDI text file, one at a time.
//
// Tags and keywords match whole and in any case; comment lines (">!...", "!...") are skipped. What can't
// be read as it is goes into the file's report.
#pragma once
#include <cstddef>
#include <cstdint>
#include <limits>
#include <string>
#include <string_view>
#include <vector>

#include "core/line_reader.h"
#include "formats/edi/edi_channels.h"
#include "formats/edi/edi_lines.h"
#include "formats/edi/edi_reference_place.h"
#include "formats/edi/edi_section.h"
#include "formats/file_report.h"

namespace formats::edi {

struct EdiTag;  // what a tag means

class EdiMtParser {
 public:
  /// Reads the head of the file up to its first section. `reader` and `report` must outlive the parser.
  EdiMtParser(LineReader& reader, FileReport& report);

  /// Reads the next section; it is whole when this returns true, though its blocks may be few.
  /// @return false at the end. A file that ends inside a section says so in the report's failure, and that
  /// section is not given.
  bool next_section(EdiSection& section);

  [[nodiscard]] bool has_sections() const { return has_sections_; }
  [[nodiscard]] const EdiChannelList& channels() const { return channels_; }  // of the head
  /// What the head says of the place; what of it can't be read goes into the report.
  [[nodiscard]] EdiPlace place() const { return place_.read(report_); }

 private:
  static constexpr std::size_t unknown_count = std::numeric_limits<std::size_t>::max();
  enum class AfterBlock { tag_line, end_of_file, failed };  // failed: the report says why

  bool find_section(InfoText& info);
  bool read_section_head(EdiSection& section);
  void read_head_line(EdiSection& section, std::string_view as_written);
  void read_channels(EdiSection& section, std::string_view line);
  void read_count(std::string_view text);
  bool read_blocks(EdiSection& section);
  AfterBlock read_block(EdiSection& section, const EdiTag& tag);
  void take_block(EdiSection& section, const EdiTag& tag);
  AfterBlock read_values(std::vector<double>& values);
  AfterBlock skip_values(std::size_t& count);
  void take_values(std::vector<double>& values, std::size_t& surplus);
  void look_for_decimal_comma();
  void skip_to_section();
  void finish_section(EdiSection& section);
  void fit_to_frequencies(EdiValues& quantity, const EdiSection& section);
  void fail_in_section(std::string_view reason);

  EdiLines lines_;
  FileReport& report_;
  EdiChannelList channels_;
  EdiPlaceOptions place_;
  bool has_sections_ = false;
  bool section_follows_ = false;          // the current line is a >=MTSECT
  std::int64_t section_number_ = 0;       // from 1
  std::size_t expected_ = unknown_count;  // values of each block of this section
  bool has_lost_bytes_ = false;           // in the block that was read last
  bool has_frequencies_ = false;          // the section under way had a >FREQ
  std::uint64_t tags_seen_ = 0;           // in this section, a bit for each entry of the tag table
  std::size_t blocks_ = 0;                // of values, in this section
  std::string decimal_comma_;             // a number of the block under way that has one
  std::vector<double> scratch_;           // values of the block under way
};

}  // namespace formats::edi
