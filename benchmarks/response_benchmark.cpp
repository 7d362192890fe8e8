// response_benchmark.cpp: two-dimensional responses of meshes of several sizes, on one core.
//
// The factorization's work is nodes times the square of the rows: `factor_rate` is that in a second and
// should stay the same as meshes grow; `frequencies` (both modes) in a second should not depend on how many
// there are.
#include <cmath>

#include <benchmark/benchmark.h>

#include "platform/vexmtutils/mt2dresponse/mt2dresponse.h"

namespace {

mt2dresponse::Section blocks(std::size_t columns, std::size_t rows) {
  mt2dresponse::Section section;
  section.left_edge = -50.0 * static_cast<double>(columns);
  section.column_widths.assign(columns, 100.0);
  for (std::size_t row = 0; row < rows; ++row) {
    section.row_heights.push_back(20.0 * std::pow(1.08, static_cast<double>(row)));
    for (std::size_t column = 0; column < columns; ++column) {
      const std::size_t block = column / 2;
      const double wave = std::sin(0.7 * static_cast<double>(block) + 0.9 * static_cast<double>(row));
      section.resistivities.insert(section.resistivities.end(), 4, std::pow(10.0, 2.0 + wave));
    }
  }
  return section;
}

void response(benchmark::State& state) {
  const auto columns = static_cast<std::size_t>(state.range(0));
  const auto rows = static_cast<std::size_t>(state.range(1));
  const mt2dresponse::Section section = blocks(columns, rows);
  std::vector<double> sites;
  for (std::size_t s = 0; s < 15; ++s) {
    sites.push_back(100.0 * static_cast<double>(s));
  }
  std::vector<double> frequencies(static_cast<std::size_t>(state.range(2)), 300.0);
  for (std::size_t f = 1; f < frequencies.size(); ++f) {
    frequencies[f] = 0.75 * frequencies[f - 1];
  }
  for (auto _ : state) {
    benchmark::DoNotOptimize(mt2dresponse::compute_response(section, sites, frequencies, {.threads = 1}));
  }
  const double runs = static_cast<double>(state.iterations());
  const double air = 9.0;
  const double work =
      static_cast<double>(columns) *
      (std::pow(static_cast<double>(rows), 3) + std::pow(static_cast<double>(rows) + air, 3)) *
      static_cast<double>(frequencies.size());
  state.counters["frequencies"] =
      benchmark::Counter(runs * static_cast<double>(frequencies.size()), benchmark::Counter::kIsRate);
  state.counters["factor_rate"] = benchmark::Counter(runs * work, benchmark::Counter::kIsRate);
}

// Time of the whole process: the work is done on a thread of its own.
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
    ->Unit(benchmark::kMillisecond)
    ->MeasureProcessCPUTime();

}  // namespace

BENCHMARK_MAIN();
