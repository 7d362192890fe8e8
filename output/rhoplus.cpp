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

namespace fs = std::filesystem;

namespace Module_output {

using Module_averaged_data::AllowRaw;
using Module_averaged_data::each_item;
using Module_averaged_data::Outcome;
using Module_averaged_data::WorkProgress;
using Module_database::LineSelection;
using Module_database::ReadingKey;
using Module_database::reduction_merged;
using Module_database::StoredReading;

namespace {

/// Writes the control files; `batch` gets a line for each. @return 0, or -1 after a message
int write_stations(const LineSelection& selection, const std::vector<double>& stations,
                   const Frequencies& frequencies, const fs::path& folder, const RhoplusSettings& settings,
                   const std::function<void(int)>& show_row_count, std::string& batch,
                   RhoplusCounts& counts) {
  WorkProgress progress("Writing Rho+ files", stations.size());
  const Outcome outcome = each_item(progress, [&](std::size_t index) {
    const ReadingKey key = selection.at(stations[index]);
    const std::string name = rhoplus_stem(settings, key.station) + ".dat";
    RhoplusTables tables;
    if (write_rhoplus_file((folder / name).string(), key, frequencies, settings, tables) != 0) {
      return -1;
    }
    if (!tables.data.empty()) {
      batch += "rhopp < " + name + "\r\n";
      ++counts.stations;
      counts.rows += static_cast<int>(tables.data.size());
    }
    if (show_row_count) {
      show_row_count(counts.rows);
    }
    return 0;
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

}  // namespace

std::vector<double> rhoplus_stations(const LineSelection& selection) {
  return stations_with_readings(selection, DataTypes::all);
}

int write_rhoplus_file(const std::string& path, const ReadingKey& key, const Frequencies& frequencies,
                       const RhoplusSettings& settings, RhoplusTables& tables) {
  tables = {};
  return trap_errors("An error occured while writing the rhoplus station data file ", [&] {
    StoredReading merged;
    if (Module_averaged_data::get_reduced_reading(reduction_merged, AllowRaw::yes, key, frequencies,
                                                  merged) != 0) {
      return -1;
    }
    RhoplusTables rows = rhoplus_tables(merged, frequencies, settings);
    if (!rows.data.empty()) {
      safe_files::write_into_place(path, rhoplus_control_text(rows, settings, key.station));
    }
    tables = std::move(rows);
    return 0;
  });
}

std::string rhoplus_summary(const RhoplusCounts& counts, const RhoplusSettings& settings,
                            const std::string& folder) {
  return std::to_string(counts.stations) +
         (counts.stations == 1 ? " control file with " : " control files with ") +
         std::to_string(counts.rows) + (counts.rows == 1 ? " row" : " rows") + " written to " + folder +
         ", with " + batch_file_name(settings);
}

int output_rhoplus(const LineSelection& selection, const std::string& folder, const RhoplusSettings& settings,
                   const std::function<void(int)>& show_row_count, RhoplusCounts& counts) {
  counts = {};
  Module_debug::write_debug(1, "output_rhoplus " + folder);
  return trap_errors("An error occured while writing rhoplus data ", [&] {
    const BusyPointer busy;
    const std::vector<double> stations = rhoplus_stations(selection);
    if (stations.empty()) {
      user_interface().show_message("There is no data for the specified line and data type");
      return -1;
    }
    const auto frequencies = Module_database::load_reference_frequencies(selection.reference_type);
    if (!frequencies) {
      return -1;
    }
    fs::create_directories(folder);
    std::string batch;
    const int status =
        write_stations(selection, stations, *frequencies, folder, settings, show_row_count, batch, counts);
    // Also after a failure: it runs the stations whose files are written.
    const fs::path batch_file = fs::path(folder) / batch_file_name(settings);
    if (status != 0) {
      write_batch_file_quietly(batch_file, batch);
    } else {
      safe_files::write_into_place(batch_file, batch);
    }
    return status;
  });
}

}  // namespace Module_output
