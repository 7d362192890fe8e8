#include "exchange/csv_tensors.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <span>
#include <vector>

#include "core/number_text.h"
#include "exchange/csv_cells.h"
#include "tensor/rotated_readings.h"
#include "tensor/tensor_quantities.h"

namespace Module_exchange {

using formats::transfer_function::Component;
using formats::transfer_function::Point;
using formats::transfer_function::SiteDocument;
using formats::transfer_function::Value;
using Module_tensor::PointValues;
using Module_tensor::StationTensor;
using Module_tensor::TensorQuantity;
using numerics::impedance::Estimate;

namespace {

constexpr std::array impedance_components{Component::zxx, Component::zxy, Component::zyx, Component::zyy};
constexpr std::array tipper_components{Component::tx, Component::ty};

std::string_view name_of(Component component) {
  constexpr std::array<std::string_view, formats::transfer_function::component_count> names{
      "Zxx", "Zxy", "Zyx", "Zyy", "Tx", "Ty"};
  return names[static_cast<std::size_t>(component)];
}

bool has_any(const StationDocument& station, std::span<const Component> components) {
  return station.refusal.empty() && std::ranges::any_of(components, [&](Component component) {
           return station.document.has(component);
         });
}

bool is_there(const Value& value) {
  return value.has_value() || !std::isnan(value.resistivity) || !std::isnan(value.phase);
}

/// A frequency as it is written in 32 bits: 0.1, not 0.10000000149011612.
double written_frequency(double frequency) { return decimal_of_single(static_cast<float>(frequency)); }

CsvRow place_of(const std::string& line, double station, const std::string& site, double frequency,
                std::optional<double> azimuth) {
  CsvRow row;
  row.add(line).add(station).add(site).add(written_frequency(frequency));
  return row.add(azimuth.value_or(formats::transfer_function::not_given));
}

constexpr const char* names_of_place = "line,station,site,frequency_Hz,x_azimuth_deg";

/// The rows of some components of a line's documents.
template <class AddValue>
std::string component_rows(const LineContents& line, std::span<const Component> components,
                           const AddValue& add_value) {
  std::string text;
  for (const StationDocument& station : line.documents) {
    if (!has_any(station, components)) {
      continue;
    }
    const SiteDocument& document = station.document;
    for (const Point& point : document.function.points) {
      for (const Component component : components) {
        if (const Value& value = point.of(component); is_there(value)) {
          CsvRow row = place_of(line.choice.line, document.station, station.name, point.frequency,
                                document.function.site.x_azimuth);
          row.add(name_of(component)).add(value.value.real()).add(value.value.imag()).add(value.variance);
          add_value(value, row);
          text += row.text();
        }
      }
    }
  }
  return text;
}

std::string with_heading(const std::string& heading, const std::string& rows) {
  return rows.empty() ? rows : std::string(names_of_place) + "," + heading + "\r\n" + rows;
}

/// The quantities that aren't elements themselves.
std::vector<TensorQuantity> parameters() {
  std::vector<TensorQuantity> quantities = Module_tensor::tensor_quantities();
  std::erase_if(quantities, [](const TensorQuantity& quantity) {
    return quantity.name.starts_with("z_") || quantity.name.starts_with("tx_") ||
           quantity.name.starts_with("ty_");
  });
  return quantities;
}

std::string names_of(const std::vector<TensorQuantity>& quantities) {
  std::string names;
  for (const TensorQuantity& quantity : quantities) {
    const std::string unit = unit_ending(quantity.unit);
    names.append(names.empty() ? "" : ",").append(quantity.name).append(unit);
    names.append(",").append(quantity.name).append("_error").append(unit);
  }
  return names;
}

/// Without what is switched off, in the axes that are asked for.
StationTensor tensor_to_write(const LineContents& line, std::size_t station, std::optional<double> rotation) {
  StationTensor tensor = line.tensors.stations[station];
  leave_out_disabled(line.frequencies, tensor);
  return rotation ? rotated_tensor(tensor, *rotation) : tensor;
}

}  // namespace

std::string tensors_csv(const LineContents& line) {
  return with_heading(
      "element,real_mV/km/nT,imaginary_mV/km/nT,variance_(mV/km/nT)^2,resistivity_ohm_m,"
      "resistivity_error_ohm_m,phase_deg,phase_error_deg",
      component_rows(line, impedance_components, [](const Value& value, CsvRow& row) {
        row.add(value.resistivity).add(value.resistivity_error).add(value.phase).add(value.phase_error);
      }));
}

std::string tippers_csv(const LineContents& line) {
  return with_heading("component,real,imaginary,variance",
                      component_rows(line, tipper_components, [](const Value&, CsvRow&) {}));
}

std::string parameters_csv(const LineContents& line, std::optional<double> rotation) {
  const std::vector<TensorQuantity> quantities = parameters();
  std::string text;
  for (std::size_t station = 0; station < line.tensors.stations.size(); ++station) {
    const StationTensor tensor = tensor_to_write(line, station, rotation);
    for (const PointValues& point : points_of(tensor)) {
      CsvRow row = place_of(line.choice.line, tensor.station, tensor.name, point.frequency(), tensor.axes);
      for (const TensorQuantity& quantity : quantities) {
        const Estimate estimate = quantity.of(point);
        row.add(estimate.value).add(estimate.error);
      }
      text += row.text();
    }
  }
  return with_heading(names_of(quantities), text);
}

bool has_tensors(const LineContents& line) {
  return std::ranges::any_of(
      line.documents, [](const StationDocument& station) { return has_any(station, impedance_components); });
}

bool has_tippers(const LineContents& line) {
  return std::ranges::any_of(
      line.documents, [](const StationDocument& station) { return has_any(station, tipper_components); });
}

bool has_parameters(const LineContents& line) {
  for (std::size_t station = 0; station < line.tensors.stations.size(); ++station) {
    const StationTensor tensor = tensor_to_write(line, station, std::nullopt);
    if (!tensor.points.empty() || !tensor.tipper.empty()) {
      return true;
    }
  }
  return false;
}

}  // namespace Module_exchange
