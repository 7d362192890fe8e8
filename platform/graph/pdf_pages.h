// pdf_pages.h: charts on the pages of a PDF document.
#pragma once
#include <QRectF>
#include <QSize>
#include <QString>
#include <functional>
#include <memory>

#include "platform/graph/picture_file.h"

class QCPPainter;
class QPainter;
class QPdfWriter;
class VexGraphControl;

namespace graph {

/// A document being written. An earlier file at the path stays until the document is finished; one that is
/// never finished leaves nothing.
class PdfPages {
 public:
  PdfPages(const QString& path, const QString& title);
  PdfPages(const PdfPages&) = delete;
  PdfPages& operator=(const PdfPages&) = delete;
  ~PdfPages();

  /// Begins a page, A4 across, with a heading.
  void begin_page(const QString& heading);
  /// Draws a chart, as vectors, in a part of the page below the heading.
  /// @param part  in shares of the page: QRectF(0, 0, 0.5, 1) is its left half
  void place(VexGraphControl& chart, const QRectF& part);
  /// Lets something else draw in a part of the page, as large as it is told.
  void place(const std::function<void(QPainter& painter, QSize size)>& paint, const QRectF& part);
  /// A line of text at the top of a part of the page.
  /// @return what is left of the part
  QRectF caption(const QString& text, const QRectF& part);
  /// Writes the document. Throws std::runtime_error with the system's description.
  void finish();

 private:
  [[nodiscard]] QRectF on_page(const QRectF& part) const;

  PictureFile file_;
  std::unique_ptr<QPdfWriter> writer_;
  std::unique_ptr<QCPPainter> painter_;  // from the first page on
};

}  // namespace graph
