#include "formats/occam/text_input.h"

#include <cctype>
#include <cmath>
#include <limits>

#include "core/number_text.h"
#include "core/text_fields.h"

namespace Module_occam {

namespace {

// A file that is called "mesh" isn't named by "the mesh has no cells".
bool is_named(std::string_view what, std::string_view file) {
  const std::size_t place = what.find(file);
  return place != std::string_view::npos && (place == 0 || what[place - 1] == '/' || what[place - 1] == '\\');
}

}  // namespace

FileFault::FileFault(const std::string& file, const std::string& what)
    : std::runtime_error(is_named(what, file) ? what : file + ": " + what) {}

bool TextInput::next(std::string_view& line) {
  const bool found = lines_.next(line);
  if (lines_.nul_bytes() > 0) {
    throw std::runtime_error("the file holds bytes that are 0, as a failing disk or transfer leaves them");
  }
  return found;
}

std::string_view TextInput::line() {
  std::string_view line;
  if (!next(line)) {
    throw std::runtime_error("the file ends behind line " + std::to_string(line_number()));
  }
  return line;
}

std::string_view TextInput::filled_line() {
  const std::string_view text = line();
  if (trimmed(text).empty()) {
    throw EmptyLine();
  }
  return text;
}

namespace {

template <class Number>
int read_list(TextInput& input, std::int64_t count, std::vector<double>& values, const Number& number_of) {
  std::string_view line;
  while (count > 0) {
    if (!input.next(line)) {
      return -1;
    }
    for (std::string_view item = next_token(line); !item.empty() && count > 0; item = next_token(line)) {
      values.push_back(number_of(item));
      --count;
    }
  }
  return 0;
}

}  // namespace

int read_value_list(TextInput& input, std::int64_t count, std::vector<double>& values) {
  return read_list(input, count, values, [](std::string_view item) { return numeric_value(item); });
}

int read_number_list(TextInput& input, std::int64_t count, std::vector<double>& values) {
  return read_list(input, count, values, [&input](std::string_view item) {
    const double number = numeric_value(item);
    if (!is_numeric(item) || !std::isfinite(number)) {
      throw std::runtime_error("line " + std::to_string(input.line_number()) + ": '" + std::string(item) +
                               "' is not a number");
    }
    return number;
  });
}

int integer_of(double value) {
  // Negated so that a value that is no number is refused, too.
  if (!(value >= std::numeric_limits<int>::min() && value <= std::numeric_limits<int>::max())) {
    throw std::runtime_error(plain_text(value) + " is too large for a count");
  }
  return static_cast<int>(value);
}

namespace {

// "2O" is no 2: a letter that looks like a digit would make another count of it.
void refuse_half_number(std::string_view text, std::string_view rest) {
  const bool begins_as_number = rest.size() < text.size();
  if (begins_as_number && !rest.empty() && std::isalnum(static_cast<unsigned char>(rest.front())) != 0) {
    throw std::runtime_error("'" + std::string(trimmed(text)) + "' is no whole number");
  }
}

}  // namespace

int integer_value(std::string_view text) {
  std::string_view rest;
  const double number = numeric_value(text, rest);
  refuse_half_number(text, rest);
  return integer_of(number);
}

double strict_number(std::string_view text) {
  std::string_view rest;
  const double number = numeric_value(text, rest);
  if (rest.size() == text.size() || !std::isfinite(number)) {
    throw std::runtime_error("'" + std::string(text) + "' is not a number");
  }
  return number;
}

int strict_integer(std::string_view text) {
  static_cast<void>(strict_number(text));
  return integer_value(text);
}

std::string_view behind_colon(std::string_view line) {
  const std::size_t colon = line.find(':');
  return trimmed(colon == std::string_view::npos ? line : line.substr(colon + 1));
}

std::string_view from_column(std::string_view line, std::size_t column) {
  return line.size() < column ? std::string_view{} : trimmed(line.substr(column - 1));
}

}  // namespace Module_occam
