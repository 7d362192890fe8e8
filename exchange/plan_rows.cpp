#include "exchange/plan_rows.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <set>
#include <string_view>

#include "core/file_names.h"
#include "core/number_text.h"
#include "core/session_state.h"
#include "exchange/line_marks.h"
#include "exchange/site_names.h"
#include "exchange/site_places.h"

namespace Module_exchange {

using formats::csv::CurveRows;
using formats::transfer_function::Component;
using formats::transfer_function::Point;
using formats::transfer_function::SiteDocument;
using formats::transfer_function::Value;

namespace {

/// "Z, tipper"; of a tensor that isn't whole the data types: "ExHy".
std::string components_text(const std::array<bool, Module_tensor::curve_types.size()>& has) {
  constexpr std::size_t impedances = formats::transfer_function::impedance_count;
  const bool is_whole = std::all_of(has.begin(), has.begin() + impedances, [](bool there) { return there; });
  std::string text = is_whole ? "Z" : "";
  for (std::size_t type = 0; type < has.size(); ++type) {
    const bool is_named = has[type] && !(is_whole && type < impedances) && type < impedances;
    text += is_named ? (text.empty() ? "" : ", ") + std::string(Module_tensor::curve_types[type]) : "";
  }
  const bool has_tipper = has[impedances] || has[impedances + 1];
  return text + (has_tipper ? (text.empty() ? "tipper" : ", tipper") : "");
}

std::string components_of(const SiteDocument& document) {
  std::array<bool, Module_tensor::curve_types.size()> has{};
  for (std::size_t type = 0; type < has.size(); ++type) {
    has[type] = document.has(static_cast<Component>(type));
  }
  return components_text(has);
}

std::string components_of(const std::vector<CurveRows>& curves) {
  std::array<bool, Module_tensor::curve_types.size()> has{};
  bool has_qp = false;
  for (const CurveRows& curve : curves) {
    const auto type = Module_tensor::curve_type_index(curve.data_type);
    (type ? has[*type] : has_qp) = true;
  }
  const std::string text = components_text(has);
  return !has_qp ? text : text.empty() ? "QP" : text + ", QP";
}

std::string degrees_text(double degrees, char positive, char negative) {
  return format_number(std::abs(degrees), "0.0000") + " " + (degrees < 0.0 ? negative : positive);
}

std::string place_text(const formats::transfer_function::Site& site) {
  return site.latitude && site.longitude
             ? degrees_text(*site.latitude, 'N', 'S') + ", " + degrees_text(*site.longitude, 'E', 'W')
             : std::string();
}

/// What a file of impedances has no room for: phases whose resistivity is masked, and the other way round.
std::string lost_halves(const StationDocument& station) {
  const SiteDocument& document = station.document;
  int lost = 0;
  for (const Point& point : document.function.points) {
    const bool is_lost = std::ranges::any_of(point.values, [](const Value& value) {
      return !value.has_value() && (!std::isnan(value.resistivity) || !std::isnan(value.phase));
    });
    lost += is_lost ? 1 : 0;
  }
  return lost == 0 ? std::string()
                   : "Station " + Module_tensor::station_text(document.station, station.name) + ": at " +
                         plain_text(lost) + (lost == 1 ? " frequency" : " frequencies") +
                         " resistivity or phase alone has a value, and the file, which holds impedances, "
                         "has none";
}

bool has_impedances(const SiteDocument& document) {
  return std::ranges::any_of(document.function.points, [](const Point& point) {
    return std::ranges::any_of(point.values, [](const Value& value) { return value.has_value(); });
  });
}

/// Why a station gives no file of the format, a sentence without its point; empty if it gives one.
std::string refusal_of(ExportFormat format, const StationDocument& station) {
  if (!station.refusal.empty()) {
    return station.refusal;
  }
  const SiteDocument& document = station.document;
  const bool has_any =
      format == ExportFormat::emtf_xml ? has_impedances(document) : !components_of(document).empty();
  return has_any ? std::string()
                 : "Station " + Module_tensor::station_text(document.station, station.name) +
                       ": there is no value that counts";
}

ExportRow site_row(ExportFormat format, const StationDocument& station) {
  const SiteDocument& document = station.document;
  ExportRow row;
  row.stations = {document.station};
  row.site = station.name;
  row.frequencies = static_cast<int>(document.function.points.size());
  row.components = components_of(document);
  row.place = place_text(document.function.site);
  row.remarks = station.remarks;
  if (std::string lost = format == ExportFormat::emtf_xml ? lost_halves(station) : ""; !lost.empty()) {
    row.remarks.push_back(std::move(lost));
  }
  return row;
}

int most_points(const std::vector<CurveRows>& curves) {
  std::size_t most = 0;
  for (const CurveRows& curve : curves) {
    most = std::max(most, curve.points.size());
  }
  return static_cast<int>(most);
}

/// What the stations of a line that lack a tensor say of it, once each.
std::vector<std::string> document_remarks(const LineContents& line) {
  std::vector<std::string> remarks;
  for (const StationDocument& station : line.documents) {
    if (!station.refusal.empty()) {
      remarks.push_back(station.refusal);
    }
    remarks.insert(remarks.end(), station.remarks.begin(), station.remarks.end());
  }
  return remarks;
}

}  // namespace

std::vector<ExportRow> site_rows(const ExportChoices& choices, const LineContents& line,
                                 std::size_t choice_index, std::vector<std::string>& names) {
  std::vector<ExportRow> rows;
  for (const StationDocument& station : line.documents) {
    ExportRow row = site_row(choices.format, station);
    row.choice_index = choice_index;
    row.line = line.choice.line;
    std::string name = site_or_station(station.name, row.line, station.document.station);
    if (std::string refusal = refusal_of(choices.format, station); !refusal.empty()) {
      row.remarks.insert(row.remarks.begin(), std::move(refusal));
      name.clear();
    }
    names.push_back(std::move(name));
    rows.push_back(std::move(row));
  }
  return rows;
}

std::vector<ExportRow> table_rows(const LineTables& tables, const std::string& line_id,
                                  std::size_t choice_index) {
  std::vector<ExportRow> rows;
  std::set<double> with_curves;
  for (const CurveRows& curve : tables.curves) {
    with_curves.insert(curve.station);
  }
  for (const CsvTable table : tables.tables) {
    ExportRow row;
    row.file = table_file(line_id, table);
    row.choice_index = choice_index;
    row.line = tables.line.choice.line;
    row.stations.assign(with_curves.begin(), with_curves.end());
    row.frequencies = most_points(tables.curves);
    row.components = components_of(tables.curves);
    rows.push_back(std::move(row));
  }
  if (!rows.empty()) {
    rows.front().remarks = document_remarks(tables.line);
  }
  return rows;
}

std::string places_file(const ExportChoices& choices) {
  const std::string survey = Module_util::file_stem(Module_util::file_name_only(session().database_file));
  return file_id(survey) + (choices.format == ExportFormat::kml ? ".kml" : ".geojson");
}

ExportRow places_row(const ExportChoices& choices) {
  ExportRow row;
  PlacedLines placed = placed_lines(choices);
  row.remarks = std::move(placed.remarks);
  for (const formats::places::LineMarks& line : placed.lines) {
    for (const formats::places::SiteMark& mark : line.sites) {
      row.stations.push_back(mark.station);
    }
  }
  if (placed.lines.size() == 1) {
    row.line = placed.lines.front().line;
  }
  row.file = row.stations.empty() ? std::string() : places_file(choices);
  return row;
}

}  // namespace Module_exchange
