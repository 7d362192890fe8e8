// Phase tensors with all their errors, and the strike of 400 stations by 60 frequencies with its error from a
// bootstrap of the stations. The bound of the tensors is the four elements of P and the arc tangents of two
// angles and two phases, without errors; that of the strike is one sine and cosine for each tensor and the
// additions of the 400 draws of 400 stations.
#include <array>
#include <cmath>
#include <complex>
#include <random>
#include <vector>

#include <benchmark/benchmark.h>

#include "benchmarks/beside_bound.h"
#include "numerics/impedance/band_strike.h"

using namespace numerics::impedance;

namespace {

constexpr std::size_t station_count = 400;
constexpr std::size_t frequency_count = 60;

/// Ground with a strike, whose elements are noisy.
std::vector<Tensor> made_tensors() {
  constexpr PartCovariance known{0.04, 0.04};
  std::mt19937 random(1);
  std::normal_distribution<double> noise(0.0, 0.2);
  const auto element = [&](double real, double imaginary) {
    return std::complex{real + noise(random), imaginary + noise(random)};
  };
  std::vector<Tensor> tensors;
  for (std::size_t i = 0; i < station_count * frequency_count; ++i) {
    tensors.push_back(
        {{element(1, 2), element(10, 8), element(-9, -11), element(-0.5, -1)}, {known, known, known, known}});
  }
  return tensors;
}

std::array<double, 4> bare_phase_tensor(const std::array<std::complex<double>, element_count>& z) {
  const double det_X = z[0].real() * z[3].real() - z[1].real() * z[2].real();
  return {(z[3].real() * z[0].imag() - z[1].real() * z[2].imag()) / det_X,
          (z[3].real() * z[1].imag() - z[1].real() * z[3].imag()) / det_X,
          (z[0].real() * z[2].imag() - z[2].real() * z[0].imag()) / det_X,
          (z[0].real() * z[3].imag() - z[2].real() * z[1].imag()) / det_X};
}

double bare_angles(const std::array<double, 4>& P) {
  return std::atan2(P[1] + P[2], P[0] - P[3]) + std::atan2(P[1] - P[2], P[0] + P[3]) + std::atan(P[0]) +
         std::atan(P[3]);
}

void Phase_tensors(benchmark::State& state) {
  const std::vector<Tensor> tensors = made_tensors();
  run_beside_bound(
      state,
      [&] {
        for (const Tensor& tensor : tensors) {
          benchmark::DoNotOptimize(phase_tensor(tensor));
        }
      },
      [&] {
        for (const Tensor& tensor : tensors) {
          benchmark::DoNotOptimize(bare_angles(bare_phase_tensor(tensor.z)));
        }
      });
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(tensors.size()));
}

void bare_strike(const std::vector<double>& angles) {
  constexpr std::size_t draws = 400;
  std::vector<std::complex<double>> sums(station_count);
  for (std::size_t i = 0; i < angles.size(); ++i) {
    sums[i / frequency_count] += std::polar(1.0, angles[i]);
  }
  for (std::size_t draw = 0; draw < draws; ++draw) {
    std::complex<double> sum;
    for (const std::complex<double>& station : sums) {
      sum += station;
    }
    benchmark::DoNotOptimize(sum);
    benchmark::ClobberMemory();
  }
}

/// Phase tensors are there beforehand, as a window has them.
void Strike_of_a_line(benchmark::State& state) {
  const std::vector<Tensor> tensors = made_tensors();
  std::vector<PhaseTensor> phase_tensors;
  for (const Tensor& tensor : tensors) {
    phase_tensors.push_back(phase_tensor(tensor).value());
  }
  std::vector<StrikeDatum> data;
  std::vector<double> angles;
  for (std::size_t i = 0; i < tensors.size(); ++i) {
    data.push_back({i / frequency_count, &tensors[i], &phase_tensors[i], nullptr});
    angles.push_back(phase_tensors[i].azimuth.value);
  }
  const StrikeChoices choices{.method = static_cast<StrikeMethod>(state.range(0)), .skew_limit = 5.0};
  BandStrike band;
  run_beside_bound(
      state, [&] { band = band_strike(data, choices); }, [&] { bare_strike(angles); });
  state.counters["error"] = band.strike.error;
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(tensors.size()));
}

BENCHMARK(Phase_tensors)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(Strike_of_a_line)
    ->ArgName("method")
    ->Arg(static_cast<int>(StrikeMethod::phase_tensor_azimuth))
    ->Arg(static_cast<int>(StrikeMethod::swift_sum))
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
