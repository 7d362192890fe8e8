// gridding_benchmark.cpp: minimum curvature by number of nodes and of points, on one core.
//
// The bound is as many bare passes as there are iterations: the plate's equation at every node, 13 numbers
// weighted and summed, and nothing else. Items, the nodes, in a second should stay about the same as the grid
// grows with its points; where points are sparse or noisy, more iterations are needed, counted beside it.
#include <cmath>
#include <random>

#include <benchmark/benchmark.h>

#include "benchmarks/beside_bound.h"
#include "numerics/gridding/minimum_curvature.h"

namespace {

// The biharmonic equation at the inner nodes.
void bare_pass(const std::vector<double>& from, std::vector<double>& to, std::size_t side) {
  const auto n = static_cast<std::ptrdiff_t>(side);
  for (std::size_t row = 2; row + 2 < side; ++row) {
    const double* const f = &from[row * side];
    double* const t = &to[row * side];
    for (std::ptrdiff_t i = 2; i + 2 < n; ++i) {
      t[i] = 20.0 * f[i] - 8.0 * (f[i - 1] + f[i + 1] + f[i - n] + f[i + n]) +
             2.0 * (f[i - n - 1] + f[i - n + 1] + f[i + n - 1] + f[i + n + 1]) +
             (f[i - 2] + f[i + 2] + f[i - 2 * n] + f[i + 2 * n]);
    }
  }
}

void grid(benchmark::State& state, const std::vector<numerics::gridding::ScatteredPoint>& points,
          std::size_t side) {
  const numerics::gridding::GridFrame frame = {0.0, 0.0, 1.0 / static_cast<double>(side - 1), side, side};
  int iterations = 0;
  std::vector<double> from(side * side, 1.0);
  std::vector<double> to(side * side);
  run_beside_bound(
      state, [&] { iterations = numerics::gridding::minimum_curvature(points, frame)->iterations; },
      [&] {
        for (int pass = 0; pass < iterations; ++pass) {
          bare_pass(from, to, side);
          benchmark::ClobberMemory();
        }
      });
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(side * side));
  state.counters["iterations"] = iterations;
}

double smooth(double x, double y) { return std::sin(9.0 * x) * std::cos(7.0 * y) + x * y; }

void random_points(benchmark::State& state) {
  std::mt19937 random(1);
  std::uniform_real_distribution<double> uniform(0.0, 1.0);
  std::vector<numerics::gridding::ScatteredPoint> points;
  for (int k = 0; k < state.range(1); ++k) {
    const double x = uniform(random);
    const double y = uniform(random);
    points.push_back({x, y, smooth(x, y)});
  }
  grid(state, points, static_cast<std::size_t>(state.range(0)));
}

// As in a section: columns of points, layers that grow with depth, a steep contrast.
void section_points(benchmark::State& state) {
  const auto side = static_cast<std::size_t>(state.range(0));
  std::vector<numerics::gridding::ScatteredPoint> points;
  for (std::size_t column = 0; column < side; column += 10) {
    const double x = static_cast<double>(column) / static_cast<double>(side - 1);
    double y = 1.0;
    double layer = 4.0 / static_cast<double>(side);
    while (y > layer) {
      points.push_back({x, y - 0.5 * layer, x + 0.3 * y > 0.6 ? 3.0 : 1.0});
      y -= layer;
      layer *= 1.12;
    }
  }
  grid(state, points, side);
}

BENCHMARK(random_points)
    ->ArgNames({"side", "points"})
    ->Args({125, 625})
    ->Args({250, 2500})
    ->Args({500, 10000})
    ->Args({1000, 40000})
    ->Args({500, 50})
    ->Args({500, 500})
    ->Args({500, 100000})
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK(section_points)
    ->ArgName("side")
    ->Arg(250)
    ->Arg(500)
    ->Arg(1000)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
