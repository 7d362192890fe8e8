#include "platform/windows/progress_dialog.h"

#include <QApplication>
#include <QHBoxLayout>
#include <QVBoxLayout>

ProgressDialog::ProgressDialog(QWidget* parent)
    : QDialog(parent), what_(new QLabel(this)), bar_(new QProgressBar(this)), stop_(new QPushButton(this)) {
  setObjectName("Form_progress");
  setWindowTitle(QApplication::applicationDisplayName());
  setWindowModality(Qt::ApplicationModal);
  what_->setObjectName("Label_progress");
  what_->setWordWrap(true);
  what_->setTextFormat(Qt::PlainText);
  bar_->setObjectName("Progress_bar");
  bar_->setRange(0, 100);
  stop_->setObjectName("Command_stop");
  stop_->setText("&Stop");
  connect(stop_, &QPushButton::clicked, this, &ProgressDialog::reject);

  auto* const buttons = new QHBoxLayout;
  buttons->addStretch();
  buttons->addWidget(stop_);
  auto* const rows = new QVBoxLayout(this);
  rows->addWidget(what_, 1);
  rows->addWidget(bar_);
  rows->addLayout(buttons);
  setMinimumWidth(fontMetrics().averageCharWidth() * 60);  // stays as wide when the text grows
}

void ProgressDialog::show_progress(const QString& what, int percent) {
  what_->setText(stop_requested_ ? "Stopping..." : what);
  bar_->setValue(percent);
}

void ProgressDialog::reject() {
  stop_requested_ = true;
  stop_->setEnabled(false);
  what_->setText("Stopping...");
}
