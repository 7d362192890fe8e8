#include "exchange/plan_texts.h"

#include <algorithm>

#include "core/number_text.h"
#include "tensor/station_tensor.h"

namespace Module_exchange {

namespace {

std::string counted(std::size_t count, const std::string& one) {
  return std::to_string(count) + " " + one + (count == 1 ? "" : "s");
}

std::string stations_text(const ExportRow& row) {
  if (row.stations.empty()) {
    return {};
  }
  return row.stations.size() == 1 ? plain_text(row.stations.front())
                                  : counted(row.stations.size(), "station");
}

/// Without the name of the station that the row is of: the other columns have it.
std::string remarks_text(const ExportRow& row) {
  const std::string of_station =
      row.stations.size() == 1
          ? "Station " + Module_tensor::station_text(row.stations.front(), row.site) + ": "
          : std::string();
  std::string text;
  for (const std::string& remark : row.remarks) {
    const bool named = !of_station.empty() && remark.starts_with(of_station);
    text += (text.empty() ? "" : "; ") + (named ? remark.substr(of_station.size()) : remark);
  }
  return text;
}

bool gives_none(const ExportRow& row) { return row.file.empty(); }

}  // namespace

std::string export_cell_text(const ExportRow& row, ExportColumn column) {
  switch (column) {
    case ExportColumn::file:
      return row.file;
    case ExportColumn::line:
      return row.line;
    case ExportColumn::station:
      return stations_text(row);
    case ExportColumn::site:
      return row.site;
    case ExportColumn::place:
      return row.place;
    case ExportColumn::frequencies:
      return row.frequencies > 0 ? std::to_string(row.frequencies) : std::string();
    case ExportColumn::components:
      return row.components;
    case ExportColumn::remarks:
      return remarks_text(row);
  }
  return {};
}

std::string plan_summary(const ExportPlan& plan) {
  if (!plan.fault.empty()) {
    return plan.fault;
  }
  std::string text = counted(static_cast<std::size_t>(plan.file_count()), "file");
  const auto none = static_cast<std::size_t>(std::ranges::count_if(plan.rows, gives_none));
  if (none > 0) {
    const auto lines = static_cast<std::size_t>(std::ranges::count_if(
        plan.rows, [](const ExportRow& row) { return gives_none(row) && row.stations.empty(); }));
    text += "; ";
    text += lines > 0 ? counted(lines, "line") : "";
    text += lines > 0 && lines < none ? " and " : "";
    text += lines < none ? counted(none - lines, "station") : "";
    text += none == 1 ? " gives none" : " give none";
  }
  const auto remarked = std::ranges::count_if(
      plan.rows, [](const ExportRow& row) { return !gives_none(row) && !row.remarks.empty(); });
  if (remarked > 0) {
    text += "; " + std::to_string(remarked) + (remarked == 1 ? " has" : " have") + " remarks";
  }
  return plan.stopped ? "Stopped: not all stations were looked at. " + text : text;
}

}  // namespace Module_exchange
