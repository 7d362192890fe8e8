#include "numerics/section/mode_field.h"

#include <algorithm>

namespace numerics::section {

namespace {

// A pair of corners of a cell: the one whose unknown comes first, and on which diagonal the other one's lies.
struct CornerPair {
  std::size_t first;
  std::size_t second;
  std::size_t diagonal;
};
constexpr std::array<CornerPair, 10> corner_pairs = {{{0, 0, 0},
                                                      {1, 1, 0},
                                                      {2, 2, 0},
                                                      {3, 3, 0},
                                                      {0, 2, 1},
                                                      {1, 3, 1},
                                                      {2, 1, 2},
                                                      {0, 1, 3},
                                                      {2, 3, 3},
                                                      {0, 3, 4}}};

// Unknowns run down the columns of nodes.
std::vector<std::size_t> diagonals(std::size_t rows) { return {0, 1, rows - 1, rows, rows + 1}; }

// The equations of a cell's corners, its centre eliminated.
struct CornerEquations {
  std::array<Complex, corner_pairs.size()> matrix;
  std::array<Complex, corners> load;
};

CornerEquations mixed_cell(const CellMatrix& k, const CellLoad& load) {
  CornerEquations equations;
  std::array<Complex, corners> to_centre;
  const Complex inverse = reciprocal(k.centre);
  for (std::size_t i = 0; i < corners; ++i) {
    to_centre[i] = product(k.to_centre[i], inverse);
    equations.load[i] = load[i] - product(to_centre[i], load[centre]);
  }
  for (std::size_t pair = 0; pair < corner_pairs.size(); ++pair) {
    const auto [low, high] = std::minmax(corner_pairs[pair].first, corner_pairs[pair].second);
    equations.matrix[pair] = k.corner[low][high] - product(to_centre[low], k.to_centre[high]);
  }
  return equations;
}

CornerEquations even_cell(const EvenCellMatrix& k, const CellLoad& unit_load, const Complex& load_factor) {
  const Complex to_centre = product(k.to_centre, reciprocal(k.centre));
  const Complex by_centre = -product(to_centre, k.to_centre);
  const Complex diagonal = k.diagonal + by_centre;
  const Complex across = k.across + by_centre;
  const Complex down = k.down + by_centre;
  const Complex from_centre = product(to_centre, unit_load[centre]);
  const Complex upper = product(load_factor, unit_load[0] - from_centre);
  const Complex lower = product(load_factor, unit_load[2] - from_centre);
  return {{diagonal, diagonal, diagonal, diagonal, down, down, by_centre, across, across, by_centre},
          {upper, upper, lower, lower}};
}

}  // namespace

ModeField::ModeField(const ModeMesh& mesh, const Frequency& frequency, BandedLdlt& solver)
    : mesh_(mesh),
      frequency_(frequency),
      primary_(primary_field(mesh, frequency)),
      even_loads_(even_unit_loads(mesh, primary_, frequency)),
      solver_(solver) {
  std::vector<Complex> values((mesh_.columns + 1) * mesh_.rows);
  solver_.reset(values.size(), diagonals(mesh_.rows));
  for (std::size_t column = 0; column < mesh_.columns; ++column) {
    for (std::size_t row = 0; row < mesh_.rows; ++row) {
      add_cell(column, row, values);
    }
  }
  solver_.factor_and_solve(values);
  secondary_ = on_nodes(values);
}

void ModeField::add_cell(std::size_t column, std::size_t row, std::vector<Complex>& right_side) {
  const Cell& cell = mesh_.cell(column, row);
  const double width = mesh_.widths[column];
  const double height = mesh_.heights[row];
  CornerEquations equations;
  if (is_even(cell)) {
    equations = even_cell(even_cell_matrix(coefficient(mesh_.mode, cell[0], frequency_), width, height),
                          even_loads_[row], width * load_factor(mesh_, frequency_, cell[0], row));
  } else {
    equations = mixed_cell(cell_matrix(coefficients(mesh_.mode, cell, frequency_), width, height),
                           cell_load(mesh_, primary_, frequency_, column, row));
  }
  const std::array<std::optional<std::size_t>, corners> unknowns = {
      unknown(column, row), unknown(column + 1, row), unknown(column, row + 1), unknown(column + 1, row + 1)};
  for (std::size_t i = 0; i < corners; ++i) {
    if (unknowns[i]) {
      right_side[*unknowns[i]] += equations.load[i];
    }
  }
  for (std::size_t pair = 0; pair < corner_pairs.size(); ++pair) {
    const auto [first, second, diagonal] = corner_pairs[pair];
    if (unknowns[first] && unknowns[second]) {
      solver_.add(*unknowns[first], diagonal, equations.matrix[pair]);
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
