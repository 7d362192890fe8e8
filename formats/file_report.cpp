#include "formats/file_report.h"

#include <utility>

#include "core/text_fields.h"

namespace formats {

namespace {

constexpr std::size_t remarks_kept = 100;     // of each kind for one file; nobody reads more
constexpr std::size_t account_kept = 200000;  // lines of one file, some 20 MB
constexpr std::size_t quoted_length = 40;     // bytes

void add(FileReport& report, std::vector<ReportRemark>& remarks, ReportRemark&& remark) {
  if (remarks.size() < remarks_kept) {
    remarks.push_back(std::move(remark));
  } else {
    ++report.remarks_dropped;
  }
}

}  // namespace

void remark_ignored(FileReport& report, std::int64_t line, std::string text, std::string kind) {
  add(report, report.ignored, {line, std::move(text), std::move(kind)});
}

void remark_unreadable(FileReport& report, std::int64_t line, std::string text) {
  add(report, report.unreadable, {line, std::move(text), {}});
}

void add_to_account(FileReport& report, std::string text) {
  if (report.account.size() < account_kept) {
    report.account.push_back(std::move(text));
  } else {
    ++report.account_dropped;
  }
}

std::string in_quotes(std::string_view bytes) {
  const bool cut = bytes.size() > quoted_length;
  return "'" + text_from_field_file(bytes.substr(0, quoted_length)) + (cut ? "...'" : "'");
}

}  // namespace formats
