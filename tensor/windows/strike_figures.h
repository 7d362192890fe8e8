// strike_figures.h: the pictures of the strike of a line, for its window and for its document.
#pragma once
#include <optional>
#include <string>
#include <vector>

#include "display/windows/line_document.h"
#include "tensor/windows/dimension_picture.h"
#include "tensor/windows/rose_picture.h"

namespace Module_tensor {

RoseFigure rose_figure(const std::string& line, const StrikeQuestion& question, StrikeSummary summary,
                       std::optional<double> line_azimuth);
DimensionFigure dimension_figure(const std::string& line, const StrikeQuestion& question,
                                 const std::vector<StrikeStation>& stations,
                                 const numerics::impedance::DimensionalityLimits& limits);

/// Makes the pages of the line that is selected then: its roses, and its dimensions. A line without tensors
/// has none, and one that can't be read has none after a message.
Module_display_data::MakePages strike_pages();

}  // namespace Module_tensor
