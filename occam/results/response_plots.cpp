#include "occam/results/response_plots.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <functional>
#include <limits>
#include <numeric>

#include "core/absent_value.h"
#include "core/number_text.h"

namespace Module_occam {

namespace {

constexpr graph::Colour observed_colour{200, 30, 30};
constexpr graph::Colour modelled_colour{0, 0, 0};
constexpr double margin = 0.04;     // of the range, beyond the data: points at the ends stay whole
constexpr double min_ratio = 10.0;  // of a range that the margin is taken of, on a logarithmic axis

/// How a curve is drawn among others.
struct CurveLook {
  DataType type;
  graph::Colour colour;
  graph::Marker marker;
  const char* words;
};
constexpr CurveLook te_look{DataType::te_resistivity, {30, 90, 200}, graph::Marker::disc, "blue discs"};
constexpr CurveLook tm_look{DataType::tm_resistivity, {200, 30, 30}, graph::Marker::square, "red squares"};
constexpr std::array<CurveLook, 2> linear_looks{
    {{DataType::te_linear_resistivity, {0, 140, 150}, graph::Marker::disc, "green discs"},
     {DataType::tm_linear_resistivity, {190, 110, 0}, graph::Marker::square, "orange squares"}}};

/// A linear resistivity that takes the place of its logarithm looks like it.
const CurveLook& look_of(const ResponseView::Curve& curve) {
  const bool beside_logarithm = curve.channel->name.ends_with(" linear");
  const auto linear = std::ranges::find(linear_looks, curve.type, &CurveLook::type);
  if (beside_logarithm && linear != linear_looks.end()) {
    return *linear;
  }
  const TypeMeaning* const meaning = find_meaning(curve.type);
  return meaning != nullptr && meaning->mode == FieldMode::te ? te_look : tm_look;
}

/// The curves of a site, row by row.
struct FitSeries {
  graph::PlotSeries observed_values;
  graph::PlotSeries modelled_values;

