// graph_benchmark.cpp: drawings of a chart in a second, offscreen, at the sizes of the main view.

#include <benchmark/benchmark.h>

#include "benchmarks/offscreen.h"
#include "tests/platform_graph/graph_samples.h"

namespace {

void draw(benchmark::State& state, const graph_samples::Chart& chart, graph::AxisType x_type) {
  VexGraphControl control;
  control.resize(900, 400);
  control.set_xaxistype(x_type);
  control.set_yaxistype(graph::AxisType::logarithmic);
  control.show();
  for (auto _ : state) {
    graph_samples::give(control, chart);
    control.draw_graph();
  }
  state.counters["draws"] =
      benchmark::Counter(static_cast<double>(state.iterations()), benchmark::Counter::kIsRate);
  state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations() * chart.table.series.size() *
                                                    chart.table.series.front().x.size()));
}

void station(benchmark::State& state) {
  draw(state, graph_samples::repeats(11, 60, false), graph::AxisType::logarithmic);
}

void profile(benchmark::State& state) {
  draw(state, graph_samples::profile(60, 100), graph::AxisType::linear);
}

BENCHMARK(station)->Unit(benchmark::kMillisecond);
BENCHMARK(profile)->Unit(benchmark::kMillisecond);

}  // namespace

int main(int argc, char** argv) { return run_offscreen(argc, argv); }
