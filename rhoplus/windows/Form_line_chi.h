// Form_line_chi.h: chi by station after an inversion of a whole line, beside the results of one station.
#pragma once
#include <QDialog>
#include <vector>

#include "rhoplus/line_chi.h"

class QLabel;
class QTableWidget;

class Form_line_chi : public QDialog {
  Q_OBJECT

 public:
  explicit Form_line_chi(QWidget* parent = nullptr);

  /// Shows the stations of a line in place of what was shown; sorted as the user has sorted before.
  /// @param complete  false: the run was stopped before the end of the line
  void show_line(const QString& line, std::vector<Module_rhoplus::StationChi> stations, bool complete);
  /// Makes the row of the displayed station the current one; without effect where it has none.
  void mark_station(std::int32_t station_index);

 Q_SIGNALS:
  /// Index of the survey, from 1.
  void station_chosen(int station_index);

 private:
  void fill();
  void widen();
  void save();
  [[nodiscard]] std::string shown_text() const;

  QTableWidget* Grid_chi_;
  QLabel* Label_chi_summary_;
  QString line_;
  std::vector<Module_rhoplus::StationChi> stations_;
  bool filling_ = false;
};
