#include "formats/csv/curve_table.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <map>
#include <tuple>

#include "core/number_text.h"
#include "core/text_fields.h"
#include "formats/csv/csv_records.h"
#include "formats/csv/curve_columns.h"
#include "formats/csv/curve_fields.h"

namespace formats::csv {

namespace {

constexpr std::array<std::string_view, 7> data_types{"ExHx", "ExHy", "EyHx", "EyHy", "QP", "HzHx", "HzHy"};
constexpr std::string_view line_end = "\r\n";

bool is_tipper(std::string_view data_type) { return data_type.starts_with("Hz"); }

std::string joined(const std::array<std::string, curve_column_count>& fields, std::size_t first,
                   std::size_t end) {
  std::string text;
  for (std::size_t index = first; index < end; ++index) {
    text += index == 0 ? "" : ",";
    text += fields[index];
  }
  return text;
}

// Stored values are 32-bit.
std::string single_text(double value) {
  return std::abs(value) <= largest_value ? criterion_text(static_cast<float>(value)) : std::string();
}

template <class Number>
std::string text_of(const std::optional<Number>& number) {
  return number ? plain_text(*number) : std::string();
}

std::string mask_text(const std::optional<bool>& masked) {
  return masked ? (*masked ? "1" : "0") : std::string();
}

std::optional<bool> either(const CurvePoint& point) {
  if (!point.resistivity_masked && !point.phase_masked) {
    return std::nullopt;
  }
  return point.resistivity_masked.value_or(false) || point.phase_masked.value_or(false);
}

class RowText {
 public:
  explicit RowText(const CurveRows& curve) : is_tipper_(is_tipper(curve.data_type)) {
    at(CurveColumn::line) = csv_field(curve.line);
    at(CurveColumn::station) = plain_text(curve.station);
    at(CurveColumn::site) = csv_field(curve.site);
    at(CurveColumn::data_type) = csv_field(curve.data_type);
    at(CurveColumn::reference_type) = text_of(curve.reference_type);
    at(CurveColumn::dipole) = single_text(curve.dipole.value_or(not_known));
    at(CurveColumn::scan_rate) = single_text(curve.scan_rate.value_or(not_known));
    at(CurveColumn::event) = text_of(curve.event);
    at(CurveColumn::date) = csv_field(curve.date);
    at(CurveColumn::azimuth) = single_text(curve.azimuth.value_or(not_known));
    at(CurveColumn::latitude) = text_of(curve.latitude);
    at(CurveColumn::longitude) = text_of(curve.longitude);
    at(CurveColumn::elevation) = text_of(curve.elevation);
    at(CurveColumn::easting) = text_of(curve.easting);
    at(CurveColumn::northing) = text_of(curve.northing);
    names_ = joined(fields_, 0, first_value);
  }

  std::string row(const CurvePoint& point) {
    at(CurveColumn::frequency) = single_text(point.frequency);
    if (is_tipper_) {
      at(CurveColumn::tipper_real) = single_text(point.resistivity);
      at(CurveColumn::tipper_imaginary) = single_text(point.phase);
      at(CurveColumn::tipper_error) = single_text(point.resistivity_error);
    } else {
      at(CurveColumn::resistivity) = single_text(point.resistivity);
      at(CurveColumn::resistivity_error) = single_text(point.resistivity_error);
      at(CurveColumn::phase) = single_text(point.phase);
      at(CurveColumn::phase_error) = single_text(point.phase_error);
    }
    at(CurveColumn::masked) = mask_text(either(point));
    at(CurveColumn::resistivity_masked) = mask_text(point.resistivity_masked);
    at(CurveColumn::phase_masked) = mask_text(point.phase_masked);
    return names_ + joined(fields_, first_value, curve_column_count) + std::string(line_end);
  }

 private:
  static constexpr auto first_value = static_cast<std::size_t>(CurveColumn::frequency);

  std::string& at(CurveColumn column) { return fields_[static_cast<std::size_t>(column)]; }

  bool is_tipper_;
  std::array<std::string, curve_column_count> fields_;
  std::string names_;  // the fields that all rows have alike
};

// By what rows belong to one curve.
using CurveKey = std::tuple<std::string, double, std::string, int, double, double, int>;

CurveKey key_of(const CurveRows& curve) {
  constexpr int none = -1;
  return {upper_case(curve.line),
          curve.station,
          curve.data_type,
          curve.reference_type.value_or(none),
          curve.dipole.value_or(none),
          curve.scan_rate.value_or(none),
          curve.event.value_or(none)};
}

class TableReader {
 public:
  TableReader(LineReader& lines, FileReport& report) : report_(report), fields_(lines, report) {}

