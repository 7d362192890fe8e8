#include "python/bindings/curve_arrays.h"

#include <cmath>
#include <limits>
#include <vector>

#include "core/absent_value.h"
#include "core/number_text.h"
#include "python/bindings/texts.h"

namespace Python {

namespace py = pybind11;

namespace {

using namespace Module_database;

void make_absent_nan(std::vector<float>& values) {
  for (float& value : values) {
    if (is_absent(double{value}) || !std::isfinite(value)) {
      value = std::numeric_limits<float>::quiet_NaN();
    }
  }
}

/// Every `stride`-th element from `first` on, without a copy.
template <class Number>
py::array view(const std::vector<Number>& numbers, std::size_t first, std::size_t stride, std::size_t count,
               const py::object& owner) {
  const Number* const data = count == 0 ? nullptr : numbers.data() + first;
  py::array_t<Number> array({static_cast<py::ssize_t>(count)},
                            {static_cast<py::ssize_t>(stride * sizeof(Number))}, data, owner);
  array.attr("setflags")(py::arg("write") = false);
  return array;
}

}  // namespace

py::dict attributes_of(std::unique_ptr<TakenReading> taken) {
  make_absent_nan(taken->reading.curve.data);
  make_absent_nan(taken->reading.curve.errors);
  if (taken->reading.curve.errors.empty()) {
    taken->reading.curve.errors.assign(taken->reading.curve.count() * error_count,
                                       std::numeric_limits<float>::quiet_NaN());
  }
  const TakenReading& kept = *taken;
  const py::capsule owner(taken.release(), [](void* held) { delete static_cast<TakenReading*>(held); });
  const StoredReading& reading = kept.reading;
  const Curve& curve = reading.curve;
  const std::size_t count = curve.count();
  py::dict attributes;
  const auto field = [&](const char* name, int number) {
    attributes[name] = view(curve.data, static_cast<std::size_t>(number - 1), field_count, count, owner);
  };
  attributes["frequency"] = view(curve.frequencies, 0, 1, count, owner);
  field("resistivity", field_resistivity);
  field("phase", field_phase);
  field("resistivity_deviation", field_resistivity_deviation);
  field("phase_deviation", field_phase_deviation);
  field("impedance_real", field_impedance_real);
  field("impedance_imaginary", field_impedance_imaginary);
  attributes["resistivity_error"] = view(curve.errors, 0, error_count, count, owner);
  attributes["phase_error"] = view(curve.errors, 1, error_count, count, owner);
  attributes["resistivity_counts"] = view(curve.mask, 0, mask_count, count, owner);
  attributes["phase_counts"] = view(curve.mask, 1, mask_count, count, owner);
  attributes["line"] = text_of(kept.key.line);
  attributes["station"] = kept.key.station;
  attributes["data_type"] = text_of(kept.key.data_type);
  attributes["reference_type"] = kept.key.reference_type;
  attributes["dipole"] = decimal_of_single(kept.key.dipole);
  attributes["scan_rate"] = decimal_of_single(kept.key.scan_rate);
  attributes["reduction"] = kept.reduction;
  attributes["event"] = reading.EventNumber;
  attributes["id"] = reading.ID;
  attributes["use"] = reading.UseReading;
  attributes["use_resistivity"] = reading.UseResistivity;
  attributes["use_phase"] = reading.UsePhase;
  attributes["static_factor"] = decimal_of_single(reading.ResOffset);
  attributes["phase_offset"] = decimal_of_single(reading.PhaseOffset);
  attributes["ey_turned"] = reading.axes.EyTurned == ey_not_known
                                ? py::object(py::none())
                                : py::bool_(reading.axes.EyTurned == ey_turned);
  attributes["hx_azimuth"] = is_absent(double{reading.axes.HxAzimuth})
                                 ? py::object(py::none())
                                 : py::float_(decimal_of_single(reading.axes.HxAzimuth));
  return attributes;
}

}  // namespace Python
