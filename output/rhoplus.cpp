#include "output/rhoplus.h"

#include <filesystem>
#include <stdexcept>

#include "core/debug_log.h"
#include "core/number_text.h"
#include "core/trap_errors.h"
#include "database/frequency_store.h"
#include "output/line_stations.h"
#include "platform/files/safe_files.h"
#include "reduction/averages.h"
#include "reduction/each_item.h"
#include "reduction/unsupported_curves.h"

namespace fs = std::filesystem;

namespace Module_output {

using Module_averaged_data::AllowRaw;
using Module_averaged_data::each_item;
using Module_averaged_data::Outcome;
using Module_averaged_data::WorkProgress;
using Module_database::LineSelection;
using Module_database::reduction_merged;
using Module_database::StoredReading;

namespace {

/// The line that is written.
struct LineOutput {
  LineSelection selection;
  std::vector<double> stations;
  Frequencies frequencies;
  fs::path folder;
  RhoplusSettings settings;
  std::optional<double> strike;
};

/// The element of the rotated tensor that has the data type's name. @return 0, or -1 after a message
int load_rotated(const LineOutput& line, double station, StoredReading& rotated, RhoplusCounts& counts) {
  using namespace Module_tensor;
  const LineSelection& selection = line.selection;
  LoadedStation loaded;
  if (load_station({selection.line, selection.reference_type, selection.dipole}, station, line.frequencies,
                   loaded) != 0) {
    return -1;
  }
  if (!counts.rotation.add(loaded)) {
    return 0;
  }
  const Rotation rotation{*line.strike, line.settings.apply_static == 1, RotatedEy::first_quadrant};
  rotated =
      rotated_reading(loaded.curves, loaded.tensor, impedance_type(selection.data_type).value(), rotation);
  return 0;
}

int load_curve(const LineOutput& line, double station, StoredReading& merged, RhoplusCounts& counts) {
  return line.strike
             ? load_rotated(line, station, merged, counts)
             : Module_averaged_data::get_reduced_reading(
                   reduction_merged, AllowRaw::yes, line.selection.at(station), line.frequencies, merged);
}

/// Writes the control file of a station that has a curve and adds its line to `batch`.
/// @return 0, or -1 after a message
int write_station(const LineOutput& line, double station, std::string& batch, RhoplusCounts& counts) {
  StoredReading merged;
  if (load_curve(line, station, merged, counts) != 0) {
    return -1;
  }
  const std::string name = rhoplus_stem(line.settings, station) + ".dat";
  std::error_code unreadable;
  const bool replaces = fs::exists(line.folder / name, unreadable);
  RhoplusTables tables;
  if (write_rhoplus_file((line.folder / name).string(), station, merged, line.frequencies, line.settings,
                         tables) != 0) {
    return -1;
  }
  if (!tables.data.empty()) {
    batch += "rhopp < " + name + "\r\n";
    ++counts.stations;
    counts.replaced += replaces ? 1 : 0;
    counts.rows += static_cast<int>(tables.data.size());
  }
  return 0;
}

/// Writes the control files; `batch` gets a line for each. @return 0, or -1 after a message
int write_stations(const LineOutput& line, const std::function<void(int)>& show_row_count, std::string& batch,
                   RhoplusCounts& counts) {
  WorkProgress progress("Writing Rho+ files", line.stations.size());
  const Outcome outcome = each_item(progress, [&](std::size_t index) {
    const int status = write_station(line, line.stations[index], batch, counts);
    if (status == 0 && show_row_count) {
      show_row_count(counts.rows);
    }
    return status;
  });
  counts.stopped = outcome == Outcome::stopped;
  return outcome == Outcome::failed ? -1 : 0;
}

std::string batch_file_name(const RhoplusSettings& settings) { return settings.root_name + "_run.bat"; }

/// After a failure that has been reported. What kept a station's file from being written mostly affects this
/// one, too; there is no second message.
void write_batch_file_quietly(const fs::path& batch_file, const std::string& batch) {
  try {
    safe_files::write_into_place(batch_file, batch);
  } catch (const std::runtime_error&) {
  }
}

/// What keeps the curves from being rotated; empty if nothing does.
std::string rotation_fault(double strike, const std::string& data_type) {
  if (!Module_tensor::is_rotation_azimuth(strike)) {
    return Module_tensor::bad_azimuth;
  }
  return Module_tensor::impedance_type(data_type)
             ? ""
             : data_type + " is no element of the tensor and can't be rotated to a strike";
}

/// Writes all files of a line. @return 0, or -1 after a message
int write_line(const LineOutput& line, const std::function<void(int)>& show_row_count,
               RhoplusCounts& counts) {
  fs::create_directories(line.folder);
  std::string batch;
  if (line.strike) {
    batch = "rem " + Module_tensor::rotation_text(*line.strike) + "\r\n";
  }
  const int status = write_stations(line, show_row_count, batch, counts);
  if (status == 0 && counts.stations == 0 && !counts.rotation.left_out.empty()) {
    user_interface().show_message("No station of line " + line.selection.line +
                                  " can be rotated, and nothing was written. " +
                                  Module_tensor::left_out_text(counts.rotation));
    return -1;
  }
  // Also after a failure: it runs the stations whose files are written.
  const fs::path batch_file = line.folder / batch_file_name(line.settings);
  if (status != 0) {
    write_batch_file_quietly(batch_file, batch);
    return status;
  }
  safe_files::write_into_place(batch_file, batch);
  LineSelection written = line.selection;
  if (line.strike) {
    written.data_type.clear();  // all elements go into the one that is written
  }
  if (const std::string hint = Module_averaged_data::unsupported_hint(written); !hint.empty()) {
    user_interface().show_message(hint);
  }
  return status;
}

}  // namespace

std::vector<double> rhoplus_stations(const LineSelection& selection) {
  return stations_with_readings(selection, DataTypes::all);
}

int write_rhoplus_file(const std::string& path, double station, const StoredReading& merged,
                       const Frequencies& frequencies, const RhoplusSettings& settings,
                       RhoplusTables& tables) {
  tables = {};
  return trap_errors("An error occured while writing the rhoplus station data file ", [&] {
    RhoplusTables rows = rhoplus_tables(merged, frequencies, settings);
    if (!rows.data.empty()) {
      safe_files::write_into_place(path, rhoplus_control_text(rows, settings, station));
    }
    tables = std::move(rows);
  });
}

std::string rhoplus_summary(const RhoplusCounts& counts, const RhoplusSettings& settings,
                            const std::string& folder) {
  return std::to_string(counts.stations) +
         (counts.stations == 1 ? " control file with " : " control files with ") +
         std::to_string(counts.rows) + (counts.rows == 1 ? " row" : " rows") + " written to " + folder +
         ", with " + batch_file_name(settings) +
         (counts.replaced > 0 ? ", in place of " + std::to_string(counts.replaced) +
                                    (counts.replaced == 1 ? " earlier file" : " earlier files")
                              : "") +
         (counts.strike ? ", " + Module_tensor::report_text(*counts.strike, counts.rotation) : "");
}

int output_rhoplus(const LineSelection& selection, const std::string& folder, const RhoplusSettings& settings,
                   const std::function<void(int)>& show_row_count, RhoplusCounts& counts,
                   std::optional<double> strike) {
  counts = {};
  counts.strike = strike;
  Module_debug::write_debug(1, "output_rhoplus " + folder);
  return trap_errors("An error occured while writing rhoplus data ", [&] {
    const BusyPointer busy;
    const std::vector<double> stations = rhoplus_stations(selection);
    std::string fault = stations.empty() ? "There is no data for the specified line and data type" : "";
    if (fault.empty() && strike) {
      fault = rotation_fault(*strike, selection.data_type);
    }
    if (!fault.empty()) {
      user_interface().show_message(fault);
      return -1;
    }
    const auto frequencies = Module_database::load_reference_frequencies(selection.reference_type);
    if (!frequencies) {
      return -1;
    }
    return write_line({selection, stations, *frequencies, folder, settings, strike}, show_row_count, counts);
  });
}

}  // namespace Module_output
