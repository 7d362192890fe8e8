// One inversion with its certificate, against the number of frequencies: five layers over six
// decades (nine decades from 300 frequencies on), resistivity and phase, with noise and without. The bound is
// one dense least-squares solution of the same values by six cells a decade for each of the two grids of
// cells, as if the right ones were known to be free. Counters: those of beside_bound.h, chi-squared by the
// number of values, and the proven excess over the least possible, relative.
#include <algorithm>
#include <vector>

#include <Eigen/QR>
#include <benchmark/benchmark.h>

#include "benchmarks/beside_bound.h"
#include "numerics/rhoplus/rhoplus.h"
#include "tests/numerics/rhoplus/made_data.h"

namespace {

std::vector<numerics::rhoplus::RhoplusRow> table(int count, double error, bool noisy, std::uint32_t seed) {
  const bool wide = count >= 300;
  std::vector<made::RhoplusDatum> data =
      made::layered(made::ground(5), made::frequencies(count, wide ? 1e-5 : 1e-3, wide ? 1e4 : 1e3), error);
  if (noisy) {
    made::add_noise(data, seed);
  }
  return made::table(data);
}

void solve_least_squares(const Eigen::MatrixXd& columns, const Eigen::VectorXd& target) {
  constexpr int grids = 2;
  for (int grid = 0; grid < grids; ++grid) {
    const Eigen::VectorXd solution = columns.householderQr().solve(target);
    benchmark::DoNotOptimize(solution.data());
  }
}

/// Eight stations in turn.
void invert_tables(benchmark::State& state, double error, bool noisy) {
  constexpr std::uint32_t stations = 8;
  const auto frequencies = static_cast<int>(state.range(0));
  std::vector<std::vector<numerics::rhoplus::RhoplusRow>> tables;
  for (std::uint32_t station = 0; station < stations; ++station) {
    tables.push_back(table(frequencies, error, noisy, station + 1));
  }
  const int values = 2 * frequencies;
  const int cells = std::min(values, 6 * (frequencies >= 300 ? 9 : 6));
  const Eigen::MatrixXd columns = Eigen::MatrixXd::Random(values, cells);
  const Eigen::VectorXd target = Eigen::VectorXd::Random(values);
  double misfit2 = 0.0;
  double excess = 0.0;
  std::size_t turn = 0;
  run_beside_bound(
      state,
      [&] {
        const numerics::rhoplus::RhoplusRun run = numerics::rhoplus::rhoplus(
            tables[turn++ % stations], numerics::rhoplus::RhoplusSurface::insulating);
        const double chi2 = static_cast<double>(run.achieved_chi) * run.achieved_chi;
        misfit2 = std::max(misfit2, chi2 / run.used_values);
        excess = std::max(excess, run.optimality_gap / std::max<double>(run.used_values, chi2));
      },
      [&] { solve_least_squares(columns, target); });
  state.counters["chi2/N"] = misfit2;
  state.counters["gap"] = excess;
}

void Rhoplus_noisy(benchmark::State& state) { invert_tables(state, 0.04, true); }
void Rhoplus_little_noise(benchmark::State& state) { invert_tables(state, 0.002, true); }
void Rhoplus_noise_free(benchmark::State& state) { invert_tables(state, 0.04, false); }

void numbers_of_frequencies(benchmark::internal::Benchmark* benchmark) {
  for (const int count : {15, 30, 60, 120, 300}) {
    benchmark->Arg(count);
  }
  benchmark->UseManualTime()->Unit(benchmark::kMillisecond);
}

BENCHMARK(Rhoplus_noisy)->Apply(numbers_of_frequencies);
BENCHMARK(Rhoplus_little_noise)->Apply(numbers_of_frequencies);
BENCHMARK(Rhoplus_noise_free)->Apply(numbers_of_frequencies);

}  // namespace

BENCHMARK_MAIN();
