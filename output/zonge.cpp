#include "output/zonge.h"

#include <utility>
#include <vector>

#include "core/debug_log.h"
#include "core/file_names.h"
#include "core/number_text.h"
#include "core/session_state.h"
#include "core/trap_errors.h"
#include "database/frequency_store.h"
#include "database/stations.h"
#include "database/survey_database.h"
#include "formats/zonge/zonge_text.h"
#include "output/line_stations.h"
#include "output/zonge_files.h"
#include "platform/dao/text_literal.h"
#include "platform/files/safe_files.h"
#include "reduction/averages.h"
#include "reduction/each_item.h"
#include "reduction/unsupported_curves.h"

namespace Module_output {

using Module_averaged_data::AllowRaw;
using Module_averaged_data::each_item;
using Module_averaged_data::Outcome;
using Module_averaged_data::WorkProgress;
using Module_database::LineSelection;
using Module_database::reduction_merged;
using Module_database::StationRows;
using Module_database::StoredReading;

namespace {

struct ZongeFiles {
  std::string mde;
  std::string avg;
  std::string stn;
  std::string lost_stations;  // without a row in StationsTable, as told
};

StationRows station_rows(const std::string& line, double station) {
  return Module_database::find_station(Module_database::StationSearch::look_up, line, station);
}

/// Dipole length of the first file of the line, m, whatever dipole is selected; the selected one where the
/// survey has lost its list of files.
float first_dipole(const LineSelection& selection) {
  dao::Recordset& files = Module_database::open_survey().files;
  files.find_first("LineNumber = " + dao::text_literal(selection.line) +
                   " AND ReferenceType = " + format_number(selection.reference_type, "0"));
  return files.no_match() ? selection.dipole : files.get_single("DipoleLength");
}

ZongeLine describe_line(const LineSelection& selection, const std::vector<double>& stations,
                        std::chrono::year_month_day date) {
  const StationRows first = station_rows(selection.line, stations.front());
  const StationRows last = station_rows(selection.line, stations.back());
  ZongeLine line;
  line.line = selection.line;
  line.first_station = stations.front();
  line.last_station = stations.back();
  line.dipole = first_dipole(selection);
  line.bearing = bearing_text(last.LocalX - first.LocalX, last.LocalY - first.LocalY);
  line.version = session().version_text;
  line.database_name = Module_util::file_name_only(session().database_file);
  line.date = date;
  return line;
}

/// Adds the rows of one merged curve. @return how many
int add_curve(double station, const StoredReading& merged, const Frequencies& frequencies, std::string& avg) {
  if (merged.ID == 0 || !merged.UseReading || !(merged.UseResistivity || merged.UsePhase)) {
    return 0;
  }
  int rows = 0;
  const Module_database::Curve& curve = merged.curve;
  for (std::size_t index = 0; index < curve.count(); ++index) {
    if (frequencies.enabled_position(curve.frequencies[index]) >= 0 &&
        curve.point_counts(Module_database::field_resistivity, index) &&
        curve.point_counts(Module_database::field_phase, index)) {
      avg +=
          avg_row(station, curve.frequencies[index], curve.value(Module_database::field_resistivity, index),
                  curve.value(Module_database::field_phase, index));
      ++rows;
    }
  }
  return rows;
}

/// Writes the station part of the ".stn" and ".avg" files.
Outcome add_stations(const LineSelection& selection, const std::vector<double>& stations,
                     const Frequencies& frequencies, const std::function<void(int)>& show_row_count,
                     ZongeFiles& files, int& row_count) {
  WorkProgress progress("Writing Zonge files", stations.size());
  return each_item(progress, [&](std::size_t index) {
    const double station = stations[index];
    const StationRows place = station_rows(selection.line, station);
    files.stn += stn_row(station, place.MapX, place.MapY, place.Elevation);
    if (place.StationID == Module_database::no_row) {
      files.lost_stations += (files.lost_stations.empty() ? "" : ", ") + plain_text(station);
      return 0;
    }
    StoredReading merged;
    if (Module_averaged_data::reduced_reading_at(place, reduction_merged, AllowRaw::yes,
                                                 selection.at(station), frequencies, merged) != 0) {
      return -1;
    }
    row_count += add_curve(station, merged, frequencies, files.avg);
    if (show_row_count) {
      show_row_count(row_count);
    }
    return 0;
  });
}

void write_files(ZongeFiles files, const ZongePaths& paths) {
  safe_files::write_together({{paths.mde, std::move(files.mde)},
                              {paths.avg, std::move(files.avg)},
                              {paths.stn, std::move(files.stn)}});
}

}  // namespace

int output_zonge(const LineSelection& selection, const std::string& avg_path,
                 const std::function<void(int)>& show_row_count, int& row_count,
                 std::chrono::year_month_day date) {
  row_count = 0;
  Module_debug::write_debug(1, "output_zonge " + avg_path);
  return trap_errors("An error occurred while writing the Zonge files: ", [&] {
    const std::vector<double> stations = stations_with_readings(selection, DataTypes::selected);
    if (stations.empty()) {
      user_interface().show_message("There is no data for the specified line and data type");
      return -1;
    }
    const BusyPointer busy;
    const auto frequencies = Module_database::load_reference_frequencies(selection.reference_type);
    if (!frequencies) {
      return -1;
    }
    if (show_row_count) {
      show_row_count(0);
    }
    const ZongeLine line = describe_line(selection, stations, date);
    ZongeFiles files{mde_text(line), avg_head(line), stn_head(selection.line), {}};
    int rows = 0;
    const Outcome outcome = add_stations(selection, stations, *frequencies, show_row_count, files, rows);
    if (outcome == Outcome::finished) {
      const std::string lost = std::move(files.lost_stations);
      write_files(std::move(files), zonge_paths(avg_path));
      row_count = rows;
      if (const std::string hint = Module_averaged_data::unsupported_hint(selection); !hint.empty()) {
        user_interface().show_message(hint);
      }
      if (!lost.empty()) {
        user_interface().show_message("The survey has readings, but no row in StationsTable, for station " +
                                      lost + " of line " + selection.line + "; the set lacks its curves");
      }
    } else if (outcome == Outcome::stopped) {
      row_count = nothing_written;
    }
    return outcome == Outcome::failed ? -1 : 0;
  });
}

}  // namespace Module_output
