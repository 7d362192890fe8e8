#include "import/proposals/plan_run.h"

#include <algorithm>
#include <cmath>
#include <memory>
#include <set>

#include "core/number_text.h"
#include "core/text_fields.h"
#include "formats/fixed_column/fixed_column_parser.h"
#include "import/file_decode.h"
#include "import/proposals/site_stations.h"
#include "import/readers/fixed_column_reader.h"
#include "import/readers/reader_steps.h"
#include "import/readers/section_stations.h"
#include "import/survey_file_names.h"

namespace Module_data_file {

using formats::FileReport;
using numerics::geodesy::GeographicPlace;

namespace {

std::vector<GeographicPlace> places_of(std::span<const ScannedFile> files) {
  std::vector<GeographicPlace> places;
  for (const ScannedFile& file : files) {
    if (file.place) {
      places.push_back(*file.place);
    }
  }
  return places;
}

std::string angle_text(double degrees, char positive, char negative) {
  return format_number(std::abs(degrees), "0.0000") + " " + (degrees < 0.0 ? negative : positive);
}

std::string place_text(const ScannedFile& file) {
  if (const auto& place = file.place ? file.place : file.first_place) {
    return angle_text(place->latitude, 'N', 'S') + ", " + angle_text(place->longitude, 'E', 'W');
  }
  return file.map_place ? format_number(file.map_place->easting, "0") + ", " +
                              format_number(file.map_place->northing, "0")
                        : std::string();
}

// As an import takes the start station of its choices; a fault of it is told elsewhere.
double start_station(const ImportChoices& choices) {
  const double station = numeric_value(choices.start_station);
  return std::isfinite(station) ? station : 0.0;
}

void take_edited(const PlannedEdit& edit, PlannedSection& row) {
  const auto take = [&](PlanCell cell, const auto& typed, auto& value) {
    if (typed && row.can_edit(cell)) {
      value = *typed;
      row.edited_cells.push_back(cell);
    }
  };
  take(PlanCell::line, edit.line, row.line);
  take(PlanCell::station, edit.station, row.station);
  take(PlanCell::event, edit.event, row.event);
  take(PlanCell::rate, edit.rate, row.rate);
  take(PlanCell::turn_ey, edit.turn_ey, row.turn_ey);
  take(PlanCell::from_impedance, edit.from_impedance, row.from_impedance);
}

std::size_t different_stations(const std::vector<OwnStation>& stations) {
  std::set<std::pair<std::string, double>> different;
  for (const OwnStation& own : stations) {
    different.emplace(own.line, own.station);
  }
  return different.size();
}

void add_texts(const std::vector<formats::ReportRemark>& remarks, std::vector<std::string>& texts) {
  for (const formats::ReportRemark& remark : remarks) {
    texts.push_back(remark.text);
  }
}

}  // namespace

PlannedLines::PlannedLines(std::span<const ScannedFile> files,
                           const std::vector<std::vector<std::string>>& lines, const SurveyBefore& survey)
    : map_(places_of(files), survey.projection()) {
  std::map<std::string, std::vector<numerics::geodesy::MapPlace>> places;
  for (std::size_t index = 0; index < files.size(); ++index) {
    places_.push_back(files[index].place ? map_.on_map(*files[index].place) : std::nullopt);
    for (const std::string& line : lines[index]) {
      std::vector<numerics::geodesy::MapPlace>& of_line = places[line];
      if (places_.back()) {
        of_line.push_back(*places_.back());
      }
    }
  }
  for (auto& [line, of_line] : places) {
    std::vector<KnownSite> known;
    for (const Module_database::Site& site : survey.sites(line)) {
      if (const auto place = place_on(map_, site)) {
        known.push_back({*place, site.station});
      }
    }
    lines_.emplace(line, LinePlaces(std::move(of_line), std::move(known)));
  }
}

PlanRun::PlanRun(std::span<const ScannedFile> files, const ImportChoices& choices,
                 std::span<const PlannedEdit> edits, SurveyBefore& survey)
    : files_(files), choices_(choices), survey_(survey) {
  for (const PlannedEdit& edit : edits) {
    edits_[{edit.file_index, edit.section_index}] = &edit;
  }
  decode_files();
  measure_lines();
}

void PlanRun::decode_files() {
  std::vector<std::string> paths;
  std::ranges::transform(files_, std::back_inserter(paths), &ScannedFile::path);
  const std::vector<SurveyFileName> names = survey_file_names(paths);
  ReadingRecord record;
  record.choices = choices_;
  for (std::size_t index = 0; index < files_.size(); ++index) {
    SampleFields sample;
    FileReport report;
    decode_file_name(paths[index], record, sample, report);
    DecodedFile& file = decoded_.emplace_back();
    file.has_namesakes = names[index].name != record.SurveyFile;
    file.name = names[index].name;
    file.repeated = names[index].repeated;
    file.line = record.LineNumber;
    file.event = record.EventNumber;
    file.rate = record.SampleRate;
    add_texts(report.unreadable, file.remarks);
  }
}

void PlanRun::measure_lines() {
  std::vector<std::vector<std::string>> lines(files_.size());
  for (std::size_t file = 0; file < files_.size(); ++file) {
    for (std::size_t section = 0; section < files_[file].sections.size(); ++section) {
      if (names_sites(files_[file].format) && !decoded_[file].repeated &&
          files_[file].sections[section].is_stored) {
        lines[file].push_back(upper_case(line_of(file, section)));
      }
    }
  }
  lines_.emplace(files_, lines, survey_);
}

const PlannedEdit* PlanRun::edit_of(std::size_t file, std::size_t section) const {
  const auto found = edits_.find({file, section});
  return found == edits_.end() ? nullptr : found->second;
}

std::string PlanRun::line_of(std::size_t file, std::size_t section) const {
  const PlannedEdit* const edit = edit_of(file, section);
  return edit != nullptr && edit->line ? *edit->line : decoded_[file].line;
}

std::vector<PlannedSection> PlanRun::rows() {
  std::vector<PlannedSection> rows;
  ReadingRecord record;
  record.choices = choices_;
  record.run.next_station = start_station(choices_);
  record.run.earlier_files = survey_.earlier_files();
  record.run.free_stations = std::make_shared<FreeStations>([this]() -> const FoundSites& { return look(); });
  go_over_files(record, &rows);
  std::ranges::for_each(rows, [this](PlannedSection& row) { test_rate(row); });
  found_ = std::move(record.run.found);
  return rows;
}

void PlanRun::test_rate(PlannedSection& row) const {
  if (choices_.ReductionType == Module_database::reduction_merged) {
    row.is_merged = true;
    std::erase(row.editable, PlanCell::rate);
  } else if (row.is_stored && row.rate == 0.0F && choices_.decode[decode_sample_rate].use_file_name) {
    row.problems.push_back(PlanProblem::no_rate);
    row.remarks.emplace_back("the name of the file gives no scan rate");
  }
}

// What the files say of their stations, without those that depend on it.
const FoundSites& PlanRun::look() {
  if (!in_files_) {
    ReadingRecord record;
    record.choices = choices_;
    record.run.next_station = start_station(choices_);
    record.run.earlier_files = survey_.earlier_files();
    go_over_files(record, nullptr);
    in_files_ = std::move(record.run.found);
  }
  return *in_files_;
}

void PlanRun::go_over_files(ReadingRecord& record, std::vector<PlannedSection>* rows) {
  site_stations_.emplace(lines_->map(), survey_);
  for (std::size_t file = 0; file < files_.size(); ++file) {
    start_file(record, file);
    begin_record(record, file);
    if (std::string why = why_nothing(file); !why.empty()) {
      if (rows != nullptr) {
        rows->push_back(row_of_nothing(file, std::move(why)));
      }
      continue;
    }
    const double next_station = record.run.next_station;
    if (!take_file(file, record, rows)) {
      record.run.next_station = next_station;
      continue;
    }
    const FileRows* const earlier = rows_of_earlier_import(record);
    if (earlier != nullptr) {
      record.file_rows = *earlier;
      own_rows_of_file(record);
    }
  }
}

void PlanRun::begin_record(ReadingRecord& record, std::size_t file) const {
  const DecodedFile& decoded = decoded_[file];
  record.SurveyFile = decoded.name;
  if (record.run.earlier_files) {
    record.path_tails = path_tails(files_[file].path);
  }
  record.LineNumber = decoded.line;
  record.EventNumber = decoded.event;
  record.SampleRate = decoded.rate;
  record.file_format = files_[file].format;
  record.DateCollected = files_[file].DateCollected;
  record.edi_names = files_[file].names;
}

// @return false if the file gives nothing
bool PlanRun::take_file(std::size_t file, ReadingRecord& record, std::vector<PlannedSection>* rows) {
  return names_sites(files_[file].format) ? take_named_sections(file, record, rows)
                                          : take_own_stations(file, record, rows);
}

PlannedSection PlanRun::begin_row(std::size_t file, std::size_t section) const {
  const DecodedFile& decoded = decoded_[file];
  PlannedSection row;
  row.file_index = file;
  row.section_index = section;
  row.file = decoded.name;
  row.line = decoded.line;
  row.event = decoded.event;
  row.rate = decoded.rate;
  row.place = place_text(files_[file]);
  row.remarks = decoded.remarks;
  if (decoded.has_namesakes && !decoded.repeated) {
    row.problems.push_back(PlanProblem::same_file_name);
  }
  return row;
}

// Why an import stores nothing of the file; empty if it does.
std::string PlanRun::why_nothing(std::size_t file) const {
  if (decoded_[file].repeated) {
    return "the file is in the list twice";
  }
  const bool has_apostrophe = decoded_[file].name.find('\'') != std::string::npos;
  return files_[file].failure.empty() && has_apostrophe
             ? "The name of the file has an apostrophe: rename the file to import it."
             : files_[file].failure;
}

PlannedSection PlanRun::row_of_nothing(std::size_t file, std::string why) const {
  PlannedSection row = begin_row(file, 0);
  row.problems = {PlanProblem::not_readable};
  row.remarks = {std::move(why)};
  return row;
}

bool PlanRun::take_named_sections(std::size_t file, ReadingRecord& record,
                                  std::vector<PlannedSection>* rows) {
  const ScannedFile& scanned = files_[file];
  bool gives_something = false;
  set_up_section_header(record, {});
  for (std::size_t index = 0; index < scanned.sections.size(); ++index) {
    const ScannedSection& section = scanned.sections[index];
    PlannedSection row = row_of_section(file, index);
    row.event = record.EventNumber;
    record.LineNumber = row.line;
    const double next_station = record.run.next_station;
    take_station(section, record, row);
    const bool is_known_site = counts_sites() && row.station != next_station;
    if (const PlannedEdit* const edit = edit_of(file, index)) {
      take_edited(*edit, row);
      record.Station = row.station;
    }
    if (section.is_stored) {
      add_to_scan_list(record, {});
    }
    gives_something = gives_something || section.is_stored;
    go_to_next_section(record, section.is_stored);
    record.run.next_station = is_known_site ? next_station : record.run.next_station;
    if (rows != nullptr) {
      rows->push_back(std::move(row));
    }
  }
  return gives_something;
}

bool PlanRun::turns_ey_of(const ScannedSection& section) const {
  return choices_.turn_ey == TurnEy::always ||
         (choices_.turn_ey == TurnEy::where_needed && section.has_turned_ey);
}

PlannedSection PlanRun::row_of_section(std::size_t file, std::size_t index) const {
  const ScannedSection& section = files_[file].sections[index];
  PlannedSection row = begin_row(file, index);
  row.line = line_of(file, index);
  row.is_stored = section.is_stored;
  row.frequencies = section.frequencies;
  row.turn_ey = turns_ey_of(section);
  row.from_impedance = section.lacks_curves && choices_.compute_from_impedance;
  row.editable = {PlanCell::line, PlanCell::station, PlanCell::rate, PlanCell::turn_ey};
  if (section.lacks_curves) {
    row.editable.push_back(PlanCell::from_impedance);
  }
  return row;
}

void PlanRun::take_station(const ScannedSection& section, ReadingRecord& record, PlannedSection& row) {
  FileReport report;
  StoreNotes notes;
  FileTask task{ImportMode::scan, files_[row.file_index].path, record, report, notes, {}};
  if (choices_.stations_by == StationsBy::distance) {
    take_distance(section, task, row);
  } else if (counts_sites()) {
    take_counted_site(section, task, row);
  } else {
    take_section_station(section.head, task);
  }
  row.station = record.Station;
  row.site = record.site_name;
  add_texts(report.unreadable, row.reported);
  const PlannedEdit* const edit = edit_of(row.file_index, row.section_index);
  if (edit != nullptr && edit->station) {
    row.reported.clear();
  } else if (!row.reported.empty() && record.station_rule != StationRule::from_head) {
    row.problems.push_back(PlanProblem::no_station);
  }
}

void PlanRun::take_distance(const ScannedSection& section, FileTask& task, const PlannedSection& row) {
  ReadingRecord& record = task.record;
  const auto& place = lines_->place_of(row.file_index);
  take_site_name(section.head, task);
  record.station_rule = StationRule::own;
  if (!place || !section.is_stored) {
    take_next_free_station(section.head, "the file gives no latitude and longitude", task);
    return;
  }
  const bool is_named = !record.site_name.empty();
  if (const auto known =
          is_named ? site_stations_->close_to(row.line, record.site_name, place) : std::nullopt) {
    record.Station = *known;  // places of one site differ by the noise of their fixes
    return;
  }
  record.Station = lines_->line(upper_case(row.line)).station(*place);
  if (is_named) {
    site_stations_->add(row.line, record.site_name, place, record.Station);
  }
}

bool PlanRun::counts_sites() const {
  return choices_.stations_by == StationsBy::count && choices_.count_sites;
}

// A file that the survey has keeps its stations, and a section of a site that is known has the site's.
void PlanRun::take_counted_site(const ScannedSection& section, FileTask& task, const PlannedSection& row) {
  ReadingRecord& record = task.record;
  take_site_name(section.head, task);
  record.station_rule = StationRule::own;
  record.Station = record.run.next_station;
  if (!section.is_stored) {
    return;
  }
  const auto& place = lines_->place_of(row.file_index);
  const bool is_named =
      !record.site_name.empty() && (has_name(section.head) || files_[row.file_index].sections.size() == 1);
  std::optional<double> known;
  if (const FileRows* const earlier = rows_of_earlier_import(record)) {
    known = survey_.station_of(*earlier, row.line, row.event);
  }
  if (!known && is_named) {
    known = site_stations_->named(row.line, record.site_name, place);
  }
  record.Station = known.value_or(record.Station);
  if (!known && is_named) {
    site_stations_->add(row.line, record.site_name, place, record.Station);
  }
}

// The row of a file of a format that holds its stations.
PlannedSection PlanRun::row_of_own_stations(std::size_t file) const {
  const ScannedFile& scanned = files_[file];
  PlannedSection row = begin_row(file, 0);
  row.is_stored = true;
  row.frequencies = scanned.sections.front().frequencies;
  row.own_stations = different_stations(scanned.own_stations);
  row.station = scanned.own_stations.front().station;
  if (scanned.format == format_fixed_columns) {
    row.editable = {PlanCell::line, PlanCell::station, PlanCell::event, PlanCell::rate};
    row.rate = choices_.own_rate_of_fixed_columns ? *scanned.own_rate : row.rate;
    return row;
  }
  row.event = 0;
  if (scanned.holds_lines()) {
    row.line = scanned.own_stations.front().line_along(choices_.line_direction);
  } else {
    row.editable.push_back(PlanCell::line);
  }
  if (scanned.holds_rates()) {
    row.rate = scanned.own_stations.front().rate;
  } else {
    row.editable.push_back(PlanCell::rate);
  }
  if (const ScannedSection& section = scanned.sections.front(); section.yx_phases > 0) {
    row.turn_ey = turns_ey_of(section);
    row.editable.push_back(PlanCell::turn_ey);
  }
  return row;
}

void PlanRun::test_fixed_columns(const ScannedFile& scanned, PlannedSection& row) {
  if (!scanned.says_station && !row.is_edited(PlanCell::station)) {
    row.problems.push_back(PlanProblem::no_station);
    row.remarks.emplace_back("the head line has no station, taken as station 0");
  }
  const double last_frequency =
      decimal_of_single(*scanned.own_rate) / formats::fixed_column::scan_rate_over_last_frequency;
  if (std::string fault = fixed_columns_fault(last_frequency, row.rate); !fault.empty()) {
    row.is_stored = false;
    row.problems.push_back(PlanProblem::not_readable);
    row.remarks.push_back(std::move(fault));
  }
}

bool PlanRun::take_own_stations(std::size_t file, ReadingRecord& record, std::vector<PlannedSection>* rows) {
  const ScannedFile& scanned = files_[file];
  const bool fixed = scanned.format == format_fixed_columns;
  PlannedSection row = row_of_own_stations(file);
  if (const PlannedEdit* const edit = edit_of(file, 0)) {
    take_edited(*edit, row);
  }
  if (fixed) {
    test_fixed_columns(scanned, row);
  }
  record.site = fixed && !scanned.says_station ? record.SurveyFile : std::string();
  for (std::size_t index = 0; row.is_stored && index < scanned.own_stations.size(); ++index) {
    const OwnStation& own = scanned.own_stations[index];
    record.LineNumber = own.line.empty() ? row.line : own.line_along(choices_.line_direction);
    record.Station = fixed ? row.station : own.station;
    add_to_scan_list(record, {});
  }
  const bool is_stored = row.is_stored;
  if (rows != nullptr) {
    rows->push_back(std::move(row));
  }
  return is_stored;
}

}  // namespace Module_data_file
