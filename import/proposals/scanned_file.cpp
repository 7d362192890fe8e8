#include "import/proposals/scanned_file.h"

#include <algorithm>
#include <exception>
#include <iterator>
#include <span>

#include "core/absent_value.h"
#include "core/calendar.h"
#include "core/line_reader.h"
#include "core/number_text.h"
#include "core/trap_errors.h"
#include "formats/edi/edi_parser.h"
#include "formats/zonge/zonge_stn_file.h"
#include "import/quiet_interface.h"
#include "import/readers/edi_curves.h"
#include "import/readers/edi_heads.h"
#include "import/readers/edi_spectra_reader.h"
#include "import/readers/reader_steps.h"
#include "import/readers/reader_table.h"
#include "import/readers/site_curves.h"
#include "import/readers/site_files.h"
#include "import/readers/station_places.h"

namespace Module_data_file {

using formats::FileReport;

namespace {

using formats::edi::EdiSection;

constexpr const char* no_data_text = "neither an impedance section (>=MTSECT) nor any other data was found";

void take_frequencies(std::span<const float> frequencies, ScannedSection& section) {
  section.frequencies = std::max(section.frequencies, static_cast<std::int32_t>(frequencies.size()));
  for (const float single : frequencies) {
    const double frequency = decimal_of_single(single);
    if (frequency > 0.0) {
      section.lowest = section.lowest > 0.0 ? std::min(section.lowest, frequency) : frequency;
      section.highest = std::max(section.highest, frequency);
    }
  }
}

void take_phases(std::span<const float> yx_phases, ScannedSection& section) {
  const QuadrantCount count = count_in_third_quadrant(yx_phases);
  section.yx_phases = static_cast<std::int32_t>(count.present);
  section.yx_in_third = static_cast<std::int32_t>(count.in_third);
  section.has_turned_ey = count.mostly_in_third();
}

// Whether there are phases in the file and none is above zero.
bool all_negative(std::span<const float> phases) {
  const auto absent = [](float phase) { return is_absent(phase); };
  return !std::ranges::all_of(phases, absent) &&
         std::ranges::all_of(phases, [&](float phase) { return absent(phase) || phase < 0.0F; });
}

ScannedSection scanned(const EdiSection& section) {
  using namespace formats::edi;
  ScannedSection found;
  found.head = section_head(section);
  take_frequencies(section.frequencies, found);
  take_phases(phases_of_yx(section), found);
  found.all_yx_phases_negative = all_negative(section.get(element_yx, quantity_phase).values);
  for (std::size_t element = 0; element < element_count; ++element) {
    found.lacks_curves = found.lacks_curves || has_impedance_only(section, element);
  }
  return found;
}

void scan_impedances(ScannedFile& file, FileReport& report) {
  LineReader reader(file.path);
  formats::edi::EdiMtParser parser(reader, report);
  file.has_remote = parser.channels().has_remote();
  file.place = parser.place().geographic;
  EdiSection section;
  while (parser.next_section(section)) {
    file.sections.push_back(scanned(section));
  }
}

void scan_spectra(ScannedFile& file, FileReport& report) {
  const SpectraHead head = look_at_spectra(file.path, report, [&](const SpectraLook& look) {
    ScannedSection& section = file.sections.emplace_back();
    section.head = look.head;
    section.is_stored = !look.frequencies.empty();
    take_frequencies(look.frequencies, section);
    take_phases(look.yx_phases, section);
  });
  file.has_remote = head.has_remote;
  file.place = head.place;
}

void scan_edi(ScannedFile& file, FileReport& report) {
  if (file.format == format_edi_mt) {
    scan_impedances(file, report);
  } else {
    scan_spectra(file, report);
  }
  const auto is_stored = [](const ScannedSection& section) { return section.is_stored; };
  const auto is_nameless = [](const ScannedSection& section) { return !has_name(section.head); };
  if (std::ranges::any_of(file.sections, is_nameless)) {
    file.names = formats::edi::read_edi_names(file.path);
  }
  if (std::ranges::none_of(file.sections, is_stored)) {
    file.failure = report.failure.empty() ? "the file gave no reading" : report.failure;
  }
}

void scan_site(const ReadingRecord& record, const FileReport& report, ScannedFile& file) {
  const formats::transfer_function::TransferFunction& function = *record.site_file;
  const SiteReadings readings(function);
  if (readings.empty()) {
    file.failure = report.failure.empty() ? "the file gave no reading" : report.failure;
    return;
  }
  const formats::transfer_function::Site& site = function.site;
  if (site.latitude && site.longitude) {
    file.place = {*site.latitude, *site.longitude};
  }
  ScannedSection& section = file.sections.emplace_back();
  section.head = site_head(file.format, site);
  take_frequencies(frequencies_of(function), section);
  take_phases(phases_of_yx(function), section);
  section.all_yx_phases_negative = all_negative(own_phases_of_yx(function));
}

void take_place(const ReadingRecord& record, ScannedFile& file) {
  if (!file.map_place && (record.MapX != 0.0 || record.MapY != 0.0)) {
    file.map_place = numerics::geodesy::MapPlace{record.MapX, record.MapY};
  }
  const SitePlace& place = record.station_place;
  if (!file.first_place && place.latitude && place.longitude) {
    file.first_place = {*place.latitude, *place.longitude};
  }
}

OwnStation own_station(const ReadingRecord& record, FileFormat format) {
  const bool may_have_line = format == format_em1dfm || is_station_table(format);
  const bool may_have_rate = format == format_zonge_raw || is_station_table(format);
  OwnStation own{may_have_line ? record.LineNumber : std::string(), record.Station,
                 may_have_rate ? record.SampleRate : 0.0F,
                 is_station_table(format) ? record.line_in_file : std::string()};
  if (is_station_table(format)) {
    const SitePlace& place = record.station_place;
    if (place.latitude && place.longitude) {
      own.place = {*place.latitude, *place.longitude};
    }
    if (record.MapX != 0.0 || record.MapY != 0.0) {
      own.map_place = numerics::geodesy::MapPlace{record.MapX, record.MapY};
    }
  }
  return own;
}

std::vector<float> phases_of(const Module_database::Curve& curve) {
  std::vector<float> phases;
  for (std::size_t index = 0; index < curve.count(); ++index) {
    phases.push_back(curve.value(Module_database::field_phase, index));
  }
  return phases;
}

// The reader itself finds the stations of formats that hold them.
void scan_stations(ReadingRecord& record, ScannedFile& file, FileReport& report) {
  ScannedSection section;
  StoreNotes notes;
  FileTask task{ImportMode::scan, file.path, record, report, notes, {}};
  std::vector<float> yx_phases;  // of a table of stations, whose Ey may be turned
  task.reading_met = [&](std::string_view data_type) {
    take_frequencies(record.curve.frequencies, section);
    take_place(record, file);
    if (is_station_table(file.format) && data_type == tensor_data_types[formats::edi::element_yx]) {
      std::ranges::copy(phases_of(record.curve), std::back_inserter(yx_phases));
    }
    const OwnStation own = own_station(record, file.format);
    if (file.own_stations.empty() || file.own_stations.back() != own) {
      file.own_stations.push_back(own);
    }
    if (file.format == format_fixed_columns) {
      file.own_rate = record.SampleRate;
    }
  };
  (void)reader_of(file.format)(task);
  if (report.readings == 0) {
    file.failure = report.failure.empty() ? "the file gave no reading" : report.failure;
    return;
  }
  take_phases(yx_phases, section);
  section.all_yx_phases_negative = report.all_yx_phases_negative;
  file.sections.push_back(section);
  if (is_station_table(file.format)) {  // its date stands among its rows
    file.DateCollected = record.DateCollected;
    file.date = display_date(record.DateCollected);
  }
}

void take_first_place_of_stn(ScannedFile& file) {
  const std::optional<std::string> stn_file = formats::zonge::find_stn_file(file.path);
  if (!stn_file || file.own_stations.empty()) {
    return;
  }
  FileReport ignored;
  for (const formats::zonge::ZongeStation& station : formats::zonge::read_stn_file(*stn_file, ignored)) {
    if (station.station == file.own_stations.front().station) {
      file.map_place = numerics::geodesy::MapPlace{station.x, station.y};
    }
  }
}

void scan(ScannedFile& file) {
  FileReport report;
  ReadingRecord record;
  record.choices.own_rate_of_fixed_columns = true;
  SampleFields sample;
  display_file_format(file.path, record, sample, report);
  file.format = static_cast<FileFormat>(record.file_format);
  file.DateCollected = record.DateCollected;
  file.date = sample.date;
  file.says_station = record.Station != station_not_set;
  if (record.site_file) {  // also one that is cut off has what stands before
    scan_site(record, report, file);
    return;
  }
  if (!report.failure.empty() || file.format == format_unknown) {
    file.failure = report.failure.empty() ? no_data_text : report.failure;
    return;
  }
  if (is_edi(file.format)) {
    scan_edi(file, report);
    return;
  }
  scan_stations(record, file, report);
  if (file.format == format_zonge_raw) {
    take_first_place_of_stn(file);
  }
}

}  // namespace

std::string OwnStation::line_along(LineDirection direction) const {
  return line_in_file.empty() ? line : line_of_file(line_in_file, direction).value_or(line);
}

bool ScannedFile::holds_lines() const {
  return !own_stations.empty() && std::ranges::none_of(own_stations, &std::string::empty, &OwnStation::line);
}

bool ScannedFile::holds_rates() const {
  return !own_stations.empty() &&
         std::ranges::all_of(own_stations, [](const OwnStation& own) { return own.rate > 0.0F; });
}

ScannedFile scan_field_file(const std::string& path) {
  ScannedFile file;
  file.path = path;
  const QuietInterface quiet;
  try {
    scan(file);
  } catch (const std::exception& failure) {
    file.failure = failure_text(failure);
  }
  return file;
}

}  // namespace Module_data_file
