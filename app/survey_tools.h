// survey_tools.h: work on the open survey that menu items start: removal, names, tables, frequencies.
#pragma once
#include <QObject>

#include "database/table_rows.h"

class QWidget;
class SurveyDisplay;

class SurveyTools : public QObject {
  Q_OBJECT

 public:
  /// @param display outlives this object, as does the window, which its dialogs stand over
  SurveyTools(SurveyDisplay& display, QWidget& window);

  void recalculate_merged();
  void remove_readings();
  void undo_removal();
  void rename_line_or_station();
  void view_table(const Module_database::ViewedTable& table);
  void select_frequencies();

 Q_SIGNALS:
  /// Readings have gone or come back, or have other names.
  void readings_changed();

 private:
  SurveyDisplay& display_;
  QWidget& window_;
};
