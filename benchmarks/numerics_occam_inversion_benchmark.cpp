// numerics_occam_inversion_benchmark.cpp: the cost of an inversion's iteration and of its parts.
//
// The line is made in code: apparent resistivities and phases of both modes over blocks, inverted from a half
// space. `iterations` is the size of a usual run, on one core: ten iterations, and the least time of each
// part. `large_iteration` has 10,000 parameters and 5,000 data, on all cores, by the clock. The bound is the
// response of the trials of that many iterations alone, as the search has to know the fit of each.
#include <algorithm>
#include <cmath>
#include <complex>
#include <fstream>
#include <limits>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

#include "benchmarks/beside_bound.h"
#include "benchmarks/made_line.h"
#include "numerics/constants.h"
#include "numerics/occam_inversion/inversion.h"
#include "numerics/occam_inversion/linear_models.h"

namespace {

namespace inversion = numerics::occam_inversion;
namespace section = numerics::section;

/// A line with data: log10 resistivity and phase of each mode, frequency and site.
class LineProblem {
 public:
  LineProblem(const LineSize& size, std::size_t threads)
      : line_(made_line(size)), requests_(line_.requests()), threads_(threads) {
    std::vector<double> truth(line_.parameters);
    for (std::size_t t = 0; t < line_.parameter_of_triangle.size(); ++t) {
      truth[line_.parameter_of_triangle[t]] = std::log10(line_.section.resistivities[t]);
    }
    data_ = respond(truth, inversion::Derivatives::no).values;
    for (std::size_t row = 0; row < data_.size(); ++row) {  // an error each, and noise of about its size
      errors_.push_back(row % 2 == 0 ? 0.03 : 2.0);
      data_[row] += errors_[row] * std::sqrt(2.0) * std::sin(static_cast<double>(row * row % 997));
    }
  }

  [[nodiscard]] inversion::Problem problem() const {
    return {data_, errors_, [this](std::span<const double> model, inversion::Derivatives derivatives) {
              return respond(model, derivatives);
            }};
  }

  [[nodiscard]] inversion::Roughness roughness() const {
    std::vector<inversion::Block> blocks(line_.parameters);
    for (std::size_t i = 0; i < blocks.size(); ++i) {
      const auto layer = static_cast<int>(i / line_.across);
      const auto place = static_cast<int>(i % line_.across);
      blocks[i] = {place, place + 1, layer, layer + 1, 1.0, 1.0, 1.0, i};
    }
    return {blocks, blocks.size(), {}};
  }

  [[nodiscard]] inversion::Modelled respond(std::span<const double> model,
                                            inversion::Derivatives derivatives) const {
    section::Section ground = line_.section;
    for (std::size_t t = 0; t < ground.resistivities.size(); ++t) {
      ground.resistivities[t] = std::pow(10.0, model[line_.parameter_of_triangle[t]]);
    }
    const auto input = section::check_input(ground, line_.sites, line_.frequencies);
    const bool linearise = derivatives == inversion::Derivatives::yes;
    const std::size_t n = line_.parameters;
    inversion::Modelled modelled;
    modelled.values.resize(2 * requests_.size() * line_.sites.size());
    modelled.sensitivities.resize(linearise ? modelled.values.size() * n : 0);
    const auto take = [&](const section::ModeRequest& request, std::size_t site,
                          const section::SiteResponse& response) {
      const auto index = static_cast<std::size_t>(&request - requests_.data());
      const std::size_t row = 2 * (index * line_.sites.size() + site);
      const section::Frequency frequency(line_.frequencies[request.frequency_index]);
      modelled.values[row] = std::log10(std::norm(response.impedance) / frequency.omega_mu());
      modelled.values[row + 1] = std::arg(response.impedance) * numerics::degrees_per_radian;
      for (std::size_t p = 0; p < response.impedance_change.size(); ++p) {
        modelled.sensitivities[row * n + p] = 2.0 / std::numbers::ln10 * response.impedance_change[p].real();
        modelled.sensitivities[(row + 1) * n + p] =
            numerics::degrees_per_radian * response.impedance_change[p].imag();
      }
    };
    section::compute_linear_response(ground, input, line_.frequencies, requests_,
                                     {line_.parameter_of_triangle, linearise ? n : 0}, take,
                                     {.threads = threads_});
    return modelled;
  }

