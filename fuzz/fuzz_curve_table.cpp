// Any bytes as a table of curves. What was read is written, and what is read of that is the same.
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <stdexcept>
#include <string>
#include <vector>

#include "core/line_reader.h"
#include "formats/csv/curve_table.h"
#include "fuzz/input_file.h"
#include "fuzz/scan_input.h"

using namespace formats::csv;

namespace {

std::vector<CurveRows> read(const std::string& path) {
  formats::FileReport report;
  LineReader lines(path);
  std::vector<CurveRows> curves = read_curve_table(lines, report);
  if (curves.empty() && report.failure.empty()) std::abort();
  return curves;
}

bool is_same(double a, double b) {
  return (std::isnan(a) && std::isnan(b)) || std::abs(a - b) <= 1e-6 * std::abs(a);
}

void compare(const CurveRows& curve, const CurveRows& again) {
  if (curve.points.size() != again.points.size() || curve.line != again.line) std::abort();
  for (std::size_t i = 0; i < curve.points.size(); ++i) {
    const CurvePoint& a = curve.points[i];
    const CurvePoint& b = again.points[i];
    if (!is_same(a.frequency, b.frequency) || !is_same(a.resistivity, b.resistivity) ||
        !is_same(a.phase, b.phase)) {
      std::abort();
    }
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  try {
    const std::vector<CurveRows> curves = read(write_input_file(data, size, "input.csv"));
    if (curves.empty()) return 0;
    std::string text = curve_table_header();
    for (const CurveRows& curve : curves) {
      if (!std::isfinite(curve.station)) std::abort();
      text += curve_table_rows(curve);
    }
    const std::vector<CurveRows> again = read(
        write_input_file(reinterpret_cast<const std::uint8_t*>(text.data()), text.size(), "written.csv"));
    if (again.size() != curves.size()) std::abort();
    for (std::size_t i = 0; i < curves.size(); ++i) {
      compare(curves[i], again[i]);
    }
  } catch (const std::runtime_error&) {
    return 0;  // no text file
  }
  scan_input(data, size, Module_data_file::format_curve_table);
  return 0;
}
