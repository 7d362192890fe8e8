#include "occam/results/row_response.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <numbers>
#include <utility>

#include "numerics/constants.h"

namespace Module_occam {

namespace section = numerics::section;

namespace {

section::Mode section_mode(FieldMode mode) {
  return mode == FieldMode::te ? section::Mode::te : section::Mode::tm;
}

/// The impedance as the files have it: Zyx, of TM, lies in the third quadrant.
std::complex<double> file_impedance(const TypeMeaning& meaning, std::complex<double> impedance) {
  const bool is_phase = meaning.quantity == Quantity::phase;  // of -Zyx
  return meaning.mode == FieldMode::tm && !is_phase ? -impedance : impedance;
}

}  // namespace

RowRequests::RowRequests(std::span<const DataRow> rows, std::span<const double> site_offsets) {
  struct Asked {
    std::map<std::size_t, std::vector<std::size_t>> rows;  // by site
    bool tipper = false;
  };
  std::map<std::pair<section::Mode, std::size_t>, Asked> asked;  // by mode and frequency
  for (std::size_t row = 0; row < rows.size(); ++row) {
    const TypeMeaning& meaning = *find_meaning(rows[row].type);
    Asked& of_frequency =
        asked[{section_mode(meaning.mode), static_cast<std::size_t>(rows[row].frequency_number - 1)}];
    of_frequency.rows[static_cast<std::size_t>(rows[row].site_number - 1)].push_back(row);
    of_frequency.tipper = of_frequency.tipper || is_tipper(meaning.quantity);
  }
  for (auto& [key, of_frequency] : asked) {
    section::ModeRequest& request = requests_.emplace_back();
    request.mode = key.first;
    request.frequency_index = key.second;
    request.tipper = of_frequency.tipper;
    rows_.emplace_back(site_offsets.size());
    for (auto& [site, rows_of_site] : of_frequency.rows) {
      request.site_indices.push_back(site);
      rows_.back()[site] = std::move(rows_of_site);
    }
    std::ranges::stable_sort(request.site_indices, {}, [&](std::size_t site) { return site_offsets[site]; });
  }
}

double beside_datum(double phase, double datum) {
  constexpr double turn = 360.0;  // degrees
  const double distance = std::abs(phase - datum);
  if (std::abs(phase - turn - datum) < distance) {
    return phase - turn;
  }
  return std::abs(phase + turn - datum) < distance ? phase + turn : phase;
}

RowValue row_value(const DataRow& row, const section::SiteResponse& response, double omega_mu) {
  const TypeMeaning& meaning = *find_meaning(row.type);
  const std::complex<double> impedance = file_impedance(meaning, response.impedance);
  const double resistivity = std::norm(impedance) / omega_mu;
  const std::complex<double> minus_i(0.0, -1.0);
  switch (meaning.quantity) {
    case Quantity::log10_resistivity:
      return {std::log10(resistivity), 2.0 / std::numbers::ln10};
    case Quantity::phase:
      return {beside_datum(std::arg(impedance) * numerics::degrees_per_radian, row.datum),
              minus_i * numerics::degrees_per_radian};
    case Quantity::resistivity:
      return {resistivity, 2.0 * resistivity};
    case Quantity::real_impedance:
      return {impedance.real(), impedance};
    case Quantity::imaginary_impedance:
      return {impedance.imag(), minus_i * impedance};
    case Quantity::real_tipper:
      return {response.tipper.real(), 1.0};
    case Quantity::imaginary_tipper:
      break;
  }
  return {response.tipper.imag(), minus_i};
}

}  // namespace Module_occam
