// graph_benchmark.cpp: drawings of a chart in a second, offscreen, at the sizes of the main view, beside the
// same lines and points painted bare.

#include <benchmark/benchmark.h>

#include "benchmarks/bare_picture.h"
#include "benchmarks/beside_bound.h"
#include "benchmarks/offscreen.h"
#include "tests/platform/graph/graph_samples.h"

namespace {

void draw(benchmark::State& state, const graph_samples::Chart& chart, graph::AxisType x_type) {
  VexGraphControl control;
  control.resize(900, 400);
  control.set_xaxistype(x_type);
  control.set_yaxistype(graph::AxisType::logarithmic);
  control.show();
  BarePicture bare(chart.table, control.size());
  run_beside_bound(
      state,
      [&] {
        graph_samples::give(control, chart);
        control.draw_graph();
      },
      [&] { bare.draw(); });
  state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations() * chart.table.series.size() *
                                                    chart.table.series.front().x.size()));
}

void station(benchmark::State& state) {
  draw(state, graph_samples::repeats(11, 60, false), graph::AxisType::logarithmic);
}

void profile(benchmark::State& state) {
  draw(state, graph_samples::profile(60, 100), graph::AxisType::linear);
}

BENCHMARK(station)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(profile)->UseManualTime()->Unit(benchmark::kMillisecond);

}  // namespace

int main(int argc, char** argv) { return run_offscreen(argc, argv); }
