#include "numerics/section/mode_field.h"

#include <algorithm>

namespace numerics::section {

ModeField::ModeField(const ModeMesh& mesh, const Frequency& frequency, BandedLdlt& solver)
    : mesh_(mesh), frequency_(frequency), primary_(primary_field(mesh, frequency)), solver_(solver) {
  std::vector<Complex> values((mesh_.columns + 1) * mesh_.rows);
  solver_.reset(values.size(), mesh_.rows + 1);
  for (std::size_t column = 0; column < mesh_.columns; ++column) {
    for (std::size_t row = 0; row < mesh_.rows; ++row) {
      add_cell(column, row, values);
    }
  }
  solver_.factor();
  solver_.solve(values);
  secondary_ = on_nodes(values);
}

void ModeField::add_cell(std::size_t column, std::size_t row, std::vector<Complex>& right_side) {
  const CellMatrix k = cell_matrix(coefficients(mesh_.mode, mesh_.cell(column, row), frequency_),
                                   mesh_.widths[column], mesh_.heights[row]);
  const CellLoad load = cell_load(mesh_, primary_, frequency_, column, row);
  const std::array<std::optional<std::size_t>, corners> unknowns = {
      unknown(column, row), unknown(column + 1, row), unknown(column, row + 1), unknown(column + 1, row + 1)};
  const Complex inverse = reciprocal(k.centre);
  for (std::size_t i = 0; i < corners; ++i) {
    if (!unknowns[i]) {
      continue;
    }
    const Complex eliminated = product(k.to_centre[i], inverse);
    right_side[*unknowns[i]] += load[i] - product(eliminated, load[centre]);
    for (std::size_t j = i; j < corners; ++j) {
      if (unknowns[j]) {
        const auto [low, high] = std::minmax(*unknowns[i], *unknowns[j]);
        solver_.add(low, high - low, k.corner[i][j] - product(eliminated, k.to_centre[j]));
      }
    }
  }
}

std::vector<Complex> ModeField::on_nodes(std::span<const Complex> unknowns) const {
  std::vector<Complex> nodes((mesh_.columns + 1) * (mesh_.rows + 1));
  for (std::size_t column = 0; column <= mesh_.columns; ++column) {
    std::ranges::copy(unknowns.subspan(column * mesh_.rows, mesh_.rows),
                      nodes.begin() + static_cast<std::ptrdiff_t>(mesh_.node(column, first_free_row())));
  }
  return nodes;
}

}  // namespace numerics::section
