#include "exchange/windows/export_controls.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QSignalBlocker>
#include <algorithm>
#include <array>

#include "core/file_names.h"
#include "core/number_text.h"
#include "core/session_state.h"
#include "display/selection.h"
#include "platform/widgets/panel_controls.h"

using namespace Module_exchange;

namespace {

constexpr std::array<const char*, export_format_names.size()> format_texts{"EDI", "EMTF XML", "CSV",
                                                                           "GeoJSON", "KML"};
constexpr int lines_high = 7;  // there may be more to scroll to

QPushButton* make_button(const QString& name, const QString& text, const QString& tip) {
  auto* const button = named(new QPushButton(text), name);
  button->setToolTip(tip);
  button->setAutoDefault(false);
  return button;
}

QLineEdit* make_wide_text(const QString& name, const QString& tip) {
  auto* const text = named(new QLineEdit, name);
  text->setToolTip(tip);
  text->setAcceptDrops(false);  // a file dropped there would be typed in as a name
  return text;
}

/// Grows no layout: what it says comes and goes while the user types.
QLabel* make_fault(const QString& name) {
  QLabel* const label = make_heading(name);
  QPalette colours = label->palette();
  colours.setColor(QPalette::WindowText, QColor(200, 60, 30));  // shows in light and dark palettes
  label->setPalette(colours);
  return label;
}

/// A panel may be too narrow for all of it.
void tell(QLabel& label, const std::string& text) {
  label.setText(qt_text(text));
  label.setToolTip(plain_tool_tip(qt_text(text)));
}

QLabel* label_of(QWidget* control, const QString& text) {
  auto* const label = new QLabel(text);
  label->setBuddy(control);
  return label;
}

}  // namespace

ExportControls::ExportControls(QWidget* parent)
    : QWidget(parent),
      format_(make_list("Combo_export_format")),
      purpose_(make_heading("Label_export_purpose")),
      lines_(named(new QListWidget, "List_export_lines")),
      all_lines_(make_button("Command_all_lines", "&All", "Chooses every line")),
      no_line_(make_button("Command_no_line", "&None", "Chooses no line")),
      reference_(make_list("Combo_export_reference")),
      dipole_(make_list("Combo_export_dipole")),
      rotate_(named(new QCheckBox("Ro&tate to"), "Check_export_rotate")),
      rotation_(make_text("Text_export_rotation", 8)),
      rotation_fault_(make_fault("Label_rotation_fault")),
      reduction_(make_list("Combo_export_reduction")),
      rhoplus_(named(new QCheckBox("R&ho+ results"), "Check_export_rhoplus")),
      plot_link_(
          make_wide_text("Text_plot_link",
                         "A link for each station, in which {line}, {station} and {name} stand for its own; "
                         "blank: LINE.pdf, where the folder has it")),
      folder_(make_wide_text("Text_export_folder",
                             "The folder that the files go to; it is made if it is missing")),
      choose_folder_(make_button("Command_choose_export_folder", "&Browse...",
                                 "Chooses the folder from those there are")),
      folder_fault_(make_fault("Label_folder_fault")),
      folder_hint_(make_heading("Label_folder_hint")) {
  for (std::size_t format = 0; format < format_texts.size(); ++format) {
    format_->addItem(format_texts[format], static_cast<int>(format));
  }
  purpose_->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
  purpose_->setWordWrap(true);  // in a narrow window
  auto* const top = new QHBoxLayout;
  add_labelled(*top, "&Format", format_);
  top->addSpacing(8);
  top->addWidget(purpose_, 1);
  auto* const columns = new QHBoxLayout;
  columns->addLayout(make_lines(), 3);
  columns->addSpacing(8);
  choices_ = make_choices();
  columns->addLayout(choices_, 10);
  auto* const rows = new QVBoxLayout(this);
  rows->setContentsMargins(0, 0, 0, 0);
  rows->addLayout(top);
  rows->addLayout(columns);
  connect_controls();
}

QVBoxLayout* ExportControls::make_lines() {
  format_->setToolTip("What the files are");
  lines_->setToolTip("The lines to write; Space chooses one");
  lines_->setAccessibleName("Lines");
  lines_->setFixedHeight(lines_high * (fontMetrics().height() + 6));
  auto* const buttons = new QHBoxLayout;
  buttons->addWidget(all_lines_);
  buttons->addWidget(no_line_);
  buttons->addStretch(1);
  auto* const rows = new QVBoxLayout;
  rows->addWidget(label_of(lines_, "&Lines"));
  rows->addWidget(lines_);
  rows->addLayout(buttons);
  rows->addStretch(1);
  return rows;
}

