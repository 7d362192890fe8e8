// edi_spectra_parser.h: the sections of cross-spectra of an EDI text file, one frequency at a time.
//
// A section names its channels, whose order is that of the rows and columns of each matrix, either by
// keywords ("HX=1.001") or, after a line "// n", by their ids alone. Tags and keywords match in any case;
// comment lines are skipped. What can't be read as it is goes into the file's report.
#pragma once
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/line_reader.h"
#include "formats/edi/edi_channels.h"
#include "formats/edi/edi_lines.h"
#include "formats/edi/edi_reference_place.h"
#include "formats/edi/spectra_channels.h"
#include "formats/file_report.h"

namespace formats::edi {

struct SpectraSection : EdiSectionHead {
  std::int64_t number = 0;        // from 1
  std::size_t channel_count = 0;  // n
  std::size_t NFREQ = 0;          // 0 if not given
  SpectraRoles roles;
};

struct SpectraBlock {
  std::int64_t line_number = 0;  // of its >SPECTRA
  bool has_FREQ = false;
  double FREQ = 0.0;     // Hz; 0 if it is missing
  double ROTSPEC = 0.0;  // degrees clockwise
  double AVGT = 0.0;     // 0 if it is missing
  std::optional<std::string> invalid_AVGT;
  bool complete = false;       // the matrix has all of its n x n values and none is absent
  std::vector<double> matrix;  // row by row
};

class EdiSpectraParser {
 public:
  /// Reads the head of the file up to its first section. `reader` and `report` must outlive the parser.
  EdiSpectraParser(LineReader& reader, FileReport& report);

  /// Reads the head of the next section, skipping what is left of the one before.
  /// @return false at the end
  bool next_section(SpectraSection& section);

  /// Reads the next frequency of the section.
  /// @return false at the section's end, also if the file ends inside it or its numbers can't be told apart:
  /// then is_cut() is true, and the report's failure says why
  bool next_block(SpectraBlock& block);

  [[nodiscard]] bool has_sections() const { return has_sections_; }
  [[nodiscard]] const EdiChannelList& channels() const { return channels_; }  // of the head
  /// What the head says of the place; what of it can't be read goes into the report.
  [[nodiscard]] EdiPlace place() const { return place_.read(report_); }
  [[nodiscard]] bool is_cut() const { return is_cut_; }

 private:
  bool find_section(InfoText& info);
  bool go_to_section();
  bool read_section_head(SpectraSection& section);
  void read_options(std::string_view as_written, const std::string& line, SpectraSection& section);
  void read_ids(std::string_view text);
  void close_section_head(SpectraSection& section);
  void read_block_options(SpectraBlock& block);
  void read_matrix(SpectraBlock& block);
  /// Values up to the next tag. @return false if the section can't be used
  bool read_values(std::size_t expected, std::vector<double>& values, std::size_t& surplus);
  void fail_in_section(const std::string& reason);

  EdiLines lines_;
  FileReport& report_;
  EdiChannelList channels_;
  EdiPlaceOptions place_;
  bool has_sections_ = false;
  bool is_cut_ = false;
  bool at_end_ = false;              // of what is read of the file
  std::int64_t section_number_ = 0;  // from 1
  std::size_t channel_count_ = 0;    // of the section under way, as its matrices have them
  bool in_id_list_ = false;          // the section's head had a line "// n"
  std::vector<NamedChannel> named_;
};

}  // namespace formats::edi
