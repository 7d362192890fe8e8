// Form_Whats_New.h: what has changed for the user.
#pragma once
#include <QDialog>
#include <memory>

namespace Ui {
class Form_Whats_New;
}

class Form_Whats_New : public QDialog {
  Q_OBJECT

 public:
  explicit Form_Whats_New(QWidget* parent = nullptr);
  ~Form_Whats_New() override;

 private:
  std::unique_ptr<Ui::Form_Whats_New> ui_;
};