QFormLayout* ExportControls::make_choices() {
  reference_->setToolTip("How the readings were referenced");
  dipole_->setToolTip("Dipole length of the readings; of lines without this one the shortest");
  rotate_->setToolTip("Turns impedances and tipper of merged curves, x to this azimuth");
  rotation_->setToolTip(
      "Azimuth of x, degrees clockwise from north, -180 to 360. \"Use this strike\" in the strike window "
      "fills it");
  rotation_->setAccessibleName("Azimuth of x, degrees from north");
  reduction_->setToolTip(
      "Which curves the table of curves holds; tensors are those of merged ones, rotated only beside these");
  reduction_->addItem("Merged", Module_database::reduction_merged);
  reduction_->addItem("Averaged, by scan rate", Module_database::reduction_averaged);
  reduction_->addItem("Raw, by event", Module_database::reduction_raw);
  rhoplus_->setToolTip(
      "The fit of any layered earth to each point, with the Rhoplus Parameters; takes a while");
  auto* const turned = new QHBoxLayout;
  turned->addWidget(rotate_);
  turned->addWidget(rotation_);
  turned->addWidget(new QLabel("degrees from north"));
  turned->addSpacing(8);
  turned->addWidget(rotation_fault_, 1);
  auto* const tables = new QHBoxLayout;
  tables->addWidget(reduction_);
  tables->addSpacing(8);
  tables->addWidget(rhoplus_);
  tables->addStretch(1);
  auto* const rows = new QFormLayout;
  rows->addRow("&Reference", reference_);
  rows->addRow("&Dipole (m)", dipole_);
  rows->addRow("Axes", turned);
  rows->addRow(label_of(reduction_, "&Curves"), tables);
  rows->addRow("Lin&k to plots", plot_link_);
  rows->addRow(label_of(folder_, "F&older"), make_folder());
  return rows;
}

QVBoxLayout* ExportControls::make_folder() {
  auto* const typed = new QHBoxLayout;
  typed->addWidget(folder_, 1);
  typed->addWidget(choose_folder_);
  auto* const rows = new QVBoxLayout;
  rows->addLayout(typed);
  rows->addWidget(folder_fault_);
  rows->addWidget(folder_hint_);
  return rows;
}

void ExportControls::connect_controls() {
  for (QComboBox* const list : {format_, reduction_}) {
    connect(list, &QComboBox::currentIndexChanged, this, &ExportControls::changed);
  }
  for (QComboBox* const list : {reference_, dipole_}) {
    connect(list, &QComboBox::currentIndexChanged, this, [this] {
      show_kinds();
      Q_EMIT changed();
    });
  }
  connect(lines_, &QListWidget::itemChanged, this, &ExportControls::changed);
  connect(all_lines_, &QPushButton::clicked, this, [this] { check_lines(Qt::Checked); });
  connect(no_line_, &QPushButton::clicked, this, [this] { check_lines(Qt::Unchecked); });
  connect(rotate_, &QCheckBox::toggled, this, &ExportControls::changed);
  connect(rhoplus_, &QCheckBox::toggled, this, &ExportControls::changed);
  for (QLineEdit* const text : {rotation_, plot_link_, folder_}) {
    connect(text, &QLineEdit::textChanged, this, &ExportControls::changed);
  }
  connect(choose_folder_, &QPushButton::clicked, this, &ExportControls::choose_folder);
}

/// Begins at what is typed, as far as there is such a folder.
void ExportControls::choose_folder() {
  ExportEntries entries;
  entries.folder = typed_folder();
  const QString typed = qt_text(whole_folder(entries));
  const QString begin =
      QFileInfo(typed).isDir() ? typed : qt_text(Module_util::directory_of(session().database_file));
  const QString chosen = QFileDialog::getExistingDirectory(this, "Folder of the files", begin);
  if (!chosen.isEmpty()) {
    folder_->setText(QDir::toNativeSeparators(chosen));
  }
}

std::string ExportControls::typed_folder() const {
  return QDir::fromNativeSeparators(folder_->text()).toStdString();
}