  void add(double x, const DrawnDatum& datum) {
    observed_values.x.push_back(x);
    observed_values.y.push_back(static_cast<double>(datum.values[ResponseValue::observed - 1]));
    observed_values.error.push_back(datum.error);
    modelled_values.x.push_back(x);
    modelled_values.y.push_back(static_cast<double>(datum.values[ResponseValue::modelled - 1]));
  }
};

/// The smallest and the largest present value.
struct Extent {
  double minimum = std::numeric_limits<double>::infinity();
  double maximum = -std::numeric_limits<double>::infinity();
  void include(double value) {
    if (!is_absent(value)) {
      minimum = std::min(minimum, value);
      maximum = std::max(maximum, value);
    }
  }
  [[nodiscard]] bool empty() const { return minimum > maximum; }
};

/// Makes room for the error bars, too; each way no more than the values need themselves, as the bar of a
/// nearly worthless datum may be huge.
void include_errors(Extent& y, const graph::PlotTable& table) {
  const Extent values = y;
  const double room = values.maximum - values.minimum;
  for (const graph::PlotSeries& series : table.series) {
    for (std::size_t i = 0; i < series.error.size(); ++i) {
      if (!is_absent(series.y[i]) && !is_absent(series.error[i])) {
        y.include(std::max(series.y[i] - series.error[i], values.minimum - room));
        y.include(std::min(series.y[i] + series.error[i], values.maximum + room));
      }
    }
  }
}

void set_limits(ResponsePlot& plot, graph::AxisType x_type) {
  Extent x;
  Extent y;
  for (const graph::PlotSeries& series : plot.table.series) {
    std::ranges::for_each(series.x, [&x](double value) { x.include(value); });
    std::ranges::for_each(series.y, [&y](double value) { y.include(value); });
  }
  include_errors(y, plot.table);
  plot.x.type = x_type;
  if (!x.empty() && x_type == graph::AxisType::logarithmic && x.minimum > 0.0) {
    const double factor = std::pow(std::max(x.maximum / x.minimum, min_ratio), margin);
    plot.x.minimum = x.minimum / factor;
    plot.x.maximum = x.maximum * factor;
  } else if (!x.empty()) {
    const double room = std::max(x.maximum - x.minimum, 1.0) * margin;
    plot.x.minimum = x.minimum - room;
    plot.x.maximum = x.maximum + room;
  }
  if (!y.empty()) {
    const double room = (y.maximum - y.minimum) * margin;
    plot.y.minimum = y.minimum - room;
    plot.y.maximum = y.maximum + room;
  }
}

void add_series(ResponsePlot& plot, graph::PlotSeries series, const graph::SeriesStyle& style,
                std::string name) {
  plot.table.series.push_back(std::move(series));
  plot.styles.push_back(style);
  plot.series_names.push_back(std::move(name));
}

/// The numbers of the frequencies from the highest to the lowest.
std::vector<int> descending_frequencies(const OccamResponse& response) {
  std::vector<int> numbers(response.resp_frequencies.size());
  std::iota(numbers.begin(), numbers.end(), 1);
  std::ranges::stable_sort(numbers, std::greater<>(), [&response](int number) {
    return response.resp_frequencies[static_cast<std::size_t>(number) - 1];
  });
  return numbers;
}

/// One of the curves of a run; no series if it has no value.
void add_convergence(ResponsePlot& plot, const RunResults& results,
                     const RunResults::ByIteration<float>& values, const char* name, graph::Colour colour) {
  graph::PlotSeries series;
  for (int iteration = 0; iteration <= results.last_iteration; ++iteration) {
    series.x.push_back(iteration);
    series.y.push_back(static_cast<double>(values[static_cast<std::size_t>(iteration)]));
  }
  if (std::ranges::any_of(series.y, [](double value) { return !is_absent(value); })) {
    add_series(plot, std::move(series), {.colour = colour}, name);
  }
}

}  // namespace

ResponsePlot station_curves(const OccamResponse& response, const ResponseView& view, Pane pane,
                            int site_number) {
  std::vector<int> numbers = descending_frequencies(response);
  std::ranges::reverse(numbers);
  ResponsePlot plot;
  for (const ResponseView::Curve& curve : view.curves(pane)) {
    FitSeries fit;
    for (const int number : numbers) {
      fit.add(response.resp_frequencies[static_cast<std::size_t>(number) - 1],
              drawn_datum(response, curve.type, site_number, number));
    }
    graph::SeriesStyle observed_style{.colour = observed_colour, .line = false};
    graph::SeriesStyle modelled_style{.colour = modelled_colour, .width = 1.5};
    if (view.has_modes()) {
      const CurveLook& look = look_of(curve);
      observed_style = {.colour = look.colour, .line = false, .marker = look.marker};
      modelled_style = {.colour = look.colour, .width = 1.5, .marker = graph::Marker::dot};
      plot.legend.insert(plot.legend.end(), {curve.channel->name, ""});
    } else {
      plot.legend.insert(plot.legend.end(), {"observed", "modelled"});
    }
    const std::string name = data_type_name(curve.type);
    add_series(plot, std::move(fit.observed_values), observed_style, name + " observed");
    add_series(plot, std::move(fit.modelled_values), modelled_style, name + " modelled");
  }
  set_limits(plot, graph::AxisType::logarithmic);
  return plot;
}

std::string curves_in_words(const ResponseView& view, Pane pane) {
  if (!view.has_modes()) {
    return "observed as red points with errors, modelled as a black line";
  }
  std::string text;
  for (const ResponseView::Curve& curve : view.curves(pane)) {
    text += (text.empty() ? "" : ", ") + curve.channel->name + " " + look_of(curve).words;
  }
  return text + "; observed as points with errors, modelled as lines";
}

std::vector<int> profile_frequencies(const OccamResponse& response, ProfileChoice choice) {
  constexpr int single_modes = static_cast<int>(profile_modes.size());
  const std::vector<int> descending = descending_frequencies(response);
  const std::size_t count = descending.size();
  std::vector<int> numbers = descending;
  if (choice.mode >= single_modes) {
    numbers = {choice.mode - single_modes + 1};
  } else if (choice.mode > 0) {
    const auto third = static_cast<std::size_t>(choice.mode);
    numbers.assign(descending.begin() + static_cast<std::ptrdiff_t>((third - 1) * count / 3),
                   descending.begin() + static_cast<std::ptrdiff_t>(third * count / 3));
  }
  std::erase_if(numbers, [&](int number) {
    const bool wrong_half = choice.odds_evens != 0 && number % 2 != choice.odds_evens % 2;
    return wrong_half || number < 1 || static_cast<std::size_t>(number) > count;
  });
  std::ranges::sort(numbers);
  return numbers;
}

ResponsePlot response_profiles(const OccamResponse& response, std::optional<DataType> type,
                               ProfileChoice choice) {
  constexpr std::array<graph::Colour, 8> colours = {{{200, 30, 30},
                                                     {30, 90, 200},
                                                     {20, 140, 40},
                                                     {190, 110, 0},
                                                     {130, 40, 170},
                                                     {0, 140, 150},
                                                     {110, 110, 110},
                                                     {200, 60, 140}}};
  ResponsePlot plot;
  if (!type) {
    return plot;
  }
  std::size_t colour = 0;
  for (const int number : profile_frequencies(response, choice)) {
    FitSeries fit;
    for (int site = 1; site <= response.resp_sites(); ++site) {
      fit.add(response.resp_offsets[static_cast<std::size_t>(site) - 1],
              drawn_datum(response, *type, site, number));
    }
    fit.observed_values.error.clear();  // bars of so many curves would hide them
    const std::string name = data_type_name(*type) + " " +
                             plain_text(response.resp_frequencies[static_cast<std::size_t>(number) - 1]) +
                             " Hz ";
    const graph::Colour of_frequency = colours[colour++ % colours.size()];
    add_series(plot, std::move(fit.observed_values), {.colour = of_frequency, .line = false},
               name + "observed");
    add_series(plot, std::move(fit.modelled_values), {.colour = of_frequency}, name + "modelled");
  }
  set_limits(plot, graph::AxisType::linear);
  return plot;
}

void MisfitTable::Cell::add(double misfit) {
  squares += misfit * misfit;
  ++count;
}

void MisfitTable::Cell::add(const Cell& other) {
  squares += other.squares;
  count += other.count;
}

double MisfitTable::Cell::rms() const { return count > 0 ? std::sqrt(squares / count) : 0.0; }

MisfitTable::Cell MisfitTable::of_site(int site_number) const {
  Cell sum;
  for (const auto& [type, cell] : site_cells[static_cast<std::size_t>(site_number) - 1]) {
    sum.add(cell);
  }
  return sum;
}

MisfitTable::Cell MisfitTable::of_type(DataType wanted) const {
  Cell sum;
  for (const auto& cells : site_cells) {
    if (const auto cell = cells.find(wanted); cell != cells.end()) {
      sum.add(cell->second);
    }
  }
  return sum;
}

MisfitTable::Cell MisfitTable::of_all() const {
  Cell sum;
  for (const DataType type : data_types) {
    sum.add(of_type(type));
  }
  return sum;
}

MisfitTable misfit_table(const OccamResponse& response) {
  MisfitTable table;
  table.site_cells.resize(static_cast<std::size_t>(response.resp_sites()));
  for (const OccamResponse::FileRow& row : response.rows()) {
    const auto misfit = static_cast<double>(row.values[ResponseValue::misfit - 1]);
    if (row.site_number < 1 || is_absent(misfit)) {
      continue;
    }
    table.site_cells[static_cast<std::size_t>(row.site_number) - 1][row.type].add(misfit);
    if (const auto at = std::ranges::lower_bound(table.data_types, row.type);
        at == table.data_types.end() || *at != row.type) {
      table.data_types.insert(at, row.type);
    }
  }
  return table;
}

ResponsePlot convergence_plot(const RunResults& results) {
  ResponsePlot plot;
  add_convergence(plot, results, results.iteration_misfit, "RMS error", {200, 30, 30});
  // A half space, with which most inversions begin, is not rough at all: no place on a logarithmic scale.
  RunResults::ByIteration<float> roughness = results.iteration_roughness;
  std::ranges::replace(roughness, 0.0F, no_data);
  add_convergence(plot, results, roughness, "Roughness", {30, 90, 200});
  add_convergence(plot, results, results.iteration_multiplier, "Lagrange Multiplier", {20, 140, 40});
  set_limits(plot, graph::AxisType::linear);
  constexpr double fewest = 5.0;  // iterations on the axis, so that its marks are whole numbers
  plot.x.maximum = std::max(plot.x.maximum, fewest);
  bool positive = !plot.table.series.empty();
  for (const graph::PlotSeries& series : plot.table.series) {
    positive = positive &&
               std::ranges::all_of(series.y, [](double value) { return is_absent(value) || value > 0.0; });
  }
  if (positive) {
    // The three differ by decades; a margin taken from the largest of them would reach below 0.
    plot.y = {.type = graph::AxisType::logarithmic};
  }
  return plot;
}

std::string convergence_text(const ResponsePlot& plot, double iteration, double value) {
  const bool logarithmic = plot.y.type == graph::AxisType::logarithmic;
  const auto place = [logarithmic](double y) { return logarithmic ? std::log10(std::max(y, 1e-300)) : y; };
  double nearest = std::numeric_limits<double>::infinity();
  double nearest_step = nearest;
  std::string text = "NA";
  for (std::size_t s = 0; s < plot.table.series.size(); ++s) {
    const graph::PlotSeries& series = plot.table.series[s];
    for (std::size_t i = 0; i < series.x.size(); ++i) {
      const double step = std::abs(series.x[i] - iteration);
      const double distance = std::abs(place(series.y[i]) - place(value));
      if (is_absent(series.y[i]) || step > nearest_step || (step == nearest_step && distance >= nearest)) {
        continue;
      }
      nearest_step = step;
      nearest = distance;
      text = plot.series_names[s] + " " + format_number(series.y[i], "0.0000") + " at iteration " +
             format_number(series.x[i], "0");
    }
  }
  return text;
}

}  // namespace Module_occam
