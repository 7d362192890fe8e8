// response_benchmark.cpp: two-dimensional responses of meshes of several sizes, on one core.
//
// The bound is the multiplications and additions of the banded factorizations alone, nodes times twice the
// square of the rows, at the rate of a bare loop that subtracts four columns from one in the cache. Items are
// frequencies (both modes); how many there are in a second should not depend on their number.
#include <cmath>

#include <benchmark/benchmark.h>

#include "benchmarks/beside_bound.h"
#include "numerics/section/response.h"

namespace {

numerics::section::Section blocks(std::size_t columns, std::size_t rows) {
  numerics::section::Section section;
  section.left_edge = -50.0 * static_cast<double>(columns);
  section.column_widths.assign(columns, 100.0);
  for (std::size_t row = 0; row < rows; ++row) {
    section.row_heights.push_back(20.0 * std::pow(1.08, static_cast<double>(row)));
    for (std::size_t column = 0; column < columns; ++column) {
      const std::size_t block = column / 2;
      const double wave = std::sin(0.7 * static_cast<double>(block) + 0.9 * static_cast<double>(row));
      section.resistivities.insert(section.resistivities.end(), 4, std::pow(10.0, 2.0 + wave));
      const std::size_t code = 1 + block + row * columns;
      section.codes.insert(section.codes.end(), 4, static_cast<numerics::section::Code>(code));
    }
  }
  return section;
}

/// Subtracts multiples of four columns from one, so many times. Compiled for registers of both widths; the
/// processor takes its own.
__attribute__((target_clones("arch=haswell", "default"))) void subtract_columns(
    std::vector<double>& target, const std::vector<double>& columns, std::size_t times) {
  const std::size_t length = target.size();
  double* const to = target.data();
  const double* const from = columns.data();
  for (std::size_t time = 0; time < times; ++time) {
    for (std::size_t i = 0; i < length; ++i) {
      to[i] -=
          0.1 * from[i] + 0.2 * from[length + i] + 0.3 * from[2 * length + i] + 0.4 * from[3 * length + i];
    }
    benchmark::ClobberMemory();
  }
}

/// Of the factorization of one mode, each a multiplication with an addition of real numbers.
double operations(std::size_t columns, std::size_t rows) {
  const auto unknowns = static_cast<double>((columns + 1) * rows);
  const auto half_bandwidth = static_cast<double>(rows + 1);
  return unknowns * 2.0 * half_bandwidth * half_bandwidth;
}

void response(benchmark::State& state) {
  const auto columns = static_cast<std::size_t>(state.range(0));
  const auto rows = static_cast<std::size_t>(state.range(1));
  const numerics::section::Section section = blocks(columns, rows);
  std::vector<double> sites;
  for (std::size_t s = 0; s < 15; ++s) {
    sites.push_back(100.0 * static_cast<double>(s));
  }
  std::vector<double> frequencies(static_cast<std::size_t>(state.range(2)), 300.0);
  for (std::size_t f = 1; f < frequencies.size(); ++f) {
    frequencies[f] = 0.75 * frequencies[f - 1];
  }
  constexpr std::size_t air = 10;
  const double work =
      static_cast<double>(frequencies.size()) * (operations(columns, rows) + operations(columns, rows + air));
  constexpr std::size_t strip = 256;
  std::vector<double> target(strip);
  const std::vector<double> sources(4 * strip, 1.0);
  run_beside_bound(
      state,
      [&] {
        benchmark::DoNotOptimize(
            numerics::section::compute_response(section, sites, frequencies, {.threads = 1}));
      },
      [&] {
        subtract_columns(target, sources, static_cast<std::size_t>(work / static_cast<double>(4 * strip)));
      });
  state.SetItemsProcessed(state.iterations() * state.range(2));
}

BENCHMARK(response)
    ->ArgNames({"columns", "rows", "frequencies"})
    ->Args({82, 60, 1})
    ->Args({82, 60, 5})
    ->Args({82, 60, 19})
    ->Args({164, 60, 5})
    ->Args({328, 60, 5})
    ->Args({82, 30, 5})
    ->Args({82, 100, 5})
    ->Args({300, 100, 5})
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
