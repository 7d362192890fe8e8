// Rho+ over a line: both modes of 400 stations with 60 frequencies, noisy data of layered ground, on one
// core. The bound is the inversions alone, without tables, residuals and threads. Counters: those of
// beside_bound.h, curves.
#include <array>
#include <cmath>
#include <cstdint>

#include <benchmark/benchmark.h>

#include "benchmarks/beside_bound.h"
#include "rhoplus/line_consistency.h"
#include "tests/numerics/rhoplus/made_data.h"

namespace {

using Module_rhoplus::consistency_types;
using numerics::rhoplus::RhoplusRow;

constexpr int frequencies = 60;
constexpr double error = 0.04;

std::vector<RhoplusRow> rows_of(std::uint32_t seed) {
  std::vector<made::RhoplusDatum> data = made::layered(made::ground(3 + static_cast<int>(seed % 4)),
                                                       made::frequencies(frequencies, 1e-3, 1e3), error);
  made::add_noise(data, seed);
  return made::table(data);
}

Module_database::StoredReading reading_of(const std::vector<RhoplusRow>& rows, std::int32_t ID) {
  Module_database::StoredReading reading;
  reading.ID = ID;
  reading.curve.assign(rows.size());
  for (std::size_t i = 0; i < rows.size(); ++i) {
    reading.curve.frequencies[i] = rows[i].frequency;
    reading.curve.value(Module_database::field_resistivity, i) = rows[i].resistivity;
    reading.curve.value(Module_database::field_resistivity_deviation, i) = rows[i].resistivity_error;
    reading.curve.value(Module_database::field_phase, i) = rows[i].phase;
    reading.curve.value(Module_database::field_phase_deviation, i) = rows[i].phase_error;
    reading.curve.counts_at(Module_database::field_resistivity, i) = 1;
    reading.curve.counts_at(Module_database::field_phase, i) = 1;
  }
  return reading;
}

struct Line {
  std::vector<std::vector<RhoplusRow>> tables;
  Module_tensor::LineTensors tensors;
  Frequencies list;
};

Line make_line(int stations) {
  Line line;
  for (int station = 0; station < stations; ++station) {
    Module_tensor::StationCurves& curves = line.tensors.curves.stations.emplace_back();
    curves.station = station;
    for (const Module_tensor::CurveType type : consistency_types) {
      const auto number = static_cast<std::int32_t>(line.tables.size()) + 1;
      line.tables.push_back(rows_of(static_cast<std::uint32_t>(number)));
      curves.merged[static_cast<std::size_t>(type)] = reading_of(line.tables.back(), number);
    }
  }
  line.tensors.stations.resize(line.tensors.curves.stations.size());
  line.list.list = line.tensors.curves.stations.front().merged[1].curve.frequencies;
  line.list.enabled.assign(line.list.list.size(), 1);
  return line;
}

void line_consistency(benchmark::State& state) {
  Line line = make_line(static_cast<int>(state.range(0)));
  Module_output::RhoplusSettings settings;
  run_beside_bound(
      state,
      [&] {
        benchmark::DoNotOptimize(Module_rhoplus::line_consistency(line.tensors, line.list, settings, {}, 1));
      },
      [&] {
        for (std::vector<RhoplusRow>& table : line.tables) {
          benchmark::DoNotOptimize(
              numerics::rhoplus::rhoplus(table, numerics::rhoplus::RhoplusSurface::insulating));
        }
      });
  state.counters["curves"] = static_cast<double>(line.tables.size());
}

BENCHMARK(line_consistency)->Arg(40)->Arg(400)->UseManualTime()->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
