#include "import/readers/reader_steps.h"

#include <algorithm>
#include <cmath>
#include <exception>
#include <string>

#include "core/absent_value.h"
#include "core/number_text.h"
#include "core/text_fields.h"
#include "core/trap_errors.h"
#include "database/sites.h"
#include "database/stations.h"
#include "formats/field_values.h"
#include "numerics/impedance/apparent_resistivity.h"

namespace Module_data_file {

namespace {

using formats::single_or_absent;
using Module_database::Curve;

constexpr std::string_view failure_text = "An error occurred while importing the data file: ";

// Spectra and impedances in fixed columns don't say how strong the fields were. Fields 3 and 4 are filled
// from one part of the tensor with these factors, for all of its elements alike. Where the factors come from
// isn't known: they don't follow from the units, and |E| = |Z| |H| doesn't hold between the two. No curve is
// computed from these fields, but they are stored: with other factors a file would no longer give the same
// readings as it has in the surveys that exist.
constexpr double electric_factor = 6314.0;
constexpr double magnetic_factor = 2000.0;

// The place of a file is that of its station. Of many stations it is that of none: where they are is known
// only if the file says it of each.
void keep_sites(FileTask& task) {
  ReadingRecord& record = task.record;
  const bool has_place = record.sites.size() == 1;
  for (const auto& [key, noted] : record.sites) {
    Module_database::Site site;
    site.line = noted.line;
    site.station = noted.station;
    site.name = noted.name;
    const SitePlace& own = noted.place;
    const bool of_file = has_place && !own.latitude;
    site.latitude = of_file ? record.place.latitude : own.latitude;
    site.longitude = of_file ? record.place.longitude : own.longitude;
    site.datum = of_file ? record.place.datum : own.datum;
    site.elevation = of_file && record.place.elevation ? record.place.elevation : own.elevation;
    site.SurveyFile = record.SurveyFile;
    (void)Module_database::keep_site(site);
    record.run.said_sites.emplace_back(static_cast<std::size_t>(std::max(record.file_index - 1, 0)),
                                       std::move(site));
  }
}

}  // namespace

void find_station_of_record(ReadingRecord& record, MapPlace map_place) {
  if (record.converted_place) {
    record.MapX = record.converted_place->x;
    record.MapY = record.converted_place->y;
  }
  const bool has_elevation = map_place == MapPlace::of_file && record.Elevation != 0.0;
  note_site(record, record.Station, has_elevation ? std::optional(record.Elevation) : std::nullopt);
  const Module_database::GivenPlace place{record.MapX, record.MapY, record.Elevation};
  const Module_database::StationRows rows =
      Module_database::find_station(Module_database::StationSearch::create, record.LineNumber, record.Station,
                                    map_place == MapPlace::of_file ? &place : nullptr);
  record.StationID = rows.StationID;
  record.LocationID = rows.LocationID;
  record.LocalX = rows.LocalX;
  record.LocalY = rows.LocalY;
  record.MapX = rows.MapX;
  record.MapY = rows.MapY;
  record.Elevation = rows.Elevation;
}

void note_site(ReadingRecord& record, double station, std::optional<double> elevation) {
  SitePlace place = record.station_place;
  place.elevation = elevation ? elevation : place.elevation;
  record.sites.try_emplace({upper_case(record.LineNumber), station},
                           FileSite{record.LineNumber, station, record.site_name, std::move(place)});
}

bool store_header_once(FileTask& task) {
  return !task.is_import() || task.record.FileID != 0 || store_header_block(task.record, task.notes) == 0;
}

bool take_reading(FileTask& task, std::string_view data_type) {
  // -1 without a failure says that the frequencies were not ascending in the file, which isn't a fault.
  if (task.is_import() && store_data_block(task.record, data_type, task.notes) != 0 &&
      !task.notes.failure.empty()) {
    return false;
  }
  ++task.report.readings;
  if (task.reading_met) {
    task.reading_met(data_type);
  }
  return true;
}

void add_to_scan_list(ReadingRecord& record, std::initializer_list<std::string_view> data_types) {
  const ScannedStation key{record.LineNumber, record.Station, record.choices.ReferenceType, record.SampleRate,
                           record.DipoleLength};
  if (record.scanned.insert(key).second) {
    record.scan_list.push_back(key);
  }
  const bool is_looking = !record.run.free_stations;  // only at what the files say themselves
  if (is_looking && record.station_rule == StationRule::from_head) {
    record.run.found.claimed.emplace(upper_case(record.LineNumber), record.Station);
  } else if (!is_looking || record.station_rule == StationRule::own) {
    record.run.found.sites.add(
        record.LineNumber, record.Station,
        {record.site.empty() ? record.SurveyFile : record.site, record.SurveyFile, record.site.empty(),
         static_cast<std::size_t>(std::max(record.file_index - 1, 0))});
  }
  for (const std::string_view data_type : data_types) {
    record.scanned_types.emplace(data_type);
  }
}

void finish_point(Curve& curve, std::size_t index) {
  for (int field_number = 1; field_number <= 4; ++field_number) {
    curve.value(field_number + 4, index) = curve.value(field_number, index);
  }
  for (int field_number = 9; field_number <= 13; ++field_number) {
    curve.value(field_number + 5, index) = curve.value(field_number, index);
  }
  for (const int field_number : {Module_database::field_resistivity, Module_database::field_phase}) {
    curve.counts_at(field_number, index) = curve.value(field_number, index) > 0.0F ? 1 : 0;
  }
}

const PlannedSection* planned_section(const ReadingRecord& record) {
  return record.run.plan == nullptr
             ? nullptr
             : record.run.plan->find(static_cast<std::size_t>(std::max(record.file_index - 1, 0)),
                                     record.section_index);
}

bool computes_from_impedance(const ReadingRecord& record) {
  const PlannedSection* const planned = planned_section(record);
  return planned != nullptr ? planned->from_impedance : record.choices.compute_from_impedance;
}

bool turns_ey(const ReadingRecord& record, const std::function<bool()>& is_turned) {
  if (const PlannedSection* const planned = planned_section(record)) {
    return planned->turn_ey;
  }
  const ImportChoices& choices = record.choices;
  return choices.turn_ey == TurnEy::always || (choices.turn_ey == TurnEy::where_needed && is_turned());
}

void remark_on_nul_bytes(const LineReader& lines, formats::FileReport& report) {
  if (lines.nul_bytes() > 0) {
    formats::remark_unreadable(report, 0,
                               plain_text(lines.nul_bytes()) +
                                   (lines.nul_bytes() == 1 ? " NUL byte" : " NUL bytes") +
                                   " where text belongs, read as '?'; the file may be damaged");
  }
}

double raised_phase(double imaginary, double real) {
  const double phase = numerics::impedance::phase_degrees({real, imaginary});
  return phase < -90.0 ? phase + 360.0 : phase;
}

void set_tensor_point(const TensorPoint& point, Curve& curve, std::size_t index) {
  const bool known = !is_absent(point.real) && !is_absent(point.imaginary);
  const bool has_frequency = point.frequency > 0.0;
  const double resistivity = known && has_frequency ? point.resistivity : double{no_data};
  const double part = std::abs(point.magnitude_part);
  const bool part_known = has_frequency && !is_absent(point.magnitude_part);
  const double magnetic = magnetic_factor * std::sqrt(part / point.frequency);
  const double electric = electric_factor * std::sqrt(std::abs(part * resistivity) / point.frequency);
  curve.value(1, index) = single_or_absent(resistivity);
  curve.value(2, index) = known ? single_or_absent(raised_phase(point.imaginary, point.real)) : no_data;
  curve.value(3, index) = known && part_known ? single_or_absent(electric) : no_data;
  curve.value(4, index) = part_known ? single_or_absent(magnetic) : no_data;
  curve.value(9, index) = single_or_absent(point.real);
  curve.value(10, index) = single_or_absent(point.imaginary);
  curve.value(13, index) = no_data;
  curve.value(19, index) = single_or_absent(point.scalar);
}

int run_reader(FileTask& task, const std::function<int()>& read) {
  return trap_errors(failure_text, [&] {
    try {
      const int result = read();
      keep_sites(task);
      if (result != 0) {
        task.report.failure = task.notes.failure;
      }
      return result;
    } catch (const std::exception& failure) {
      task.report.failure = std::string(failure_text) + ::failure_text(failure);
      throw;
    }
  });
}

}  // namespace Module_data_file
