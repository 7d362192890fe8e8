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

namespace formats::csv {

namespace {

constexpr std::array<std::string_view, 7> data_types{"ExHx", "ExHy", "EyHx", "EyHy", "QP", "HzHx", "HzHy"};
constexpr std::string_view line_end = "\r\n";
constexpr double largest_value = 1e30;  // what is beyond it marks an absent value

bool is_tipper(std::string_view data_type) { return data_type.starts_with("Hz"); }

std::string_view name_of(CurveColumn column) { return curve_column_names[static_cast<std::size_t>(column)]; }

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
  TableReader(LineReader& lines, FileReport& report) : lines_(lines), report_(report) {}

  std::vector<CurveRows> read(const std::function<void()>& progress) {
    if (!take_header()) {
      return {};
    }
    CsvRecords records(lines_);
    constexpr std::int64_t rows_between = 1000;
    for (std::int64_t row = 1; report_.failure.empty() && records.next(record_); ++row) {
      take_record();
      if (progress && row % rows_between == 0) {
        progress();
      }
    }
    if (records.has_open_quote()) {
      report_.failure = "line " + plain_text(record_.line_number) +
                        ": a quote is opened and not closed; nothing behind it could be read";
    } else if (curves_.empty() && report_.failure.empty()) {
      report_.failure = "the table has no row with a station, a data type and a frequency";
    }
    return std::move(curves_);
  }

 private:
  bool take_header();
  void take_record();
  bool take_names(CurveRows& row);
  void take_places(CurveRows& row);
  CurvePoint point_of_row(bool tipper);
  CurveRows& curve_of(CurveRows& row);
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
    remark_ignored(report_, record_.line_number,
                   std::string(name_of(column)) + " " + in_quotes(field(column)) +
                       " differs from the one above it of the same curve, which is taken");
  }

  [[nodiscard]] std::string_view field(CurveColumn column) const {
    const auto& place = places_[static_cast<std::size_t>(column)];
    return place && *place < record_.fields.size() ? trimmed(record_.fields[*place]) : std::string_view();
  }
  [[nodiscard]] std::string text(CurveColumn column) const {
    return text_from_field_file(csv_text(field(column)));
  }
  double number(CurveColumn column);
  std::optional<double> number_within(CurveColumn column, double least, double most);
  std::optional<int> whole_number(CurveColumn column, int most);
  std::optional<bool> mask(CurveColumn column);
  void remark(CurveColumn column, std::string_view what) {
    remark_unreadable(
        report_, record_.line_number,
        std::string(name_of(column)) + " " + in_quotes(field(column)) + " " + std::string(what));
  }

  LineReader& lines_;
  FileReport& report_;
  CsvRecord record_;
  std::size_t field_count_ = 0;  // of the header
  std::array<std::optional<std::size_t>, curve_column_count> places_;
  std::vector<CurveRows> curves_;
  std::map<CurveKey, std::size_t> indices_;
};

bool TableReader::take_header() {
  std::string_view line;
  while (lines_.next(line) && trimmed(line).empty()) {
  }
  if (const char separator = header_separator(line); separator != ',') {
    report_.failure = std::string("the columns are separated by ") +
                      (separator == ';' ? "semicolons" : "tabs") +
                      "; a table of curves has commas between its columns and decimal points in its numbers";
    return false;
  }
  const std::vector<std::string> names = csv_fields(line, ',');
  const CurveColumns columns = curve_columns(names);
  if (const std::string missing = missing_curve_column(columns); !missing.empty()) {
    report_.failure = "the table has no column " + missing;
    return false;
  }
  field_count_ = names.size();
  for (std::size_t index = 0; index < columns.size(); ++index) {
    if (columns[index]) {
      places_[static_cast<std::size_t>(*columns[index])] = index;
    } else if (!trimmed(names[index]).empty()) {
      remark_ignored(report_, lines_.line_number(), "the column " + in_quotes(names[index]) + " is not used",
                     "columns of a table");
    }
  }
  return true;
}

void TableReader::take_record() {
  if (record_.fault.empty() && record_.fields.size() != field_count_) {
    record_.fault = "the row has " + plain_text(static_cast<std::int64_t>(record_.fields.size())) +
                    " fields where the header has " + plain_text(static_cast<std::int64_t>(field_count_));
  }
  if (!record_.fault.empty()) {
    remark_unreadable(report_, record_.line_number, record_.fault + "; it is left out");
    return;
  }
  CurveRows row;
  if (!take_names(row)) {
    return;
  }
  const double frequency = number(CurveColumn::frequency);
  if (!(frequency > 0.0)) {
    remark(CurveColumn::frequency, "is not above 0; the row is left out");
    return;
  }
  take_places(row);
  CurvePoint point = point_of_row(is_tipper(row.data_type));
  point.frequency = frequency;
  if (report_.failure.empty()) {
    curve_of(row).points.push_back(point);
  }
}

