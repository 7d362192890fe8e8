// import_report.h: what an import did with each of its files.
#pragma once
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "formats/file_report.h"
#include "import/reading_record.h"
#include "import/station_sites.h"

namespace Module_data_file {

struct ImportReport {
  std::vector<formats::FileReport> files;
  std::vector<ScannedStation> stations;        // those found, each once, in the order of the files
  std::vector<SharedStation> shared_stations;  // that different sites came to
  bool stopped = false;                        // the user stopped the run
  std::size_t groups_skipped = 0;              // of readings that could not be averaged or merged

  /// A file has something to tell or needs other options, Ey was turned in one, or one replaced earlier
  /// readings.
  [[nodiscard]] bool has_remarks() const;
  /// A file gave an error or no reading.
  [[nodiscard]] bool has_failures() const;
  /// How many files took the place of readings of an earlier import.
  [[nodiscard]] std::int64_t files_replaced() const;
  /// The report on the files as JSON text, UTF-8.
  [[nodiscard]] std::string to_json() const;
  /// "12 of 13 files gave 96 readings at 24 stations; 5 remarks".
  [[nodiscard]] std::string totals() const;
  /// "12 of 13 files gave 96 readings", and whether the run was stopped.
  [[nodiscard]] std::string summary() const;
};

/// The remarks on a file with its failure, also those that were not kept; its account doesn't count.
std::int64_t remark_count(const formats::FileReport& file);
/// "4 readings of an earlier import replaced, there named 'north/01.edi'"; empty if the file is new.
std::string replaced_line(const formats::FileReport& file);

/// Whether sections with negative YX phases only are left as they are, and so masked.
bool has_negative_phases(const formats::FileReport& file);
/// Whether the file has impedances only, and no curves were computed from them.
bool lacks_curves(const formats::FileReport& file);

/// "line 12: 'abc' is not a number, taken as absent".
std::string remark_line(const formats::ReportRemark& remark);
/// The account of a file, and how much of it was not kept.
std::vector<std::string> account_lines(const formats::FileReport& file);

/// The remarks of a file as the user reads them, its failure first; then its account.
std::vector<std::string> remark_lines(const formats::FileReport& file);

}  // namespace Module_data_file
