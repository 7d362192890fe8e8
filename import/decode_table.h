// decode_table.h: the cells of the table of what the names of field files mean.
#pragma once
#include <array>
#include <string>
#include <string_view>

#include "import/import_choices.h"

namespace Module_data_file {

enum DecodeColumn : int { column_use_file_name = 0, column_start = 1, column_width = 2, column_specify = 3 };

inline constexpr std::array<std::string_view, 4> decode_column_titles{"Use File Name", "Start Column",
                                                                      "Width", "Specify"};

/// What a cell shows; the first column shows a check and has no text.
std::string decode_cell_text(const DecodeRow& row, DecodeColumn column);

/// Takes a typed text into a cell. Start and width are whole numbers of 0 or more.
/// @return false if the text is refused; the row is then as before
[[nodiscard]] bool set_decode_cell(DecodeRow& row, DecodeColumn column, std::string_view text);

}  // namespace Module_data_file
