#include "exchange/asked_lines.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "core/number_text.h"
#include "core/text_lists.h"
#include "core/user_interface.h"
#include "database/survey_lists.h"
#include "exchange/export_lists.h"

namespace Module_exchange {

namespace {

using Module_tensor::kinds_of_line;
using Module_tensor::LineChoice;

std::string kind_text(const LineChoice& kind) {
  return "reference type " + plain_text(kind.reference_type) + " with dipole " + plain_text(kind.dipole);
}

std::string listed(const std::vector<LineChoice>& kinds) {
  std::vector<std::string> texts;
  std::ranges::transform(kinds, std::back_inserter(texts), kind_text);
  return listed_first(texts);
}

bool is_asked(const AskedLines& asked, const LineChoice& kind) {
  return (!asked.reference_type || *asked.reference_type == kind.reference_type) &&
         (!asked.dipole || *asked.dipole == kind.dipole);
}

std::string needed_readings(LineKinds wanted) {
  return wanted == LineKinds::one ? "readings of a tensor element" : "readings";
}

/// The one kind of a line's curves that is asked for; none after a message.
std::optional<LineChoice> chosen_kind(const AskedLines& asked, const std::string& line,
                                      const std::vector<LineChoice>& kinds, LineKinds wanted) {
  std::vector<LineChoice> fitting;
  std::ranges::copy_if(kinds, std::back_inserter(fitting),
                       [&](const LineChoice& kind) { return is_asked(asked, kind); });
  if (fitting.size() == 1 || (wanted == LineKinds::first && !fitting.empty())) {
    return fitting.front();
  }
  const std::string has = "Line " + line + " has " + listed(kinds);
  user_interface().show_message(kinds.empty()     ? "Line " + line + " has no " + needed_readings(wanted)
                                : fitting.empty() ? has + ", not what " + asked.option_names + " ask for"
                                                  : has + "; choose with " + asked.option_names);
  return std::nullopt;
}

/// The lines that are named, all without a name; none after a message.
std::vector<std::string> named_lines(const AskedLines& asked) {
  std::vector<std::string> lines = Module_database::listed_lines();
  if (lines.empty()) {
    user_interface().show_message("The survey has no lines");
    return {};
  }
  if (asked.lines.empty()) {
    return lines;
  }
  std::vector<std::string> named;
  for (const std::string& name : asked.lines) {
    const std::string line = Module_database::spelled_line(name);
    if (std::ranges::find(lines, line) == lines.end()) {
      user_interface().show_message("The survey has no line " + name + "; it has " + listed_first(lines));
      return {};
    }
    if (std::ranges::find(named, line) == named.end()) {
      named.push_back(line);
    }
  }
  return named;
}

std::vector<LineChoice> kinds_of(const std::string& line, LineKinds wanted) {
  return wanted == LineKinds::one ? kinds_of_line(line) : all_kinds_of_line(line);
}

}  // namespace

LineKinds line_kinds(ExportFormat format) {
  return is_map(format)                ? LineKinds::first
         : format == ExportFormat::csv ? LineKinds::one_of_any
                                       : LineKinds::one;
}

std::vector<LineChoice> choose_lines(const AskedLines& asked, LineKinds wanted) {
  std::vector<LineChoice> choices;
  const std::vector<std::string> lines = named_lines(asked);
  std::vector<std::string> left_out;
  for (const std::string& line : lines) {
    const std::vector<LineChoice> kinds = kinds_of(line, wanted);
    if (kinds.empty() && asked.lines.empty()) {
      left_out.push_back(line);
      continue;
    }
    auto kind = chosen_kind(asked, line, kinds, wanted);
    if (!kind) {
      return {};
    }
    choices.push_back(*std::move(kind));
  }
  if (choices.empty() && !lines.empty()) {
    user_interface().show_message("No line of the survey has " + needed_readings(wanted));
  } else if (!left_out.empty()) {
    user_interface().show_message("Left out, as they have no " + needed_readings(wanted) + ": " +
                                  listed_first(left_out));
  }
  return choices;
}

}  // namespace Module_exchange
