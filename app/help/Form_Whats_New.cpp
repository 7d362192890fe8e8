#include "app/help/Form_Whats_New.h"

#include "app/help/manual_pages.h"
#include "platform/widgets/panel_controls.h"
#include "ui_Form_Whats_New.h"

Form_Whats_New::Form_Whats_New(QWidget* parent)
    : QDialog(parent), ui_(std::make_unique<Ui::Form_Whats_New>()) {
  ui_->setupUi(this);
  ui_->Text_whats_new->setSource(changelog(), QTextDocument::MarkdownResource);
  resize_to_fit(*this, {fontMetrics().averageCharWidth() * 80, fontMetrics().height() * 24});
  connect(ui_->Command_back, &QPushButton::clicked, ui_->Text_whats_new, &QTextBrowser::backward);
  connect(ui_->Text_whats_new, &QTextBrowser::backwardAvailable, ui_->Command_back, &QWidget::setEnabled);
  connect(ui_->Command_done, &QPushButton::clicked, this, &QDialog::accept);
}

Form_Whats_New::~Form_Whats_New() = default;
