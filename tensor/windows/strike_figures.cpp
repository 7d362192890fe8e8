#include "tensor/windows/strike_figures.h"

#include <algorithm>
#include <utility>

#include "core/number_text.h"
#include "core/session_state.h"
#include "core/trap_errors.h"
#include "platform/graph/picture_axes.h"
#include "platform/widgets/panel_controls.h"
#include "tensor/line_tensors.h"

namespace Module_tensor {

using Module_display_data::DocumentPage;

namespace {

QString heading(const std::string& line, const StrikeQuestion& question) {
  return qt_text("Line " + line + "   skew up to " + plain_text(question.choices.skew_limit)) +
         "°, ellipticity from " + qt_text(plain_text(question.choices.least_ellipticity));
}

/// Of a page, in the pen and letters of all pictures.
template <class Paint>
auto drawing(Paint paint) {
  return [paint](QPainter& painter, QSize size) {
    graph::use_picture_style(painter);
    paint(painter, QRectF(QPointF(), size));
  };
}

std::vector<DocumentPage> make_pages() {
  const SessionState& state = session();
  const LineChoice choice{state.current_line, state.current_reference_type, state.current_dipole};
  LineTensors line;
  if (load_line_tensors(choice, state.frequencies, line) != 0) {
    return {};
  }
  const auto stations = strike_stations(line.stations, state.frequencies);
  const StrikeQuestion question;
  auto summary = strike_summary(stations, question);
  if (!summary) {
    return {};
  }
  std::optional<double> azimuth;
  static_cast<void>(trap_errors("An error occurred while reading the places of the line: ",
                                [&] { azimuth = line_azimuth(choice.line); }));
  const RoseFigure roses = rose_figure(choice.line, question, *std::move(summary), azimuth);
  std::vector<DocumentPage> pages{{"strike", {drawing([roses](QPainter& painter, const QRectF& area) {
                                     paint_roses(painter, area, roses);
                                   })}}};
  const DimensionFigure dimensions = dimension_figure(choice.line, question, stations, {});
  if (std::ranges::any_of(dimensions.stations, [](const auto& station) { return !station.cells.empty(); })) {
    pages.push_back(
        {"dimensions by station and period", {drawing([dimensions](QPainter& painter, const QRectF& area) {
           paint_dimensions(painter, area, dimensions);
         })}});
  }
  return pages;
}

}  // namespace

RoseFigure rose_figure(const std::string& line, const StrikeQuestion& question, StrikeSummary summary,
                       std::optional<double> line_azimuth) {
  RoseFigure figure;
  figure.summary = std::move(summary);
  figure.method = question.choices.method;
  figure.line_azimuth = line_azimuth;
  figure.heading = heading(line, question);
  return figure;
}

DimensionFigure dimension_figure(const std::string& line, const StrikeQuestion& question,
                                 const std::vector<StrikeStation>& stations,
                                 const numerics::impedance::DimensionalityLimits& limits) {
  DimensionFigure figure;
  figure.band = question.band;
  figure.heading = heading(line, question);
  for (const StrikeStation& station : stations) {
    const QString text = qt_text(station_text(station.tensors.station, station.tensors.name));
    figure.stations.push_back({station.tensors.station, text, text, dimension_cells(station, limits)});
  }
  return figure;
}

Module_display_data::MakePages strike_pages() { return make_pages; }

}  // namespace Module_tensor
