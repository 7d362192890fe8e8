#include "import/earlier_files.h"

#include <algorithm>
#include <cmath>

#include "core/number_text.h"
#include "database/survey_database.h"
#include "import/survey_file_names.h"
#include "platform/dao/case_folding.h"
#include "platform/dao/text_literal.h"

namespace Module_data_file {

namespace {

using dao::folded_text;

std::int64_t day_of(double date) {
  constexpr double most = 1e9;
  return std::isfinite(date) ? static_cast<std::int64_t>(std::floor(std::clamp(date, -most, most))) : 0;
}

// Files that can be one and the same have the same key.
std::string key_of(std::string_view name) {
  const std::string_view plain = without_number(dao::without_trailing_blanks(name));
  return folded_text(plain.substr(plain.find_last_of('/') + 1));
}

}  // namespace

EarlierFiles::EarlierFiles() {
  dao::Recordset table = Module_database::open_survey().database.open_recordset(
      "SELECT ID,SurveyFile,DateCollected,EventNumber FROM FileTable ORDER BY ID");
  for (; !table.eof(); table.move_next()) {
    const std::string name = table.get_text("SurveyFile");
    const std::string folded = folded_text(name);
    const std::int64_t day = day_of(table.get_date("DateCollected"));
    const std::int32_t ID = table.get_long("ID");
    std::vector<DatedRows>& alike = files_[key_of(name)];
    auto file = std::ranges::find_if(
        alike, [&](const DatedRows& other) { return other.day == day && other.folded_name == folded; });
    if (file == alike.end()) {
      file = alike.insert(alike.end(), {day, folded, {name, {}, ID}});
    }
    file->rows.ID_of_event.emplace(table.get_long("EventNumber"), ID);
  }
}

const std::vector<EarlierFiles::DatedRows>* EarlierFiles::namesakes(std::string_view name) const {
  const auto found = files_.find(key_of(name));
  return found == files_.end() ? nullptr : &found->second;
}

const FileRows* EarlierFiles::find(std::string_view name, const std::vector<std::string>& tails,
                                   double date) const {
  const std::vector<DatedRows>* const alike = namesakes(name);
  if (alike == nullptr) {
    return nullptr;
  }
  const auto first_that = [&](auto&& is_it) -> const FileRows* {
    const auto found = std::ranges::find_if(
        *alike, [&](const DatedRows& file) { return file.day == day_of(date) && is_it(file); });
    return found == alike->end() ? nullptr : &found->rows;
  };
  const FileRows* rows = nullptr;
  if (without_number(name) != name) {  // of several that differ in case alone, this one had the number before
    rows = first_that([&](const DatedRows& file) { return file.rows.name == name; });
  }
  for (std::size_t index = 0; rows == nullptr && index < tails.size(); ++index) {
    const std::string& tail = tails[index];
    rows = first_that([&](const DatedRows& file) { return file.rows.name == tail; });
    if (rows == nullptr) {
      rows = first_that([&](const DatedRows& file) { return without_number(file.rows.name) == tail; });
    }
  }
  for (std::size_t index = 0; rows == nullptr && index < tails.size(); ++index) {
    rows = first_that(
        [folded = folded_text(tails[index])](const DatedRows& file) { return file.folded_name == folded; });
  }
  return rows;
}

bool EarlierFiles::is_of_other(std::string_view name, std::int64_t day, const FileRows* but) const {
  const std::vector<DatedRows>* const alike = namesakes(name);
  const std::string folded = folded_text(name);
  return taken_names_.contains({day, folded}) ||
         (alike != nullptr && std::ranges::any_of(*alike, [&](const DatedRows& file) {
            return file.day == day && file.folded_name == folded &&
                   (but == nullptr || file.rows.first_ID != but->first_ID);
          }));
}

std::string EarlierFiles::name_for(const std::string& given, const FileRows* rows, double date) const {
  std::string name = given;
  for (int number = 2; is_of_other(name, day_of(date), rows); ++number) {
    name = number == 2 && rows != nullptr ? rows->name : numbered_name(given, number);
  }
  return name;
}

void EarlierFiles::take_out(const FileRows& rows, std::string_view name, double date) {
  taken_names_.emplace(day_of(date), folded_text(name));
  const auto alike = files_.find(key_of(rows.name));
  if (alike != files_.end()) {
    std::erase_if(alike->second, [&](const DatedRows& file) { return file.rows.first_ID == rows.first_ID; });
  }
}

std::set<double> stations_of_file_alone(const FileRows& rows, const std::string& line) {
  dao::Database& database = Module_database::open_survey().database;
  const std::string ID = format_number(rows.first_ID, "0");
  std::set<double> stations;
  dao::Recordset of_file = database.open_recordset(
      "SELECT DISTINCT Station,StationID FROM ReadingsDataTable WHERE FileID = " + ID +
      " AND LineNumber = " + dao::text_literal(line));
  for (; !of_file.eof(); of_file.move_next()) {
    const dao::Recordset others = database.open_recordset(
        "SELECT ID FROM ReadingsDataTable WHERE StationID = " +
        format_number(of_file.get_long("StationID"), "0") + " AND FileID > 0 AND FileID <> " + ID);
    if (others.eof()) {
      stations.insert(of_file.get_double("Station"));
    }
  }
  return stations;
}

}  // namespace Module_data_file
