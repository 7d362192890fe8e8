// How long a run directory of a two-dimensional inversion takes to make and to read back.
#include <filesystem>

#include <benchmark/benchmark.h>

#include "core/session_state.h"
#include "occam/create_inversion.h"
#include "occam/data_file.h"
#include "occam/line_data.h"
#include "occam/mesh_design.h"
#include "occam/mesh_file.h"
#include "occam/model_file.h"
#include "occam/occam_state.h"
#include "tests/reduction/made_readings.h"
#include "tests/support/temporary_folder.h"

namespace {

/// A survey with merged curves of so many stations at 60 frequencies.
class MadeLine {
 public:
  explicit MadeLine(int stations) {
    reset_session_state();
    Module_database::reset_module();
    session().database_file = folder_.path("survey.mdb");
    if (Module_database::create_database() != 0 || Module_database::open_database() != 0) {
      std::abort();
    }
    std::vector<made::Point> points;
    points.reserve(60);
    for (int frequency = 0; frequency < 60; ++frequency) {
      points.push_back({1.0F + static_cast<float>(frequency), 100.0F + static_cast<float>(frequency), 45.0F});
    }
    for (int station = 1; station <= stations; ++station) {
      made::store(made::key(0.0F, 100.0 * station), 0, made::reading(points), 2, -1);
    }
    inputs.use_rhoplus_error = false;
    inputs.directory = folder_.path("run");
  }
  MadeLine(const MadeLine&) = delete;
  MadeLine& operator=(const MadeLine&) = delete;
  ~MadeLine() {
    Module_database::reset_module();
    std::filesystem::current_path(started_in_);
  }

  void create() const {
    Module_occam::CreatedInversion created;
    if (Module_occam::create_inversion({"200E", 0, "ExHy", 50.0F}, inputs, {}, created) != 0) {
      std::abort();
    }
  }

  Module_occam::InversionInputs inputs;

 private:
  std::filesystem::path started_in_ = std::filesystem::current_path();
  TemporaryFolder folder_;
};

void create_run(benchmark::State& state) {
  const MadeLine line(static_cast<int>(state.range(0)));
  for (auto unused : state) {
    line.create();
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(create_run)->Arg(20)->Arg(80)->Unit(benchmark::kMillisecond);

void read_run(benchmark::State& state) {
  const MadeLine line(static_cast<int>(state.range(0)));
  line.create();
  for (auto unused : state) {
    if (Module_occam::read_occam_data_file(line.inputs.directory + "/occamdat") != 0 ||
        Module_occam::read_occam_model(line.inputs.directory + "/inmodel") != 0) {
      std::abort();
    }
  }
  const auto bytes = std::filesystem::file_size(line.inputs.directory + "/inmodel") +
                     std::filesystem::file_size(line.inputs.directory + "/mesh");
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(bytes));
}
BENCHMARK(read_run)->Arg(20)->Arg(80)->Unit(benchmark::kMillisecond);

/// Blocks of all layers, a rate that must not fall as the line grows.
void merge_blocks(benchmark::State& state) {
  std::vector<float> nodes;
  nodes.reserve(static_cast<std::size_t>(state.range(0)));
  for (int node = 0; node < state.range(0); ++node) {
    nodes.push_back(100.0F * static_cast<float>(node));
  }
  const Module_occam::MeshColumns columns = Module_occam::mesh_columns(nodes);
  const Module_occam::MeshRows rows = Module_occam::mesh_rows(24, 8.0, 20.0);
  for (auto unused : state) {
    benchmark::DoNotOptimize(Module_occam::merge_blocks(columns, rows, 2.0));
  }
  state.SetItemsProcessed(state.iterations() * state.range(0) * 24);
}
BENCHMARK(merge_blocks)->Arg(30)->Arg(300)->Arg(3000);

}  // namespace

BENCHMARK_MAIN();
