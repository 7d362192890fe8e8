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

#include "numerics/section/mode_mesh.h"
#include "numerics/section/primary_field.h"

namespace numerics::section {

constexpr std::size_t corners = 4;
constexpr std::size_t centre = 4;

/// Numbers of the two corners of each triangle.
constexpr std::array<std::array<std::size_t, 2>, 4> triangle_corners = {{{0, 1}, {0, 2}, {2, 3}, {1, 3}}};

using CellLoad = std::array<Complex, 5>;

/// What the integrals S and M of each triangle are multiplied by.
struct Coefficients {
  std::array<Complex, 4> stiffness = {};
  std::array<Complex, 4> mass = {};
};

Coefficients coefficients(Mode mode, const Cell& cell, const Frequency& frequency);

/// The matrix of a cell: symmetric, five nodes.
struct CellMatrix {
  std::array<std::array<Complex, corners>, corners> corner = {};  // on and above the diagonal
  std::array<Complex, corners> to_centre = {};
  Complex centre;
};

/// @param width, height  m
CellMatrix cell_matrix(const Coefficients& coefficients, double width, double height);

/// Adds the load of one triangle, of first and second corner and centre, for a unit difference from the host:
/// of s in TE, of 1 - s_host / s in TM. TE takes the primary field at the centroid and gives a third to each
/// vertex; TM integrates E over the edges, half an edge to each end, and H over the area. The choice of
/// quadrature is part of the response that models were fitted with.
/// @param row  of the mesh
void add_unit_load(const ModeMesh& mesh, const PrimaryField& primary, const Frequency& frequency,
                   std::size_t triangle, std::size_t column, std::size_t row, Complex factor, CellLoad& load);

/// The load of a cell, from what it differs from the host in.
CellLoad cell_load(const ModeMesh& mesh, const PrimaryField& primary, const Frequency& frequency,
                   std::size_t column, std::size_t row);

}  // namespace numerics::section
