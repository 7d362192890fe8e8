#include "occam/windows/section_picture.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <functional>
#include <iterator>
#include <stdexcept>
#include <utility>

#include "core/absent_value.h"
#include "core/file_names.h"
#include "core/number_text.h"
#include "core/scope_guard.h"
#include "core/text_fields.h"
#include "core/trap_errors.h"
#include "occam/results/response_plots.h"
#include "occam/windows/response_graph.h"
#include "platform/graph/painted_file.h"
#include "platform/graph/pdf_pages.h"

namespace Module_occam {

namespace {

constexpr int heading_height = 26;
constexpr int heading_font_pixels = 13;

/// 1, 2 or 5 times a power of ten that holds all values, decades either way; at most 2: more is as good as
/// unknown.
double end_of_colours(std::span<const double> decades) {
  constexpr std::array ends{0.001, 0.002, 0.005, 0.01, 0.02, 0.05, 0.1, 0.2, 0.5, 1.0, 2.0};
  double largest = 0.0;
  for (const double value : decades) {
    largest = std::max(largest, std::abs(value));
  }
  const auto end = std::ranges::find_if(ends, [largest](double value) { return largest <= value; });
  return end == ends.end() ? ends.back() : *end;
}

std::string shown_number(float value) { return value == no_data ? "NA" : format_number(value, "0.0000"); }

/// A drawing with its heading, for a page or a picture of its own.
struct SectionPage {
  const SectionPicture& picture;
  const OccamData& sites;
  std::string heading;
  QSize size;
};

void paint_page(QPainter& painter, const SectionPage& page) {
  QFont font = painter.font();
  font.setPixelSize(heading_font_pixels);
  painter.setFont(font);
  painter.setPen(Qt::black);
  painter.drawText(QRect(0, 0, page.size.width(), heading_height), Qt::AlignCenter,
                   QString::fromStdString(page.heading));
  painter.translate(0, heading_height);
  paint_section(painter, page.picture, page.sites, SectionZoom());
}

/// Names the misfits of all data and of the types of a view.
std::string site_heading(const OccamResponse& response, const MisfitTable& misfits, const ResponseView& view,
                         int site_number) {
  const auto site = static_cast<std::size_t>(site_number) - 1;
  std::string text = "Site " + response.resp_site_names[site] + " at " +
                     format_number(response.resp_offsets[site], "0.0") + " m,  RMS " +
                     format_number(misfits.of_site(site_number).rms(), "0.00");
  for (const Pane pane : panes) {
    for (const auto& [type, channel] : view.curves(pane)) {
      const auto cell = misfits.site_cells[site].find(type);
      if (cell != misfits.site_cells[site].end()) {
        text += ",  " + data_type_name(type) + " " + format_number(cell->second.rms(), "0.00");
      }
    }
  }
  return text;
}

void place_curves(graph::PdfPages& pages, const OccamResponse& response, const ResponseView& view, Pane pane,
                  int site_number, const QRectF& part) {
  const PaneTexts& texts = view.text(pane);
  std::string caption = texts.title;
  if (pane == Pane::upper) {
    caption += ": " + curves_in_words(view, pane);
  }
  const QRectF below = pages.caption(QString::fromStdString(caption), part);
  VexGraphControl chart;
  chart.set_x_frequency();
  chart.set_y_title(texts.axis);
  give_to_chart(chart, station_curves(response, view, pane, site_number));
  pages.place(chart, below);
}

/// The part of a section's picture in which a metre of depth is as long as one along the line.
PictureSize at_true_scale(const SectionGeometry& section) {
  const SectionMapping& mapping = section.mapping;
  const double depth = section.end_depth - mapping.z_origin;
  const double scale = std::min(mapping.x_scale, (section.picture.height - 2.0 * end_frame) / depth);
  return {2.0 * side_frame + (section.right_distance - mapping.x_origin) * scale,
          2.0 * end_frame + depth * scale};
}

}  // namespace

SectionValues standard_error_values(std::vector<double> decades) {
  const double upper = end_of_colours(decades);
  return {std::move(decades), {0.0, upper}, {"Standard error (about)", "decades", false}};
}

SectionValues change_values(std::span<const double> now, std::span<const double> then, int base_iteration) {
  SectionValues values;
  std::ranges::transform(now, then, std::back_inserter(values.of_blocks), std::minus<>());
  const double most = end_of_colours(values.of_blocks);
  values.range = {-most, most};
  values.quantity = {"Change since iteration " + std::to_string(base_iteration), "decades", false};
  return values;
}

SectionPicture make_section_picture(RunView& view, const SectionLook& look, PictureSize size) {
  SectionPicture picture;
  picture.geometry.picture = size;
  picture.palette = graph::image_palette(look.colour_table, look.invert);
  picture.draw_mesh = look.draw_mesh;
  const int iteration = view.current_iteration();
  if (!view.results().has_iterations() && !view.results().has_start_only()) {
    picture.note = "No iteration yet: Run, on the page Inversion, begins";
    return picture;
  }
  if (!view.results().has(iteration)) {
    picture.note = QString("There is no file of iteration %1").arg(iteration);
    return picture;
  }
  const auto cannot_be_shown = [&] {
    return view.results().has_start_only() ? QString("The start model can't be shown")
                                           : QString("Iteration %1 can't be shown").arg(iteration);
  };
  if (view.load_iteration() != 0) {
    picture.note = cannot_be_shown();
    return picture;
  }
  if (!look.choices) {
    picture.note = "The range of colours or the depth can't be used: see the marked box";
    return picture;
  }
  picture.choices = *look.choices;
  if (look.values) {
    picture.choices.min_res = look.values->range.lower;
    picture.choices.max_res = look.values->range.upper;
    picture.quantity = look.values->quantity;
  }
  const auto geometry_in = [&](PictureSize part) {
    return look.values ? section_geometry(view.results().model, look.values->of_blocks, picture.choices, part)
                       : view.section(*look.choices, part);
  };
  picture.geometry = geometry_in(size);
  if (look.true_scale && !picture.choices.log_depth && !picture.geometry.rectangles.empty()) {
    picture.geometry = geometry_in(at_true_scale(picture.geometry));
  }
  picture.visibility = look.visibility;
  if (picture.geometry.rectangles.empty()) {
    picture.note = cannot_be_shown();
  }
  return picture;
}

std::string iteration_heading(const RunView& view) {
  const RunResults& results = view.results();
  if (results.has_start_only()) {
    return "Start model of " + results.control_file;
  }
  const auto iteration = static_cast<std::size_t>(view.current_iteration());
  return "Iteration " + std::to_string(iteration) + "   RMS error " +
         shown_number(results.iteration_misfit[iteration]) + "   Roughness " +
         shown_number(results.iteration_roughness[iteration]) + "   Lagrange Multiplier " +
         shown_number(results.iteration_multiplier[iteration]);
}

int save_section(RunView& view, const SectionLook& look, const std::string& path, QSize size) {
  return trap_errors("An error occurred while saving the section: ", [&] {
    const SectionPicture picture = make_section_picture(view, look, section_part(size));
    if (picture.geometry.rectangles.empty()) {
      throw std::runtime_error(picture.note.isEmpty() ? "range or depth make no section"
                                                      : picture.note.toStdString());
    }
    const std::string ending = Module_util::file_extension(path);
    const bool pdf = equal_ignoring_case(ending, "pdf");
    if (!pdf && !equal_ignoring_case(ending, "png")) {
      throw std::runtime_error(path + " ends neither in .png nor in .pdf");
    }
    const std::string what = look.values ? "   " + look.values->quantity.name : std::string();
    const SectionPage page{picture, view.results().data, iteration_heading(view) + what,
                           QSize(size.width(), size.height() + heading_height)};
    graph::write_painted(QString::fromStdString(path), QString::fromStdString(page.heading), page.size,
                         [&page](QPainter& painter, const QRectF&) { paint_page(painter, page); });
  });
}

int save_station_fits(RunView& view, const std::string& path) {
  if (!view.response_ready() && view.load_response() != 0) {
    return -1;
  }
  return trap_errors("An error occurred while saving the fit of the stations: ", [&] {
    const BusyPointer busy;
    const ScopeGuard end_progress([] { user_interface().show_progress("", -1); });
    const OccamResponse& response = view.response();
    const MisfitTable misfits = misfit_table(response);
    graph::PdfPages pages(QString::fromStdString(path), QString::fromStdString(iteration_heading(view)));
    const std::vector<ResponseView> views = response_views(response);
    constexpr double upper = 0.58;
    for (int site = 1; site <= response.resp_sites(); ++site) {
      user_interface().show_progress("Drawing the stations", 100 * (site - 1) / response.resp_sites());
      user_interface().process_events();
      if (user_interface().stop_requested()) {
        return -1;
      }
      for (const ResponseView& response_view : views) {
        pages.begin_page(QString::fromStdString(site_heading(response, misfits, response_view, site)));
        place_curves(pages, response, response_view, Pane::upper, site, {0.0, 0.0, 1.0, upper});
        place_curves(pages, response, response_view, Pane::lower, site, {0.0, upper, 1.0, 1.0 - upper});
      }
    }
    pages.finish();
    return 0;
  });
}

}  // namespace Module_occam
