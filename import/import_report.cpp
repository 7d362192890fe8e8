#include "import/import_report.h"

#include <algorithm>
#include <set>
#include <utility>

#include <nlohmann/json.hpp>

#include "core/number_text.h"
#include "core/text_fields.h"

namespace Module_data_file {

using formats::FileReport;
using formats::ReportRemark;

namespace {

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
          {"sections_turned", file.sections_turned},
          {"replaced_readings", file.replaced_readings},
          {"replaced_name", file.replaced_name},
          {"ignored", json_of(file.ignored)},
          {"unreadable", json_of(file.unreadable)},
          {"remarks_dropped", file.remarks_dropped},
          {"account", file.account},
          {"account_dropped", file.account_dropped},
          {"failure", file.failure},
          {"impedances_only", file.impedances_only},
          {"all_yx_phases_negative", file.all_yx_phases_negative}};
}

std::string counted(std::int64_t count, const std::string& what) {
  return plain_text(count) + " " + what + (count == 1 ? "" : "s");
}

std::string files_and_readings(const std::vector<FileReport>& files) {
  const auto gave =
      std::count_if(files.begin(), files.end(), [](const FileReport& f) { return f.readings > 0; });
  std::int64_t readings = 0;
  for (const FileReport& file : files) {
    readings += file.readings;
  }
  return plain_text(std::int64_t{gave}) + " of " + counted(static_cast<std::int64_t>(files.size()), "file") +
         " gave " + counted(readings, "reading");
}

}  // namespace

bool ImportReport::has_remarks() const {
  return std::any_of(files.begin(), files.end(), [](const FileReport& file) {
    return file.has_remarks() || has_negative_phases(file) || lacks_curves(file) ||
           file.sections_turned > 0 || file.replaced_readings > 0;
  });
}

bool ImportReport::has_failures() const {
  return std::any_of(files.begin(), files.end(),
                     [](const FileReport& file) { return !file.failure.empty() || file.readings == 0; });
}

std::int64_t ImportReport::files_replaced() const {
  return std::count_if(files.begin(), files.end(),
                       [](const FileReport& file) { return file.replaced_readings > 0; });
}

std::string ImportReport::to_json() const {
  nlohmann::ordered_json list = nlohmann::ordered_json::array();
  for (const FileReport& file : files) {
    list.push_back(json_of(file));
  }
  nlohmann::ordered_json shared = nlohmann::ordered_json::array();
  for (const SharedStation& station : shared_stations) {
    shared.push_back(station.text());
  }
  const nlohmann::ordered_json report = {
      {"stopped", stopped}, {"shared_stations", std::move(shared)}, {"files", std::move(list)}};
  // A path may hold bytes that aren't UTF-8; the report must come out all the same.
  return report.dump(2, ' ', false, nlohmann::ordered_json::error_handler_t::replace) + "\n";
}

std::string ImportReport::totals() const {
  std::set<std::pair<std::string, double>> places;
  for (const ScannedStation& station : stations) {
    places.emplace(upper_case(station.LineNumber), station.Station);
  }
  std::int64_t remarks = 0;
  for (const FileReport& file : files) {
    remarks += remark_count(file);
  }
  return files_and_readings(files) + " at " + counted(static_cast<std::int64_t>(places.size()), "station") +
         "; " + counted(remarks, "remark");
}

std::string ImportReport::summary() const {
  return files_and_readings(files) + (stopped ? "; the run was stopped" : "");
}

std::int64_t remark_count(const FileReport& file) {
  return static_cast<std::int64_t>(file.ignored.size() + file.unreadable.size()) +
         (file.failure.empty() ? 0 : 1) + file.remarks_dropped;
}

std::string replaced_line(const FileReport& file) {
  if (file.replaced_readings == 0) {
    return {};
  }
  return plain_text(file.replaced_readings) + " readings of an earlier import replaced, there named " +
         formats::in_quotes(file.replaced_name);
}

bool has_negative_phases(const FileReport& file) {
  return file.all_yx_phases_negative && file.sections_turned < file.sections;
}

bool lacks_curves(const FileReport& file) { return file.impedances_only && !file.curves_computed; }

std::string remark_line(const ReportRemark& remark) {
  return (remark.line > 0 ? "line " + plain_text(remark.line) + ": " : std::string()) + remark.text;
}

std::vector<std::string> account_lines(const FileReport& file) {
  std::vector<std::string> lines = file.account;
  if (file.account_dropped > 0) {
    lines.push_back("and " + plain_text(file.account_dropped) + " more lines of the account");
  }
  return lines;
}

std::vector<std::string> remark_lines(const FileReport& file) {
  std::vector<std::string> lines;
  if (!file.failure.empty()) {
    lines.push_back(file.failure);
  }
  for (const auto* const remarks : {&file.unreadable, &file.ignored}) {
    for (const ReportRemark& remark : *remarks) {
      lines.push_back(remark_line(remark));
    }
  }
  if (file.remarks_dropped > 0) {
    lines.push_back("and " + plain_text(file.remarks_dropped) + " more remarks");
  }
  const std::vector<std::string> account = account_lines(file);
  lines.insert(lines.end(), account.begin(), account.end());
  return lines;
}

}  // namespace Module_data_file
