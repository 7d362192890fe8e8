// asked_lines.h: from lines by their names, as commands and scripts have them, to one kind of curves of each.
#pragma once
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "exchange/export_choices.h"
#include "tensor/line_choice.h"

namespace Module_exchange {

struct AskedLines {
  std::vector<std::string> lines;              // in any case of letters; empty: all lines
  std::optional<std::int32_t> reference_type;  // none: the only one that a line has
  std::optional<float> dipole;                 // m; none likewise
  std::string option_names;                    // of these two, for messages: "--reference and --dipole"
};

enum class LineKinds : std::uint8_t {
  one,         // reference type and dipole must be chosen where a line has several
  one_of_any,  // likewise, of readings of any data type
  first        // where they make no difference: the first ones that a line has, of any data type
};

/// Whether files of a format hold places alone.
constexpr bool is_map(ExportFormat format) {
  return format == ExportFormat::geojson || format == ExportFormat::kml;
}

/// What files of a format need of a line.
LineKinds line_kinds(ExportFormat format);

/// The curves of each line that is asked for. Of all lines, one without such curves is left out with a
/// message. Needs an open survey; throws dao::Error.
/// @return empty after a message that names what the survey or a line has
std::vector<Module_tensor::LineChoice> choose_lines(const AskedLines& asked, LineKinds wanted);

}  // namespace Module_exchange
