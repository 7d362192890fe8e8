// progress_dialog.h: what long work is doing, how far it is, and a button to stop it.
#pragma once
#include <QDialog>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>

class ProgressDialog : public QDialog {
  Q_OBJECT

 public:
  explicit ProgressDialog(QWidget* parent = nullptr);

  void show_progress(const QString& what, int percent);
  [[nodiscard]] bool stop_requested() const { return stop_requested_; }

  /// Esc and the window's close button ask to stop, as the Stop button does; the dialog closes when the
  /// work ends.
  void reject() override;

 private:
  QLabel* what_;
  QProgressBar* bar_;
  QPushButton* stop_;
  bool stop_requested_ = false;
};
