#include "tensor/windows/map_pages.h"

#include <memory>

#include "core/session_state.h"
#include "tensor/survey_tensors.h"
#include "tensor/windows/map_picture.h"

namespace Module_tensor {

namespace {

MapContents line_contents() {
  const SessionState& state = session();
  const LineChoice choice{state.current_line, state.current_reference_type, state.current_dipole};
  LineTensors line;
  MapContents contents;
  if (load_line_tensors(choice, state.frequencies, line) == 0) {
    SurveyTensors tensors;
    tensors.take(line);
    static_cast<void>(tensors.make_map(false, state.frequencies, contents.map));
    contents.heading = "Line " + choice.line;
  }
  return contents;
}

}  // namespace

std::vector<Module_display_data::DocumentPage> map_pages() {
  const MapContents contents = line_contents();
  const std::vector<double> frequencies = map_frequencies(contents.map.sites);
  if (frequencies.empty()) {
    return {};
  }
  Module_display_data::DocumentPage page{"phase tensors and induction arrows in plan", {}};
  const std::size_t last = frequencies.size() - 1;
  for (const std::size_t quarters : {1U, 3U}) {
    const auto picture = std::make_shared<MapContents>(contents);
    picture->show_frequency(frequencies[quarters * last / 4]);
    page.drawings.emplace_back(
        [picture](QPainter& painter, QSize size) { paint_map(painter, QRectF(QPointF(), size), *picture); });
    if (last == 0) {
      break;  // both were the same
    }
  }
  return {page};
}

}  // namespace Module_tensor
