#include "formats/occam/iteration_file.h"

#include <stdexcept>

#include "core/number_text.h"
#include "core/text_fields.h"
#include "formats/occam/text_input.h"

namespace Module_occam {

namespace {

constexpr std::string_view line_end = "\r\n";
constexpr std::size_t value_column = 19;
constexpr std::size_t value_width = 15;
constexpr std::size_t full_line = 60;  // a line of values ends once it is this long
constexpr int flex_lines = 4;          // only in the FLEX form

void add_line(std::string& text, std::string_view label, std::string_view value) {
  text.append(label).append(value).append(line_end);
}

void add_parameters(std::string& text, int count, const std::string& value) {
  std::string line;
  for (int parameter = 0; parameter < count; ++parameter) {
    line += value;
    if (line.size() >= full_line || parameter + 1 == count) {
      add_line(text, line, {});
      line.clear();
    }
  }
}

/// The word after the first "_" of the format line; without a "_", the text in the value's column.
std::string_view format_word(std::string_view line) {
  const std::size_t underscore = line.find('_');
  return underscore == std::string_view::npos ? from_column(line, value_column)
                                              : trimmed(line.substr(underscore + 1));
}

int read_integer(TextInput& input) { return integer_value(from_column(input.filled_line(), value_column)); }

double read_number(TextInput& input) { return numeric_value(from_column(input.filled_line(), value_column)); }

/// A file without a number is none of an iteration: counted as 0 it would take the place of the model that
/// the inversion began with.
int read_iteration_number(TextInput& input) {
  const std::string_view text = from_column(input.filled_line(), value_column);
  if (!is_numeric(text)) {
    throw std::runtime_error("line " + std::to_string(input.line_number()) + ": '" + std::string(text) +
                             "' is not the number of an iteration");
  }
  return integer_value(text);
}

void skip_filled_lines(TextInput& input, int count) {
  for (int line = 0; line < count; ++line) {
    input.filled_line();
  }
}

OccamIteration read_head(TextInput& input) {
  OccamIteration iteration;
  const bool flex = format_word(input.filled_line()) == "FLEX";
  skip_filled_lines(input, 1);  // description
  iteration.model_file = from_column(input.filled_line(), value_column);
  iteration.data_file = from_column(input.filled_line(), value_column);
  skip_filled_lines(input, 4);  // date, iterations to run, target misfit, kind of roughness
  for (int line = 0; flex && line < flex_lines; ++line) {
    input.line();
  }
  iteration.debug_level = read_integer(input);
  iteration.number = read_iteration_number(input);
  iteration.PMU = read_number(input);
  iteration.RLAST = read_number(input);
  iteration.TLAST = read_number(input);
  skip_filled_lines(input, 1);  // whether the misfit was reached
  iteration.parameter_count = read_integer(input);
  if (iteration.parameter_count < 0) {
    throw std::runtime_error("the number of parameters is " + std::to_string(iteration.parameter_count));
  }
  return iteration;
}

}  // namespace

std::string start_file_text(const StartFile& start) {
  std::string text;
  add_line(text, "FORMAT:           ", "OCCAMITER_1.0");
  add_line(text, "DESCRIPTION:      ", trimmed(start.description));
  add_line(text, "MODEL FILE:       ", trimmed(start.model_file));
  add_line(text, "DATA FILE:        ", trimmed(start.data_file));
  add_line(text, "DATE/TIME:        ", start.date);
  add_line(text, "MAX ITER:         ", trimmed(start.max_iterations));
  add_line(text, "REQ TOL:          ", trimmed(start.target_rms));
  add_line(text, "IRUF:             ", "1");
  add_line(text, "DEBUG LEVEL:      ", "1");
  add_line(text, "ITERATION:        ", "0");
  add_line(text, "PMU:              ", "5.0");
  add_line(text, "RLAST:            ", "1.e+07");
  add_line(text, "TLAST:            ", "100");
  add_line(text, "IFFTOL:           ", "0");
  add_line(text, "NO. PARMS:        ", std::to_string(start.parameter_count));
  add_parameters(text, start.parameter_count,
                 pad_field(format_number(start.initial_resistivity, "0.0000"), value_width));
  return text;
}

OccamIteration read_iteration_file(IterationParts parts, const std::string& path) {
  TextInput input(path);
  OccamIteration iteration = read_head(input);
  if (parts == IterationParts::with_parameters &&
      read_value_list(input, iteration.parameter_count, iteration.parameters) != 0) {
    throw std::runtime_error("the file ends behind " + std::to_string(iteration.parameters.size()) + " of " +
                             std::to_string(iteration.parameter_count) + " parameters");
  }
  return iteration;
}

ControlFile read_control_file(const std::string& path) {
  TextInput input(path);
  const std::string_view format = input.filled_line();
  if (format.find("OCCAMITER_1.0") == std::string_view::npos &&
      format.find("OCCAMITER_FLEX") == std::string_view::npos) {
    throw Refusal("The file does not have the correct format");
  }
  input.filled_line();  // description
  ControlFile names;
  names.model_file = behind_colon(input.filled_line());
  names.data_file = behind_colon(input.filled_line());
  return names;
}

}  // namespace Module_occam
