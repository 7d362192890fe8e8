#include "app/Form_Whats_New.h"

#include "ui_Form_Whats_New.h"

Form_Whats_New::Form_Whats_New(QWidget* parent)
    : QDialog(parent), ui_(std::make_unique<Ui::Form_Whats_New>()) {
  ui_->setupUi(this);
  ui_->Text_whats_new->setHtml(
      "<h3>Brenlox 1.00</h3>"
      "<ul>"
      "<li>Surveys are kept in a database file that any SQLite browser opens. A survey of an earlier kind "
      "(Jet) is converted when it is opened; its original file is kept beside it.</li>"
      "<li>Opening packs the survey and keeps its earlier state in a .bak file. A crash at any moment leaves "
      "a whole survey.</li>"
      "<li>Save Database As replaces an existing file only when the copy is complete.</li>"
      "<li>Field files come in through Database, Import, MT Data: a sample shows how each file would "
      "be taken, and a report says what was ignored or could not be read.</li>"
      "<li>A click on a point of a graph masks it; averages, merged curves and the profile follow at once. "
      "Edit, Undo takes every edit back and Edit, Redo does it again.</li>"
      "<li>Graphs zoom by wheel or by a dragged rectangle, tell what is under the pointer, and save "
      "as PNG or PDF.</li>"
      "<li>Database, View Table shows survey tables of any size at once.</li>"
      "<li>Long work shows how far it is and can be stopped.</li>"
      "</ul>");
  resize(fontMetrics().averageCharWidth() * 80, fontMetrics().height() * 24);
  connect(ui_->Command_done, &QPushButton::clicked, this, &QDialog::accept);
}

Form_Whats_New::~Form_Whats_New() = default;
