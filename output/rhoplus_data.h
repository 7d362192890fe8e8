// rhoplus_data.h: a station's merged curve as the rows that Rho+ inversion takes, and its control file.
//
// Frequency Hz, ascending; resistivity ohm-m, with static factor and scale applied; phase degrees; errors are
// one standard deviation, raised to the floors and, as the settings say, to the errors of the files.
#pragma once
#include <cstdint>
#include <string>
#include <vector>

#include "core/frequencies.h"
#include "database/reading.h"
#include "numerics/rhoplus/rhoplus.h"
#include "output/rhoplus_settings.h"

namespace Module_output {

/// One row for each frequency written.
using RhoplusData = std::vector<numerics::rhoplus::RhoplusRow>;

/// Where the rows come from.
struct RhoplusIndex {
  std::vector<std::int32_t> row_number;          // by position in the reading: row from 1, 0 if left out
  std::vector<std::int32_t> frequency_position;  // by row: index in the frequency list
};

/// What the files say of the values of a row: standard errors of resistivity, ohm-m, with static factor and
/// scale applied, and of phase, degrees. 0 where they say nothing, where the point isn't used, and where the
/// settings leave them out.
struct FileErrors {
  float resistivity = 0.0F;
  float phase = 0.0F;
};

struct RhoplusTables {
  RhoplusData data;
  std::vector<FileErrors> file_errors;  // by row
  RhoplusIndex index;
  std::string data_lines;       // of the control file
  std::string frequency_lines;  // of the control file: all enabled frequencies, also of rows left out
};

/// The rows of a merged curve at the enabled ones of its reference type's frequencies. Points that don't
/// count, as they are masked or absent, have the statistics of all values present, or 0, and are marked as
/// unused. Empty if the reading or both of its quantities are switched off, or if no resistivity is used:
/// phases alone leave the level of resistivity free.
RhoplusTables rhoplus_tables(const Module_database::StoredReading& merged, const Frequencies& frequencies,
                             const RhoplusSettings& settings);

/// The same without the lines of the control file, for who only inverts.
RhoplusTables rhoplus_rows(const Module_database::StoredReading& merged, const Frequencies& frequencies,
                           const RhoplusSettings& settings);

/// "root_1250": the stem of a station's files.
std::string rhoplus_stem(const RhoplusSettings& settings, double station);

/// The whole control file of a station, lines ending in CR LF.
std::string rhoplus_control_text(const RhoplusTables& tables, const RhoplusSettings& settings,
                                 double station);

}  // namespace Module_output
