#include "batch/tensor_files.h"

#include <algorithm>
#include <cmath>
#include <iomanip>

#include "core/number_text.h"
#include "formats/csv/csv_records.h"
#include "tensor/tensor_quantities.h"

namespace Batch {

namespace {

using Json = nlohmann::ordered_json;
using Module_tensor::EyReason;
using Module_tensor::PointValues;
using Module_tensor::StationTensor;
using Module_tensor::TensorQuantity;
using numerics::impedance::Estimate;

/// A frequency as it is written in 32 bits: 0.1, not 0.10000000149011612.
double written_frequency(double frequency) { return decimal_of_single(static_cast<float>(frequency)); }

Json number_or_null(double value) { return std::isfinite(value) ? Json(value) : Json(); }

std::string reason_name(EyReason reason) {
  return reason == EyReason::facts ? "facts" : reason == EyReason::rule ? "rule" : "user";
}

Json station_name(const StationTensor& tensor) {
  return tensor.name.empty() ? Json(tensor.station) : Json(tensor.name);
}

/// What was made of the readings, beside the numbers.
void add_description(const StationTensor& tensor, Json& json) {
  json["axes"] = tensor.axes;
  json["axes_known"] = tensor.axes_known;
  json["ey_turned"] = tensor.ey_turned;
  json["ey_reason"] = reason_name(tensor.ey_reason);
  json["masked_diagonals"] = tensor.masked_diagonals;
  json["refusal"] = tensor.refusal.empty() ? Json() : Json(tensor.refusal);
  json["remarks"] = tensor.remarks;
}

Json station_json(const LineStation& station, const std::vector<TensorQuantity>& quantities) {
  Json json;
  json["station"] = station_name(station.tensor);
  json["line"] = station.line;
  json["number"] = station.tensor.station;
  add_description(station.tensor, json);
  json["frequency"] = Json::array();
  json["values"] = Json::object();
  json["errors"] = Json::object();
  const std::vector<PointValues> points = points_of(station.tensor);
  for (const PointValues& point : points) {
    json["frequency"].push_back(written_frequency(point.frequency()));
  }
  for (const TensorQuantity& quantity : quantities) {
    Json& values = json["values"][quantity.name] = Json::array();
    Json& errors = json["errors"][quantity.name] = Json::array();
    for (const PointValues& point : points) {
      const Estimate estimate = quantity.of(point);
      values.push_back(number_or_null(estimate.value));
      errors.push_back(number_or_null(estimate.error));
    }
  }
  return json;
}

std::string cell(const std::string& text) { return formats::csv::csv_field(text); }

std::string cell(double value) { return std::isfinite(value) ? criterion_text(value) : std::string(); }

std::string csv_heading(const std::vector<TensorQuantity>& quantities) {
  std::string heading = "line,station,site,frequency (Hz)";
  for (const TensorQuantity& quantity : quantities) {
    const std::string unit = quantity.unit.empty() ? std::string() : " (" + quantity.unit + ")";
    heading.append(",").append(quantity.name).append(unit);
    heading.append(",").append(quantity.name).append(" error").append(unit);
  }
  return heading + '\n';
}

/// A column of the table for reading.
struct Column {
  const char* heading;
  const char* unit;
  const char* picture;
  std::string quantity;
};

/// @param axes  of the off-diagonal elements: azimuth of x, degrees from north
std::vector<Column> columns_of_table(double axes) {
  const std::string turned = plain_text(axes);
  return {{"Rho xy", "ohm-m", "", "rho" + turned + "_xy"},
          {"Phase xy", "degrees", "0.0", "phi" + turned + "_xy"},
          {"Rho yx", "ohm-m", "", "rho" + turned + "_yx"},
          {"Phase yx", "degrees", "0.0", "phi" + turned + "_yx"},
          {"Rho det", "ohm-m", "", "det_rho"},
          {"Phase det", "degrees", "0.0", "det_phase"},
          {"Phi max", "degrees", "0.0", "pt_phi_max"},
          {"Phi min", "degrees", "0.0", "pt_phi_min"},
          {"Azimuth", "degrees", "0.0", "pt_azimuth"},
          {"Beta", "degrees", "0.00", "pt_beta"},
          {"Ellipticity", "", "0.000", "pt_ellipticity"},
          {"Swift", "degrees", "0.0", "swift_strike"},
          {"Skew", "", "0.000", "swift_skew"},
          {"Tipper", "", "0.000", "tipper_magnitude"}};
}

constexpr int column_width = 13;

std::string shown(double value, std::string_view picture) {
  return !std::isfinite(value) ? "-"
         : picture.empty()     ? plain_text(static_cast<float>(value))
                               : format_number(value, picture);
}

std::string description(const StationTensor& tensor, double shown_axes) {
  std::string text =
      std::to_string(tensor.points.size()) + " frequencies, Hx at " + format_number(tensor.axes, "0.0");
  text += tensor.axes_known ? "" : " (not known)";
  text += ", x of the table at " + format_number(shown_axes, "0.0") + " degrees";
  text += tensor.ey_turned ? ", Ey turned back" : ", Ey as measured";
  text += tensor.ey_reason == EyReason::user ? " (set by the user)" : "";
  if (tensor.masked_diagonals > 0) {
    text += ", " + std::to_string(tensor.masked_diagonals) + " diagonal elements in spite of their masks";
  }
  return text;
}

void print_heading(std::ostream& out, const std::vector<Column>& columns) {
  out << std::right << std::setw(column_width) << "Frequency";
  for (const Column& column : columns) {
    out << std::setw(column_width) << column.heading;
  }
  out << '\n' << std::setw(column_width) << "Hz";
  for (const Column& column : columns) {
    out << std::setw(column_width) << column.unit;
  }
  out << '\n';
}

void print_station(std::ostream& out, const StationTensor& tensor, double axes) {
  const std::vector<TensorQuantity> quantities = Module_tensor::tensor_quantities(axes);
  const std::vector<Column> columns = columns_of_table(axes);
  print_heading(out, columns);
  for (const PointValues& point : points_of(tensor)) {
    out << std::setw(column_width) << plain_text(static_cast<float>(point.frequency()));
    for (const Column& column : columns) {
      const auto quantity = std::ranges::find(quantities, column.quantity, &TensorQuantity::name);
      out << std::setw(column_width) << shown(quantity->of(point).value, column.picture);
    }
    out << '\n';
  }
}

}  // namespace

nlohmann::ordered_json stations_json(const std::vector<LineStation>& stations,
                                     std::optional<double> rotation) {
  const std::vector<TensorQuantity> quantities = Module_tensor::tensor_quantities(rotation);
  Json list = Json::array();
  for (const LineStation& station : stations) {
    list.push_back(station_json(station, quantities));
  }
  return list;
}

std::string stations_csv(const std::vector<LineStation>& stations, std::optional<double> rotation) {
  const std::vector<TensorQuantity> quantities = Module_tensor::tensor_quantities(rotation);
  std::string csv = csv_heading(quantities);
  for (const LineStation& station : stations) {
    const std::string place = cell(station.line) + "," + cell(criterion_text(station.tensor.station)) + "," +
                              cell(station.tensor.name);
    for (const PointValues& point : points_of(station.tensor)) {
      csv += place + "," + cell(criterion_text(written_frequency(point.frequency())));
      for (const TensorQuantity& quantity : quantities) {
        const Estimate estimate = quantity.of(point);
        csv += "," + cell(estimate.value) + "," + cell(estimate.error);
      }
      csv += '\n';
    }
  }
  return csv;
}

void print_stations(std::ostream& out, const std::vector<LineStation>& stations,
                    std::optional<double> rotation) {
  for (const LineStation& station : stations) {
    const StationTensor& tensor = station.tensor;
    const double axes = rotation.value_or(tensor.axes);
    out << "Line " << station.line << ", station " << Module_tensor::station_text(tensor.station, tensor.name)
        << ": ";
    if (!tensor.refusal.empty() && tensor.tipper.empty()) {
      out << "no tensor\n\n";  // the reason has been told
      continue;
    }
    out << description(tensor, axes) << '\n';
    print_station(out, tensor, axes);
    out << '\n';
  }
}

}  // namespace Batch
