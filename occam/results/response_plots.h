// response_plots.h: the graphs of a response: a station's curves, profiles along the line, misfits.
//
// Conventions: sites and frequencies are numbered from 1, as in the files. Values are those of drawn_datum.
#pragma once
#include <array>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "formats/occam/occam_response.h"
#include "occam/results/response_views.h"
#include "occam/results/run_results.h"
#include "platform/graph/axis_limits.h"
#include "platform/graph/plot_table.h"

namespace Module_occam {

/// A graph, ready to draw.
struct ResponsePlot {
  graph::PlotTable table;
  std::vector<graph::SeriesStyle> styles;
  std::vector<std::string> series_names;
  std::vector<std::string> legend;  // of each series, "" for one that the entry before it stands for; empty:
                                    // the names of the series
  graph::AxisLimits x;
  graph::AxisLimits y;
};

/// Observed and modelled values of a site over the frequencies: two series for each curve of the view's pane.
/// Observed values have the error that the inversion used.
ResponsePlot station_curves(const OccamResponse& response, const ResponseView& view, Pane pane,
                            int site_number);

/// How station_curves draws, in words: "TE blue discs, TM red squares; ...".
std::string curves_in_words(const ResponseView& view, Pane pane);

/// Which frequencies the profiles show.
struct ProfileChoice {
  int mode = 0;        // 0 all frequencies; 1, 2, 3 the highest, middle, lowest third; from 4 on the single
                       // frequency with number mode - 3
  int odds_evens = 0;  // of these: 0 all, 1 those with odd numbers, 2 those with even ones
};
inline constexpr std::array<std::string_view, 4> profile_modes = {"All frequencies", "Highest third",
                                                                  "Middle third", "Lowest third"};
inline constexpr std::array<std::string_view, 3> odds_evens_names = {"Odds and evens", "Odds", "Evens"};

/// Numbers of the chosen frequencies, ascending. Thirds are of the frequencies in the order of their value.
std::vector<int> profile_frequencies(const OccamResponse& response, ProfileChoice choice);

/// Values of the chosen frequencies along the line: for each frequency a series of what is observed, as
/// points, and one of what is modelled, as a line in the same colour.
/// Empty without a type.
ResponsePlot response_profiles(const OccamResponse& response, std::optional<DataType> type,
                               ProfileChoice choice);

/// Root mean square of the misfits, for each site and data type that the file has.
struct MisfitTable {
  struct Cell {
    double squares = 0.0;
    int count = 0;
    void add(double misfit);
    void add(const Cell& other);
    [[nodiscard]] double rms() const;  // 0 without data
  };
  std::vector<DataType> data_types;                  // ascending
  std::vector<std::map<DataType, Cell>> site_cells;  // entry i is of site number i + 1
  [[nodiscard]] Cell of_site(int site_number) const;
  [[nodiscard]] Cell of_type(DataType wanted) const;
  [[nodiscard]] Cell of_all() const;
};
MisfitTable misfit_table(const OccamResponse& response);

/// Misfit, roughness and multiplier against the number of the iteration, in this order; one without any value
/// is left out.
ResponsePlot convergence_plot(const RunResults& results);

/// Text about the point under the pointer of a convergence graph: the nearest curve at the nearest iteration
/// with a value, as "RMS error 1.0000 at iteration 12"; "NA" without one.
std::string convergence_text(const ResponsePlot& plot, double iteration, double value);

}  // namespace Module_occam
