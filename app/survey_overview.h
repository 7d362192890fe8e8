// survey_overview.h: the open survey at a glance: its totals, a tree of lines and stations, and the readings
// of the station chosen in the tree.
#pragma once
#include <QLabel>
#include <QObject>
#include <QTreeWidget>

#include "app/survey_summary.h"

class SurveyOverview : public QObject {
  Q_OBJECT

 public:
  /// Puts its widgets into the three panes of the display.
  SurveyOverview(QWidget* profile_pane, QWidget* station_pane, QWidget* plan_pane);

  /// Shows a survey; the chosen station stays chosen if it is still there. Does nothing for what is shown
  /// already.
  void show_survey(const QString& name, const Module_Brenlox::SurveySummary& summary);

 private:
  void show_totals(const QString& name);
  void fill_tree();
  void show_station();

  QLabel* survey_name_;
  QLabel* totals_;
  QTreeWidget* tree_;
  QLabel* station_name_;
  QTreeWidget* readings_;
  QString shown_name_;
  Module_Brenlox::SurveySummary shown_;
};
