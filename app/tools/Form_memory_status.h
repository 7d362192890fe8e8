// Form_memory_status.h: the memory of the machine and what the program takes of it, kept up to date.
#pragma once
#include <QDialog>

class QLineEdit;

class Form_memory_status : public QDialog {
  Q_OBJECT

 public:
  explicit Form_memory_status(QWidget* parent = nullptr);

 private:
  void show_status();

  QLineEdit* Text_physical_;
  QLineEdit* Text_paging_;
  QLineEdit* Text_program_;
  QLineEdit* Text_program_peak_;
};
