#include "import/proposals/line_proposals.h"

#include <algorithm>
#include <filesystem>
#include <set>
#include <vector>

#include "core/number_text.h"
#include "core/text_fields.h"

namespace Module_data_file {

namespace {

constexpr std::string_view digits = "0123456789";
constexpr std::string_view letters = "NSEWnsew";
constexpr const char* by_survey = "the survey has these files on it";
constexpr const char* by_folder = "the digits of the folder's name";
constexpr const char* by_folders = "the digits of the folders' names";
constexpr const char* by_default = "the lowest hundred that the survey hasn't";

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
      folder = folders.insert(folders.end(), Folder{path, {}, {}});
    }
    take_earlier_line(file, survey, *folder);
  }
  return folders;
}

std::string lowest_free_line(const SurveyBefore& survey, const std::vector<Folder>& folders,
                             LineDirection direction) {
  constexpr int step = 100;
  for (int number = step;; number += step) {
    std::string line = plain_text(number) + (direction == LineDirection::local_east ? "E" : "N");
    if (!survey.has_line(line) && std::ranges::find(folders, line, &Folder::line) == folders.end()) {
      return line;
    }
  }
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
  const std::string free_line = lowest_free_line(survey, folders, choices.line_direction);
  std::vector<std::string> lines;
  choices.folder_lines.clear();
  for (Folder& folder : folders) {
    folder.line = folder.line.empty() ? free_line : folder.line;
    choices.folder_lines.push_back({folder.path, folder.line});
    if (std::ranges::find(lines, folder.line) == lines.end()) {
      lines.push_back(folder.line);
    }
  }
  DecodeRow& row = choices.decode[decode_line_number];
  row = {};
  if (lines.size() > 1) {
    LineProposal proposal{lines.front(), why_of(folders)};
    std::for_each(lines.begin() + 1, lines.end(),
                  [&](const std::string& line) { proposal.value += ", " + line; });
    return proposal;
  }
  choices.folder_lines.clear();
  row.specified = lines.empty() ? free_line : lines.front();
  return {row.specified, folders.empty() ? by_default : why_of(folders)};
}

}  // namespace Module_data_file
