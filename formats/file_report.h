// file_report.h: what was read of one field file, and what could not be.
//
// The parsers of field formats fill it; its lists are bounded in number and length, so that a damaged file of
// any size has a report that fits into memory.
#pragma once
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace formats {

/// Something in a file that could not be read as it is.
struct ReportRemark {
  std::int64_t line = 0;  // from 1; 0 if it concerns the whole file
  std::string text;       // "'abc' is not a number, taken as absent"
  std::string kind;       // the same for all of a kind; empty where the words of the text tell it
};

struct FileReport {
  std::string file;  // path as given
  std::int32_t sections = 0;
  std::int32_t readings = 0;             // stored; in a scan: found
  std::int32_t frequencies = 0;          // of the largest section
  std::int32_t sections_turned = 0;      // whose Ey got the other sign; in a scan: would get
  std::vector<ReportRemark> ignored;     // unknown blocks, values beyond the count
  std::vector<ReportRemark> unreadable;  // values read as 0 or absent
  std::int64_t remarks_dropped = 0;      // beyond the number that is kept for one file
  std::vector<std::string> account;      // what a parser says of each block of the file, in their order
  std::int64_t account_dropped = 0;      // lines beyond the number that is kept for one file
  std::int32_t replaced_readings = 0;    // of an earlier import of the file
  std::string replaced_name;             // under which that import stored the file
  std::string failure;           // why the file gave nothing, or an error on the way; empty if all went well
  bool impedances_only = false;  // has impedances but neither resistivities nor phases
  bool curves_computed = false;  // from impedances where it has nothing else; in a scan: would be
  bool all_yx_phases_negative = false;

  [[nodiscard]] bool has_remarks() const {
    return !ignored.empty() || !unreadable.empty() || !failure.empty() || remarks_dropped > 0 ||
           !account.empty();
  }
};

/// Notes something in the file that was left unused. Beyond the number kept for one file it is only counted.
/// @param kind  for texts that are made of names
void remark_ignored(FileReport& report, std::int64_t line, std::string text, std::string kind = {});

/// Notes something in the file that could not be read as it is, likewise.
void remark_unreadable(FileReport& report, std::int64_t line, std::string text);

/// Adds a line to the account of the file. Beyond a number that fits into memory it is only counted.
void add_to_account(FileReport& report, std::string text);

/// Bytes of a field file as a report shows them: in apostrophes, as UTF-8, cut to a readable length.
std::string in_quotes(std::string_view bytes);

}  // namespace formats
