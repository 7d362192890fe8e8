// The strike of a line of 400 stations with 60 frequencies: from its tensors in the axes of their sensors to
// the strike with its error, and to all that the strike window shows (three methods, eight decades, roses,
// stations). The bound is one pass over the same tensors that adds up four times an angle each. Counters:
// those of beside_bound.h, and points by second.
#include <complex>
#include <vector>

#include <benchmark/benchmark.h>

#include "benchmarks/beside_bound.h"
#include "tensor/strike_summary.h"
#include "tests/tensor/made_tensors.h"

namespace {

using Module_tensor::StationTensor;

/// With errors of 2 percent, strikes that wander, and tippers.
std::vector<StationTensor> made_line(int stations, int frequencies) {
  std::vector<StationTensor> line;
  for (int i = 0; i < stations; ++i) {
    StationTensor& station = line.emplace_back();
    station.station = 100.0 * i;
    station.axes = i % 7;
    for (int k = 0; k < frequencies; ++k) {
      const double frequency = 1e-3 * std::pow(10.0, 7.0 * k / frequencies);
      Module_tensor::TensorPoint point{
          frequency, made::two_dimensional(20.0 + (i * 37 + k * 11) % 25, 60.0, 35.0, station.axes), 0};
      for (std::size_t element = 0; element < point.tensor.z.size(); ++element) {
        const double variance = 4e-4 * std::norm(point.tensor.z[element]) + 1e-6;
        point.tensor.covariance[element] = {variance, variance, 0.0};
      }
      station.points.push_back(point);
      station.tipper.push_back({frequency, made::arrow(100.0 + (i * 13 + k * 5) % 40)});
    }
  }
  return line;
}

void add_up(const std::vector<StationTensor>& line) {
  std::complex<double> sum;
  for (const StationTensor& station : line) {
    for (const auto& point : station.points) {
      const auto& z = point.tensor.z;
      sum += std::polar(
          1.0, 4.0 * std::atan2(std::norm(z[0]) + std::norm(z[3]), std::norm(z[1]) + std::norm(z[2])));
    }
  }
  benchmark::DoNotOptimize(sum);
}

template <class Work>
void run(benchmark::State& state, Work work) {
  const auto line = made_line(static_cast<int>(state.range(0)), 60);
  run_beside_bound(
      state, [&] { work(line); }, [&] { add_up(line); });
  state.SetItemsProcessed(state.iterations() * state.range(0) * 60);
}

void Strike_with_error(benchmark::State& state) {
  run(state, [](const std::vector<StationTensor>& line) {
    const auto stations = Module_tensor::strike_stations(line);
    benchmark::DoNotOptimize(Module_tensor::line_strike(stations, {}, {}));
  });
}

void Strike_summary(benchmark::State& state) {
  run(state, [](const std::vector<StationTensor>& line) {
    const auto stations = Module_tensor::strike_stations(line);
    benchmark::DoNotOptimize(Module_tensor::strike_summary(stations, {}));
  });
}

BENCHMARK(Strike_with_error)->Arg(40)->Arg(400)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(Strike_summary)->Arg(40)->Arg(400)->UseManualTime()->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
