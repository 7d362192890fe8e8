// export_lists.h: what of a survey can be chosen for an export: its lines and the kinds of their curves.
#pragma once
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "tensor/line_choice.h"

namespace Module_exchange {

struct ExportLists {
  std::vector<std::string> lines;  // that have readings, as the survey spells them
  std::vector<std::int32_t> reference_types;
  std::vector<float> dipoles;                    // m, ascending
  std::vector<Module_tensor::LineChoice> kinds;  // which lines have which of them
};

/// The kinds of recording that a line has readings of, whatever their data type: first those that a transfer
/// function can be made from, each by reference type and dipole. Needs an open survey; throws dao::Error.
std::vector<Module_tensor::LineChoice> all_kinds_of_line(const std::string& line);

/// Reads the lists of the open survey.
/// @return 0, or -1 after a message; the lists are empty then
[[nodiscard]] int read_export_lists(ExportLists& lists);

/// The curves of a line: those with this dipole, or where it has none with that one, with its shortest.
/// @return none if the line has no curves of the reference type
std::optional<Module_tensor::LineChoice> kind_of_line(const ExportLists& lists, const std::string& line,
                                                      std::int32_t reference_type, float dipole);

}  // namespace Module_exchange