void ExportControls::show_entries(const ExportLists& lists, const ExportEntries& entries) {
  const QSignalBlocker silent(this);
  lists_ = lists;
  const QSignalBlocker no_reference(reference_);
  const QSignalBlocker no_dipole(dipole_);
  reference_->clear();
  for (const std::int32_t type : lists.reference_types) {
    reference_->addItem(qt_text(Module_display_data::reference_type_text(type)), type);
  }
  dipole_->clear();
  for (const float dipole : lists.dipoles) {
    dipole_->addItem(qt_text(plain_text(dipole)), dipole);
  }
  reference_->setCurrentIndex(reference_->findData(entries.reference_type));
  dipole_->setCurrentIndex(dipole_->findData(entries.dipole));
  choices_->setRowVisible(reference_, lists.reference_types.size() > 1);
  choices_->setRowVisible(dipole_, lists.dipoles.size() > 1);
  format_->setCurrentIndex(static_cast<int>(entries.format));
  rotation_->setText(qt_text(entries.rotation));
  plot_link_->setText(qt_text(entries.plot_link));
  folder_->setText(QDir::toNativeSeparators(qt_text(entries.folder)));
  fill_lines();
  for (int row = 0; row < lines_->count(); ++row) {
    const bool chosen =
        std::ranges::find(entries.lines, lists_.lines[static_cast<std::size_t>(row)]) != entries.lines.end();
    lines_->item(row)->setCheckState(chosen ? Qt::Checked : Qt::Unchecked);
  }
  follow(entries);
}

void ExportControls::fill_lines() {
  lines_->clear();
  for (const std::string& line : lists_.lines) {
    auto* const item = new QListWidgetItem(qt_text(line), lines_);
    item->setCheckState(Qt::Unchecked);
  }
  if (lines_->count() > 0) {
    lines_->setCurrentRow(0);
  }
  show_kinds();
}

/// Lines without curves of the reference type can't be chosen; those of another dipole say so.
void ExportControls::show_kinds() {
  const QSignalBlocker silent(lines_);
  const float dipole = dipole_->currentData().toFloat();
  for (int row = 0; row < lines_->count(); ++row) {
    const std::string& line = lists_.lines[static_cast<std::size_t>(row)];
    const auto kind = kind_of_line(lists_, line, reference_->currentData().toInt(), dipole);
    QListWidgetItem& item = *lines_->item(row);
    item.setFlags(kind ? Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsUserCheckable
                       : Qt::NoItemFlags);
    item.setText(qt_text(line) + (!kind ? QString(" (of another reference)")
                                  : kind->dipole != dipole
                                      ? " (dipole " + qt_text(plain_text(kind->dipole)) + " m)"
                                      : QString()));
  }
}

void ExportControls::check_lines(Qt::CheckState state) {
  {
    const QSignalBlocker once(lines_);
    for (int row = 0; row < lines_->count(); ++row) {
      lines_->item(row)->setCheckState(state);
    }
  }
  Q_EMIT changed();
}

void ExportControls::read_entries(ExportEntries& entries) const {
  entries.format = static_cast<ExportFormat>(format_->currentData().toInt());
  // What there is no use for is shown as not chosen, and what was chosen is kept.
  if (rotate_->isEnabledTo(this)) {
    entries.rotate = rotate_->isChecked();
  }
  entries.rotation = rotation_->text().toStdString();
  if (reduction_->isEnabledTo(this)) {
    entries.reduction = reduction_->currentData().toInt();
    entries.rhoplus = rhoplus_->isChecked();
  }
  entries.plot_link = plot_link_->text().toStdString();
  entries.folder = typed_folder();
  entries.reference_type = reference_->currentData().toInt();
  entries.dipole = dipole_->currentData().toFloat();
  entries.lines.clear();
  for (int row = 0; row < lines_->count(); ++row) {
    if (lines_->item(row)->checkState() == Qt::Checked) {
      entries.lines.push_back(lists_.lines[static_cast<std::size_t>(row)]);
    }
  }
}

void ExportControls::follow(const ExportEntries& entries) {
  tell(*purpose_, std::string(purpose_of(entries.format)));
  follow_uses(entries);
  tell(*rotation_fault_, fault_of_rotation(entries));
  tell(*folder_fault_, fault_of_folder(entries));
  tell(*folder_hint_, hint_of_folder(entries));
  folder_fault_->setVisible(!folder_fault_->text().isEmpty());
  folder_hint_->setVisible(folder_fault_->text().isEmpty());  // in its place
}

/// Shows what has no use as not chosen.
void ExportControls::follow_uses(const ExportEntries& entries) {
  const QSignalBlocker no_rotation(rotate_);
  const QSignalBlocker no_reduction(reduction_);
  const QSignalBlocker no_rhoplus(rhoplus_);
  const bool rotates = takes_rotation(entries);
  rotate_->setEnabled(rotates);
  rotate_->setChecked(rotates && entries.rotate);
  rotation_->setEnabled(rotates && entries.rotate);
  const bool csv = takes_csv_choices(entries);
  reduction_->setEnabled(csv);
  reduction_->setCurrentIndex(
      reduction_->findData(csv ? entries.reduction : std::int32_t{Module_database::reduction_merged}));
  rhoplus_->setEnabled(csv);
  rhoplus_->setChecked(csv && entries.rhoplus);
  plot_link_->setEnabled(takes_plot_link(entries));
}