  [[nodiscard]] inversion::State half_space() const {
    return {.model = std::vector<double>(line_.parameters, 2.0)};
  }

 private:
  MadeLine line_;
  std::vector<section::ModeRequest> requests_;
  std::size_t threads_;
  std::vector<double> data_;
  std::vector<double> errors_;
};

/// Least time of a part in milliseconds.
template <class Work>
double least_ms(BesideBound::Clock clock, int turns, Work work) {
  double least = std::numeric_limits<double>::infinity();
  for (int turn = 0; turn < turns; ++turn) {
    const double start = clock();
    work();
    least = std::min(least, clock() - start);
  }
  return 1000.0 * least;
}

void count_parts(benchmark::State& state, const LineProblem& line, BesideBound::Clock clock, int turns,
                 std::size_t threads) {
  const inversion::Roughness roughness = line.roughness();
  const inversion::Problem problem = line.problem();
  const std::vector<double> model = line.half_space().model;
  inversion::LinearProblem linear;
  state.counters["derivatives_ms"] = least_ms(clock, turns, [&] {
    linear.sensitivities = line.respond(model, inversion::Derivatives::yes).sensitivities;
  });
  for (std::size_t row = 0; row < problem.data.size(); ++row) {
    for (std::size_t p = 0; p < model.size(); ++p) {
      linear.sensitivities[row * model.size() + p] /= problem.errors[row];
    }
  }
  linear.data.assign(problem.data.size(), 1.0);
  const inversion::Space space = inversion::cheaper_space(problem.data.size(), model.size());
  std::unique_ptr<inversion::LinearModels> models;
  state.counters["products_ms"] = least_ms(clock, turns, [&] {
    models.reset();
    models = inversion::linear_models(linear, roughness, space, threads);
  });
  state.counters["multiplier_ms"] =
      least_ms(clock, turns, [&] { benchmark::DoNotOptimize(models->at(2.0)); });
  state.counters["response_ms"] = least_ms(
      clock, turns, [&] { benchmark::DoNotOptimize(line.respond(model, inversion::Derivatives::no)); });
}

/// Of this process up to now, MB.
double peak_memory() {
  std::ifstream status("/proc/self/status");
  for (std::string word; status >> word;) {
    if (word == "VmHWM:") {
      double kilobytes = 0.0;
      status >> kilobytes;
      return kilobytes / 1024.0;
    }
  }
  return 0.0;
}

void invert(benchmark::State& state, const LineSize& size, int iterations, std::size_t threads,
            BesideBound::Clock clock, int turns) {
  const LineProblem line(size, threads);
  const inversion::Roughness roughness = line.roughness();
  inversion::Settings settings;
  settings.most_iterations = iterations;
  settings.threads = threads;
  std::size_t trials = 0;
  double rms = 0.0;
  double processor = 0.0;  // s
  {
    BesideBound measure(state, clock);
    for (auto _ : state) {
      trials = 0;
      const inversion::Listener count = {{}, [&](const inversion::Trial& /*trial*/) { ++trials; }};
      const double start = cpu_seconds();
      measure.work([&] {
        rms = inversion::invert(line.problem(), roughness, settings, line.half_space(), count).last.rms;
      });
      processor = cpu_seconds() - start;
      measure.bound([&] {
        for (std::size_t trial = 0; trial < trials; ++trial) {
          benchmark::DoNotOptimize(line.respond(line.half_space().model, inversion::Derivatives::no));
        }
      });
    }
  }
  state.counters["trials"] = static_cast<double>(trials);
  state.counters["rms"] = rms;
  state.counters["processor_s"] = processor;
  state.SetItemsProcessed(state.iterations() * iterations);
  count_parts(state, line, clock, turns, threads);
  state.counters["peak_MB"] = peak_memory();
}

void iterations(benchmark::State& state) { invert(state, {}, 10, 1, cpu_seconds, 5); }

void large_iteration(benchmark::State& state) {
  invert(state, {.columns = 240, .rows = 90, .layers = 89, .sites = 40, .frequencies = 32}, 1, 0,
         wall_seconds, 1);
}

BENCHMARK(iterations)->Iterations(1)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(large_iteration)->Iterations(1)->UseManualTime()->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
