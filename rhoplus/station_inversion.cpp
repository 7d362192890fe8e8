#include "rhoplus/station_inversion.h"

#include <algorithm>
#include <fstream>

#include "core/file_names.h"
#include "core/session_state.h"
#include "core/trap_errors.h"
#include "reduction/averages.h"

namespace fs = std::filesystem;

namespace Module_rhoplus {

using Module_output::rhoplus_settings;
using Module_output::RhoplusTables;

namespace {

constexpr const char* failed_text = "An error occurred while performing the 1d inversion: ";
constexpr std::size_t longest_log = 32000;  // bytes

numerics::rhoplus::RhoplusSurface surface_of(const Module_output::RhoplusSettings& settings) {
  return settings.surface == 0 ? numerics::rhoplus::RhoplusSurface::conducting
                               : numerics::rhoplus::RhoplusSurface::insulating;
}

/// The log as far as a text box takes it. Empty if there is none.
std::string read_log(const fs::path& path) {
  std::string log(longest_log, ' ');
  std::ifstream file(path, std::ios::binary);
  file.read(log.data(), static_cast<std::streamsize>(log.size()));
  log.resize(static_cast<std::size_t>(file.gcount()));
  return log;
}

/// The merged curve and what multiplies its resistivities. @return 0, or -1 after a message
int find_merged(const ReadingKey& key, const Frequencies& frequencies, StationInversion& result) {
  result = {};
  const int status = Module_averaged_data::get_reduced_reading(Module_database::reduction_merged,
                                                               Module_averaged_data::AllowRaw::yes, key,
                                                               frequencies, result.merged);
  result.scale = rhoplus_settings().resistivity_scale *
                 (rhoplus_settings().apply_static == 1 ? result.merged.ResOffset : 1.0F);
  return status;
}

}  // namespace

fs::path run_directory(const std::string& database_file, std::int32_t reference_type,
                       const std::string& line) {
  const char* const reference = reference_type == 0 ? "NRRef" : reference_type == 1 ? "RRef" : "XRef";
  std::string folder = line;
  std::ranges::replace_if(
      folder, [](char c) { return c == '/' || c == '\\' || c == ':'; }, '_');
  if (folder == "." || folder == "..") {
    folder = std::string(folder.size(), '_');
  }
  const std::string survey_folder = Module_util::directory_of(database_file);
  return fs::path(survey_folder.empty() ? "." : survey_folder) / reference / folder;
}

int invert_station(const ReadingKey& key, const Frequencies& frequencies, StationInversion& result) {
  return trap_errors(failed_text, [&] {
    if (find_merged(key, frequencies, result) != 0) {
      return -1;
    }
    if (result.merged.ID == 0) {
      return 0;
    }
    const fs::path folder = run_directory(session().database_file, key.reference_type, key.line);
    fs::create_directories(folder);
    const std::string stem = Module_output::rhoplus_stem(rhoplus_settings(), key.station);
    if (Module_output::write_rhoplus_file((folder / (stem + ".dat")).string(), key, frequencies,
                                          result.tables) != 0) {
      return -1;
    }
    if (!result.tables.data.empty()) {
      result.run =
          numerics::rhoplus::rhoplus(folder, stem, result.tables.data, surface_of(rhoplus_settings()));
      result.log = read_log(folder / (stem + ".out"));
    }
    return 0;
  });
}

int invert_station_in_memory(const ReadingKey& key, const Frequencies& frequencies,
                             StationInversion& result) {
  return trap_errors(failed_text, [&] {
    if (find_merged(key, frequencies, result) != 0) {
      return -1;
    }
    result.tables = Module_output::rhoplus_tables(result.merged, frequencies, rhoplus_settings());
    if (!result.tables.data.empty()) {
      result.run =
          numerics::rhoplus::rhoplus(result.tables.data, surface_of(rhoplus_settings()), &result.log);
    }
    return 0;
  });
}

}  // namespace Module_rhoplus