  std::vector<CurveRows> read(const std::function<void()>& progress) {
    constexpr std::int64_t rows_between = 1000;
    for (std::int64_t row = 1; fields_.next_row(); ++row) {
      take_row();
      if (progress && row % rows_between == 0) {
        progress();
      }
    }
    if (curves_.empty() && report_.failure.empty()) {
      report_.failure = "the table has no row with a station, a data type and a frequency";
    }
    return report_.failure.empty() ? std::move(curves_) : std::vector<CurveRows>();
  }

 private:
  void take_row();
  bool take_names(CurveRows& row);
  void take_places(CurveRows& row);
  void keep_both_or_none(CurveColumn first_column, std::optional<double>& first, CurveColumn second_column,
                         std::optional<double>& second);
  CurvePoint point_of_row(bool tipper);
  CurveRows& curve_of(CurveRows&& row);
  void take_facts(const CurveRows& row, CurveRows& curve);

  template <class Value>
  void take_fact(CurveColumn column, const std::optional<Value>& said, std::optional<Value>& kept) {
    if (!kept) {
      kept = said;
    } else if (said && *said != *kept) {
      remark_on_difference(column);
    }
  }
  void take_fact(CurveColumn column, const std::string& said, std::string& kept) {
    if (kept.empty()) {
      kept = said;
    } else if (!said.empty() && said != kept) {
      remark_on_difference(column);
    }
  }
  void remark_on_difference(CurveColumn column) {
    remark_ignored(report_, fields_.line_number(),
                   std::string(column_name(column)) + " " + in_quotes(fields_.field(column)) +
                       " differs from the one above it of the same curve, which is taken");
  }

