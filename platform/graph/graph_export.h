// graph_export.h: a chart as a picture in the clipboard or a file, and the menu that offers it.
#pragma once
#include <QSize>
#include <string>

class QCustomPlot;

namespace graph {

/// Both write beside the file first: when they fail, an earlier file at the path is as before.
/// @param path  UTF-8
/// @param size  device-independent pixels of the chart
/// @param scale  device pixels of the picture for each of them
/// @return 0, or -1 after a message
[[nodiscard]] int save_png(QCustomPlot& plot, const std::string& path, QSize size, double scale);
[[nodiscard]] int save_pdf(QCustomPlot& plot, const std::string& path, QSize size);

void copy_to_clipboard(QCustomPlot& plot, double scale);

/// Asks for a file name and, when the file exists, whether to replace it. Both report a
/// failure.
void ask_and_save_png(QCustomPlot& plot);
void ask_and_save_pdf(QCustomPlot& plot);

}  // namespace graph
