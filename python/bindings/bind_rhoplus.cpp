// Rho+ of one curve.
#include <cmath>
#include <limits>
#include <vector>

#include <pybind11/stl.h>

#include "numerics/rhoplus/chi_statistics.h"
#include "numerics/rhoplus/inversion.h"
#include "python/bindings/array_arguments.h"
#include "python/bindings/bindings.h"
#include "python/bindings/interruption.h"

namespace Python {

namespace {

using numerics::rhoplus::RhoplusDatum;
using numerics::rhoplus::RhoplusInversion;
using numerics::rhoplus::RhoplusPrediction;

std::vector<RhoplusDatum> data_of(const Numbers& frequency, const Numbers& resistivity, const Numbers& phase,
                                  const Numbers& resistivity_error, const Numbers& phase_error) {
  check_shape("frequency", frequency, {any_length});
  const py::ssize_t count = frequency.shape(0);
  check_shape("resistivity", resistivity, {count});
  check_shape("phase", phase, {count});
  check_shape("resistivity_error", resistivity_error, {count});
  check_shape("phase_error", phase_error, {count});
  std::vector<RhoplusDatum> data(static_cast<std::size_t>(count));
  for (std::size_t row = 0; row < data.size(); ++row) {
    const auto at = static_cast<py::ssize_t>(row);
    RhoplusDatum& datum = data[row];
    datum = {frequency.at(at), resistivity.at(at), resistivity_error.at(at), phase.at(at),
             phase_error.at(at)};
    datum.use_resistivity = !std::isnan(datum.resistivity) && !std::isnan(datum.resistivity_error);
    datum.use_phase = !std::isnan(datum.phase) && !std::isnan(datum.phase_error);
  }
  return data;
}

Numbers column_of(const RhoplusInversion& inversion, double RhoplusPrediction::*member) {
  std::vector<double> numbers;
  numbers.reserve(inversion.rows.size());
  for (const RhoplusPrediction& row : inversion.rows) {
    numbers.push_back(row.*member);
  }
  return array_of(std::move(numbers));
}

Numbers sheets_of(const RhoplusInversion& inversion) {
  std::vector<double> numbers;
  for (const numerics::rhoplus::Sheet& sheet : inversion.sheets.sheets) {
    numbers.insert(numbers.end(), {sheet.depth, sheet.conductance});
  }
  const auto rows = static_cast<py::ssize_t>(inversion.sheets.sheets.size());
  return array_of(std::move(numbers), {rows, 2});
}

py::dict fit_of(const RhoplusInversion& inversion) {
  py::dict fit;
  fit["used_values"] = inversion.used_values();
  fit["chi_squared"] = inversion.fit.misfit2;
  fit["expected_chi"] = numerics::rhoplus::expected_chi(inversion.used_values());
  fit["chi_of_95_percent"] = numerics::rhoplus::chi_of_95_percent(inversion.used_values());
  fit["certificate_gap"] = inversion.fit.gap;
  fit["limit_met"] = inversion.limit_met;
  fit["level_is_arbitrary"] = inversion.level_is_arbitrary;
  fit["sheets"] = sheets_of(inversion);
  fit["conductor_depth"] = inversion.sheets.conductor_depth;
  fit["resistivity"] = column_of(inversion, &RhoplusPrediction::resistivity);
  fit["phase"] = column_of(inversion, &RhoplusPrediction::phase);
  fit["resistivity_residual"] = column_of(inversion, &RhoplusPrediction::resistivity_residual);
  fit["phase_residual"] = column_of(inversion, &RhoplusPrediction::phase_residual);
  fit["remarks"] = inversion.remarks;
  return fit;
}

py::dict rhoplus(const Numbers& frequency, const Numbers& resistivity, const Numbers& phase,
                 const Numbers& resistivity_error, const Numbers& phase_error, bool conducting) {
  const std::vector<RhoplusDatum> data =
      data_of(frequency, resistivity, phase, resistivity_error, phase_error);
  Interruption interruption;
  RhoplusInversion inversion;
  {
    const py::gil_scoped_release without_lock;
    numerics::rhoplus::InversionLimits limits;
    limits.stop = [&interruption] { return interruption.asked(); };
    inversion = numerics::rhoplus::invert(data, conducting, std::numeric_limits<std::size_t>::max(), limits);
  }
  interruption.rethrow();
  if (!inversion.ran) {
    throw py::value_error("there is nothing to invert: no value is used, or none can be");
  }
  return fit_of(inversion);
}

}  // namespace

void bind_rhoplus(py::module_& module) {
  module.def("rhoplus", &rhoplus, py::arg("frequency"), py::arg("resistivity"), py::arg("phase"),
             py::arg("resistivity_error"), py::arg("phase_error"), py::arg("conducting"));
}

}  // namespace Python
