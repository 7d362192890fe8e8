// small_run.h: a run directory whose inversion takes a moment: three sites, three frequencies, a coarse mesh.
#pragma once
#include <cmath>
#include <string>
#include <vector>

#include "formats/occam/data_file.h"
#include "formats/occam/iteration_file.h"
#include "formats/occam/mesh_file.h"
#include "formats/occam/model_file.h"
#include "occam/setup/mesh_design.h"
#include "tests/support/temporary_folder.h"

namespace made {

struct SmallRun {
  std::string iterations = "4";
  std::string target_rms = "1.0";
  double error = 0.03;  // decades, and of a phase in units of 50 degrees
  int repeats = 1;      // of each frequency, nearly: the inversion takes so much longer
};

/// Data of a ground that gets more conductive with depth, and to the right.
inline Module_occam::DataFile small_data(double error, int repeats) {
  using Module_occam::DataType;
  Module_occam::DataFile data{"by hand", {100.0F, 250.0F, 400.0F}, {}, {}, {}};
  for (int frequency = 0; frequency < 3 * repeats; ++frequency) {
    const double nearly = 1.0 - 0.001 * std::floor(frequency / 3.0);
    data.frequencies.push_back(static_cast<float>(std::pow(10.0, 2 - frequency % 3) * nearly));
  }
  for (int site = 1; site <= 3; ++site) {
    for (int frequency = 1; frequency <= 3 * repeats; ++frequency) {
      const int place = (frequency - 1) % 3 + 1;
      data.rows.push_back(
          {site, frequency, DataType::tm_resistivity, 2.3 - 0.1 * site - 0.15 * place, error});
      data.rows.push_back({site, frequency, DataType::tm_phase, 46.0 + 2.0 * place, 50.0 * error});
    }
  }
  return data;
}

/// @param place  within the folder, "" or "run/". @return the path of the start file
inline std::string write_small_run(const TemporaryFolder& folder, const std::string& place = "",
                                   const SmallRun& run = {}) {
  using namespace Module_occam;
  const DataFile data = small_data(run.error, run.repeats);
  const MeshColumns columns = mesh_columns(horizontal_nodes(data.positions, 1000.0));
  const MeshRows rows = mesh_rows(5, 2.0, 30.0);
  const std::vector<LayerLines> layers = merge_blocks(columns, rows, 1.0);
  OccamMesh mesh;
  mesh.node_widths = columns.widths;
  mesh.node_heights = rows.heights;
  const double binding = static_cast<double>(data.positions.front()) - columns.binding_distance;
  static_cast<void>(folder.write(place + "MESH", mesh_file_text(mesh, MeshCodes::all_free)));
  static_cast<void>(folder.write(place + "inmodel", model_file_text("by hand", binding, layers)));
  static_cast<void>(folder.write(place + "occamdat", data_file_text(data)));
  return folder.write(place + "startup",
                      start_file_text({"by hand", "inmodel", "occamdat", "22-November-2026", run.iterations,
                                       run.target_rms, block_count(layers), 2.0}));
}

}  // namespace made
