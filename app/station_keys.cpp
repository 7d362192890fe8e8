#include "app/station_keys.h"

#include <QAbstractItemView>
#include <QAbstractSlider>
#include <QApplication>
#include <QRadioButton>
#include <QShortcut>
#include <QTabBar>

#include "app/panels/selection_row.h"

namespace {

/// Controls in which Left and Right move something. Text boxes see to it that they get these keys.
bool uses_left_and_right(const QWidget* control) {
  if (const auto* const bar = qobject_cast<const QAbstractSlider*>(control)) {
    return bar->orientation() == Qt::Horizontal;
  }
  return qobject_cast<const QAbstractItemView*>(control) != nullptr ||
         qobject_cast<const QRadioButton*>(control) != nullptr ||
         qobject_cast<const QTabBar*>(control) != nullptr;
}

}  // namespace

void add_station_keys(SelectionRow& row) {
  for (const int step : {-1, 1}) {
    const QKeySequence keys(step < 0 ? Qt::Key_Left : Qt::Key_Right);
    auto* const key = new QShortcut(keys, &row);
    QObject::connect(key, &QShortcut::activated, &row, [&row, step] { row.step_station(step); });
    QObject::connect(qApp, &QApplication::focusChanged, key,
                     [key, keys](const QWidget* /*left*/, const QWidget* focused) {
                       // A disabled shortcut would still keep the key from the control.
                       key->setKey(uses_left_and_right(focused) ? QKeySequence() : keys);
                     });
  }
}
