// mode_field.h: the secondary field of one mode at one frequency on all nodes of a mesh, by finite elements.
//
// Secondary is the total field less that of the host, a layered earth: a layered section comes out exact on
// any mesh (auxiliary fields: Rodi 1976, Geophys. J. R. astr. Soc. 44, 483-506).
#pragma once
#include <cstdint>
#include <span>
#include <vector>

#include "numerics/section/banded_ldlt.h"
#include "numerics/section/element.h"

namespace numerics::section {

class ModeField {
 public:
  /// Assembles, factors and solves.
  /// @param frequency  Hz
  /// @param solver     used up to the end of this object's life; afterwards its memory serves the next one
  ModeField(const ModeMesh& mesh, double frequency, BandedLdlt& solver);

  [[nodiscard]] const ModeMesh& mesh() const { return mesh_; }
  [[nodiscard]] const PrimaryField& primary() const { return primary_; }
  [[nodiscard]] double omega_mu0() const { return omega_mu0_; }

  /// The secondary field at a node.
  [[nodiscard]] Complex secondary(std::size_t column, std::size_t row) const {
    return secondary_[mesh_.node(column, row)];
  }
  /// The secondary field at the corners and the centre of a cell.
  [[nodiscard]] CellLoad secondary_in_cell(std::size_t column, std::size_t row) const;

  /// Solves the same equations, whose matrix is symmetric, with weights on nodes as right side and 0 where
  /// the field is prescribed: what a unit load at each node adds to the weighted sum of the field.
  /// @param weights  for each node of the mesh
  [[nodiscard]] std::vector<Complex> adjoint(std::span<const Complex> weights) const;
  /// Values of an adjoint solution at the corners and the centre of a cell.
  [[nodiscard]] CellLoad adjoint_in_cell(std::span<const Complex> solution, std::size_t column,
                                         std::size_t row) const;

 private:
  [[nodiscard]] bool prescribes_centre(const Cell& cell) const {
    return mesh_.mode == Mode::tm && cell.touches_air();
  }
  [[nodiscard]] bool skips(const Cell& cell) const { return mesh_.mode == Mode::tm && cell.all_air(); }
  [[nodiscard]] Complex prescribed_centre(std::size_t row) const { return 1.0 - primary_.rows[row].value[1]; }
  [[nodiscard]] std::array<std::size_t, corners> cell_nodes(std::size_t column, std::size_t row) const;
  /// Unknowns are the nodes inside the mesh's rim, numbered down its columns; prescribed ones among them
  /// (they touch air in TM) keep an equation of their own, so that the numbering stays regular.
  [[nodiscard]] std::size_t unknown(std::size_t column, std::size_t row) const {
    return (column - 1) * (mesh_.rows - 1) + row - 1;
  }
  template <class Operation>
  void for_each_free_node(const Operation& operation) const;
  void prescribe_boundary(double frequency);
  void add_cell(std::size_t column, std::size_t row, std::vector<Complex>& right_side);

  const ModeMesh& mesh_;
  double omega_mu0_;
  PrimaryField primary_;
  BandedLdlt& solver_;
  std::vector<Complex> secondary_;        // at each node
  std::vector<std::uint8_t> prescribed_;  // of each node
};

}  // namespace numerics::section
