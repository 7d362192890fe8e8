#include "import/readers/section_stations.h"

#include <algorithm>
#include <cmath>
#include <set>

#include "core/number_text.h"
#include "core/text_fields.h"
#include "formats/edi/edi_names.h"
#include "import/file_formats.h"
#include "import/readers/reader_steps.h"

namespace Module_data_file {

using formats::in_quotes;
using formats::remark_unreadable;
using formats::edi::EdiNames;

namespace {

std::string_view last_digits(std::string_view text) {
  constexpr std::string_view digits = "0123456789";
  const std::size_t end = text.find_last_of(digits) + 1;  // 0 without digits
  const std::string_view to_end = text.substr(0, end);
  return to_end.substr(to_end.find_last_not_of(digits) + 1);
}

struct NamedStation {
  double station = 0.0;
  bool has_number = false;
};

NamedStation station_of_name(std::string_view name, bool only_digits) {
  const std::string_view text = only_digits ? last_digits(name) : name;
  const double station = std::trunc(numeric_value(text));
  const std::string_view number = trimmed(text);
  return {
      std::isfinite(station) ? station + 0.0 : 0.0,
      !number.empty() && std::string_view("+-.0123456789").find(number.front()) != std::string_view::npos};
}

const EdiNames& names_of_file(FileTask& task) {
  if (!task.record.edi_names) {
    task.record.edi_names =
        is_edi(task.record.file_format) ? formats::edi::read_edi_names(task.file) : EdiNames{};
  }
  return *task.record.edi_names;
}

// Of an EDI section the first word, where other options follow on the line.
std::string site_name(const SectionHead& section, FileTask& task) {
  if (!has_name(section)) {
    return text_from_field_file(names_of_file(task).DATAID);
  }
  std::string_view name = trimmed(*section.name);
  return text_from_field_file(name.find('=') == std::string_view::npos ? name : next_token(name));
}

// Readings of an earlier import of the file are in nobody's way: the file gets its stations back.
const std::set<double>& stations_of_file_before(ReadingRecord& record) {
  if (!record.earlier_stations) {
    const FileRows* const earlier = rows_of_earlier_import(record);
    record.earlier_stations =
        earlier == nullptr ? std::set<double>() : stations_of_file_alone(*earlier, record.LineNumber);
  }
  return *record.earlier_stations;
}

// The station that the name in the head gives, if it stands for one section and the station is free: many
// programs write one name into all their files.
std::optional<double> station_of_head(FileTask& task) {
  ReadingRecord& record = task.record;
  const EdiNames& names = names_of_file(task);
  const NamedStation named =
      station_of_name(names.DATAID, record.choices.stations_by == StationsBy::sectid_digits);
  if (names.sections != 1 || !named.has_number) {
    return std::nullopt;
  }
  FreeStations* const others = record.run.free_stations.get();
  const bool taken = others != nullptr &&
                     !others->is_free(record.LineNumber, named.station, stations_of_file_before(record));
  return taken ? std::nullopt : std::optional(named.station);
}

void take_station_for_nameless(const SectionHead& section, FileTask& task) {
  ReadingRecord& record = task.record;
  const std::string nameless =
      (section.is_whole_file ? "the file" : "section " + plain_text(record.EventNumber + 1)) + " has no " +
      std::string(section.name_word);
  if (const std::optional<double> station = station_of_head(task)) {
    record.station_rule = StationRule::from_head;
    record.Station = *station;
    remark_unreadable(task.report, section.line_number,
                      nameless + "; it takes station " + plain_text(record.Station) + " from DATAID " +
                          in_quotes(names_of_file(task).DATAID));
    return;
  }
  take_next_free_station(section, nameless, task);
}

void take_station(const SectionHead& section, FileTask& task) {
  ReadingRecord& record = task.record;
  record.station_rule = StationRule::own;
  if (record.choices.stations_by == StationsBy::count) {
    record.Station = record.run.next_station;
    return;
  }
  if (task.is_import()) {
    (void)stations_of_file_before(record);  // while its readings are there
  }
  if (record.choices.stations_by == StationsBy::distance) {
    take_next_free_station(section, "the file has changed since its stations were planned", task);
  } else if (!has_name(section)) {
    take_station_for_nameless(section, task);
  } else {
    const NamedStation named =
        station_of_name(*section.name, record.choices.stations_by == StationsBy::sectid_digits);
    record.Station = named.station;
    if (!named.has_number) {
      remark_unreadable(task.report, section.line_number,
                        std::string(section.name_word) + " " + in_quotes(*section.name) +
                            " has no number, taken as station 0");
    }
  }
}

// @return false if the plan has no row for the section
bool take_planned_station(const SectionHead& head, FileTask& task) {
  ReadingRecord& record = task.record;
  const PlannedSection* const planned = planned_section(record);
  if (planned == nullptr) {
    return false;
  }
  record.station_rule = StationRule::own;
  record.LineNumber = planned->line;
  record.Station = planned->station;
  record.SampleRate = planned->rate;
  for (const std::string& text : planned->reported) {
    remark_unreadable(task.report, head.line_number, text);
  }
  return true;
}

}  // namespace

void set_up_section_header(ReadingRecord& record, std::string_view filter) {
  record.EventNumber = 0;
  record.DipoleLength = usual_dipole;
  if (record.StationSpacing <= 0.0F) {
    record.StationSpacing = record.DipoleLength;
  } else {
    record.DipoleLength = record.StationSpacing;
  }
  record.Filter = filter;
}

void take_next_free_station(const SectionHead& head, const std::string& why, FileTask& task) {
  ReadingRecord& record = task.record;
  record.station_rule = StationRule::next_free;
  record.Station = record.run.next_station;
  if (record.run.free_stations) {
    record.Station = record.run.free_stations->next(record.LineNumber, record.run.next_station,
                                                    decimal_of_single(record.StationSpacing),
                                                    stations_of_file_before(record));
  }
  remark_unreadable(task.report, head.line_number,
                    why + "; it takes station " + plain_text(record.Station) +
                        ", the next free one from the start station on");
}

void take_section_station(const SectionHead& head, FileTask& task) {
  if (!take_planned_station(head, task)) {
    take_station(head, task);
  }
  take_site_name(head, task);
}

void take_site_name(const SectionHead& head, FileTask& task) {
  ReadingRecord& record = task.record;
  record.site_name = site_name(head, task);
  record.site = record.site_name.empty() ? record.SurveyFile : record.site_name;
}

void go_to_next_section(ReadingRecord& record, bool gave_readings) {
  ++record.EventNumber;
  ++record.section_index;
  if (!gave_readings) {
    return;
  }
  if (record.choices.stations_by == StationsBy::count) {
    // By its decimal text, so that steps of 0.1 don't gather a tail that no criterion would find.
    record.run.next_station =
        numeric_value(plain_text(record.run.next_station + decimal_of_single(record.StationSpacing)));
  } else if (record.station_rule != StationRule::own && record.run.free_stations) {
    record.run.free_stations->take(record.LineNumber, record.Station);
  }
}

bool has_name(const SectionHead& head) { return head.name && !trimmed(*head.name).empty(); }

}  // namespace Module_data_file
