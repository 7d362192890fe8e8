// fit_plot.h: graphs of an inversion: data with errors against the response of the model, and the model.
#pragma once
#include <string>
#include <vector>

#include "core/frequencies.h"
#include "display/pane_plot.h"
#include "reduction/edits/masks.h"
#include "rhoplus/station_inversion.h"

namespace Module_rhoplus {

enum FitSeries : std::size_t { series_observed, series_model };

/// The data of the merged curve as points, with the errors that the inversion used where it used them, and
/// the response of the model as a line. Masked data look as in all graphs, are hidden with them, and have no
/// say in the axes. Frequencies that are switched off are left out, as in all graphs. Empty without a merged
/// curve.
/// @param frequencies of the curve's reference type
Module_display_data::GraphPair fit_plot(const StationInversion& inversion, const Frequencies& frequencies);

/// What a curve or stem of a graph stands for.
struct LegendItem {
  std::string sign;  // that looks like it
  graph::Colour colour;
  std::string text;
};

/// Of the two graphs of the fit, and of the graph of the model.
std::vector<LegendItem> fit_legend();
std::vector<LegendItem> sheet_legend();

/// "Observed: 12.5000 Hz, 103.27 ohm-m +- 4.13"
std::string fit_point_text(const Module_display_data::GraphPair& plot, std::size_t series, std::size_t point,
                           Module_averaged_data::Component component);

/// The sheets of the model as stems of conductance (S) at their depth (m), both axes logarithmic, a series a
/// sheet. A sheet at the surface is drawn near the left edge; a perfect conductor at the bottom reaches the
/// upper edge. Empty without a model.
Module_display_data::PanePlot sheet_plot(const std::vector<numerics::rhoplus::RhoplusLayer>& model);

/// "Sheet 2 of 5: 1250 m, 12.4 S"; "Perfect conductor: 5200 m". Sheets count from 0 here.
std::string sheet_text(const std::vector<numerics::rhoplus::RhoplusLayer>& model, std::size_t sheet);

}  // namespace Module_rhoplus
