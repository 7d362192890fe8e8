#include "platform/graph/graph_export.h"

#include <QClipboard>
#include <QFileInfo>
#include <QGuiApplication>
#include <QPdfWriter>
#include <stdexcept>

#include <qcustomplot.h>

#include "core/finished_work.h"
#include "core/trap_errors.h"
#include "core/user_interface.h"
#include "platform/graph/pdf_page.h"
#include "platform/graph/picture_file.h"

namespace graph {
namespace {

constexpr std::string_view failure_text = "An error occurred while saving the graph: ";
constexpr double picture_scale = 2.0;  // pictures saved from the menu stay sharp in a report

void write_pdf(QCustomPlot& plot, PictureFile& file, QSize size) {
  QPdfWriter writer(&file.device());
  fit_page_to(writer, size);
  QCPPainter painter;
  if (!painter.begin(&writer)) {
    throw std::runtime_error("the page can't be drawn");
  }
  painter.setMode(QCPPainter::pmVectorized);
  painter.setMode(QCPPainter::pmNoCaching);
  plot.toPainter(&painter, size.width(), size.height());
  if (!painter.end()) {
    throw std::runtime_error("the page can't be written");
  }
}

/// @return the path, empty if the user cancels
std::string ask_path(const FileDialogRequest& request) {
  std::string path = user_interface().select_file_to_create(request);
  if (path.empty()) {
    return {};
  }
  if (QFileInfo::exists(QString::fromStdString(path)) &&
      !user_interface().ask_yes_no("The file " + path + " exists. Replace it?")) {
    return {};
  }
  return path;
}

void tell_path(const std::string& path) {
  user_interface().show_message("The graph is written to " + path);
  Module_Brenlox::tell_finished("The graph is written to " + path, path);
}

}  // namespace

int save_png(QCustomPlot& plot, const std::string& path, QSize size, double scale) {
  return trap_errors(failure_text, [&] {
    if (size.isEmpty() || !(scale > 0.0)) {
      throw std::runtime_error("the picture has no size");
    }
    PictureFile file(QString::fromStdString(path));
    if (!plot.toPixmap(size.width(), size.height(), scale).save(&file.device(), "PNG")) {
      throw std::runtime_error("the picture can't be written");
    }
    file.finish();
  });
}

int save_pdf(QCustomPlot& plot, const std::string& path, QSize size) {
  return trap_errors(failure_text, [&] {
    if (size.isEmpty()) {
      throw std::runtime_error("the page has no size");
    }
    PictureFile file(QString::fromStdString(path));
    write_pdf(plot, file, size);
    file.finish();
  });
}

void copy_to_clipboard(QCustomPlot& plot, double scale) {
  QGuiApplication::clipboard()->setPixmap(plot.toPixmap(plot.width(), plot.height(), scale));
}

void ask_and_save_png(QCustomPlot& plot) {
  const std::string path = ask_path({.title = "Save the graph as PNG",
                                     .filter = "PNG pictures (*.png)|*.png|All files (*.*)|*.*",
                                     .default_extension = "*.png",
                                     .directory = {},
                                     .suggested_name = "graph.png"});
  if (!path.empty() && save_png(plot, path, plot.size(), picture_scale) == 0) {
    tell_path(path);
  }
}

void ask_and_save_pdf(QCustomPlot& plot) {
  const std::string path = ask_path({.title = "Save the graph as PDF",
                                     .filter = "PDF documents (*.pdf)|*.pdf|All files (*.*)|*.*",
                                     .default_extension = "*.pdf",
                                     .directory = {},
                                     .suggested_name = "graph.pdf"});
  if (!path.empty() && save_pdf(plot, path, plot.size()) == 0) {
    tell_path(path);
  }
}

}  // namespace graph
