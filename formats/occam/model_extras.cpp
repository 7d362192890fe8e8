#include "formats/occam/model_extras.h"

#include <array>
#include <cmath>
#include <cstdlib>
#include <stdexcept>

#include "core/number_text.h"
#include "core/text_fields.h"
#include "formats/occam/model_file.h"
#include "formats/occam/text_input.h"

namespace Module_occam {

namespace {

constexpr std::string_view exceptions_label = "EXCEPTIONS";

// Numbers one after the other, over as many lines as they take.
std::vector<double> numbers(TextInput& input, std::size_t count, const std::string& what) {
  std::vector<double> values;
  if (read_number_list(input, static_cast<std::int64_t>(count), values) != 0) {
    throw std::runtime_error("the file ends in its " + what);
  }
  return values;
}

// The line that ends the blocks: "NO. EXCEPTIONS: 2". Name and description of the model are free texts.
int exception_count(TextInput& input) {
  constexpr int lines_before_layers = 9;
  for (int head = 0; head < lines_before_layers; ++head) {
    input.line();
  }
  std::string_view line;
  while (input.next(line)) {
    if (const std::size_t label = upper_case(line).find(exceptions_label); label != std::string::npos) {
      const std::string_view value = trimmed(line.substr(label + exceptions_label.size()));
      return strict_integer(value.starts_with(':') ? trimmed(value.substr(1)) : value);
    }
  }
  throw std::runtime_error("the file has no count of exceptions");
}

std::vector<LinkException> read_exceptions(const std::string& path) {
  TextInput input(path);
  const int count = exception_count(input);
  std::vector<LinkException> exceptions;
  for (int number = 0; number < std::abs(count); ++number) {
    if (count < 0) {
      const std::vector<double> row = numbers(input, 3, "exceptions");
      exceptions.push_back({integer_of(row[0]), integer_of(row[1]), row[2]});
    } else {
      const std::vector<double> row = numbers(input, 5, "exceptions");
      exceptions.push_back({BlockPlace{integer_of(row[0]), integer_of(row[1])},
                            BlockPlace{integer_of(row[2]), integer_of(row[3])}, row[4]});
    }
  }
  return exceptions;
}

std::vector<PrejudiceValue> read_prejudices(const std::string& path) {
  TextInput input(path);
  const std::string marker = upper_case(input.filled_line());
  const bool listed = marker.find("OCCAM2MTPREJ_2.0") != std::string::npos;
  if (!listed && marker.find("OCCAM2MTPREJ_1.0") == std::string::npos) {
    throw std::runtime_error("the prejudice file does not have the correct format");
  }
  const int count = strict_integer(behind_colon(input.filled_line()));
  if (count < 0) {
    throw std::runtime_error("the prejudice file has " + std::to_string(count) + " values");
  }
  const auto rows = static_cast<std::size_t>(count);
  const std::vector<double> values = numbers(input, rows * (listed ? 3 : 2), "prejudices");
  std::vector<PrejudiceValue> prejudices;
  for (std::size_t row = 0; row < rows; ++row) {
    prejudices.push_back(
        listed ? PrejudiceValue{integer_of(values[3 * row]), values[3 * row + 1], values[3 * row + 2]}
               : PrejudiceValue{static_cast<int>(row) + 1, values[row], values[rows + row]});
  }
  return prejudices;
}

}  // namespace

ModelExtras read_model_extras(const std::filesystem::path& run_folder, const std::string& name) {
  const std::string path = (run_folder / name).string();
  ModelExtras extras;
  extras.exceptions = read_exceptions(path);
  if (const std::string prejudice_file = read_model_names(path).prejudice_file; !prejudice_file.empty()) {
    const std::string file = (run_folder / prejudice_file).string();
    extras.prejudices = read_named_file(file, [&file] { return read_prejudices(file); });
  }
  return extras;
}

}  // namespace Module_occam
