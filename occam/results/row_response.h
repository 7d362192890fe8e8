// row_response.h: what the rows of a data file ask of a section, and their values in its response.
#pragma once
#include <complex>
#include <cstddef>
#include <span>
#include <vector>

#include "formats/occam/data_file.h"
#include "numerics/section/linear_response.h"

namespace Module_occam {

/// Which modes, frequencies and sites rows need. Each site of a mode and frequency is asked for once,
/// whatever number of rows it has.
class RowRequests {
 public:
  /// @param rows  of types that have a meaning
  /// @param site_offsets  of the sites that the rows number from 1
  RowRequests(std::span<const DataRow> rows, std::span<const double> site_offsets);

  [[nodiscard]] const std::vector<numerics::section::ModeRequest>& requests() const { return requests_; }
  /// Indices of the rows that a site's response is needed for.
  /// @param request  one of requests(), by reference
  [[nodiscard]] const std::vector<std::size_t>& rows_of(const numerics::section::ModeRequest& request,
                                                        std::size_t site_index) const {
    return rows_[static_cast<std::size_t>(&request - requests_.data())][site_index];
  }

 private:
  std::vector<numerics::section::ModeRequest> requests_;
  std::vector<std::vector<std::vector<std::size_t>>> rows_;  // by request and site
};

/// A phase, degrees, at the turn nearest to the observed one; one turn at most, and only if that is strictly
/// nearer.
double beside_datum(double phase, double datum);

/// A value and what turns the derivative of ln Z, or of the tipper, into that of the value.
struct RowValue {
  double value = 0.0;
  std::complex<double> factor;  // the derivative is Re(factor x change)
};

/// The value of a row, in its unit, a phase beside the datum.
/// @param row  of a type that has a meaning
/// @param omega_mu  of its frequency, ohm/m
RowValue row_value(const DataRow& row, const numerics::section::SiteResponse& response, double omega_mu);

/// Whether a quantity is of the tipper; the others are of the impedance.
constexpr bool is_tipper(Quantity quantity) {
  return quantity == Quantity::real_tipper || quantity == Quantity::imaginary_tipper;
}

}  // namespace Module_occam
