// picture_repeats.h: the panel of the repeats: the raw graph's legend, with the switches of each repeat.
#pragma once
#include <QWidget>

class QTableWidget;

class RepeatsPanel : public QWidget {
  Q_OBJECT

 public:
  explicit RepeatsPanel(QWidget* parent = nullptr);

  /// Lists the repeats of the repeat data set.
  void show_repeats();

 Q_SIGNALS:
  void edited();

 private:
  void switch_cell(int row, int column);

  QTableWidget* Grid_repeats_;
};
