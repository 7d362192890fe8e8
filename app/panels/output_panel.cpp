#include "app/panels/output_panel.h"

#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QShortcut>
#include <algorithm>
#include <filesystem>

#include "core/number_text.h"
#include "core/session_state.h"
#include "display/selection.h"
#include "tensor/rotated_readings.h"
#include "ui_output_panel.h"

OutputPanel::OutputPanel(QWidget* parent) : QFrame(parent), ui_(std::make_unique<Ui::output_panel>()) {
  ui_->setupUi(this);
  ui_->Text_rotate_to_strike->setText("0");
  connect(ui_->Check_rotate_to_strike, &QCheckBox::toggled, this, &OutputPanel::show_data_types);
  connect(ui_->Command_choose_folder, &QPushButton::clicked, this, &OutputPanel::choose_folder);
  connect(ui_->Command_output_data, &QPushButton::clicked, this, &OutputPanel::write);
  connect(ui_->Command_done_output, &QPushButton::clicked, this, &OutputPanel::done);
  auto* const escape = new QShortcut(QKeySequence(Qt::Key_Escape), this);
  connect(escape, &QShortcut::activated, this, &OutputPanel::done);
}

OutputPanel::~OutputPanel() = default;

bool OutputPanel::open_for(Module_output::OutputKind kind) {
  kind_ = kind;
  if (Module_output::read_output_lists(lists_) != 0) {
    return false;
  }
  ui_->Combo_output_linelist->clear();
  for (const std::string& line : lists_.lines) {
    ui_->Combo_output_linelist->addItem(QString::fromStdString(line));
  }
  ui_->Combo_output_dipole->clear();
  for (const float dipole : lists_.dipoles) {
    ui_->Combo_output_dipole->addItem(QString::fromStdString(plain_text(dipole)));
  }
  ui_->Combo_output_datatype->clear();
  for (const std::int32_t type : lists_.reference_types) {
    ui_->Combo_output_datatype->addItem(
        QString::fromStdString(Module_display_data::reference_type_text(type)), type);
  }
  ui_->Combo_output_component->clear();
  for (const std::string& type : lists_.data_types) {
    ui_->Combo_output_component->addItem(QString::fromStdString(type), QString::fromStdString(type));
  }
  choose_current_selection();
  ui_->Label_numout->setText("0");
  const bool rhoplus = kind == Module_output::OutputKind::rhoplus;
  ui_->Frame_rhoplus->setVisible(rhoplus);
  ui_->Frame_folder->setVisible(rhoplus);  // a Zonge set's folder is chosen with its name
  ui_->Frame_outputvariable->setTitle(rhoplus ? "Data to write as Rho+ control files"
                                              : "Data to write as a Zonge AVG set");
  show_data_types();
  ui_->Text_rhoplus_output_directory->setText(
      QDir::toNativeSeparators(QFileInfo(QString::fromStdString(session().database_file)).absolutePath()));
  return true;
}

void OutputPanel::propose_strike(std::optional<double> strike) {
  ui_->Text_rotate_to_strike->setText(QString::fromStdString(format_number(strike.value_or(0.0), "0.0")));
  if (!strike) {
    ui_->Check_rotate_to_strike->setChecked(false);
  }
}

/// What the main window doesn't show stays to be chosen.
void OutputPanel::choose_current_selection() {
  const auto line = std::ranges::find(lists_.lines, session().current_line);
  ui_->Combo_output_linelist->setCurrentIndex(
      line == lists_.lines.end() ? -1 : static_cast<int>(line - lists_.lines.begin()));
  ui_->Combo_output_datatype->setCurrentIndex(
      ui_->Combo_output_datatype->findData(session().current_reference_type));
  const auto dipole = std::ranges::find(lists_.dipoles, session().current_dipole);
  ui_->Combo_output_dipole->setCurrentIndex(
      dipole == lists_.dipoles.end() ? -1 : static_cast<int>(dipole - lists_.dipoles.begin()));
  ui_->Combo_output_component->setCurrentIndex(
      ui_->Combo_output_component->findData(QString::fromStdString(session().current_data_type)));
}

/// In the axes of a strike they stand for something else.
void OutputPanel::show_data_types() {
  const bool rotate = ui_->Check_rotate_to_strike->isChecked();
  ui_->Text_rotate_to_strike->setEnabled(rotate);
  for (int item = 0; item < ui_->Combo_output_component->count(); ++item) {
    const std::string type = ui_->Combo_output_component->itemData(item).toString().toStdString();
    ui_->Combo_output_component->setItemText(
        item, QString::fromStdString(rotate && kind_ == Module_output::OutputKind::rhoplus
                                         ? Module_output::rotated_data_type(type)
                                         : type));
  }
}

void OutputPanel::take_focus() { ui_->Combo_output_linelist->setFocus(); }

/// Begins at what is typed, as far as there is such a folder.
void OutputPanel::choose_folder() {
  const QDir beside_survey = QFileInfo(QString::fromStdString(session().database_file)).absoluteDir();
  const QString typed = beside_survey.absoluteFilePath(ui_->Text_rhoplus_output_directory->text().trimmed());
  const QString chosen = QFileDialog::getExistingDirectory(
      this, "Folder of the control files", QFileInfo(typed).isDir() ? typed : beside_survey.absolutePath());
  if (!chosen.isEmpty()) {
    ui_->Text_rhoplus_output_directory->setText(QDir::toNativeSeparators(chosen));
  }
}

void OutputPanel::write() {
  namespace fs = std::filesystem;
  const QVariant reference = ui_->Combo_output_datatype->currentData();
  Module_output::OutputChoices choices{ui_->Combo_output_linelist->currentIndex(),
                                       reference.isValid() ? reference.toInt() : -1,
                                       ui_->Combo_output_dipole->currentIndex(),
                                       fs::path(session().database_file).parent_path().string(),
                                       ui_->Combo_output_component->currentData().toString().toStdString(),
                                       std::nullopt};
  if (ui_->Check_rotate_to_strike->isChecked()) {
    choices.strike = Module_tensor::azimuth_of(ui_->Text_rotate_to_strike->text().toStdString());
  }
  const auto show_row_count = [this](int rows) {
    ui_->Label_numout->setText(QString::fromStdString(format_number(rows, "0")));
  };
  show_row_count(0);  // those of an earlier output are none of this one's, whatever becomes of it
  if (kind_ == Module_output::OutputKind::rhoplus) {
    const std::string folder = ui_->Text_rhoplus_output_directory->text().toStdString();
    static_cast<void>(Module_output::write_chosen_rhoplus(lists_, choices, Module_output::rhoplus_settings(),
                                                          folder, show_row_count));
  } else {
    static_cast<void>(Module_output::write_chosen_zonge(lists_, choices, show_row_count));
  }
}
