#include "import/proposals/line_proposals.h"

#include <algorithm>
#include <filesystem>
#include <iterator>
#include <map>
#include <set>
#include <vector>

#include "core/number_text.h"
#include "core/text_fields.h"
#include "import/file_decode.h"
#include "import/file_formats.h"
#include "import/proposals/line_places.h"
#include "import/proposals/site_stations.h"

namespace Module_data_file {

namespace {

constexpr std::string_view digits = "0123456789";
constexpr std::string_view letters = "NSEWnsew";
constexpr const char* by_survey = "the survey has these files on it";
constexpr const char* by_folder = "the digits of the folder's name";
constexpr const char* by_folders = "the digits of the folders' names";
constexpr const char* by_default = "the lowest hundred that the survey hasn't";
constexpr const char* by_files = "the digits of the files' names, as the tables have stations in common";
constexpr const char* by_tables = "tables in one folder that have stations in common at other places";

bool is_letter(char byte) {
  return (byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z') ||
         static_cast<unsigned char>(byte) > 0x7F;
}

// A folder whose files take the line of the import.
struct Folder {
  std::string path;
  std::set<std::string> in_survey;  // the lines of its files that were imported before; "": more than one
  std::string line;
  const char* why = by_default;
  std::vector<const ScannedFile*> tables;  // of stations without lines of their own
  bool has_others = false;                 // other files
};

void take_earlier_line(const ScannedFile& file, SurveyBefore& survey, Folder& folder) {
  const std::string name = text_from_field_file(std::filesystem::path(file.path).filename().string());
  if (const FileRows* const rows = survey.rows_of(file.path, name, file.DateCollected)) {
    folder.in_survey.insert(survey.line_of(*rows));
  }
}

std::vector<Folder> folders_of(std::span<const ScannedFile> files, SurveyBefore& survey) {
  std::vector<Folder> folders;
  for (const ScannedFile& file : files) {
    if (!file.failure.empty() || file.holds_lines()) {
      continue;
    }
    const std::string path = folder_of(file.path);
    auto folder = std::ranges::find(folders, path, &Folder::path);
    if (folder == folders.end()) {
      folder = folders.insert(folders.end(), Folder());
      folder->path = path;
    }
    take_earlier_line(file, survey, *folder);
    if (is_station_table(file.format)) {
      folder->tables.push_back(&file);
    } else {
      folder->has_others = true;
    }
  }
  return folders;
}

std::string lowest_free_line(const SurveyBefore& survey, const std::set<std::string>& taken,
                             LineDirection direction) {
  constexpr int step = 100;
  for (int number = step;; number += step) {
    std::string line = plain_text(number) + (direction == LineDirection::local_east ? "E" : "N");
    if (!survey.has_line(line) && !taken.contains(line)) {
      return line;
    }
  }
}

// What the tables of a folder have in common, of the stations that take the line of the import.
struct InCommon {
  bool any = false;
  bool apart = false;  // one of these stations is at two places
};

InCommon common_stations(const std::vector<const ScannedFile*>& tables, const PlaceMap& map) {
  InCommon common;
  std::map<double, std::pair<const ScannedFile*, const OwnStation*>> firsts;
  for (const ScannedFile* const table : tables) {
    for (const OwnStation& own : table->own_stations) {
      if (!own.line.empty()) {
        continue;
      }
      const auto& [file, first] = firsts.try_emplace(own.station, table, &own).first->second;
      if (file != table) {
        const std::optional<double> metres = metres_between(*first, own, map);
        common.any = true;
        common.apart = common.apart || (metres && *metres > same_place);
      }
    }
  }
  return common;
}

// The lines that the names of files tell; empty unless each tells another one.
std::vector<std::string> lines_in_names(const std::vector<const ScannedFile*>& tables,
                                        LineDirection direction) {
  std::vector<std::string> lines;
  for (const ScannedFile* const table : tables) {
    const auto line = line_in_name(std::filesystem::path(table->path).stem().string(), direction);
    if (!line || std::ranges::find(lines, *line) != lines.end()) {
      return {};
    }
    lines.push_back(*line);
  }
  return lines;
}

// Gives each table of a folder a line of its own where one line would put two stations on one. Tables without
// places may be of one line, unless their names say otherwise.
void part_tables(const SurveyBefore& survey, const PlaceMap& map, LineDirection direction,
                 std::set<std::string>& taken, Folder& folder, std::vector<FolderLine>& lines) {
  if (folder.tables.size() < 2 || folder.why == by_survey) {
    return;
  }
  const InCommon common = common_stations(folder.tables, map);
  if (!common.any) {
    return;
  }
  std::vector<std::string> of_tables = lines_in_names(folder.tables, direction);
  folder.why = of_tables.empty() && !common.apart ? folder.why : of_tables.empty() ? by_tables : by_files;
  if (of_tables.empty() && common.apart) {
    of_tables.push_back(folder.line);
    while (of_tables.size() < folder.tables.size()) {
      of_tables.push_back(lowest_free_line(survey, taken, direction));
      taken.insert(of_tables.back());
    }
  }
  for (std::size_t index = 0; index < of_tables.size(); ++index) {
    lines.push_back({settled_file(folder.tables[index]->path), of_tables[index]});
  }
}

PlaceMap map_of(std::span<const ScannedFile> files, const SurveyBefore& survey) {
  std::vector<numerics::geodesy::GeographicPlace> places;
  for (const ScannedFile& file : files) {
    if (const auto& place = file.place ? file.place : file.first_place) {
      places.push_back(*place);
    }
  }
  return {places, survey.projection()};
}

void find_line(LineDirection direction, Folder& folder) {
  if (folder.in_survey.size() == 1 && !folder.in_survey.begin()->empty()) {
    folder.line = *folder.in_survey.begin();
    folder.why = by_survey;
  } else if (const std::optional<std::string> line =
                 line_in_name(std::filesystem::path(folder.path).filename().string(), direction)) {
    folder.line = *line;
    folder.why = by_folder;
  }
}

std::string why_of(const std::vector<Folder>& folders) {
  std::vector<std::string> reasons;
  for (const Folder& folder : folders) {
    const std::string why = folder.why == by_folder && folders.size() > 1 ? by_folders : folder.why;
    if (std::ranges::find(reasons, why) == reasons.end()) {
      reasons.push_back(why);
    }
  }
  std::string text = reasons.front();
  for (std::size_t index = 1; index < reasons.size(); ++index) {
    text += "; " + reasons[index];
  }
  return text;
}

// Sets what is proposed: of one line that it is the specified one.
LineProposal take_lines(const std::vector<FolderLine>& proposed, const std::string& free_line,
                        const std::vector<Folder>& folders, ImportChoices& choices) {
  std::vector<std::string> lines;
  for (const FolderLine& each : proposed) {
    if (std::ranges::find(lines, each.line) == lines.end()) {
      lines.push_back(each.line);
    }
  }
  DecodeRow& row = choices.decode[decode_line_number];
  row = {};
  choices.folder_lines.clear();
  if (lines.size() > 1) {
    choices.folder_lines = proposed;
    LineProposal proposal{lines.front(), why_of(folders)};
    std::for_each(lines.begin() + 1, lines.end(),
                  [&](const std::string& line) { proposal.value += ", " + line; });
    return proposal;
  }
  row.specified = lines.empty() ? free_line : lines.front();
  return {row.specified, folders.empty() ? by_default : why_of(folders)};
}

}  // namespace

std::optional<std::string> line_in_name(std::string_view folder_name, LineDirection direction) {
  std::string_view last;
  std::string_view with_letter;
  for (std::size_t start = folder_name.find_first_of(digits); start != std::string_view::npos;) {
    const std::size_t end = std::min(folder_name.find_first_not_of(digits, start), folder_name.size());
    last = folder_name.substr(start, end - start);
    const bool has_letter =
        end < folder_name.size() && letters.find(folder_name[end]) != std::string_view::npos;
    if (has_letter && (end + 1 == folder_name.size() || !is_letter(folder_name[end + 1]))) {
      with_letter = folder_name.substr(start, end + 1 - start);
    }
    start = folder_name.find_first_of(digits, end);
  }
  double number = 0.0;
  std::string line;
  if (last.empty() ||
      decode_line(ShowFault::no, with_letter.empty() ? last : with_letter, direction, number, line) != 0) {
    return std::nullopt;
  }
  constexpr std::size_t longest_line = 32;  // characters of the column
  return line.size() > longest_line ? std::nullopt : std::optional(line);
}

LineProposal propose_lines(std::span<const ScannedFile> files, SurveyBefore& survey, ImportChoices& choices) {
  std::vector<Folder> folders = folders_of(files, survey);
  std::ranges::for_each(folders, [&](Folder& folder) { find_line(choices.line_direction, folder); });
  std::set<std::string> taken;
  std::ranges::transform(folders, std::inserter(taken, taken.end()), &Folder::line);
  const std::string free_line = lowest_free_line(survey, taken, choices.line_direction);
  if (taken.contains({})) {
    taken.insert(free_line);  // a folder without a line has it
  }
  const PlaceMap map = map_of(files, survey);
  std::vector<FolderLine> proposed;
  for (Folder& folder : folders) {
    folder.line = folder.line.empty() ? free_line : folder.line;
    const std::size_t before = proposed.size();
    part_tables(survey, map, choices.line_direction, taken, folder, proposed);
    if (proposed.size() < before + folder.tables.size() || folder.has_others) {
      proposed.push_back({folder.path, folder.line});
    }
  }
  return take_lines(proposed, free_line, folders, choices);
}

}  // namespace Module_data_file
