#include "occam/windows/model_controls.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFormLayout>
#include <QGridLayout>
#include <QGroupBox>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QScrollBar>
#include <QSignalBlocker>
#include <QSpinBox>
#include <QTabWidget>
#include <QVBoxLayout>
#include <vector>

#include "core/absent_value.h"
#include "core/number_text.h"
#include "platform/widgets/entry_mark.h"
#include "platform/widgets/panel_controls.h"
#include "platform/widgets/scroll_column.h"

using namespace Module_occam;

namespace {

constexpr int number_width = 10;  // digits
constexpr int range_width = 6;

QLineEdit* make_number(const char* name, bool read_only) {
  return make_text(name, read_only ? number_width : range_width, read_only);
}

QString shown_number(float value) {
  return value == no_data ? QString("NA") : qt_text(format_number(value, "0.0000"));
}

}  // namespace

ModelControls::ModelControls(QWidget* parent)
    : QWidget(parent),
      Combo_iteration_(make_list("Combo_iteration")),
      HScroll_iteration_(named(new QScrollBar(Qt::Horizontal), "HScroll_iteration")),
      Text_iterate_(make_number("Text_iterate", true)),
      Text_multiplier_(make_number("Text_multiplier", true)),
      Text_roughness_(make_number("Text_roughness", true)),
      Text_RMS_(make_number("Text_RMS", true)),
      Combo_colour_table_(make_list("Combo_colour_table")),
      Check_invert_colour_(named(new QCheckBox("In&vert colours"), "Check_invert_colour")),
      Text_min_res_(make_number("Text_min_res", false)),
      Text_max_res_(make_number("Text_max_res", false)),
      Text_max_depth_(make_number("Text_max_depth", false)),
      Combo_section_shows_(make_list("Combo_section_shows")),
      Spin_base_iteration_(named(new QSpinBox, "Spin_base_iteration")),
      Check_fade_(named(new QCheckBox("&Fade what the data\ndon't constrain"), "Check_fade")),
      Check_draw_mesh_(named(new QCheckBox("Draw &mesh"), "Check_draw_mesh")),
      Check_log_vertical_(named(new QCheckBox("&Log depth scale"), "Check_log_vertical")),
      Check_true_scale_(named(new QCheckBox("Scale &1:1"), "Check_true_scale")),
      Group_model_(new QGroupBox),
      Text_min_res_model_(make_text("Text_min_res_model", number_width + range_width, true)),
      Text_max_res_model_(make_text("Text_max_res_model", number_width + range_width, true)),
      Command_display_response_(named(new QPushButton("&Response"), "Command_display_response")),
      Tab_controls_(named(new QTabWidget, "Tab_controls")) {
  auto* const choices = new QWidget;
  auto* const choice_rows = new QVBoxLayout(choices);
  choice_rows->setContentsMargins(0, 0, 0, 0);
  choice_rows->addWidget(make_iteration_group());
  Tab_controls_->addTab(make_section_page(), "S&ection");
  choice_rows->addWidget(Tab_controls_);
  choice_rows->addStretch();
  auto* const column = new ScrollColumn;
  column->setWidget(choices);
  auto* const rows = new QVBoxLayout(this);
  rows->setContentsMargins(0, 0, 0, 0);
  rows->addWidget(column, 1);
  add_buttons(*rows);  // they stay in view in a window that is too low for the choices
  setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Preferred);
}

