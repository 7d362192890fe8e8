#include "app/opening_page.h"

#include <QFileInfo>
#include <QHBoxLayout>
#include <QLabel>
#include <QPaintEvent>
#include <QPainter>
#include <QVBoxLayout>

namespace {

void add_text(QVBoxLayout* rows, const QString& text, double size) {
  auto* const label = new QLabel(text);
  QFont font = label->font();
  font.setPointSizeF(font.pointSizeF() * size);
  label->setFont(font);
  label->setAlignment(Qt::AlignHCenter);
  rows->addWidget(label);
}

}  // namespace

OpeningPage::OpeningPage(QWidget* parent)
    : QWidget(parent),
      first_steps_(new QWidget(this)),
      new_button_(new QPushButton("New survey...")),
      open_button_(new QPushButton("Open survey...")) {
  new_button_->setObjectName("Command_new_survey");
  open_button_->setObjectName("Command_open_survey");
  new_button_->setToolTip("Makes an empty survey to import field files into");
  open_button_->setToolTip("Opens a survey that is there");
  auto* const rows = new QVBoxLayout(first_steps_);
  rows->addStretch(2);
  add_text(rows, "Brenlox", 2.4);
  add_text(rows, "Magnetotelluric field data, from field files to reduced curves", 1.15);
  rows->addSpacing(fontMetrics().height() * 2);
  add_text(rows, "Make a new survey database or open one to begin.", 1.0);
  rows->addSpacing(fontMetrics().height() / 2);
  auto* const buttons = new QHBoxLayout;
  buttons->addStretch();
  for (QPushButton* const button : {new_button_, open_button_}) {
    button->setMinimumWidth(fontMetrics().averageCharWidth() * 26);
    button->setMinimumHeight(fontMetrics().height() * 2);
    buttons->addWidget(button);
  }
  buttons->addStretch();
  rows->addLayout(buttons);
  rows->addSpacing(fontMetrics().height());
  add_text(rows, "Recent surveys stand in the File menu.", 1.0);
  rows->addStretch(3);

  auto* const page = new QVBoxLayout(this);
  page->addWidget(first_steps_);
}

void OpeningPage::set_picture(const QString& path) {
  picture_ = QFileInfo(path).isFile() ? QPixmap(path) : QPixmap();  // a pipe would be waited for
  first_steps_->setVisible(picture_.isNull());
  update();
}

void OpeningPage::paintEvent(QPaintEvent* event) {
  QWidget::paintEvent(event);
  if (picture_.isNull()) {
    return;
  }
  QPainter painter(this);
  painter.setRenderHint(QPainter::SmoothPixmapTransform);
  QRect place(QPoint(), picture_.size().scaled(size(), Qt::KeepAspectRatio));
  place.moveCenter(rect().center());
  painter.drawPixmap(place, picture_);
}
