// element.h: the finite element equations of one cell: linear triangles on its four corners and its centre.
//
//   TE: K = sum over the triangles of  S + i omega mu s M      S = integral of grad N . grad N
//   TM: K = sum over the triangles of  S / s + i omega mu M    M = integral of N N
//
// Elements and loads for the secondary field: Wannamaker, Stodt & Rijo (1987), Geophys. J. R. astr. Soc. 88,
// 277-296. Corners are numbered top left, top right, bottom left, bottom right; index 4 is the centre.
#pragma once
#include <array>
#include <cstddef>
#include <vector>

#include "numerics/section/mode_mesh.h"
#include "numerics/section/primary_field.h"

namespace numerics::section {

constexpr std::size_t corners = 4;
constexpr std::size_t centre = 4;

/// Numbers of the two corners of each triangle.
constexpr std::array<std::array<std::size_t, 2>, 4> triangle_corners = {{{0, 1}, {0, 2}, {2, 3}, {1, 3}}};

using CellLoad = std::array<Complex, 5>;

/// What the integrals S and M are multiplied by.
struct Coefficient {
  Complex stiffness;
  Complex mass;
};
using Coefficients = std::array<Coefficient, 4>;  // of each triangle

/// @param conductivity  S/m, without the displacement currents: s = conductivity + i omega epsilon
Coefficient coefficient(Mode mode, double conductivity, const Frequency& frequency);
Coefficients coefficients(Mode mode, const Cell& cell, const Frequency& frequency);

/// The matrix of a cell: symmetric, five nodes.
struct CellMatrix {
  std::array<std::array<Complex, corners>, corners> corner = {};  // on and above the diagonal
  std::array<Complex, corners> to_centre = {};
  Complex centre;
};

/// @param width, height  m
CellMatrix cell_matrix(const Coefficients& coefficients, double width, double height);

/// The same of a cell whose four triangles have one conductivity.
struct EvenCellMatrix {
  Complex diagonal;   // of a corner
  Complex across;     // between corners beside one another
  Complex down;       // between corners above one another
  Complex to_centre;  // of a corner; opposite corners meet only there
  Complex centre;

  /// Takes its product with the field of a cell from a load.
  void subtract_product(const CellLoad& field, CellLoad& load) const;
};

/// @param width, height  m
EvenCellMatrix even_cell_matrix(const Coefficient& coefficient, double width, double height);

inline bool is_even(const Cell& cell) {
  return cell[0] == cell[1] && cell[0] == cell[2] && cell[0] == cell[3];
}

/// Adds the load of one triangle, of first and second corner and centre, for a unit difference from the host:
/// of s in TE, of 1 - s_host / s in TM. TE takes the primary field at the centroid and gives a third to each
/// vertex; TM integrates E over the edges, half an edge to each end, and H over the area. The choice of
/// quadrature is part of the response that models were fitted with.
/// @param row  of the mesh
void add_unit_load(const ModeMesh& mesh, const PrimaryField& primary, const Frequency& frequency,
                   std::size_t triangle, std::size_t row, double width, const Complex& factor,
                   CellLoad& load);

/// The loads of cells with one conductivity, of each row of the mesh: for a unit difference from the host and
/// a unit of width.
std::vector<CellLoad> even_unit_loads(const ModeMesh& mesh, const PrimaryField& primary,
                                      const Frequency& frequency);

/// What a triangle's load is multiplied by, or all of an even cell's: its difference from the host.
Complex load_factor(const ModeMesh& mesh, const Frequency& frequency, double conductivity, std::size_t row);

/// The load of a cell, from what it differs from the host in.
CellLoad cell_load(const ModeMesh& mesh, const PrimaryField& primary, const Frequency& frequency,
                   std::size_t column, std::size_t row);

}  // namespace numerics::section
