#include "exchange/curve_heads.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <utility>

#include "core/calendar.h"
#include "core/number_text.h"
#include "database/sites.h"
#include "database/stations.h"
#include "database/survey_database.h"
#include "exchange/site_history.h"

namespace Module_exchange {

namespace {

/// "2019-01-07"
std::string iso_date(double days) {
  const std::chrono::year_month_day date = calendar_date(days);
  return format_number(static_cast<int>(date.year()), "0000") + "-" +
         format_number(static_cast<int>(static_cast<unsigned>(date.month())), "00") + "-" +
         format_number(static_cast<int>(static_cast<unsigned>(date.day())), "00");
}

}  // namespace

CurveHeads::CurveHeads(const Module_tensor::LineChoice& choice) : choice_(choice) {
  for (Module_database::ListedStation& station : Module_database::stations_with_readings(choice.line)) {
    stations_[station.station] = std::move(station);
  }
  for (const Module_database::Site& site : Module_database::sites_of_line(choice.line)) {
    if (const auto station = stations_.find(site.station); station != stations_.end()) {
      station->second.name = site.name;
    }
  }
  places_ = places_of_line(choice.line);
  read_dates();
}

/// By the readings of each file, which may hold many stations and lines and names one of them.
void CurveHeads::read_dates() {
  const std::string of_files = choice_.criteria() + " AND FileID > 0";
  dates_of_files_ = dates_of_files(of_files);
  dao::Recordset rows = Module_database::open_survey().database.open_recordset(
      "SELECT DISTINCT Station,FileID FROM ReadingsDataTable WHERE " + of_files);
  for (; !rows.eof(); rows.move_next()) {
    if (const auto date = dates_of_files_.find(rows.get_long("FileID")); date != dates_of_files_.end()) {
      const auto [first, is_new] = first_dates_.try_emplace(rows.get_double("Station"), date->second);
      first->second = std::min(first->second, date->second);
    }
  }
}

std::optional<double> CurveHeads::date_of(double station, std::int32_t FileID) const {
  if (FileID > 0) {
    const auto found = dates_of_files_.find(FileID);
    return found == dates_of_files_.end() ? std::nullopt : std::optional(found->second);
  }
  const auto found = first_dates_.find(station);
  return found == first_dates_.end() ? std::nullopt : std::optional(found->second);
}

formats::csv::CurveRows CurveHeads::head(double station, const std::string& data_type,
                                         const Module_database::StoredReading& reading) const {
  formats::csv::CurveRows head;
  head.line = choice_.line;
  head.station = station;
  head.data_type = data_type;
  head.reference_type = choice_.reference_type;
  head.dipole = decimal_of_single(choice_.dipole);
  if (const auto date = date_of(station, reading.FileID)) {
    head.date = iso_date(*date);
  }
  if (!is_absent(double{reading.axes.HxAzimuth}) && std::isfinite(reading.axes.HxAzimuth)) {
    head.azimuth = decimal_of_single(reading.axes.HxAzimuth);
  }
  if (const auto listed = stations_.find(station); listed != stations_.end()) {
    head.site = listed->second.name;
    if (Module_database::has_own_map_place(listed->second.place)) {
      head.easting = listed->second.place.map_x;
      head.northing = listed->second.place.map_y;
    }
  }
  if (const auto place = places_.find(station); place != places_.end()) {
    head.latitude = place->second.latitude;
    head.longitude = place->second.longitude;
    head.elevation = place->second.elevation;
  }
  return head;
}

}  // namespace Module_exchange
