#include "formats/occam/shift_file.h"

#include <stdexcept>

#include "core/number_text.h"
#include "formats/occam/table_input.h"

namespace Module_occam {

std::string shift_file_text(const std::vector<StaticShift>& shifts) {
  std::string text =
      "FORMAT:           OCCAM2MTSHIFT_1.0\nDESCRIPTION:      \nDATE/TIME:        \nCONSTRAINT TYPE:  0\n"
      "CONSTRAINT ERROR: 0.0\nNO. SHIFTS:       " +
      std::to_string(shifts.size()) + "\nSITE, DATA TYPE, SHIFT, FREE\n";
  for (const StaticShift& shift : shifts) {
    text += "  " + std::to_string(shift.site_number) + "  " + std::to_string(shift.data_type) + "  " +
            format_number(shift.shift, "0.00000") + (shift.is_free ? "  1\n" : "  0\n");
  }
  return text;
}

std::vector<StaticShift> read_shift_file(const std::string& path) {
  TextInput input(path);
  if (input.filled_line().find("OCCAM2MTSHIFT_1.0") == std::string_view::npos) {
    throw Refusal("The file does not have the correct format");
  }
  constexpr int lines_before_count = 4;  // two free ones, the kind of constraint, its error
  for (int line = 0; line < lines_before_count; ++line) {
    input.line();
  }
  const int count = integer_value(behind_colon(input.line()));
  input.line();  // the label of the rows
  std::vector<StaticShift> shifts;
  while (static_cast<int>(shifts.size()) < count) {
    Row<4> items{};  // site, data type, shift, whether it is free
    if (!read_row(input, items)) {
      throw std::runtime_error(path + " ends behind " + std::to_string(shifts.size()) + " of " +
                               std::to_string(count) + " static shifts");
    }
    shifts.push_back({integer_of(items[0]), integer_of(items[1]), items[2], integer_of(items[3]) != 0});
  }
  return shifts;
}

}  // namespace Module_occam
