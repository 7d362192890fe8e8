// section_picture.h: from what the user wants to see of an iteration to its picture, on screen or in a file.
#pragma once
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "occam/results/run_view.h"
#include "occam/windows/section_painter.h"

namespace Module_occam {

/// Values of the free blocks, in place of their resistivities.
struct SectionValues {
  std::vector<double> of_blocks;
  ResistivityRange range;  // of the colours
  SectionQuantity quantity;
};

struct SectionLook {
  std::optional<SectionChoices> choices;  // none: what was typed is invalid
  int colour_table = 2;                   // index of colour_table_names
  bool invert = false;
  bool draw_mesh = false;
  bool true_scale = false;              // a metre of depth as long as one along the line; not of log depths
  std::vector<double> visibility = {};  // of each free block, 0 to 1; empty: nothing fades
  std::optional<SectionValues> values = {};  // none: resistivities
};

/// @param decades  of each free block
SectionValues standard_error_values(std::vector<double> decades);
/// @param now, then  log10 ohm-m of each free block
SectionValues change_values(std::span<const double> now, std::span<const double> then, int base_iteration);

/// The picture of the current iteration; if it is blank, its note says why.
SectionPicture make_section_picture(RunView& view, const SectionLook& look, PictureSize size);

/// "Iteration 12   RMS error 1.0000   Roughness 16.6305   Lagrange Multiplier 0.9537"
std::string iteration_heading(const RunView& view);

/// Writes the section as PNG or PDF, by the ending of the path; an earlier file stays if that fails.
/// @param size  device-independent pixels of the drawing below its heading
/// @return 0, or -1 after a message
[[nodiscard]] int save_section(RunView& view, const SectionLook& look, const std::string& path, QSize size);

/// Writes observed and modelled curves of all sites as PDF, a page each.
/// @return 0; -1 after a message, or without one if the user stopped it
[[nodiscard]] int save_station_fits(RunView& view, const std::string& path);

}  // namespace Module_occam