QWidget* ModelControls::make_iteration_group() {
  auto* const group = new QGroupBox("Iteration");
  auto* const rows = new QFormLayout(group);
  HScroll_iteration_->setFocusPolicy(Qt::StrongFocus);
  HScroll_iteration_->setToolTip("Iteration on show");
  HScroll_iteration_->setAccessibleName("Iteration");
  Combo_iteration_->setToolTip("Iteration on show");
  Text_iterate_->setToolTip("Number of the iteration in its file");
  Text_multiplier_->setToolTip("What roughness counts against misfit in this iteration");
  Text_roughness_->setToolTip("Roughness of the model");
  Text_RMS_->setToolTip("Root mean square of the misfits, in units of the errors");
  rows->addRow("I&teration", Combo_iteration_);
  rows->addRow(HScroll_iteration_);
  rows->addRow("Iteration Number", Text_iterate_);
  rows->addRow("Lagrange Multiplier", Text_multiplier_);
  rows->addRow("Model Roughness", Text_roughness_);
  rows->addRow("RMS error", Text_RMS_);
  connect(Combo_iteration_, &QComboBox::currentIndexChanged, this, [this](int iteration) {
    const QSignalBlocker other(HScroll_iteration_);
    HScroll_iteration_->setValue(iteration);
    Q_EMIT iteration_chosen(iteration);
  });
  connect(HScroll_iteration_, &QScrollBar::valueChanged, Combo_iteration_, &QComboBox::setCurrentIndex);
  return group;
}

QWidget* ModelControls::make_section_page() {
  auto* const page = new QWidget;
  auto* const rows = new QVBoxLayout(page);
  rows->setContentsMargins(6, 6, 6, 6);
  rows->addWidget(make_look_group());
  rows->addWidget(make_model_group());
  rows->addStretch();
  connect(Tab_controls_, &QTabWidget::currentChanged, this, &ModelControls::page_changed);
  return page;
}

QWidget* ModelControls::make_look_group() {
  auto* const group = new QWidget;
  auto* const rows = new QFormLayout(group);
  rows->setContentsMargins(0, 0, 0, 0);
  for (const std::string_view name : graph::colour_table_names) {
    Combo_colour_table_->addItem(QString::fromUtf8(name.data(), static_cast<qsizetype>(name.size())));
  }
  Combo_colour_table_->setCurrentIndex(SectionLook().colour_table);
  Combo_colour_table_->setToolTip("Colours of the section, and of the misfits");
  Check_invert_colour_->setToolTip("Takes the colours in the opposite order");
  Check_log_vertical_->setToolTip("Gives the shallow part of the section more room");
  Check_true_scale_->setToolTip("Depths are as long as distances along the line; not of log depths");
  connect(Check_log_vertical_, &QCheckBox::toggled, Check_true_scale_, &QCheckBox::setDisabled);
  Check_draw_mesh_->setToolTip("Draws the edges of the cells");
  Text_min_res_->setToolTip("Log Resistivity value which maps to the start colour");
  Text_max_res_->setToolTip("Log Resistivity value which maps to the end colour");
  Text_max_depth_->setToolTip("Maximum depth to display, m");
  Text_max_depth_->setText("2000");
  add_quantity_rows(*rows);
  rows->addRow("&Colour", Combo_colour_table_);
  rows->addRow(Check_invert_colour_);
  rows->addRow("M&in Res", Text_min_res_);
  rows->addRow("M&ax Res", Text_max_res_);
  rows->addRow("Max De&pth", Text_max_depth_);
  rows->addRow(Check_log_vertical_);
  rows->addRow(Check_true_scale_);
  rows->addRow(Check_draw_mesh_);
  for (QLineEdit* const text : {Text_min_res_, Text_max_res_, Text_max_depth_}) {
    connect(text, &QLineEdit::textChanged, this, [this] {
      mark_entries();
      Q_EMIT look_changed();
    });
  }
  for (QLineEdit* const text : {Text_min_res_, Text_max_res_}) {
    connect(text, &QLineEdit::textEdited, this, [this] { range_chosen_ = true; });
  }
  for (QCheckBox* const check :
       {Check_invert_colour_, Check_log_vertical_, Check_true_scale_, Check_draw_mesh_}) {
    connect(check, &QCheckBox::toggled, this, &ModelControls::look_changed);
  }
  connect(Combo_colour_table_, &QComboBox::currentIndexChanged, this, &ModelControls::look_changed);
  return group;
}

