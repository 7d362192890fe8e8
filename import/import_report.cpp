#include "import/import_report.h"

#include <algorithm>
#include <utility>

#include <nlohmann/json.hpp>

#include "core/number_text.h"
#include "core/text_fields.h"
#include "formats/remarks.h"

namespace Module_data_file {

namespace {

constexpr std::size_t remarks_kept = 100;     // of each kind for one file; a person reads no more
constexpr std::size_t account_kept = 200000;  // lines of one file, some 20 MB
constexpr std::size_t quoted_length = 40;     // bytes

void add(FileReport& report, std::vector<ReportRemark>& remarks, std::int64_t line, std::string text) {
  if (remarks.size() < remarks_kept) {
    remarks.push_back({line, std::move(text)});
  } else {
    ++report.remarks_dropped;
  }
}

nlohmann::ordered_json json_of(const std::vector<ReportRemark>& remarks) {
  nlohmann::ordered_json list = nlohmann::ordered_json::array();
  for (const ReportRemark& remark : remarks) {
    list.push_back({{"line", remark.line}, {"text", remark.text}});
  }
  return list;
}

nlohmann::ordered_json json_of(const FileReport& file) {
  return {{"file", file.file},
          {"sections", file.sections},
          {"readings", file.readings},
          {"frequencies", file.frequencies},
          {"ignored", json_of(file.ignored)},
          {"unreadable", json_of(file.unreadable)},
          {"remarks_dropped", file.remarks_dropped},
          {"account", file.account},
          {"account_dropped", file.account_dropped},
          {"failure", file.failure},
          {"impedances_only", file.impedances_only},
          {"all_yx_phases_negative", file.all_yx_phases_negative}};
}

}  // namespace

void remark_ignored(FileReport& report, std::int64_t line, std::string text) {
  add(report, report.ignored, line, std::move(text));
}

void remark_unreadable(FileReport& report, std::int64_t line, std::string text) {
  add(report, report.unreadable, line, std::move(text));
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

bool ImportReport::has_remarks() const {
  return std::any_of(files.begin(), files.end(), [](const FileReport& file) { return file.has_remarks(); });
}

bool ImportReport::has_failures() const {
  return std::any_of(files.begin(), files.end(),
                     [](const FileReport& file) { return !file.failure.empty() || file.readings == 0; });
}

std::string ImportReport::to_json() const {
  nlohmann::ordered_json list = nlohmann::ordered_json::array();
  for (const FileReport& file : files) {
    list.push_back(json_of(file));
  }
  const nlohmann::ordered_json report = {{"stopped", stopped}, {"files", std::move(list)}};
  // A path may hold bytes that are no UTF-8; they must not cost the report.
  return report.dump(2, ' ', false, nlohmann::ordered_json::error_handler_t::replace) + "\n";
}

std::string ImportReport::summary() const {
  const auto gave =
      std::count_if(files.begin(), files.end(), [](const FileReport& f) { return f.readings > 0; });
  std::int64_t readings = 0;
  for (const FileReport& file : files) {
    readings += file.readings;
  }
  return plain_text(std::int64_t{gave}) + " of " + plain_text(static_cast<std::int64_t>(files.size())) +
         (files.size() == 1 ? " file gave " : " files gave ") + plain_text(readings) +
         (readings == 1 ? " reading" : " readings") + (stopped ? "; the run was stopped" : "");
}

std::string ImportReport::to_text() const {
  std::string text = summary() + "\n";
  for (const FileReport& file : files) {
    text += file.file + ": " + plain_text(file.sections) + " sections, " + plain_text(file.readings) +
            " readings, " + plain_text(file.frequencies) + " frequencies\n";
    for (const std::string& line : remark_lines(file)) {
      text += "    " + line + "\n";
    }
  }
  return text;
}

std::vector<std::string> remark_lines(const FileReport& file) {
  std::vector<std::string> lines;
  if (!file.failure.empty()) {
    lines.push_back(file.failure);
  }
  for (const auto* const remarks : {&file.unreadable, &file.ignored}) {
    for (const ReportRemark& remark : *remarks) {
      lines.push_back((remark.line > 0 ? "line " + plain_text(remark.line) + ": " : std::string()) +
                      remark.text);
    }
  }
  if (file.remarks_dropped > 0) {
    lines.push_back("and " + plain_text(file.remarks_dropped) + " more remarks");
  }
  lines.insert(lines.end(), file.account.begin(), file.account.end());
  if (file.account_dropped > 0) {
    lines.push_back("and " + plain_text(file.account_dropped) + " more lines of the account");
  }
  return lines;
}

ImportReport& last_import_report() {
  static ImportReport report;
  return report;
}

}  // namespace Module_data_file
