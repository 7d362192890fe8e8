#include "app/plan_panel.h"

#include <QEvent>
#include <QGridLayout>
#include <QScrollBar>
#include <QSignalBlocker>
#include <QWheelEvent>

#include "app/plan_picture.h"
#include "core/session_state.h"
#include "display/plan_view.h"

namespace {

constexpr int pan_steps = 10;    // a step moves the plan by a tenth of its size
constexpr int scale_steps = 20;  // 1.585 to this power is 10,000 times the fitted plan

// A spring: each step moves the plan, and the bar goes back to its middle.
QScrollBar* spring_bar(Qt::Orientation orientation, const char* name, const char* tool_tip, QWidget* parent) {
  auto* const bar = new QScrollBar(orientation, parent);
  bar->setObjectName(name);
  bar->setToolTip(tool_tip);
  bar->setRange(-pan_steps, pan_steps);
  bar->setPageStep(pan_steps / 2);
  return bar;
}

}  // namespace

PlanPanel::PlanPanel(QWidget* picture_plan)
    : QObject(picture_plan),
      picture_(new PlanPicture(picture_plan)),
      x_centre_(spring_bar(Qt::Horizontal, "HScroll_x_centre", "Move the plan east and west", picture_plan)),
      y_centre_(spring_bar(Qt::Vertical, "VScroll_y_centre", "Move the plan north and south", picture_plan)),
      scale_(new QScrollBar(Qt::Vertical, picture_plan)) {
  picture_->setObjectName("Picture_site_map");
  scale_->setObjectName("VScroll_scale");
  scale_->setToolTip("Zoom the plan");
  scale_->setRange(0, scale_steps);
  scale_->setPageStep(2);

  auto* const grid = new QGridLayout(picture_plan);
  grid->setContentsMargins(0, 0, 0, 0);
  grid->setSpacing(3);
  grid->addWidget(picture_, 0, 0);
  grid->addWidget(y_centre_, 0, 1);
  grid->addWidget(scale_, 0, 2);
  grid->addWidget(x_centre_, 1, 0);
  grid->setRowStretch(0, 1);
  grid->setColumnStretch(0, 1);

  connect(picture_, &PlanPicture::station_picked, this, &PlanPanel::station_picked);
  connect(picture_, &PlanPicture::pointer_moved, this, &PlanPanel::pointer_moved);
  connect(picture_, &PlanPicture::pointer_left, this, &PlanPanel::pointer_left);
  connect(scale_, &QScrollBar::valueChanged, this, &PlanPanel::display);
  connect(x_centre_, &QScrollBar::valueChanged, this,
          [this] { pan(x_centre_, Module_display_data::pan_plan_x); });
  connect(y_centre_, &QScrollBar::valueChanged, this,
          [this] { pan(y_centre_, Module_display_data::pan_plan_y); });
  picture_->installEventFilter(this);
}

void PlanPanel::display() {
  const int shown = picture_->show_plan(scale_->value());
  const QSignalBlocker silent(scale_);
  scale_->setValue(shown);
}

void PlanPanel::pan(QScrollBar* bar, void (*move)(int)) {
  if (session().updating_controls) {
    return;
  }
  move(bar->value());
  display();
  const QSignalBlocker silent(bar);
  bar->setValue(0);
}

// The plan's scale depends on the picture's size; the wheel zooms as on the graphs.
bool PlanPanel::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::Resize) {
    display();
  } else if (event->type() == QEvent::Wheel) {
    const int turned = static_cast<QWheelEvent*>(event)->angleDelta().y();
    scale_->setValue(scale_->value() + (turned > 0 ? 1 : -1));
    return true;
  }
  return QObject::eventFilter(watched, event);
}
