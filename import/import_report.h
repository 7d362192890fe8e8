// import_report.h: what an import did with each of its files.
#pragma once
#include <cstdint>
#include <string>
#include <vector>

namespace Module_data_file {

/// Something in a file that could not be taken as it stands.
struct ReportRemark {
  std::int64_t line = 0;  // from 1; 0 if it concerns the whole file
  std::string text;       // "'abc' is not a number, taken as 0"
};

struct FileReport {
  std::string file;  // path as given
  std::int32_t sections = 0;
  std::int32_t readings = 0;             // stored, or met in a scan
  std::int32_t frequencies = 0;          // of the largest section
  std::vector<ReportRemark> ignored;     // unknown blocks, values beyond the count
  std::vector<ReportRemark> unreadable;  // values taken as 0 or absent
  std::int64_t remarks_dropped = 0;      // beyond the number that is kept for one file
  std::vector<std::string> account;      // what a reader tells of each block of the file, in their order
  std::int64_t account_dropped = 0;      // lines beyond the number that is kept for one file
  std::string failure;           // why the file gave nothing, or an error on the way; empty if all went well
  bool impedances_only = false;  // has impedances but neither resistivities nor phases
  bool all_yx_phases_negative = false;

  [[nodiscard]] bool has_remarks() const {
    return !ignored.empty() || !unreadable.empty() || !failure.empty() || remarks_dropped > 0 ||
           !account.empty();
  }
};

struct ImportReport {
  std::vector<FileReport> files;
  bool stopped = false;  // the person stopped the run

  [[nodiscard]] bool has_remarks() const;
  /// A file gave an error or no reading.
  [[nodiscard]] bool has_failures() const;
  /// The report as JSON text, UTF-8.
  [[nodiscard]] std::string to_json() const;
  /// "12 of 13 files gave 96 readings", and whether the run was stopped.
  [[nodiscard]] std::string summary() const;
  /// The report for people: the summary, then each file with its remarks.
  [[nodiscard]] std::string to_text() const;
};

/// The remarks of a file as lines for people, its failure first: "line 12: 'abc' is not a number, taken as
/// 0"; then its account.
std::vector<std::string> remark_lines(const FileReport& file);

/// The report of the last import of this process.
ImportReport& last_import_report();

}  // namespace Module_data_file
