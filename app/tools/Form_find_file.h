// Form_find_file.h: looks for a file in the directories of the command path.
#pragma once
#include <QDialog>
#include <memory>

namespace Ui {
class Form_find_file;
}

class Form_find_file : public QDialog {
  Q_OBJECT

 public:
  explicit Form_find_file(QWidget* parent = nullptr);
  ~Form_find_file() override;

 private:
  void find();

  std::unique_ptr<Ui::Form_find_file> ui_;
};
