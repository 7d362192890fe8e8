// section_contours.h: lines of equal value through the cells of a pseudo-section.
#pragma once
#include <cstddef>
#include <vector>

#include "tensor/pseudo_section.h"

namespace Module_tensor {

/// A piece of a line, in the coordinates of the section.
struct ContourPiece {
  std::size_t level = 0;  // index of its value
  double x1 = 0.0;
  double height1 = 0.0;
  double x2 = 0.0;
  double height2 = 0.0;
};

/// Round numbers inside a range, about eight: multiples of 1, 2 or 5 times a power of ten.
std::vector<double> contour_levels(const SectionRange& range);

/// The lines of all levels by marching squares between the nodes of neighbouring columns and rows. Where one
/// of the four has no value, or a gap lies between them, there is no line. In a saddle the mean of the four
/// decides what is joined.
std::vector<ContourPiece> contour_lines(const PseudoSection& section, const std::vector<double>& levels);

}  // namespace Module_tensor
