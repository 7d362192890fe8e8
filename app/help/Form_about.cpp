#include "app/help/Form_about.h"

#include <QFont>

#include "core/session_state.h"
#include "ui_Form_about.h"

Form_about::Form_about(QWidget* parent) : QDialog(parent), ui_(std::make_unique<Ui::Form_about>()) {
  ui_->setupUi(this);
  QFont heading = font();
  heading.setPointSizeF(heading.pointSizeF() * 1.8);
  heading.setBold(true);
  ui_->Label_name->setFont(heading);
  ui_->Label_about_version->setText("Version " + QString::fromStdString(session().version_text));
  ui_->Label_about_text->setMinimumWidth(fontMetrics().averageCharWidth() * 60);
  connect(ui_->Command_done, &QPushButton::clicked, this, &QDialog::accept);
}

Form_about::~Form_about() = default;
