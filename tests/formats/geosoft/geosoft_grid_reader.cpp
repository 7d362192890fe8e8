#include "tests/formats/geosoft/geosoft_grid_reader.h"

#include <cstring>
#include <stdexcept>

namespace {

template <class Number>
Number number_at(const std::string& bytes, std::size_t at) {
  Number number;  // this machine's order of bytes is the file's
  if (at + sizeof number > bytes.size()) {
    throw std::runtime_error("the file ends early");
  }
  std::memcpy(&number, bytes.data() + at, sizeof number);
  return number;
}

}  // namespace

GeosoftGrid read_geosoft_grid(const std::string& bytes) {
  GeosoftGrid grid;
  const auto size = number_at<std::int32_t>(bytes, 0);
  if ((size != 4 && size != 8) || number_at<std::int32_t>(bytes, 4) != 2 ||
      number_at<double>(bytes, 52) != 0.0) {
    throw std::runtime_error("not a plain grid of floating point values");
  }
  grid.elements = number_at<std::int32_t>(bytes, 8);
  grid.vectors = number_at<std::int32_t>(bytes, 12);
  grid.order = number_at<std::int32_t>(bytes, 16);
  const auto de = number_at<double>(bytes, 20);
  const auto dv = number_at<double>(bytes, 28);
  const auto x0 = number_at<double>(bytes, 36);
  const auto y0 = number_at<double>(bytes, 44);
  const auto base = number_at<double>(bytes, 60);
  const auto multiplier = number_at<double>(bytes, 68);
  grid.present = number_at<std::int32_t>(bytes, 156);
  grid.smallest = number_at<float>(bytes, 160);
  grid.largest = number_at<float>(bytes, 164);
  grid.mean = number_at<float>(bytes, 172);
  grid.variance = number_at<double>(bytes, 176);
  std::size_t at = 512;
  for (std::int32_t vector = 0; vector < grid.vectors; ++vector) {
    for (std::int32_t element = 0; element < grid.elements; ++element) {
      const double stored =
          size == 4 ? static_cast<double>(number_at<float>(bytes, at)) : number_at<double>(bytes, at);
      at += static_cast<std::size_t>(size);
      GeosoftGrid::Node node = {x0 + (grid.order == 1 ? element * de : vector * dv),
                                y0 + (grid.order == 1 ? vector * dv : element * de),
                                {}};
      if (stored > -9.9e31) {
        node.value = stored / multiplier + base;
      }
      grid.nodes.push_back(node);
    }
  }
  if (at != bytes.size()) {
    throw std::runtime_error("bytes are left over");
  }
  return grid;
}
