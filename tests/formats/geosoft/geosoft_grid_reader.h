// geosoft_grid_reader.h: Geosoft binary grids, each field taken at its literal place; shares nothing with the
// writer.
#pragma once
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

struct GeosoftGrid {
  struct Node {
    double x;
    double y;
    std::optional<double> value;
  };
  std::int32_t elements = 0;  // in a vector
  std::int32_t vectors = 0;
  std::int32_t order = 0;
  std::int32_t present = 0;
  float smallest = 0;
  float largest = 0;
  float mean = 0;
  double variance = 0;
  std::vector<Node> nodes;  // in the order of the file
};

/// Takes 32 and 64 bit floating point values in either order, without rotation; throws std::runtime_error
/// otherwise.
GeosoftGrid read_geosoft_grid(const std::string& bytes);
