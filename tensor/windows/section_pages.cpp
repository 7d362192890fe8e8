#include "tensor/windows/section_pages.h"

#include <algorithm>
#include <iterator>
#include <memory>
#include <utility>

#include "core/session_state.h"
#include "display/line_axis.h"
#include "tensor/section_points.h"
#include "tensor/windows/map_pages.h"
#include "tensor/windows/pseudo_section_painter.h"

namespace Module_tensor {

using Module_display_data::DocumentPage;

namespace {

/// What the pages are drawn from; they keep it.
struct PageSource {
  LineTensors line;
  Frequencies frequencies;
  std::vector<StationPhaseTensors> phase_tensors;
  Module_display_data::LineAxis axis;
};

void add_drawing(const std::shared_ptr<const PageSource>& source, SectionQuantity quantity,
                 DocumentPage& page) {
  auto picture = std::make_shared<PseudoSectionPicture>();
  const SectionSource parts{&source->line, &source->frequencies, source->phase_tensors, {}};
  picture->section =
      make_pseudo_section(parts, quantity, [&](double station) { return source->axis.x_of(station); });
  if (picture->section.empty()) {
    return;
  }
  show_whole(*picture);
  picture->scale = usual_scale(facts_of(quantity).scale);
  picture->title = QString::fromStdString(std::string(facts_of(quantity).title));
  picture->x_title = source->axis.title();
  page.drawings.emplace_back([source, picture](QPainter& painter, QSize size) {
    paint_pseudo_section(painter, size, *picture, PseudoSectionView());
  });
}

std::vector<DocumentPage> make_pages(Module_display_data::PositionSource positions) {
  const SessionState& state = session();
  const LineChoice choice{state.current_line, state.current_reference_type, state.current_dipole};
  const auto source = std::make_shared<PageSource>();
  if (load_line_tensors(choice, state.frequencies, source->line) != 0) {
    return {};
  }
  source->frequencies = state.frequencies;
  source->phase_tensors = phase_tensors_of(source->line);
  source->axis.take_line(choice.line);
  static_cast<void>(source->axis.choose(positions));
  using enum SectionQuantity;
  const std::pair<const char*, std::vector<SectionQuantity>> contents[] = {
      {"apparent resistivity by station and period", {rho_xy, rho_yx}},
      {"phase by station and period", {phase_xy, phase_yx}},
      {"phase tensors by station and period", {ellipses_by_skew}}};
  std::vector<DocumentPage> pages;
  for (const auto& [title, quantities] : contents) {
    DocumentPage page{title, {}};
    for (const SectionQuantity quantity : quantities) {
      add_drawing(source, quantity, page);
    }
    if (!page.drawings.empty()) {
      pages.push_back(std::move(page));
    }
  }
  return pages;
}

}  // namespace

Module_display_data::MakePages section_pages(Module_display_data::PositionSource positions) {
  return [positions] {
    std::vector<DocumentPage> pages = make_pages(positions);
    std::ranges::move(map_pages(), std::back_inserter(pages));
    return pages;
  };
}

}  // namespace Module_tensor