  FileReport& report_;
  CurveFields fields_;
  std::vector<CurveRows> curves_;
  std::map<CurveKey, std::size_t> indices_;
};

void TableReader::take_row() {
  CurveRows row;
  if (!take_names(row)) {
    return;
  }
  const double frequency = fields_.number(CurveColumn::frequency);
  if (!report_.failure.empty()) {
    return;
  }
  if (!(frequency > 0.0)) {
    fields_.remark(CurveColumn::frequency, "is not above 0; the row is left out");
    return;
  }
  if (frequency < 1.0 / largest_value) {  // it would become 0 in 32 bits, or its period too large a number
    fields_.remark(CurveColumn::frequency, "is too near to 0 for a curve; the row is left out");
    return;
  }
  take_places(row);
  CurvePoint point = point_of_row(is_tipper(row.data_type));
  point.frequency = frequency;
  if (report_.failure.empty()) {
    curve_of(std::move(row)).points.push_back(point);
  }
}

// @return false if the row can't be told to be of any curve; the report says so
bool TableReader::take_names(CurveRows& row) {
  const auto type = std::ranges::find_if(data_types, [&](std::string_view data_type) {
    return equal_ignoring_case(data_type, fields_.field(CurveColumn::data_type));
  });
  if (type == data_types.end()) {
    fields_.remark(CurveColumn::data_type,
                   "is none of ExHx, ExHy, EyHx, EyHy, QP, HzHx, HzHy; the row is left out");
    return false;
  }
  row.data_type = *type;
  row.station = fields_.number(CurveColumn::station);
  if (std::isnan(row.station)) {
    fields_.remark(CurveColumn::station, "is no station; the row is left out");
    return false;
  }
  row.line = fields_.text(CurveColumn::line);
  row.site = fields_.text(CurveColumn::site);
  row.date = fields_.text(CurveColumn::date);
  row.reference_type = fields_.whole_number(CurveColumn::reference_type, 2);
  row.event = fields_.whole_number(CurveColumn::event, std::numeric_limits<int>::max());
  row.dipole = fields_.number_within(CurveColumn::dipole, 0.0, largest_value);
  row.scan_rate = fields_.number_within(CurveColumn::scan_rate, 0.0, largest_value);
  return true;
}

void TableReader::take_places(CurveRows& row) {
  constexpr double turn = 360.0;
  row.azimuth = fields_.number_within(CurveColumn::azimuth, -turn, turn);
  row.latitude = fields_.number_within(CurveColumn::latitude, -90.0, 90.0);
  row.longitude = fields_.number_within(CurveColumn::longitude, -turn, turn);
  row.elevation = fields_.number_within(CurveColumn::elevation, -largest_value, largest_value);
  row.easting = fields_.number_within(CurveColumn::easting, -largest_value, largest_value);
  row.northing = fields_.number_within(CurveColumn::northing, -largest_value, largest_value);
  if (row.longitude && std::abs(*row.longitude) > turn / 2.0) {
    row.longitude = std::remainder(*row.longitude, turn);
  }
  keep_both_or_none(CurveColumn::latitude, row.latitude, CurveColumn::longitude, row.longitude);
  keep_both_or_none(CurveColumn::easting, row.easting, CurveColumn::northing, row.northing);
}

void TableReader::keep_both_or_none(CurveColumn first_column, std::optional<double>& first,
                                    CurveColumn second_column, std::optional<double>& second) {
  if (first.has_value() != second.has_value()) {
    fields_.remark(first ? first_column : second_column,
                   "has no " + std::string(column_name(first ? second_column : first_column)) +
                       " beside it, taken as absent");
    first.reset();
    second.reset();
  }
}

CurvePoint TableReader::point_of_row(bool tipper) {
  CurvePoint point;
  if (tipper) {
    point.resistivity = fields_.number(CurveColumn::tipper_real);
    point.phase = fields_.number(CurveColumn::tipper_imaginary);
    point.resistivity_error = point.phase_error = fields_.number(CurveColumn::tipper_error);
  } else {
    point.resistivity = fields_.number(CurveColumn::resistivity);
    point.phase = fields_.number(CurveColumn::phase);
    point.resistivity_error = fields_.number(CurveColumn::resistivity_error);
    point.phase_error = fields_.number(CurveColumn::phase_error);
  }
  const std::optional<bool> both = fields_.mark(CurveColumn::masked);
  const std::optional<bool> of_resistivity = fields_.mark(CurveColumn::resistivity_masked);
  const std::optional<bool> of_phase = fields_.mark(CurveColumn::phase_masked);
  point.resistivity_masked = of_resistivity ? of_resistivity : both;
  point.phase_masked = of_phase ? of_phase : both;
  return point;
}

CurveRows& TableReader::curve_of(CurveRows&& row) {
  const auto [place, is_new] = indices_.try_emplace(key_of(row), curves_.size());
  if (is_new) {
    row.line_number = fields_.line_number();
    return curves_.emplace_back(std::move(row));
  }
  CurveRows& curve = curves_[place->second];
  take_facts(row, curve);
  return curve;
}

void TableReader::take_facts(const CurveRows& row, CurveRows& curve) {
  take_fact(CurveColumn::site, row.site, curve.site);
  take_fact(CurveColumn::date, row.date, curve.date);
  take_fact(CurveColumn::azimuth, row.azimuth, curve.azimuth);
  take_fact(CurveColumn::latitude, row.latitude, curve.latitude);
  take_fact(CurveColumn::longitude, row.longitude, curve.longitude);
  take_fact(CurveColumn::elevation, row.elevation, curve.elevation);
  take_fact(CurveColumn::easting, row.easting, curve.easting);
  take_fact(CurveColumn::northing, row.northing, curve.northing);
}

}  // namespace

std::string curve_table_header() {
  std::string header;
  for (const std::string_view name : curve_column_names) {
    header += header.empty() ? "" : ",";
    header += name;
  }
  return header + std::string(line_end);
}

std::string curve_table_rows(const CurveRows& curve) {
  RowText text(curve);
  std::string rows;
  for (const CurvePoint& point : curve.points) {
    rows += text.row(point);
  }
  return rows;
}

bool is_curve_table_header(std::string_view line) {
  constexpr std::size_t longest_header = 10000;  // bytes
  if (line.size() > longest_header) {
    return false;
  }
  const std::vector<std::string> names = csv_fields(line, header_separator(line));
  return missing_curve_column(curve_columns(names)).empty() && !has_fitted_values(names);
}

std::vector<CurveRows> read_curve_table(LineReader& lines, FileReport& report,
                                        const std::function<void()>& progress) {
  return TableReader(lines, report).read(progress);
}

}  // namespace formats::csv
