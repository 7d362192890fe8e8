#include "numerics/section/mode_field.h"

#include <algorithm>

namespace numerics::section {

std::array<std::size_t, corners> ModeField::cell_nodes(std::size_t column, std::size_t row) const {
  return {mesh_.node(column, row), mesh_.node(column + 1, row), mesh_.node(column, row + 1),
          mesh_.node(column + 1, row + 1)};
}

ModeField::ModeField(const ModeMesh& mesh, double frequency, BandedLdlt& solver)
    : mesh_(mesh),
      omega_mu0_(omega_mu(frequency)),
      primary_(primary_field(mesh, frequency)),
      solver_(solver),
      secondary_((mesh.columns + 1) * (mesh.rows + 1)),
      prescribed_(secondary_.size(), 0) {
  prescribe_boundary(frequency);
  const std::size_t inner_rows = mesh_.rows - 1;
  solver_.reset((mesh_.columns - 1) * inner_rows, inner_rows + 1);
  std::vector<Complex> right_side((mesh_.columns - 1) * inner_rows);
  for (std::size_t column = 0; column < mesh_.columns; ++column) {
    for (std::size_t row = 0; row < mesh_.rows; ++row) {
      add_cell(column, row, right_side);
    }
  }
  for (std::size_t column = 1; column < mesh_.columns; ++column) {
    for (std::size_t row = 1; row < mesh_.rows; ++row) {
      const std::size_t node = mesh_.node(column, row);
      if (prescribed_[node] != 0) {
        solver_.add(unknown(column, row), 0, 1.0);
        right_side[unknown(column, row)] = secondary_[node];
      }
    }
  }
  solver_.factor();
  solver_.solve(right_side);
  for (std::size_t column = 1; column < mesh_.columns; ++column) {
    const auto first = right_side.begin() + static_cast<std::ptrdiff_t>((column - 1) * inner_rows);
    std::copy_n(first, inner_rows, secondary_.begin() + static_cast<std::ptrdiff_t>(mesh_.node(column, 1)));
  }
}

// The left edge carries the host alone, the right edge its own column's layered field, top and bottom what
// lies linearly between. H is 1 wherever it touches air.
void ModeField::prescribe_boundary(double frequency) {
  const std::vector<Complex> right = primary_at_nodes(mesh_, mesh_.right, frequency);
  const Complex scale = mesh_.mode == Mode::te ? primary_.node[0] / right[0] : 1.0;
  const auto prescribe = [this](std::size_t column, std::size_t row, Complex value) {
    secondary_[mesh_.node(column, row)] = value;
    prescribed_[mesh_.node(column, row)] = 1;
  };
  for (std::size_t row = 0; row <= mesh_.rows; ++row) {
    prescribe(0, row, 0.0);
    prescribe(mesh_.columns, row, scale * right[row] - primary_.node[row]);
  }
  const Complex corner = secondary_[mesh_.node(mesh_.columns, mesh_.rows)];
  const double length = mesh_.node_y.back() - mesh_.node_y.front();
  for (std::size_t column = 1; column < mesh_.columns; ++column) {
    prescribe(column, 0, 0.0);
    prescribe(column, mesh_.rows, corner * ((mesh_.node_y[column] - mesh_.node_y.front()) / length));
  }
  if (mesh_.mode == Mode::tm) {
    for (std::size_t column = 0; column <= mesh_.columns; ++column) {
      for (std::size_t row = 0; row <= mesh_.rows; ++row) {
        if (mesh_.touches_air[mesh_.node(column, row)] != 0) {
          prescribe(column, row, 1.0 - primary_.node[row]);
        }
      }
    }
  }
}

void ModeField::add_cell(std::size_t column, std::size_t row, std::vector<Complex>& right_side) {
  const Cell& cell = mesh_.cell(column, row);
  if (skips(cell)) {
    return;
  }
  const CellMatrix k = cell_matrix(cell, mesh_.widths[column], mesh_.heights[row], omega_mu0_);
  const CellLoad load = cell_load(mesh_, primary_, omega_mu0_, column, row);
  const std::array<std::size_t, corners> nodes = cell_nodes(column, row);
  const std::array<std::size_t, corners> unknowns = {unknown(column, row), unknown(column + 1, row),
                                                     unknown(column, row + 1), unknown(column + 1, row + 1)};
  const bool condense = !prescribes_centre(cell);
  const Complex inverse = condense ? 1.0 / k.centre : Complex(0.0);
  const Complex centre_value = condense ? load[centre] * inverse : prescribed_centre(row);
  for (std::size_t i = 0; i < corners; ++i) {
    const bool free_i = prescribed_[nodes[i]] == 0;
    if (free_i) {
      right_side[unknowns[i]] += load[i] - k.to_centre[i] * centre_value;
    }
    const Complex eliminated = k.to_centre[i] * inverse;
    for (std::size_t j = i; j < corners; ++j) {
      const bool free_j = prescribed_[nodes[j]] == 0;
      const Complex value = k.corner[i][j] - eliminated * k.to_centre[j];
      if (free_i && free_j) {
        const auto [low, high] = std::minmax(unknowns[i], unknowns[j]);
        solver_.add(low, high - low, value);
      } else if (free_i) {
        right_side[unknowns[i]] -= value * secondary_[nodes[j]];
      } else if (free_j) {
        right_side[unknowns[j]] -= value * secondary_[nodes[i]];
      }
    }
  }
}

template <class Operation>
void ModeField::for_each_free_node(const Operation& operation) const {
  for (std::size_t column = 1; column < mesh_.columns; ++column) {
    for (std::size_t row = 1; row < mesh_.rows; ++row) {
      if (prescribed_[mesh_.node(column, row)] == 0) {
        operation(mesh_.node(column, row), unknown(column, row));
      }
    }
  }
}

CellLoad ModeField::secondary_in_cell(std::size_t column, std::size_t row) const {
  const Cell& cell = mesh_.cell(column, row);
  const CellMatrix k = cell_matrix(cell, mesh_.widths[column], mesh_.heights[row], omega_mu0_);
  const std::array<std::size_t, corners> nodes = cell_nodes(column, row);
  CellLoad values = {};
  Complex sum = cell_load(mesh_, primary_, omega_mu0_, column, row)[centre];
  for (std::size_t i = 0; i < corners; ++i) {
    values[i] = secondary_[nodes[i]];
    sum -= k.to_centre[i] * values[i];
  }
  values[centre] = prescribes_centre(cell) ? prescribed_centre(row) : sum / k.centre;
  return values;
}

std::vector<Complex> ModeField::adjoint(std::span<const Complex> weights) const {
  std::vector<Complex> right_side((mesh_.columns - 1) * (mesh_.rows - 1));
  for_each_free_node([&](std::size_t node, std::size_t equation) { right_side[equation] = weights[node]; });
  solver_.solve(right_side);
  std::vector<Complex> solution(weights.size());
  for_each_free_node([&](std::size_t node, std::size_t equation) { solution[node] = right_side[equation]; });
  return solution;
}

CellLoad ModeField::adjoint_in_cell(std::span<const Complex> solution, std::size_t column,
                                    std::size_t row) const {
  const Cell& cell = mesh_.cell(column, row);
  const std::array<std::size_t, corners> nodes = cell_nodes(column, row);
  CellLoad values = {};
  for (std::size_t i = 0; i < corners; ++i) {
    values[i] = solution[nodes[i]];
  }
  if (!prescribes_centre(cell)) {
    const CellMatrix k = cell_matrix(cell, mesh_.widths[column], mesh_.heights[row], omega_mu0_);
    for (std::size_t i = 0; i < corners; ++i) {
      values[centre] -= k.to_centre[i] * values[i] / k.centre;
    }
  }
  return values;
}

}  // namespace numerics::section