void ModelControls::mark_entries() {
  const TypedChoices typed = this->typed();
  const auto number_fault = [](const std::string& text) {
    return is_numeric(text) ? QString() : QString("A number is needed, of log10 ohm-m");
  };
  mark_entry(*Text_min_res_, number_fault(typed.min_res));
  QString upper_fault = number_fault(typed.max_res);
  if (upper_fault.isEmpty() && is_numeric(typed.min_res) &&
      !(numeric_value(typed.max_res) > numeric_value(typed.min_res))) {
    upper_fault = "It has to be above Min Res";
  }
  mark_entry(*Text_max_res_, upper_fault);
  const bool depth_usable = read_choices({"0", "1", typed.max_depth, false}).has_value();
  mark_entry(*Text_max_depth_,
             depth_usable ? QString() : QString("A depth in metres is needed, 100 or more"));
}

void ModelControls::add_quantity_rows(QFormLayout& rows) {
  Combo_section_shows_->addItems({"Resistivity", "Standard error (about)", "Change of log10"});
  Combo_section_shows_->setToolTip(
      "Resistivities; how well the data know them, computed for the iteration; or what has changed");
  Spin_base_iteration_->setPrefix("since iteration ");
  Spin_base_iteration_->setAccessibleName("Change since iteration");
  Spin_base_iteration_->setToolTip("Iteration whose resistivities are taken from those on show");
  Check_fade_->setToolTip("Blocks fade to the background where the data hardly depend on them");
  rows.addRow("S&hown", Combo_section_shows_);
  rows.addRow(Spin_base_iteration_);
  rows.addRow(Check_fade_);
  Spin_base_iteration_->hide();
  connect(Combo_section_shows_, &QComboBox::currentIndexChanged, this, [this] {
    Spin_base_iteration_->setVisible(shown() == Shown::change);
    Q_EMIT quantity_changed();
  });
  connect(Spin_base_iteration_, &QSpinBox::valueChanged, this, &ModelControls::quantity_changed);
  connect(Check_fade_, &QCheckBox::toggled, this, &ModelControls::quantity_changed);
}

ModelControls::Shown ModelControls::shown() const {
  return static_cast<Shown>(Combo_section_shows_->currentIndex());
}

int ModelControls::base_iteration() const { return Spin_base_iteration_->value(); }

bool ModelControls::fades() const { return Check_fade_->isChecked(); }

QWidget* ModelControls::make_model_group() {
  auto* const group = Group_model_;
  auto* const rows = new QFormLayout(group);
  Text_min_res_model_->setToolTip("Log Resistivity value which maps to the start colour");
  Text_max_res_model_->setToolTip("Log Resistivity value which maps to the end colour");
  rows->addRow("Min", Text_min_res_model_);
  rows->addRow("Max", Text_max_res_model_);
  return group;
}

void ModelControls::add_buttons(QBoxLayout& rows) {
  auto* const grid = named(new QPushButton("Write &Geosoft Grid"), "Command_write_grid");
  auto* const save = named(new QPushButton("&Save"), "Command_save");
  auto* const done_button = named(new QPushButton("&Done"), "Command_done");
  Command_display_response_->setToolTip("Shows the fit of the sites, or the course of the misfit");
  grid->setToolTip("Writes the section as grids and tables");
  save->setToolTip("Saves the section, or the fit of all stations");
  done_button->setToolTip("Closes the window (Esc)");
  auto* const menu = new QMenu(save);
  menu->addAction("Section as P&NG...", this, &ModelControls::save_section_png);
  menu->addAction("Section as P&DF...", this, &ModelControls::save_section_pdf);
  menu->addAction("&Fit of all stations as PDF...", this, &ModelControls::save_fits);
  save->setMenu(menu);
  auto* const buttons = new QGridLayout;
  int place = 0;
  for (QPushButton* const button : {Command_display_response_, grid, save, done_button}) {
    constexpr int columns = 2;
    button->setAutoDefault(false);
    buttons->addWidget(button, place / columns, place % columns);
    ++place;
  }
  rows.addLayout(buttons);
  connect(Command_display_response_, &QPushButton::clicked, this, &ModelControls::display_response);
  connect(grid, &QPushButton::clicked, this, &ModelControls::write_grid);
  connect(done_button, &QPushButton::clicked, this, &ModelControls::done);
}

