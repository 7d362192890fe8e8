#include "display/windows/line_document.h"

#include <QFileInfo>
#include <QPainter>
#include <algorithm>
#include <cstddef>
#include <stdexcept>
#include <utility>

#include "core/absent_value.h"
#include "core/number_text.h"
#include "core/scope_guard.h"
#include "core/session_state.h"
#include "core/trap_errors.h"
#include "display/document_parts.h"
#include "display/profile_plot.h"
#include "display/raw_plot.h"
#include "display/selection.h"
#include "display/site_names.h"
#include "display/station_plot.h"
#include "display/windows/graph_pair.h"
#include "platform/graph/frequency_axis.h"
#include "platform/graph/graph_content.h"
#include "platform/graph/pdf_pages.h"
#include "reduction/data_sets/data_sets.h"
#include "reduction/each_item.h"

namespace Module_display_data {

using Module_averaged_data::Outcome;

namespace {

QString text_of(const std::string& text) { return QString::fromStdString(text); }

std::string selection_text() {
  const SessionState& state = session();
  return "Line " + state.current_line + ", " + state.current_data_type + ", dipole " +
         plain_text(state.current_dipole) + " m";
}

void require(const Redisplay& redisplay) {
  if (redisplay.failed) {
    throw std::runtime_error("the readings can't be loaded");
  }
}

QRectF rectangle(const PagePart& part) { return {part.x, part.y, part.width, part.height}; }

void place_pair(graph::PdfPages& pages, const std::string& title, GraphPair plot, const PagePart& part) {
  const QRectF below = pages.caption(text_of(title), rectangle(part));
  if (plot.empty()) {
    return;
  }
  GraphPairWidget pair("page", GraphPairWidget::XAxis::frequency);
  pair.show_plot(std::move(plot));
  pair.place_on(pages, below);
}

/// Which colour of the profile is which frequency, high ones on top: paper has no list to click in.
void draw_frequencies(QPainter& painter, QSize size) {
  const std::vector<float>& frequencies = Module_averaged_data::data_sets().profile.frequencies;
  std::vector<std::size_t> used;
  for (std::size_t i = frequencies.size(); i-- > 0;) {
    if (session().frequencies.is_enabled(static_cast<std::int32_t>(i))) {
      used.push_back(i);
    }
  }
  const auto& axis = graph::FrequencyAxis::instance();
  constexpr double highest_row = 15.0;
  const double row = std::min(highest_row, size.height() / static_cast<double>(used.size() + 1));
  QFont font = painter.font();
  font.setBold(false);
  font.setPixelSize(std::max(1, static_cast<int>(0.75 * row)));
  painter.setFont(font);
  constexpr double line = 14.0;
  QRectF place(line + 4.0, 0.0, size.width() - line - 4.0, row);
  painter.setPen(Qt::black);
  painter.drawText(place, Qt::AlignLeft | Qt::AlignVCenter, axis.shows_periods() ? "s" : "Hz");
  for (const std::size_t i : used) {
    place.translate(0.0, row);
    painter.setPen(QPen(graph::palette_style_colour(graph::palette_style(static_cast<int>(i) + 1)), 2.0));
    painter.drawLine(QPointF(0.0, place.center().y()), QPointF(line, place.center().y()));
    painter.setPen(Qt::black);
    painter.drawText(place, Qt::AlignLeft | Qt::AlignVCenter, axis.short_text(double{frequencies[i]}));
  }
}

void add_profile(graph::PdfPages& pages, PositionSource positions) {
  pages.begin_page(text_of(selection_text() + ": profile"));
  LineAxis axis;
  axis.take_line(session().current_line);
  static_cast<void>(axis.choose(positions));
  GraphPairWidget pair("page", GraphPairWidget::XAxis::position);
  pair.set_x_title(axis.title());
  GraphPair plot = profile_plot(axis);
  if (!plot.empty()) {
    pair.show_plot(std::move(plot));
    constexpr double graphs = 0.92;  // of the page's width
    pair.place_on(pages, {0.0, 0.0, graphs, 1.0});
    pages.place(draw_frequencies, {graphs, 0.0, 1.0 - graphs, 1.0});
  }
}

/// The static factor of the displayed station; 1 without a curve.
float static_factor() {
  const auto& slots = Module_averaged_data::data_sets().station.slots;
  return slots.empty() ? 1.0F : slots.front().reading.ResOffset;
}

/// ", static factor 2.5: the grey curve is without it"; empty for 1.
std::string static_text() {
  return static_factor() == 1.0F ? std::string()
                                 : ", static factor " + plain_text(static_factor()) + " (grey: without it)";
}

/// The station's curves, and where it has a static factor its merged curve as it was before the shift.
GraphPair station_with_unshifted() {
  GraphPair plot = station_plot(false);
  if (plot.empty() || static_factor() == 1.0F) {
    return plot;
  }
  PanePlot& pane = plot.resistivity;
  graph::PlotSeries unshifted{pane.table.series[0].x, pane.table.series[0].y, {}};
  for (double& resistivity : unshifted.y) {
    resistivity = is_absent(resistivity) ? resistivity : resistivity / double{static_factor()};
  }
  pane.point_styles.push_back(pane.point_styles[0]);
  pane.series_styles.resize(pane.table.series.size());
  pane.table.series.push_back(std::move(unshifted));
  pane.series_styles.push_back({graph::unused_colour, 1.5, true, graph::Marker::dot, true});
  return plot;
}

/// The displayed station: merged curve and averages on the left, the repeats of each scan rate beside them.
void add_station(graph::PdfPages& pages) {
  pages.begin_page(
      text_of(with_site_name(selection_text() + ", station " + format_number(session().current_station, "0"),
                             session().current_station_index) +
              static_text()));
  const std::vector<float> rates = Module_averaged_data::data_sets().station.scan_rates;
  const std::vector<PagePart> parts = station_page_parts(rates.size());
  place_pair(pages, station_label(), station_with_unshifted(), parts.front());
  for (std::size_t k = 0; k < rates.size(); ++k) {
    require(choose_scan_rate(plain_text(rates[k])));
    place_pair(pages, raw_label() + ", " + plain_text(rates[k]) + " Hz", raw_plot(false), parts[k + 1]);
  }
}

std::string line_text() { return "Line " + session().current_line; }

void add_pages(graph::PdfPages& pages, const std::vector<DocumentPage>& further_pages) {
  for (const DocumentPage& page : further_pages) {
    pages.begin_page(text_of(line_text() + ": " + page.title));
    const std::vector<PagePart> parts = parts_beside(page.drawings.size());
    for (std::size_t i = 0; i < parts.size(); ++i) {
      pages.place(page.drawings[i], rectangle(parts[i]));
    }
  }
}

}  // namespace

MakePages joined(MakePages first, MakePages then) {
  return [first = std::move(first), then = std::move(then)] {
    std::vector<DocumentPage> pages = first();
    std::ranges::move(then(), std::back_inserter(pages));
    return pages;
  };
}

Outcome write_line_document(const std::string& path, PositionSource positions,
                            const MakePages& further_pages) {
  const DisplayedStation displayed;
  const ScopeGuard put_back([&] { displayed.put_back(); });
  Outcome outcome = Outcome::failed;
  const int status = trap_errors("An error occurred while writing the graphs: ", [&] {
    const BusyPointer busy;
    // Loads what is selected: neighbours may be shown, and the dipole length may be a new one.
    require(display_station(readings_changed().station_to_display, {}));
    graph::PdfPages pages(text_of(path), text_of(selection_text()));
    add_profile(pages, positions);
    const std::int32_t first = first_station_of_current_line();
    const std::int32_t count = session().stations_in_line;
    Module_averaged_data::WorkProgress progress("Drawing the stations", static_cast<std::size_t>(count));
    outcome = Module_averaged_data::each_item(progress, [&](std::size_t place) {
      require(display_station(first + static_cast<std::int32_t>(place), {}));
      add_station(pages);
      return 0;
    });
    if (outcome == Outcome::finished && further_pages) {
      add_pages(pages, further_pages());
    }
    if (outcome == Outcome::finished) {
      pages.finish();
    }
  });
  return status == 0 ? outcome : Outcome::failed;
}

}  // namespace Module_display_data
