// number_cell.h: cells of a table that are sorted by their numbers.
#pragma once
#include <QTableWidgetItem>
#include <cmath>

/// Those without a number stand at the end.
class NumberCell final : public QTableWidgetItem {
 public:
  static constexpr int number_role = Qt::UserRole + 1;

  /// @param number  NaN: none
  NumberCell(const QString& text, double number) : QTableWidgetItem(text) {
    setData(number_role, number);
    setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
  }
  bool operator<(const QTableWidgetItem& other) const override {
    const double left = data(number_role).toDouble();
    const double right = other.data(number_role).toDouble();
    return std::isnan(right) ? !std::isnan(left) : left < right;
  }
};
