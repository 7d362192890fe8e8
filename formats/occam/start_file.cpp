#include "formats/occam/start_file.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <stdexcept>
#include <string_view>

#include "core/number_text.h"
#include "core/text_fields.h"
#include "formats/occam/fortran_text.h"
#include "formats/occam/text_input.h"

namespace Module_occam {

namespace {

constexpr int value_column = 21;

using Take = void (*)(InversionStart& start, std::string_view value);

double number_of(std::string_view value) {
  std::string_view rest;
  const double number = numeric_value(trimmed(value), rest);
  const bool is_number = rest.size() < trimmed(value).size() &&
                         (rest.empty() || rest.front() == ' ' || rest.front() == '\t' || rest.front() == ',');
  if (!is_number || !std::isfinite(number)) {
    throw std::runtime_error("'" + std::string(trimmed(value)) + "' is not a number");
  }
  return number;
}

// Whole numbers are written as reals by some programs.
int whole(std::string_view value) { return integer_of(std::trunc(number_of(value))); }

void take_nothing(InversionStart& /*start*/, std::string_view /*value*/) {}

void check_format(InversionStart& /*start*/, std::string_view value) {
  if (upper_case(value).find("OCCAMITER") == std::string::npos) {
    throw std::runtime_error("'" + std::string(value) + "' is another kind of file");
  }
}

void take_limits(InversionStart& start, std::string_view value) {
  if (equal_ignoring_case(trimmed(value), "none")) {
    return;
  }
  const std::size_t comma = value.find(',');
  if (comma == std::string_view::npos) {
    throw std::runtime_error("'" + std::string(trimmed(value)) + "' is not MIN,MAX");
  }
  start.model_limits = {number_of(value.substr(0, comma)), number_of(value.substr(comma + 1))};
  if (!(start.model_limits->first < start.model_limits->second)) {
    throw std::runtime_error("the lower limit isn't below the upper one");
  }
}

void take_value_step(InversionStart& start, std::string_view value) {
  if (!equal_ignoring_case(trimmed(value), "none")) {
    start.model_value_step = number_of(value);
  }
}

struct Label {
  std::string_view text;
  Take take;
};

constexpr std::array<Label, 26> labels{
    {{"FORMAT", check_format},
     {"DESCRIPTION", [](InversionStart& s, std::string_view v) { s.description = v; }},
     {"MODEL FILE", [](InversionStart& s, std::string_view v) { s.model_file = v; }},
     {"DATA FILE", [](InversionStart& s, std::string_view v) { s.data_file = v; }},
     {"DATE/TIME", [](InversionStart& s, std::string_view v) { s.date = v; }},
     {"MAX ITER", [](InversionStart& s, std::string_view v) { s.iterations_to_run = whole(v); }},
     {"ITERATIONS TO RUN", [](InversionStart& s, std::string_view v) { s.iterations_to_run = whole(v); }},
     {"REQ TOL", [](InversionStart& s, std::string_view v) { s.target_rms = number_of(v); }},
     {"TARGET MISFIT", [](InversionStart& s, std::string_view v) { s.target_rms = number_of(v); }},
     {"IRUF", [](InversionStart& s, std::string_view v) { s.roughness_type = whole(v); }},
     {"ROUGHNESS TYPE", [](InversionStart& s, std::string_view v) { s.roughness_type = whole(v); }},
     {"DIAGONAL PENALTIES",
      [](InversionStart& s, std::string_view v) { s.diagonal_penalties = whole(v) != 0; }},
     {"STEPSIZE CUT COUNT", [](InversionStart& s, std::string_view v) { s.step_cut_count = whole(v); }},
     {"MODEL LIMITS", take_limits},
     {"MODEL VALUE STEPS", take_value_step},
     {"MODIFY ROUGHNESS", take_nothing},
     {"DEBUG LEVEL", [](InversionStart& s, std::string_view v) { s.debug_level = whole(v); }},
     {"ITERATION", [](InversionStart& s, std::string_view v) { s.iteration = whole(v); }},
     {"PMU", [](InversionStart& s, std::string_view v) { s.log10_multiplier = number_of(v); }},
     {"LAGRANGE VALUE", [](InversionStart& s, std::string_view v) { s.log10_multiplier = number_of(v); }},
     {"RLAST", [](InversionStart& s, std::string_view v) { s.roughness = number_of(v); }},
     {"ROUGHNESS VALUE", [](InversionStart& s, std::string_view v) { s.roughness = number_of(v); }},
     {"TLAST", [](InversionStart& s, std::string_view v) { s.rms = number_of(v); }},
     {"MISFIT VALUE", [](InversionStart& s, std::string_view v) { s.rms = number_of(v); }},
     {"IFFTOL", [](InversionStart& s, std::string_view v) { s.target_reached = whole(v) != 0; }},
     {"MISFIT REACHED", [](InversionStart& s, std::string_view v) { s.target_reached = whole(v) != 0; }}}};
constexpr std::array<std::string_view, 2> count_labels{"NO. PARMS", "PARAM COUNT"};

// What stands in a file may be anything; numbers of these sizes can be followed.
void check_ranges(const InversionStart& start) {
  constexpr int most = 1'000'000;
  constexpr int most_cuts = 50;  // a step of 2^-50 changes nothing
  const auto check = [](const char* what, int value, int highest) {
    if (value < 0 || value > highest) {
      throw std::runtime_error(std::string(what) + " is " + std::to_string(value) + ", not 0 to " +
                               std::to_string(highest));
    }
  };
  check("the number of iterations to run", start.iterations_to_run, most);
  check("the iteration's number", start.iteration, most);
  check("the stepsize cut count", start.step_cut_count, most_cuts);
  constexpr double most_decades = 100.0;  // of a multiplier
  if (std::abs(start.log10_multiplier) > most_decades) {
    throw std::runtime_error("the Lagrange value " + plain_text(start.log10_multiplier) +
                             " is no log10 of a multiplier");
  }
  if (start.model_value_step < 0.0) {
    throw std::runtime_error("the step of model values is " + plain_text(start.model_value_step));
  }
  if (start.model_file.empty() || start.data_file.empty()) {
    throw std::runtime_error(start.model_file.empty() ? "the file names no model file"
                                                      : "the file names no data file");
  }
}

bool is_comment(std::string_view line) { return line.starts_with('!') || line.starts_with('%'); }

[[noreturn]] void fail(const TextInput& input, const std::string& what) {
  throw std::runtime_error("line " + std::to_string(input.line_number()) + ": " + what);
}

void take_line(const TextInput& input, std::string_view label, std::string_view value,
               InversionStart& start) {
  for (const Label& known : labels) {
    if (equal_ignoring_case(known.text, label)) {
      try {
        known.take(start, value);
      } catch (const std::runtime_error& failure) {
        fail(input, failure.what());
      }
      return;
    }
  }
  fail(input, "the label '" + std::string(label) + "' is not known");
}

void read_parameters(TextInput& input, std::int64_t count, InversionStart& start) {
  constexpr std::int64_t most = 10'000'000;  // more take a damaged count for granted
  if (count < 0 || count > most) {
    fail(input, "there can't be " + std::to_string(count) + " parameters");
  }
  std::string_view line;
  while (static_cast<std::int64_t>(start.parameters.size()) < count) {
    if (!input.next(line)) {
      throw std::runtime_error("the file ends behind " + std::to_string(start.parameters.size()) + " of " +
                               std::to_string(count) + " parameters");
    }
    for (std::string_view item = next_token(line);
         !item.empty() && static_cast<std::int64_t>(start.parameters.size()) < count;
         item = next_token(line)) {
      const double number = numeric_value(item);
      if (!is_numeric(item) || !std::isfinite(number)) {
        fail(input, "'" + std::string(item) + "' is not a number");
      }
      start.parameters.push_back(number);
    }
  }
}

// Of the three values that an iteration leaves.
std::string general(double value) { return general_number(value, 7, 15); }

std::string labelled(std::string_view label, std::string_view value) {
  std::string line = std::string(label) + ":";
  line.resize(std::max<std::size_t>(line.size() + 1, value_column - 1), ' ');
  return line.append(value) + '\n';
}

// Three decimals as the public program writes it, more where the target has them.
std::string target_text(double target) {
  const std::string text = written_number(target, std::chars_format::fixed, 3, 6);
  return numeric_value(text) == target ? text : criterion_text(target);
}

std::string padded(int value, std::size_t width) {
  const std::string text = std::to_string(value);
  return text.size() < width ? pad_field(text, width) : text;
}

std::string numbered(std::string_view before, int iteration, std::string_view after) {
  return std::string(before) + format_number(iteration, "00") + std::string(after);
}

}  // namespace

InversionStart read_start_file(const std::string& path) {
  TextInput input(path);
  InversionStart start;
  std::string_view line;
  while (input.next(line)) {
    const std::string_view text = trimmed(line);
    if (text.empty() || is_comment(text)) {
      continue;
    }
    const std::size_t colon = text.find(':');
    if (colon == std::string_view::npos) {
      fail(input, "there is no label");
    }
    const std::string_view label = trimmed(text.substr(0, colon));
    const std::string_view value = trimmed(text.substr(colon + 1));
    if (std::ranges::any_of(count_labels,
                            [&](std::string_view each) { return equal_ignoring_case(each, label); })) {
      check_ranges(start);
      read_parameters(input, whole(value), start);
      return start;
    }
    take_line(input, label, value, start);
  }
  throw std::runtime_error("the file has no count of parameters");
}

std::string iteration_file_text(const InversionStart& state) {
  std::string text = labelled("Format", "OCCAMITER_FLEX") + labelled("Description", state.description) +
                     labelled("Model File", state.model_file) + labelled("Data File", state.data_file) +
                     labelled("Date/Time", state.date) +
                     labelled("Iterations to run", padded(state.iterations_to_run, 3)) +
                     labelled("Target Misfit", target_text(state.target_rms)) +
                     labelled("Roughness Type", padded(state.roughness_type, 3)) +
                     labelled("Diagonal Penalties", padded(state.diagonal_penalties ? 1 : 0, 1)) +
                     labelled("Stepsize Cut Count", padded(state.step_cut_count, 3));
  text += state.model_limits ? labelled("Model Limits", plain_text(state.model_limits->first) + "," +
                                                            plain_text(state.model_limits->second))
                             : labelled("!Model Limits", "none");
  text += state.model_value_step > 0.0 ? labelled("Model Value Steps", plain_text(state.model_value_step))
                                       : labelled("!Model Value Steps", "none");
  text += labelled("Debug Level", padded(state.debug_level, 3)) +
          labelled("Iteration", padded(state.iteration, 3)) +
          labelled("Lagrange Value", general(state.log10_multiplier)) +
          labelled("Roughness Value", general(state.roughness)) +
          labelled("Misfit Value", general(state.rms)) +
          labelled("Misfit Reached", padded(state.target_reached ? 1 : 0, 3)) +
          labelled("Param Count", padded(static_cast<int>(state.parameters.size()), 4));
  constexpr std::size_t on_a_line = 4;
  for (std::size_t parameter = 0; parameter < state.parameters.size(); ++parameter) {
    // Two digits more than the public program writes, so that an inversion goes on where it was.
    text += "  " + written_number(state.parameters[parameter], std::chars_format::general, 9, 15);
    if ((parameter + 1) % on_a_line == 0 || parameter + 1 == state.parameters.size()) {
      text += '\n';
    }
  }
  return text;
}

std::string iteration_file_name(int iteration) { return numbered("ITER", iteration, ".iter"); }
std::string response_name_of(int iteration) { return numbered("RESP", iteration, ".resp"); }

}  // namespace Module_occam
