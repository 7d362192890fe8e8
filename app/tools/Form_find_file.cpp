#include "app/tools/Form_find_file.h"

#include "platform/system/find_file_in_path.h"
#include "ui_Form_find_file.h"

Form_find_file::Form_find_file(QWidget* parent)
    : QDialog(parent), ui_(std::make_unique<Ui::Form_find_file>()) {
  ui_->setupUi(this);
  ui_->Text_file_path->setMinimumWidth(fontMetrics().averageCharWidth() * 60);
  connect(ui_->Command_find_file_in_path, &QPushButton::clicked, this, &Form_find_file::find);
  connect(ui_->Command_done, &QPushButton::clicked, this, &QDialog::accept);
}

Form_find_file::~Form_find_file() = default;

void Form_find_file::find() {
  const std::string path = find_file_in_path(ui_->Text_file_name->text().trimmed().toStdString());
  ui_->Text_file_path->setText(path.empty() ? "Not found in the path" : QString::fromStdString(path));
}
