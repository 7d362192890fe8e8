#include "batch/line_options.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "batch/command.h"
#include "batch/reading_option.h"
#include "core/number_text.h"
#include "core/text_fields.h"
#include "core/user_interface.h"
#include "database/survey_lists.h"

namespace Batch {

namespace {

using Module_tensor::kinds_of_line;
using Module_tensor::LineChoice;

/// "0 and 1", "50, 100 and 200"
std::string listed(const std::vector<std::string>& texts) {
  std::string list;
  for (std::size_t index = 0; index < texts.size(); ++index) {
    const bool is_last = index + 1 == texts.size();
    list += (index == 0 ? "" : is_last ? " and " : ", ") + texts[index];
  }
  return list;
}

std::string kind_text(const LineChoice& kind) {
  return "reference type " + plain_text(kind.reference_type) + " with dipole " + plain_text(kind.dipole);
}

std::string listed(const std::vector<LineChoice>& kinds) {
  std::vector<std::string> texts;
  for (const LineChoice& kind : kinds) {
    texts.push_back(kind_text(kind));
  }
  return listed(texts);
}

bool is_asked(const LineOptions& options, const LineChoice& kind) {
  return (!options.reference_type || *options.reference_type == kind.reference_type) &&
         (!options.dipole || *options.dipole == kind.dipole);
}

/// The one kind of a line's curves that the options choose; none after a message.
std::optional<LineChoice> chosen_kind(const LineOptions& options, const std::string& line,
                                      const std::vector<LineChoice>& kinds) {
  std::vector<LineChoice> asked;
  std::ranges::copy_if(kinds, std::back_inserter(asked),
                       [&](const LineChoice& kind) { return is_asked(options, kind); });
  if (asked.size() == 1) {
    return asked.front();
  }
  const std::string has = "Line " + line + " has " + listed(kinds);
  user_interface().show_message(kinds.empty()   ? "Line " + line + " has no readings of a tensor element"
                                : asked.empty() ? has + ", not what --reference and --dipole ask for"
                                                : has + "; choose with --reference and --dipole");
  return std::nullopt;
}

/// The lines that the options name; none after a message.
std::vector<std::string> chosen_lines(const LineOptions& options) {
  const std::vector<std::string> lines = Module_database::listed_lines();
  const std::string named = Module_database::spelled_line(options.line);
  if (lines.empty()) {
    user_interface().show_message("The survey has no lines");
  } else if (options.line.empty()) {
    return lines;
  } else if (std::ranges::find(lines, named) != lines.end()) {
    return {named};
  } else {
    user_interface().show_message("The survey has no line " + options.line + "; it has " + listed(lines));
  }
  return {};
}

/// Of all lines, those without such readings are left out.
std::vector<LineChoice> chosen(const LineOptions& options) {
  std::vector<LineChoice> choices;
  const std::vector<std::string> lines = chosen_lines(options);
  for (const std::string& line : lines) {
    const std::vector<LineChoice> kinds = kinds_of_line(line);
    if (kinds.empty() && options.line.empty()) {
      continue;
    }
    auto kind = chosen_kind(options, line, kinds);
    if (!kind) {
      return {};
    }
    choices.push_back(*std::move(kind));
  }
  if (choices.empty() && !lines.empty()) {
    user_interface().show_message("No line of the survey has readings of a tensor element");
  }
  return choices;
}

}  // namespace

void add_line_options(Parser& parser, LineOptions& options, LineIs line) {
  add_survey_argument(parser, options.survey);
  const bool is_required = line == LineIs::required;
  Option line_option = parser.add_option(
      "--line", options.line, is_required ? "survey line, as 200E" : "survey line, as 200E; left out: all");
  line_option.checked([](const std::string& text) {
    return trimmed(text).empty() ? std::string("the line has no name") : std::string();
  });
  if (is_required) {
    line_option.required();
  }
  parser
      .add_option("--reference", options.reference_type,
                  std::string(reference_types_help) + "; may be left out if the line has one")
      .in_range(0, last_reference_type);
  parser.add_option("--dipole", options.dipole, "dipole length, m; may be left out if the line has one");
}

int with_lines(const LineOptions& options, const std::function<int(const std::vector<LineChoice>&)>& work) {
  bool wrong_usage = false;
  const int status = with_open_survey(options.survey, [&] {
    const std::vector<LineChoice> choices = chosen(options);
    const int worked = choices.empty() ? status_wrong_usage : work(choices);
    wrong_usage = worked == status_wrong_usage;
    return worked;
  });
  return wrong_usage ? status_wrong_usage : status;
}

int with_line(const LineOptions& options, const std::function<int(const LineChoice&)>& work) {
  return with_lines(options, [&](const std::vector<LineChoice>& choices) { return work(choices.front()); });
}

}  // namespace Batch
