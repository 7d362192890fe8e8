#include "rhoplus/windows/Form_rhoplus.h"

#include "core/number_text.h"
#include "output/file_errors.h"
#include "platform/widgets/entry_mark.h"
#include "reduction/data_sets/curve_parts.h"
#include "ui_Form_rhoplus.h"

using Module_output::RhoplusSettings;

namespace {

QString shown(float value, const char* picture) {
  return QString::fromStdString(format_number(value, picture));
}

}  // namespace

Form_rhoplus::Form_rhoplus(RhoplusSettings& settings, QWidget* parent)
    : QDialog(parent), settings_(settings), ui_(std::make_unique<Ui::Form_rhoplus>()) {
  ui_->setupUi(this);
  ui_->Label_invalid_entries->hide();
  show_settings();
  connect_controls();
  show_hint();
}

Form_rhoplus::~Form_rhoplus() = default;

void Form_rhoplus::show_settings() {
  ui_->Text_rhoplus_root_name->setText(QString::fromStdString(settings_.root_name));
  ui_->Combo_rhoplus_surface->setCurrentIndex(settings_.surface);
  ui_->Text_rhoplus_res_error_floor->setText(shown(settings_.resistivity_error_floor, "0.0"));
  ui_->Text_rhoplus_phase_error_floor->setText(shown(settings_.phase_error_floor, "0.0"));
  ui_->Combo_use_file_errors->setCurrentIndex(settings_.use_file_errors);
  ui_->Text_rhoplus_resistivity_scale->setText(shown(settings_.resistivity_scale, "0.0000"));
  ui_->Check_rhoplus_exclude_data->setChecked(settings_.exclude_data == 1);
  ui_->Check_rhoplus_apply_static->setChecked(settings_.apply_static == 1);
  ui_->Check_rhoplus_exclude_negative_phase->setChecked(settings_.exclude_negative_phase == 1);
}

void Form_rhoplus::connect_controls() {
  connect(ui_->Text_rhoplus_root_name, &QLineEdit::textChanged, this, [this](const QString& text) {
    const bool valid = Module_output::enter_root_name(settings_, text.toStdString());
    mark(*ui_->Text_rhoplus_root_name, valid ? QString() : "The root name must not be blank");
  });
  const auto connect_number = [this](QLineEdit* box, float& setting, const char* name) {
    connect(box, &QLineEdit::textChanged, this, [this, box, &setting, name](const QString& text) {
      const bool valid = Module_output::enter_positive(setting, text.toStdString());
      mark(*box, valid ? QString() : QString("%1: \"%2\" is not a number above 0").arg(name, text.trimmed()));
    });
  };
  connect_number(ui_->Text_rhoplus_res_error_floor, settings_.resistivity_error_floor,
                 "Resistivity error floor");
  connect_number(ui_->Text_rhoplus_phase_error_floor, settings_.phase_error_floor, "Phase error floor");
  connect_number(ui_->Text_rhoplus_resistivity_scale, settings_.resistivity_scale, "Resistivity scale value");
  connect(ui_->Combo_rhoplus_surface, &QComboBox::currentIndexChanged, this,
          [this](int index) { settings_.surface = index; });
  connect(ui_->Combo_use_file_errors, &QComboBox::currentIndexChanged, this, [this](int index) {
    settings_.use_file_errors = index;
    show_hint();
  });
  const auto connect_choice = [this](const QCheckBox* box, std::int32_t& setting) {
    connect(box, &QCheckBox::toggled, this, [&setting](bool checked) { setting = checked ? 1 : 0; });
  };
  connect_choice(ui_->Check_rhoplus_exclude_data, settings_.exclude_data);
  connect_choice(ui_->Check_rhoplus_apply_static, settings_.apply_static);
  connect_choice(ui_->Check_rhoplus_exclude_negative_phase, settings_.exclude_negative_phase);
  connect(ui_->Command_done, &QPushButton::clicked, this, &QDialog::accept);
}

void Form_rhoplus::mark(QLineEdit& box, const QString& fault) {
  mark_entry(box, fault);
  QStringList faults;
  for (const QLineEdit* const each : findChildren<QLineEdit*>()) {
    if (is_marked(*each)) {
      faults.append(each->toolTip());
    }
  }
  ui_->Label_invalid_entries->setText(faults.join('\n'));
  ui_->Label_invalid_entries->setVisible(!faults.isEmpty());
}

/// What can't be used keeps the window open; Escape gives it up, and the earlier value stays.
void Form_rhoplus::accept() {
  for (QLineEdit* const box : findChildren<QLineEdit*>()) {
    if (is_marked(*box)) {
      box->setFocus();
      box->selectAll();
      return;
    }
  }
  QDialog::accept();
}

void Form_rhoplus::show_hint() {
  const bool left_out = settings_.use_file_errors == 0;
  if (left_out && file_errors_hint_.isEmpty()) {
    const Module_database::ReadingKey key = Module_averaged_data::selected_key();
    file_errors_hint_ = QString::fromStdString(
        Module_output::file_errors_hint({key.line, key.reference_type, key.data_type, key.dipole}));
  }
  ui_->Label_file_errors_hint->setText(file_errors_hint_);
  ui_->Label_file_errors_hint->setVisible(left_out && !file_errors_hint_.isEmpty());
}

void Form_rhoplus::done(int result) {
  Module_output::save_rhoplus_settings(settings_);
  QDialog::done(result);
}
