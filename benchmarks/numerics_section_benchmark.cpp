// numerics_section_benchmark.cpp: two-dimensional responses and their derivatives, on one core.
//
// `response`: meshes of several sizes. The bound is the multiplications and additions of the banded
// factorizations alone, nodes times twice the square of the rows, at the rate of a bare loop that subtracts
// four columns from one in the cache; a factorization that keeps more columns in registers is faster than
// that. Items are frequencies (both modes); how many there are in a second should not depend on their number.
//
// `line_response`, `line_derivatives`: what an inversion of a line asks for. The bound is the factorizations
// of its equations, each with the one right side of its field. Items are factorizations.
#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>
#include <span>
#include <utility>

#include <benchmark/benchmark.h>

#include "benchmarks/beside_bound.h"
#include "benchmarks/made_line.h"
#include "numerics/section/banded_ldlt.h"
#include "numerics/section/linear_response.h"
#include "numerics/section/response.h"

namespace {

constexpr std::size_t air_rows_in_te = 10;

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
  const double work = static_cast<double>(frequencies.size()) *
                      (operations(columns, rows) + operations(columns, rows + air_rows_in_te));
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

/// The least time of each of several pieces of work, as other work on the machine only ever adds to it.
class LeastTimes {
 public:
  explicit LeastTimes(std::size_t pieces) : least_(pieces, std::numeric_limits<double>::infinity()) {}

  void take(std::size_t piece, double seconds) { least_[piece] = std::min(least_[piece], seconds); }
  [[nodiscard]] double sum() const { return std::accumulate(least_.begin(), least_.end(), 0.0); }

 private:
  std::vector<double> least_;
};

/// A system with the unknowns and the band of a mode's equations, not factored.
void fill(numerics::section::BandedLdlt& system, const MadeLine& line, numerics::section::Mode mode) {
  const std::size_t rows = line.section.rows() + (mode == numerics::section::Mode::te ? air_rows_in_te : 0);
  const std::size_t unknowns = (line.section.columns() + 1) * rows;
  const std::vector<std::size_t> diagonals = {0, 1, rows - 1, rows, rows + 1};
  system.reset(unknowns, diagonals);
  for (std::size_t unknown = 0; unknown < unknowns; ++unknown) {
    system.add(unknown, 0, {8.0, 1.0});
    for (std::size_t diagonal = 1; diagonal < diagonals.size(); ++diagonal) {
      if (unknown + diagonals[diagonal] < unknowns) {
        system.add(unknown, diagonal, {-1.0, 0.01 * static_cast<double>(unknown % 7)});
      }
    }
  }
}

/// What an inversion asks of a line, beside the factorizations of its equations alone: the least time of each
/// mode and frequency.
void line_beside_factorizations(benchmark::State& state, bool derivatives) {
  const MadeLine line = made_line({});
  const auto input = numerics::section::check_input(line.section, line.sites, line.frequencies);
  const auto requests = line.requests();
  const numerics::section::Parameters parameters = {line.parameter_of_triangle,
                                                    derivatives ? line.parameters : 0};
  LeastTimes work(requests.size());
  LeastTimes bound(requests.size());
  numerics::section::BandedLdlt system;
  std::vector<std::complex<double>> side;
  for (auto _ : state) {
    double before = cpu_seconds();
    const auto take = [&](const numerics::section::ModeRequest& request, std::size_t site,
                          const numerics::section::SiteResponse& response) {
      benchmark::DoNotOptimize(response.impedance_change.data());
      if (site == request.site_indices.back()) {
        const double now = cpu_seconds();
        work.take(static_cast<std::size_t>(&request - requests.data()), now - before);
        before = now;
      }
    };
    numerics::section::compute_linear_response(line.section, input, line.frequencies, requests, parameters,
                                               take, {.threads = 1});
    for (std::size_t i = 0; i < requests.size(); ++i) {
      fill(system, line, requests[i].mode);
      side.assign((line.section.columns() + 1) * (line.section.rows() + air_rows_in_te), 1.0);
      const double start = cpu_seconds();
      system.factor_and_solve(side);
      bound.take(i, cpu_seconds() - start);
    }
    state.SetIterationTime(work.sum());
  }
  state.counters["work_ms"] = 1000.0 * work.sum();
  state.counters["bound_ms"] = 1000.0 * bound.sum();
  state.counters["ratio"] = work.sum() / bound.sum();
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(requests.size()));
}

void line_response(benchmark::State& state) { line_beside_factorizations(state, false); }
void line_derivatives(benchmark::State& state) { line_beside_factorizations(state, true); }

constexpr int turns = 20;  // enough for a least time on a machine that does other work
BENCHMARK(line_response)->Iterations(turns)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(line_derivatives)->Iterations(turns)->UseManualTime()->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
