// Form_about.h: the program's name, version and licence.
#pragma once
#include <QDialog>
#include <memory>

namespace Ui {
class Form_about;
}

class Form_about : public QDialog {
  Q_OBJECT

 public:
  explicit Form_about(QWidget* parent = nullptr);
  ~Form_about() override;

 private:
  std::unique_ptr<Ui::Form_about> ui_;
};
