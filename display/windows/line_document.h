// line_document.h: all graphs of a line as a PDF document.
#pragma once
#include <QPainter>
#include <QSize>
#include <functional>
#include <span>
#include <string>
#include <vector>

#include "display/line_axis.h"
#include "reduction/each_item.h"

namespace Module_display_data {

/// A page that shows the line as a whole, made elsewhere.
struct DocumentPage {
  std::string title;  // behind the name of the line
  /// Drawings side by side, each as large as it is told.
  std::vector<std::function<void(QPainter& painter, QSize size)>> drawings;
};
/// Makes such pages when the document comes to them.
using MakePages = std::function<std::vector<DocumentPage>()>;
/// The pages of one, then those of the other.
MakePages joined(MakePages first, MakePages then);

/// Writes the current line: a page with the profile, then a page for each station with its merged curve and
/// averages beside the repeats of each scan rate, then the further pages. Needs a station to be selected;
/// data sets and selection are the same afterwards. Shows progress, and can be stopped between stations; an
/// earlier file is then as before.
/// @param positions  of the stations in the profile; a line without distances has it by station numbers
/// @return failed after a message
[[nodiscard]] Module_averaged_data::Outcome write_line_document(
    const std::string& path, PositionSource positions = PositionSource::station_numbers,
    const MakePages& further_pages = {});

}  // namespace Module_display_data
