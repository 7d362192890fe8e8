#include "platform/graph/painted_file.h"

#include <QImage>
#include <QPdfWriter>
#include <stdexcept>

#include "platform/graph/pdf_page.h"
#include "platform/graph/picture_axes.h"
#include "platform/graph/picture_file.h"

namespace graph {

namespace {

void paint_on(QPaintDevice& device, QSize size, const PaintPicture& paint) {
  QPainter painter;
  if (!painter.begin(&device)) {
    throw std::runtime_error("the picture can't be drawn");
  }
  use_picture_style(painter);
  paint(painter, QRectF(QPointF(), size));
  if (!painter.end()) {
    throw std::runtime_error("the picture can't be written");
  }
}

void write_png(PictureFile& file, QSize size, const PaintPicture& paint) {
  constexpr double scale = 2.0;  // stays sharp in a report
  QImage image(size * scale, QImage::Format_RGB32);
  if (image.isNull()) {
    throw std::runtime_error("the picture is too large");
  }
  image.setDevicePixelRatio(scale);
  image.fill(Qt::white);
  paint_on(image, size, paint);
  if (!image.save(&file.device(), "PNG")) {
    throw std::runtime_error("the picture can't be written");
  }
}

void write_pdf(PictureFile& file, const QString& title, QSize size, const PaintPicture& paint) {
  QPdfWriter writer(&file.device());
  fit_page_to(writer, size);
  writer.setTitle(title);
  paint_on(writer, size, paint);
}

}  // namespace

void write_painted(const QString& path, const QString& title, QSize size, const PaintPicture& paint) {
  PictureFile file(path);
  if (path.endsWith(".pdf", Qt::CaseInsensitive)) {
    write_pdf(file, title, size, paint);
  } else if (path.endsWith(".png", Qt::CaseInsensitive)) {
    write_png(file, size, paint);
  } else {
    throw std::runtime_error(path.toStdString() + " ends neither in .png nor in .pdf");
  }
  file.finish();
}

}  // namespace graph
