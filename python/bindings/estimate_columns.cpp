#include "python/bindings/estimate_columns.h"

#include <utility>

namespace Python {

EstimateColumns::EstimateColumns(std::size_t count, std::vector<std::string> names)
    : names_(std::move(names)),
      values_(names_.size(), std::vector<double>(count, numerics::impedance::not_known)),
      errors_(values_) {}

py::dict EstimateColumns::take() {
  py::dict arrays;
  for (std::size_t quantity = 0; quantity < names_.size(); ++quantity) {
    arrays[py::str(names_[quantity])] = array_of(std::move(values_[quantity]));
    arrays[py::str(names_[quantity] + "_error")] = array_of(std::move(errors_[quantity]));
  }
  return arrays;
}

}  // namespace Python