// @return false if the row can't be told to be of any curve; the report says so
bool TableReader::take_names(CurveRows& row) {
  const auto type = std::ranges::find_if(data_types, [&](std::string_view data_type) {
    return equal_ignoring_case(data_type, field(CurveColumn::data_type));
  });
  if (type == data_types.end()) {
    remark(CurveColumn::data_type, "is none of ExHx, ExHy, EyHx, EyHy, QP, HzHx, HzHy; the row is left out");
    return false;
  }
  row.data_type = *type;
  row.station = number(CurveColumn::station);
  if (std::isnan(row.station)) {
    remark(CurveColumn::station, "is no station; the row is left out");
    return false;
  }
  row.line = text(CurveColumn::line);
  row.site = text(CurveColumn::site);
  row.date = text(CurveColumn::date);
  row.reference_type = whole_number(CurveColumn::reference_type, 2);
  row.event = whole_number(CurveColumn::event, std::numeric_limits<int>::max());
  row.dipole = number_within(CurveColumn::dipole, 0.0, largest_value);
  row.scan_rate = number_within(CurveColumn::scan_rate, 0.0, largest_value);
  return true;
}

void TableReader::take_places(CurveRows& row) {
  constexpr double turn = 360.0;
  row.azimuth = number_within(CurveColumn::azimuth, -turn, turn);
  row.latitude = number_within(CurveColumn::latitude, -90.0, 90.0);
  row.longitude = number_within(CurveColumn::longitude, -turn, turn);
  row.elevation = number_within(CurveColumn::elevation, -largest_value, largest_value);
  row.easting = number_within(CurveColumn::easting, -largest_value, largest_value);
  row.northing = number_within(CurveColumn::northing, -largest_value, largest_value);
  if (row.longitude && std::abs(*row.longitude) > turn / 2.0) {
    row.longitude = std::remainder(*row.longitude, turn);
  }
  if (row.latitude.has_value() != row.longitude.has_value()) {
    row.latitude.reset();
    row.longitude.reset();
  }
  if (row.easting.has_value() != row.northing.has_value()) {
    row.easting.reset();
    row.northing.reset();
  }
}

CurvePoint TableReader::point_of_row(bool tipper) {
  CurvePoint point;
  if (tipper) {
    point.resistivity = number(CurveColumn::tipper_real);
    point.phase = number(CurveColumn::tipper_imaginary);
    point.resistivity_error = point.phase_error = number(CurveColumn::tipper_error);
  } else {
    point.resistivity = number(CurveColumn::resistivity);
    point.phase = number(CurveColumn::phase);
    point.resistivity_error = number(CurveColumn::resistivity_error);
    point.phase_error = number(CurveColumn::phase_error);
  }
  const std::optional<bool> both = mask(CurveColumn::masked);
  const std::optional<bool> of_resistivity = mask(CurveColumn::resistivity_masked);
  const std::optional<bool> of_phase = mask(CurveColumn::phase_masked);
  point.resistivity_masked = of_resistivity ? of_resistivity : both;
  point.phase_masked = of_phase ? of_phase : both;
  return point;
}

CurveRows& TableReader::curve_of(CurveRows& row) {
  const auto [place, is_new] = indices_.try_emplace(key_of(row), curves_.size());
  if (is_new) {
    row.line_number = record_.line_number;
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

double TableReader::number(CurveColumn column) {
  const std::string_view item = field(column);
  if (item.empty() || equal_ignoring_case(item, "nan")) {
    return not_known;
  }
  const double value = is_numeric(item) ? numeric_value(item) : not_known;
  if (std::abs(value) <= largest_value) {
    return value;
  }
  std::string with_point(item);
  std::ranges::replace(with_point, ',', '.');
  if (with_point != item && is_numeric(with_point)) {
    report_.failure = "line " + plain_text(record_.line_number) + ": " + std::string(name_of(column)) + " " +
                      in_quotes(item) + " has a decimal comma; the numbers of a table have decimal points";
  } else if (std::isnan(value)) {
    remark(column, "is not a number, taken as absent");
  }
  return not_known;
}

std::optional<double> TableReader::number_within(CurveColumn column, double least, double most) {
  const double value = number(column);
  if (value >= least && value <= most) {
    return value;
  }
  if (!std::isnan(value)) {
    remark(column, "is out of range, taken as absent");
  }
  return std::nullopt;
}

std::optional<int> TableReader::whole_number(CurveColumn column, int most) {
  const std::optional<double> value = number_within(column, 0.0, most);
  if (value && *value != std::floor(*value)) {
    remark(column, "is not a whole number, taken as absent");
    return std::nullopt;
  }
  return value ? std::optional(static_cast<int>(*value)) : std::nullopt;
}

std::optional<bool> TableReader::mask(CurveColumn column) {
  const std::string_view item = field(column);
  if (item == "1" || equal_ignoring_case(item, "true")) {
    return true;
  }
  if (item == "0" || equal_ignoring_case(item, "false")) {
    return false;
  }
  if (!item.empty()) {
    remark(column, "is neither 0 nor 1, taken as absent");
  }
  return std::nullopt;
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
  return line.size() <= longest_header &&
         missing_curve_column(curve_columns(csv_fields(line, header_separator(line)))).empty();
}

std::vector<CurveRows> read_curve_table(LineReader& lines, FileReport& report,
                                        const std::function<void()>& progress) {
  return TableReader(lines, report).read(progress);
}

}  // namespace formats::csv
