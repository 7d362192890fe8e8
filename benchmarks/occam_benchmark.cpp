// How long a run directory of a two-dimensional inversion takes to make and to read back, beside a bare loop
// that converts the same numbers and writes or reads the same bytes; and the blocks of a mesh, beside a copy
// of the finished ones.
#include <filesystem>

#include <benchmark/benchmark.h>

#include "benchmarks/bare_numbers.h"
#include "benchmarks/beside_bound.h"
#include "core/session_state.h"
#include "occam/occam_files.h"
#include "occam/setup/create_inversion.h"
#include "occam/setup/line_data.h"
#include "occam/setup/mesh_design.h"
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
    std::filesystem::remove_all(inputs.directory);  // or the run before would be kept beside
    Module_occam::CreatedInversion created;
    if (Module_occam::create_inversion({"200E", 0, "ExHy", 50.0F}, inputs, {}, {}, created) != 0) {
      std::abort();
    }
  }

  Module_occam::InversionInputs inputs;

 private:
  std::filesystem::path started_in_ = std::filesystem::current_path();
  TemporaryFolder folder_;
};

struct TextFile {
  std::string path;
  std::size_t size = 0;
  std::vector<double> numbers;
};

std::vector<TextFile> files_of_run(const MadeLine& line) {
  std::vector<TextFile> files;
  for (const auto& entry : std::filesystem::directory_iterator(line.inputs.directory)) {
    files.push_back({entry.path().string(), entry.file_size(), numbers_of(entry.path().string())});
  }
  return files;
}

void create_run(benchmark::State& state) {
  const MadeLine line(static_cast<int>(state.range(0)));
  line.create();
  const std::vector<TextFile> files = files_of_run(line);
  const TemporaryFolder bare;
  run_beside_bound(
      state, [&] { line.create(); },
      [&] {
        for (std::size_t i = 0; i < files.size(); ++i) {
          write_numbers(bare.path(std::to_string(i)), files[i].numbers, files[i].size);
        }
      });
  state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(create_run)->Arg(20)->Arg(80)->UseManualTime()->Unit(benchmark::kMillisecond);

void read_run(benchmark::State& state) {
  const MadeLine line(static_cast<int>(state.range(0)));
  line.create();
  const std::string folder = line.inputs.directory + "/";
  std::int64_t bytes = 0;
  for (const char* const name : {"occamdat", "inmodel", "mesh"}) {
    bytes += static_cast<std::int64_t>(std::filesystem::file_size(folder + name));
  }
  run_beside_bound(
      state,
      [&] {
        Module_occam::ObservedData data;
        Module_occam::OccamModel model;
        if (Module_occam::read_occam_data_rows(folder + "occamdat", data) != 0 ||
            Module_occam::read_occam_model(folder, "inmodel", {}, model) != 0) {
          std::abort();
        }
      },
      [&] {
        for (const char* const name : {"occamdat", "inmodel", "mesh"}) {
          benchmark::DoNotOptimize(numbers_of(folder + name));
        }
      });
  state.SetBytesProcessed(state.iterations() * bytes);
}
BENCHMARK(read_run)->Arg(20)->Arg(80)->UseManualTime()->Unit(benchmark::kMillisecond);

/// Blocks of all layers, a rate that must not fall as the line grows.
void merge_blocks(benchmark::State& state) {
  std::vector<float> nodes;
  nodes.reserve(static_cast<std::size_t>(state.range(0)));
  for (int node = 0; node < state.range(0); ++node) {
    nodes.push_back(100.0F * static_cast<float>(node));
  }
  const Module_occam::MeshColumns columns = Module_occam::mesh_columns(nodes);
  const Module_occam::MeshRows rows = Module_occam::mesh_rows(24, 8.0, 20.0);
  const std::vector<Module_occam::LayerLines> finished = Module_occam::merge_blocks(columns, rows, 2.0);
  constexpr int times = 100;
  const auto many_times = [](const auto& work) {
    for (int time = 0; time < times; ++time) {
      benchmark::DoNotOptimize(work());
    }
  };
  run_beside_bound(
      state, [&] { many_times([&] { return Module_occam::merge_blocks(columns, rows, 2.0); }); },
      [&] { many_times([&] { return std::vector<Module_occam::LayerLines>(finished); }); });
  state.SetItemsProcessed(state.iterations() * state.range(0) * 24 * times);
}
BENCHMARK(merge_blocks)->Arg(30)->Arg(300)->Arg(3000)->UseManualTime()->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
