// graph_samples.h: made-up magnetotelluric charts: a station's repeats with their average, and a line's
// profile.
#pragma once
#include <cmath>

#include "platform/graph/VexGraphControl.h"

namespace graph_samples {

struct Chart {
  graph::PlotTable table;
  graph::PointStyles styles;
  std::vector<graph::SeriesStyle> series_styles;
};

/// A number in [-1, 1) that looks random and is the same in every run.
inline double noise(int seed) {
  const double value = std::sin(seed * 12.9898 + 4.1) * 43758.5453;
  return 2.0 * (value - std::floor(value)) - 1.0;
}

/// A resistive layer between conductors, ohm-m: smooth over the decades of frequency.
inline double sounding(double frequency, double shift) {
  const double decade = std::log10(frequency);
  return std::pow(10.0, 1.9 + 0.9 * std::exp(-std::pow((decade - 1.6 - shift) / 1.1, 2.0)));
}

/// Series 0 is the average with errors, the others repeats; some points masked, one without data.
inline Chart repeats(int repeat_count, int frequency_count, bool phase) {
  static const graph::Colour colours[] = {{255, 0, 0}, {0, 255, 0},    {0, 0, 255},   {255, 0, 255},
                                          {64, 64, 0}, {50, 182, 182}, {51, 255, 178}};
  Chart chart;
  for (int s = 0; s <= repeat_count; ++s) {
    graph::PlotSeries series;
    std::vector<int> styles;
    for (int f = 0; f < frequency_count; ++f) {
      const double frequency = std::pow(10.0, -0.5 + 4.5 * f / (frequency_count - 1));
      const double scatter = s == 0 ? 0.0 : 0.12 * noise(s * 1000 + f) * (frequency > 800.0 ? 3.0 : 1.0);
      const bool masked = s > 0 && std::abs(scatter) > 0.22;
      const double rho = sounding(frequency, 0.0) * std::pow(10.0, scatter);
      const double degrees = 45.0 + 18.0 * std::sin(1.3 * std::log10(frequency)) + 40.0 * scatter;
      series.x.push_back(frequency);
      series.y.push_back(s == 2 && f == frequency_count / 2 ? graph::null_value : (phase ? degrees : rho));
      if (s == 0) {
        series.error.push_back((phase ? 3.0 : 0.12 * rho) * (1.0 + std::abs(noise(f))));
      }
      styles.push_back(masked ? graph::masked_point : graph::used_point);
    }
    chart.table.series.push_back(std::move(series));
    chart.styles.push_back(std::move(styles));
    chart.series_styles.push_back(s == 0 ? graph::SeriesStyle{graph::Colour{0, 0, 0}, 3.0, true}
                                         : graph::SeriesStyle{colours[(s - 1) % 7], 1.0, true});
  }
  return chart;
}

/// One curve a frequency along the stations, m.
inline Chart profile(int frequency_count, int station_count) {
  Chart chart;
  for (int f = 0; f < frequency_count; ++f) {
    graph::PlotSeries series;
    std::vector<int> styles;
    for (int s = 0; s < station_count; ++s) {
      const double frequency = std::pow(10.0, -0.5 + 4.5 * f / frequency_count);
      series.x.push_back(1000.0 + 50.0 * s);
      series.y.push_back(sounding(frequency, 0.8 * std::sin(0.3 * s)) *
                         std::pow(10.0, 0.02 * f + 0.04 * noise(f * 200 + s)));
      styles.push_back(noise(f * 77 + s * 3) > 0.95 ? graph::masked_point : graph::palette_style(f + 1));
    }
    chart.table.series.push_back(std::move(series));
    chart.styles.push_back(std::move(styles));
    chart.series_styles.emplace_back();
  }
  return chart;
}

inline void give(VexGraphControl& control, const Chart& chart) {
  control.clear_graph();
  control.set_graph_data(chart.table);
  control.set_graph_styles(chart.styles);
  for (std::size_t s = 0; s < chart.series_styles.size(); ++s) {
    control.set_series_style(static_cast<int>(s), chart.series_styles[s]);
  }
}

}  // namespace graph_samples
