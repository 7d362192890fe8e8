// edi_reference_place.h: where an EDI file was measured.
#pragma once
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "formats/file_report.h"
#include "numerics/geodesy/coordinate_transforms.h"

namespace formats::edi {

/// The reference place of a file. REFLAT, REFLONG and REFELEV of >=DEFINEMEAS come first; what is absent
/// there or can't be read is LAT, LONG and ELEV of >HEAD. Programs write zeros for what they don't know: an
/// elevation of 0 gives way to the other one and, without a place, is none; a place of 0 N, 0 E is none.
struct EdiPlace {
  std::optional<numerics::geodesy::GeographicPlace> geographic;
  std::optional<double> elevation;  // in the file's unit of length
  std::string datum;                // as the head names it; empty if it doesn't
};

/// Collects the options of a head that say where it was.
class EdiPlaceOptions {
 public:
  /// Takes a line that is neither a comment nor text of >INFO, its leading blanks cut.
  void take_line(std::string_view line, std::int64_t line_number);
  /// What they say; texts that can't be read go into the report.
  [[nodiscard]] EdiPlace read(FileReport& report) const;

 private:
  enum class Block { head, measurements, other };
  struct Option {
    Block block = Block::other;
    std::string key;  // in upper case
    std::string value;
    std::int64_t line_number = 0;
  };
  struct Values;

  Block block_ = Block::other;
  std::vector<Option> options_;
};

/// The reference place of a file. Texts that can't be read go into the report. Throws std::runtime_error if
/// the file can't be read.
EdiPlace read_edi_place(const std::string& file, FileReport& report);

/// Its latitude and longitude; none if one is missing.
std::optional<numerics::geodesy::GeographicPlace> read_edi_reference_place(const std::string& file,
                                                                           FileReport& report);

}  // namespace formats::edi
