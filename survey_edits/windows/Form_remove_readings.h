// Form_remove_readings.h: choosing files, stations and lines that are to be taken out of the survey.
#pragma once
#include <QDialog>
#include <functional>
#include <set>
#include <vector>

#include "survey_edits/removal_plan.h"

class CheckedList;
class QCheckBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QTabWidget;

class Form_remove_readings : public QDialog {
  Q_OBJECT

 public:
  /// @param contents of the open survey
  Form_remove_readings(Module_survey_edits::SurveyContents contents, QWidget* parent);

 private:
  void add_list(const QString& title, const QString& name, const QStringList& headers, std::size_t rows,
                const std::function<QVariant(std::size_t, int)>& value, std::set<std::size_t>& checked);
  void list_files();
  void list_stations();
  void list_lines();
  void compose();
  void offer_ghosts();
  [[nodiscard]] QString lines_of(const Module_survey_edits::HeldFile& file) const;
  [[nodiscard]] QString stations_of(const Module_survey_edits::HeldFile& file) const;
  [[nodiscard]] Module_survey_edits::Choice choice() const;
  void show_what_goes();
  void filter(const QString& text);
  void check_shown(bool checked);
  void remove_chosen();

  Module_survey_edits::SurveyContents contents_;
  Module_survey_edits::RemovalPlan plan_;
  std::set<std::size_t> files_;  // that are chosen
  std::set<std::size_t> stations_;
  std::set<std::size_t> lines_;

  QTabWidget* Tab_contents_;
  QLineEdit* Text_filter_;
  QCheckBox* Check_ghosts_;
  QLabel* Label_what_goes_;
  QPushButton* Command_remove_ = nullptr;
  std::vector<CheckedList*> lists_;
};
