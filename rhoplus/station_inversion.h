// station_inversion.h: the one-dimensional inversion of a station's merged curve.
#pragma once
#include <cstdint>
#include <filesystem>
#include <string>

#include "numerics/rhoplus/rhoplus.h"
#include "output/rhoplus.h"

namespace Module_rhoplus {

using Module_database::ReadingKey;
using Module_database::StoredReading;
using Module_output::RhoplusSettings;

/// What was inverted, and the results.
struct StationInversion {
  StoredReading merged;  // ID 0: the station has no merged curve
  float scale = 1.0F;  // on its resistivities: static factor and resistivity scale, according to the settings
  Module_output::RhoplusTables tables;  // with the model's response, once the run has filled it
  numerics::rhoplus::RhoplusRun run;    // status rhoplus_not_run where there was nothing to invert
  std::string log;                      // as far as a text box takes it
  std::string unsupported;              // what of the curve rests on nothing that is in use; empty: nothing
  std::string missing_files;  // which files could not be left, and why, also in the log; empty if all are
};

/// "Rhoplus Inversion for Line 200E, Station 1250", with the name of its site, if it has one, in brackets.
std::string inversion_title(const std::string& line, double station, const std::string& site_name);

inline constexpr const char* inversion_failed = "An error occurred while performing the 1d inversion: ";
inline constexpr const char* nothing_inverted = "No data to invert";

/// The log; without results a sentence and the reason, as far as there is one.
std::string log_or_reason(const StationInversion& inversion);

/// What the results lack, in a few words for a status bar: "No files were left"; empty if nothing.
std::string note_of(const StationInversion& inversion);

/// Where the files of a line's inversions are: below the survey's folder "NRRef", "RRef" or "XRef" by
/// reference type, and in it a folder named like the line. Characters of the line that would lead elsewhere
/// become "_".
std::filesystem::path run_directory(const std::string& database_file, std::int32_t reference_type,
                                    const std::string& line);

/// Inverts the merged curve of a key. Writes control file and log into the run directory, which is created if
/// it is missing. Where that can't be done, as beside a survey on a read-only disk, the results are there all
/// the same.
/// @param frequencies of the key's reference type
/// @return 0, also where there was nothing to invert; -1 after a message
[[nodiscard]] int invert_station(const ReadingKey& key, const Frequencies& frequencies,
                                 const RhoplusSettings& settings, StationInversion& result);

/// invert_station in two steps: `prepare_inversion` reads the survey and tells of failures, `run_inversion`
/// computes and writes the files. The second one touches neither the survey nor the user and can go on in
/// another thread.
struct StationTask {
  ReadingKey key;
  StationInversion inversion;  // the results, after the run
  numerics::rhoplus::RhoplusSurface surface = numerics::rhoplus::RhoplusSurface::insulating;
  std::filesystem::path folder;
  std::string stem;   // of the files
  std::string title;  // of the log
  std::string control_text;
};
[[nodiscard]] int prepare_inversion(const ReadingKey& key, const Frequencies& frequencies,
                                    const RhoplusSettings& settings, StationTask& task);
void run_inversion(StationTask& task);

/// The same without files and log, for callers that print the result.
[[nodiscard]] int invert_station_in_memory(const ReadingKey& key, const Frequencies& frequencies,
                                           const RhoplusSettings& settings, StationInversion& result);

}  // namespace Module_rhoplus
