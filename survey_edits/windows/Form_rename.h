// Form_rename.h: another name for a line, another number for a station.
#pragma once
#include <QDialog>
#include <string>

#include "survey_edits/survey_contents.h"

class QComboBox;
class QLabel;
class QLineEdit;
class QPushButton;

class Form_rename : public QDialog {
  Q_OBJECT

 public:
  /// @param contents of the open survey
  /// @param line to begin with
  Form_rename(Module_survey_edits::SurveyContents contents, const std::string& line, QWidget* parent);

 private:
  void compose();
  void list_stations();
  void show_change();
  void rename();
  [[nodiscard]] const Module_survey_edits::HeldLine& line() const;
  /// Null: the line is to be renamed.
  [[nodiscard]] const Module_survey_edits::HeldStation* station() const;

  Module_survey_edits::SurveyContents contents_;
  QComboBox* Combo_line_;
  QComboBox* Combo_station_;
  QLineEdit* Text_name_;
  QLabel* Label_fault_;
  QLabel* Label_change_;
  QPushButton* Command_rename_;
};
