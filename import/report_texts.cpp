#include "import/report_texts.h"

#include <cstdint>

#include "core/number_text.h"

namespace Module_data_file {

namespace {

std::string counted(std::int64_t count, const std::string& what) {
  return plain_text(count) + " " + what + (count == 1 ? "" : "s");
}

std::string failure_text(const ReportGroup& group, const ImportReport& report) {
  if (group.files.size() == 1) {
    const formats::FileReport& file = report.files[group.files.front().index];
    return (file.readings > 0 ? "Imported in part: " : "Not imported: ") + file.file + ": " + group.text;
  }
  std::string text = group.title();
  for (const ReportGroup::File& file : group.files) {
    text += "\n  " + report.files[file.index].file;
  }
  return text;
}

}  // namespace

std::vector<std::string> problem_texts(const std::vector<ReportGroup>& groups, const ImportReport& report) {
  std::vector<std::string> texts;
  for (const ReportGroup& group : groups) {
    if (group.kind == GroupKind::failure) {
      texts.push_back(failure_text(group, report));
    } else if (group.kind == GroupKind::different_sites) {
      texts.push_back("Different sites come to one line and station, as its repeats:\n" +
                      list_of_stations(texts_of(report.shared_stations)));
    } else if (group.needs_action()) {
      texts.push_back(group.title() + (group.advice.empty() ? "" : "; " + group.advice));
    }
  }
  return texts;
}

std::vector<std::string> remark_texts(const std::vector<ReportGroup>& groups) {
  std::vector<std::string> texts;
  for (const ReportGroup& group : groups) {
    if (group.kind > GroupKind::replaced) {
      texts.push_back(group.title() + ": " + counted(group.remarks, "remark"));
    }
  }
  return texts;
}

std::string counts_text(const ImportReport& report, ImportMode mode) {
  std::int64_t readings = 0;
  std::int64_t failed = 0;
  for (const formats::FileReport& file : report.files) {
    readings += file.readings;
    failed += !file.failure.empty() || file.readings == 0 ? 1 : 0;
  }
  std::string text = counted(static_cast<std::int64_t>(report.files.size()), "file") + ", " +
                     plain_text(readings) +
                     (mode == ImportMode::scan ? " readings met, " : " readings stored, ") +
                     counted(failed, "file") + " without a reading or with an error";
  if (const std::int64_t replaced = report.files_replaced(); replaced > 0) {
    text += "\n" + counted(replaced, "file") + " replaced readings of an earlier import";
  }
  return text;
}

}  // namespace Module_data_file
