#include "platform/graph/pdf_pages.h"

#include <QCoreApplication>
#include <QPageSize>
#include <QPdfWriter>
#include <stdexcept>

#include <qcustomplot.h>

#include "platform/graph/VexGraphControl.h"
#include "platform/graph/pdf_page.h"

namespace graph {

namespace {

constexpr double heading_height = 34.0;
constexpr double caption_height = 22.0;
constexpr double gap = 8.0;  // between the parts of a page

QFont heading_font(double points) {
  QFont font;
  font.setPointSizeF(points);
  font.setBold(true);
  return font;
}

/// A text as it fits into a width; both ends of a longer one stay.
QString fitting(const QPainter& painter, const QString& text, double width) {
  return QFontMetricsF(painter.font(), painter.device()).elidedText(text, Qt::ElideMiddle, width);
}

}  // namespace

PdfPages::PdfPages(const QString& path, const QString& title) : file_(path) {
  writer_ = std::make_unique<QPdfWriter>(&file_.device());
  writer_->setCreator(QCoreApplication::applicationName());
  writer_->setTitle(title);
  writer_->setResolution(dots_per_inch);
  writer_->setPageSize(QPageSize(QPageSize::A4));
  writer_->setPageOrientation(QPageLayout::Landscape);
  writer_->setPageMargins(QMarginsF(10, 10, 10, 10), QPageLayout::Millimeter);
}

PdfPages::~PdfPages() {
  if (painter_ && painter_->isActive()) {
    painter_->end();
  }
}

void PdfPages::begin_page(const QString& heading) {
  if (painter_) {
    writer_->newPage();
  } else {
    painter_ = std::make_unique<QCPPainter>();
    if (!painter_->begin(writer_.get())) {
      throw std::runtime_error("the page can't be drawn");
    }
    painter_->setMode(QCPPainter::pmVectorized);
    painter_->setMode(QCPPainter::pmNoCaching);
  }
  painter_->setFont(heading_font(13.0));
  painter_->drawText(QRectF(0, 0, writer_->width(), heading_height), Qt::AlignLeft | Qt::AlignTop,
                     fitting(*painter_, heading, writer_->width()));
}

QRectF PdfPages::on_page(const QRectF& part) const {
  const double height = writer_->height() - heading_height;
  return {part.x() * writer_->width(), heading_height + part.y() * height,
          part.width() * writer_->width() - gap, part.height() * height - gap};
}

QRectF PdfPages::caption(const QString& text, const QRectF& part) {
  QRectF place = on_page(part);
  place.setHeight(caption_height);
  painter_->setFont(heading_font(10.0));
  painter_->drawText(place, Qt::AlignLeft | Qt::AlignVCenter, fitting(*painter_, text, place.width()));
  const double share = caption_height / (writer_->height() - heading_height);
  return part.adjusted(0.0, share, 0.0, 0.0);
}

void PdfPages::place(VexGraphControl& chart, const QRectF& part) {
  const QRectF place = on_page(part);
  painter_->save();
  painter_->translate(place.topLeft());
  chart.draw_on(*painter_, place.size().toSize());
  painter_->restore();
}

void PdfPages::place(const std::function<void(QPainter& painter, QSize size)>& paint, const QRectF& part) {
  const QRectF place = on_page(part);
  painter_->save();
  painter_->translate(place.topLeft());
  paint(*painter_, place.size().toSize());
  painter_->restore();
}

void PdfPages::finish() {
  if (!painter_ || !painter_->end()) {
    throw std::runtime_error("the page can't be written");
  }
  file_.finish();
}

}  // namespace graph