void ModelControls::list_iterations(const RunView& view) {
  const int last = view.results().last_iteration;
  const int current = view.current_iteration();
  const QSignalBlocker combo(Combo_iteration_);
  const QSignalBlocker scroll(HScroll_iteration_);
  while (Combo_iteration_->count() > last + 1) {
    Combo_iteration_->removeItem(Combo_iteration_->count() - 1);
  }
  while (Combo_iteration_->count() <= last) {
    Combo_iteration_->addItem(QString::number(Combo_iteration_->count()));
  }
  Combo_iteration_->setItemText(0, view.results().has_start_only() ? "Start model" : "0");
  Combo_iteration_->setCurrentIndex(current);
  HScroll_iteration_->setRange(0, last);
  const QSignalBlocker base(Spin_base_iteration_);
  Spin_base_iteration_->setRange(0, last);
  HScroll_iteration_->setPageStep(1);
  HScroll_iteration_->setValue(current);
}

void ModelControls::show_numbers(const RunView& view) {
  const auto iteration = static_cast<std::size_t>(view.current_iteration());
  Text_iterate_->setText(qt_text(format_number(view.current_iteration(), "0")));
  Text_multiplier_->setText(shown_number(view.results().iteration_multiplier[iteration]));
  Text_roughness_->setText(shown_number(view.results().iteration_roughness[iteration]));
  Text_RMS_->setText(shown_number(view.results().iteration_misfit[iteration]));
}

void ModelControls::propose_range(const ResistivityRange& range) {
  if (range_chosen_) {
    return;
  }
  const QSignalBlocker lower(Text_min_res_);
  const QSignalBlocker upper(Text_max_res_);
  Text_min_res_->setText(qt_text(plain_text(range.lower)));
  Text_max_res_->setText(qt_text(plain_text(range.upper)));
  mark_entries();
}

bool ModelControls::has_range() const {
  return !Text_min_res_->text().isEmpty() || !Text_max_res_->text().isEmpty();
}

void ModelControls::show_model_range(const SectionPicture& picture) {
  const SectionGeometry& section = picture.geometry;
  const bool is_resistivity = picture.quantity.is_resistivity;
  Group_model_->setTitle(is_resistivity ? "Values shown (log10 / ohm-m)" : "Values shown (decades)");
  Text_min_res_->setEnabled(is_resistivity);  // other quantities have ranges of their own
  Text_max_res_->setEnabled(is_resistivity);
  const auto text = [&](double value) {
    if (section.rectangles.empty()) {
      return QString("NA");
    }
    return qt_text(is_resistivity ? resistivity_text(value) : format_number(value, "0.000"));
  };
  Text_min_res_model_->setText(text(section.lowest));
  Text_max_res_model_->setText(text(section.highest));
}

TypedChoices ModelControls::typed() const {
  return {Text_min_res_->text().toStdString(), Text_max_res_->text().toStdString(),
          Text_max_depth_->text().toStdString(), Check_log_vertical_->isChecked()};
}

SectionLook ModelControls::look() const {
  return {.choices = read_choices(typed()),
          .colour_table = Combo_colour_table_->currentIndex(),
          .invert = Check_invert_colour_->isChecked(),
          .draw_mesh = Check_draw_mesh_->isChecked(),
          .true_scale = Check_true_scale_->isChecked()};
}

void ModelControls::add_page(QWidget* page, const QString& title) {
  Tab_controls_->addTab(page, title);
  // The key Tab goes through the pages before it comes to the buttons below them.
  std::vector<QWidget*> parts;
  for (QWidget* part = page->nextInFocusChain(); part != page; part = part->nextInFocusChain()) {
    if (page->isAncestorOf(part) && part->focusPolicy() != Qt::NoFocus) {
      parts.push_back(part);
    }
  }
  QWidget* before = Check_draw_mesh_;
  for (QWidget* const part : parts) {
    setTabOrder(before, part);
    before = part;
  }
}

void ModelControls::show_page(QWidget* page) { Tab_controls_->setCurrentWidget(page); }

void ModelControls::offer_response(bool response) {
  Command_display_response_->setText(response ? "&Response" : "Ite&rations");
}
