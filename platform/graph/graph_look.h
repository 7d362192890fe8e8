// graph_look.h: the look of a chart: white, thin grey grid, titled axes; the same in every system palette.
#pragma once
#include <QFont>
#include <QString>

class QCPItemText;
class QCustomPlot;

namespace graph {

/// Colours and pens, once. @return the item of the vertical axis's title, which has a place of its own at the
/// left edge so that the titles and plot areas of charts above each other line up whatever their tick labels.
QCPItemText* apply_look(QCustomPlot& plot);

/// Fonts and the margins that follow from them. Without horizontal labels there is no room for them.
void apply_fonts(QCustomPlot& plot, QCPItemText& y_title, const QFont& font, bool horizontal_labels);

/// A title cut from the front, word by word, until it fits: the unit is the last thing to go.
QString fitting_title(const QString& title, const QFont& font, double length);

}  // namespace graph
