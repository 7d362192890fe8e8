// line_proposals.h: the lines that files come to by the names of their folders.
#pragma once
#include <optional>
#include <span>
#include <string>

#include "import/import_choices.h"
#include "import/proposals/scanned_file.h"
#include "import/proposals/survey_before.h"

namespace Module_data_file {

/// The line that a folder's name tells: its last run of digits with a letter of NSEW right behind it, else
/// its last run of digits, in the normal form ("line_0200s" is 200S, "survey3" is 3E). None without digits.
std::optional<std::string> line_in_name(std::string_view folder_name, LineDirection direction);

struct LineProposal {
  std::string value;  // "100E, 200E"
  std::string why;
};

/// Sets the line, or that of each folder, in the choices: the one that the folder's files are on in the
/// survey; else the one of its name; else the lowest whole hundred, east or north by line_direction, that the
/// survey hasn't. Lines count in metres, so that hundreds leave room between them.
LineProposal propose_lines(std::span<const ScannedFile> files, SurveyBefore& survey, ImportChoices& choices);

}  // namespace Module_data_file
