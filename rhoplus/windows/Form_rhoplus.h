// Form_rhoplus.h: the settings of Rho+ inversion. Each valid entry takes effect at once; closing stores them
// for the user.
#pragma once
#include <QDialog>
#include <QString>
#include <memory>

#include "output/rhoplus_settings.h"

namespace Ui {
class Form_rhoplus;
}
class QLineEdit;

class Form_rhoplus : public QDialog {
  Q_OBJECT

 public:
  /// @param settings  outlive the window
  explicit Form_rhoplus(Module_output::RhoplusSettings& settings, QWidget* parent = nullptr);
  ~Form_rhoplus() override;

  /// There is no cancelling: every way of closing stores the settings.
  void done(int result) override;
  void accept() override;

 private:
  void show_settings();
  void connect_controls();
  void show_hint();
  void mark(QLineEdit& box, const QString& fault);

  Module_output::RhoplusSettings& settings_;
  QString file_errors_hint_;  // of the session's line; empty where there is nothing to say
  std::unique_ptr<Ui::Form_rhoplus> ui_;
};
