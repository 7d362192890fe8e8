#include "platform/graph/pdf_page.h"

#include <QCoreApplication>
#include <QPageSize>
#include <QPdfWriter>

namespace graph {

void fit_page_to(QPdfWriter& writer, QSize size) {
  constexpr double points_per_dot = 72.0 / dots_per_inch;
  writer.setCreator(QCoreApplication::applicationName());
  writer.setResolution(dots_per_inch);
  writer.setPageSize(
      QPageSize(QSizeF(size) * points_per_dot, QPageSize::Point, QString(), QPageSize::ExactMatch));
  writer.setPageMargins(QMarginsF());
}

}  // namespace graph
