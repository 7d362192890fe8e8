#include "formats/occam/shift_file.h"

#include <stdexcept>

#include "core/number_text.h"
#include "formats/occam/table_input.h"

namespace Module_occam {

std::string shift_file_name(int iteration) { return "SHIFT" + format_number(iteration, "00") + ".shift"; }

namespace {

ShiftConstraint constraint_of(std::string_view line) {
  const int type = strict_integer(behind_colon(line));
  if (type < 0 || type > static_cast<int>(ShiftConstraint::sum_of_each_mode)) {
    throw std::runtime_error("the static shifts have a constraint of type " + std::to_string(type) +
                             "; the types are 0, 1 and 2");
  }
  return static_cast<ShiftConstraint>(type);
}

StaticsFile read_shifts(const std::string& path) {
  TextInput input(path);
  if (input.filled_line().find("OCCAM2MTSHIFT_1.0") == std::string_view::npos) {
    throw std::runtime_error("The file does not have the correct format");
  }
  input.line();  // two free ones
  input.line();
  StaticsFile statics;
  statics.constraint = constraint_of(input.line());
  statics.constraint_error = strict_number(behind_colon(input.line()));
  const int count = strict_integer(behind_colon(input.line()));
  if (count < 0) {
    throw std::runtime_error("the file has " + std::to_string(count) + " static shifts");
  }
  input.line();  // the label of the rows
  while (static_cast<int>(statics.shifts.size()) < count) {
    Row<4> items{};  // site, data type, shift, whether it is free
    if (!read_row(input, items, read_number_list)) {
      throw std::runtime_error("the file ends behind " + std::to_string(statics.shifts.size()) + " of " +
                               std::to_string(count) + " static shifts");
    }
    statics.shifts.push_back(
        {integer_of(items[0]), integer_of(items[1]), items[2], integer_of(items[3]) != 0});
  }
  return statics;
}

}  // namespace

std::string shift_file_text(const StaticsFile& statics) {
  std::string text =
      "FORMAT:           OCCAM2MTSHIFT_1.0\nDESCRIPTION:      \nDATE/TIME:        \nCONSTRAINT TYPE:  " +
      std::to_string(static_cast<int>(statics.constraint)) +
      "\nCONSTRAINT ERROR: " + criterion_text(statics.constraint_error) +
      "\nNO. SHIFTS:       " + std::to_string(statics.shifts.size()) + "\nSITE, DATA TYPE, SHIFT, FREE\n";
  for (const StaticShift& shift : statics.shifts) {
    text += "  " + std::to_string(shift.site_number) + "  " + std::to_string(shift.data_type) + "  " +
            format_number(shift.shift, "0.000000000") + (shift.is_free ? "  1\n" : "  0\n");
  }
  return text;
}

StaticsFile read_shift_file(const std::string& path) {
  return read_named_file(path, [&path] { return read_shifts(path); });
}

}  // namespace Module_occam
