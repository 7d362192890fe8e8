// Form_rhoplus.h: the settings of Rho+ inversion. Each valid entry holds at once; closing keeps them for the
// user.
#pragma once
#include <QDialog>
#include <memory>

namespace Ui {
class Form_rhoplus;
}

class Form_rhoplus : public QDialog {
  Q_OBJECT

 public:
  explicit Form_rhoplus(QWidget* parent = nullptr);
  ~Form_rhoplus() override;

  /// There is no cancelling: every way of closing keeps the settings.
  void done(int result) override;

 private:
  void show_settings();
  void connect_controls();

  std::unique_ptr<Ui::Form_rhoplus> ui_;
};
