#include "app/panels/picture_stats.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <utility>

#include "display/mask_commands.h"
#include "platform/widgets/entry_mark.h"
#include "platform/widgets/panel_controls.h"

namespace averaged = Module_averaged_data;
using averaged::Edit;

namespace {

struct Command {
  const char* caption;
  const char* tool_tip;
};

constexpr Command frequency_commands[] = {
    {"f <=", "Mask all data less than or equal to the current frequency"},
    {"f >=", "Mask all data greater than or equal to the current frequency"},
    {"f =", "Mask all data equal to the current frequency"},
    {"R <=", "Reset all mask flags for data less than or equal to the current frequency"},
    {"R >=", "Reset all mask flags for data greater than or equal to the current frequency"},
    {"R =", "Reset all mask flags for data equal to the current frequency"},
    {"Reset All", "Reset all Data masking flags"},
    {"Phz < 0", "Switch off all negative phases"}};

constexpr Command outlier_commands[] = {{"Top", "Remove outliers at top of range"},
                                        {"Bottom", "Remove outliers at bottom of range"},
                                        {"Both", "Remove outliers at both ends of range"}};

QPushButton* make_button(const char* array, int index, const Command& command) {
  auto* const button = named(new QPushButton(command.caption), QString("%1_%2").arg(array).arg(index));
  button->setToolTip(command.tool_tip);
  button->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
  button->setMinimumWidth(button->fontMetrics().horizontalAdvance(command.caption) + 12);
  return button;
}

}  // namespace

StatsPanel::StatsPanel(QWidget* parent) : QWidget(parent), Text_outliers_(make_text("Text_outliers", 3)) {
  auto* const grid = new QGridLayout(this);
  grid->setContentsMargins(0, 0, 0, 0);
  grid->setSpacing(3);
  add_outlier_field(*grid);
  add_frequency_commands(*grid);
  add_outlier_commands(*grid);
}

void StatsPanel::add_outlier_field(QGridLayout& grid) {
  const char* const fields[] = {"Res", "Phase", "All"};
  for (int index = 0; index < 3; ++index) {
    auto* const option = named(new QRadioButton(fields[index]), QString("Option_outlier_%1").arg(index));
    option->setToolTip("What the commands below act on");
    Option_outlier_[static_cast<std::size_t>(index)] = option;
    grid.addWidget(option, 0, index);
  }
  Option_outlier_[2]->setChecked(true);
}

void StatsPanel::add_frequency_commands(QGridLayout& grid) {
  for (int index = 0; index < 8; ++index) {
    QPushButton* const button = make_button("Command_clear_frequencies", index, frequency_commands[index]);
    grid.addWidget(button, 1 + index / 3, index % 3);
    connect(button, &QPushButton::clicked, this,
            [this, index] { run_frequency_command(static_cast<averaged::FrequencyCommand>(index)); });
  }
}

void StatsPanel::run_frequency_command(averaged::FrequencyCommand command) {
  const std::string text = frequency_text_ ? frequency_text_() : std::string();
  if (command < averaged::FrequencyCommand::reset_all && !Module_display_data::is_command_frequency(text)) {
    const QString typed = qt_text(text).trimmed();
    Q_EMIT frequency_refused(typed.isEmpty()
                                 ? QString("Frequency: click a point or type a number first")
                                 : QString("Frequency: \"%1\" is not a number above 0").arg(typed));
    return;
  }
  const Edit edit = Module_display_data::clear_typed_frequencies(command, text, outlier_field());
  if (edit == Edit::changed) {
    Q_EMIT edited();
  } else if (edit == Edit::nothing) {
    Q_EMIT told("Nothing to change: the masks of the repeats are already so");
  }
}

void StatsPanel::add_outlier_commands(QGridLayout& grid) {
  Text_outliers_->setText("1");
  connect(Text_outliers_, &QLineEdit::textChanged, this, &StatsPanel::mark_outlier_count);
  Text_outliers_->setToolTip("How many of the outermost repeats are masked at each frequency");
  auto* const count = new QHBoxLayout;
  add_labelled(*count, "O&utliers to clip at each end", Text_outliers_);
  count->addStretch();
  grid.addLayout(count, 4, 0, 1, 3);
  for (int index = 0; index < 3; ++index) {
    QPushButton* const button = make_button("Command_outliers", index, outlier_commands[index]);
    grid.addWidget(button, 5, index);
    connect(button, &QPushButton::clicked, this,
            [this, index] { run_outlier_command(static_cast<averaged::ClipEnds>(index)); });
  }
}

void StatsPanel::run_outlier_command(averaged::ClipEnds ends) {
  if (is_marked(*Text_outliers_)) {
    Q_EMIT told(Text_outliers_->toolTip());
    Text_outliers_->setFocus();
    Text_outliers_->selectAll();
  } else if (Module_display_data::clip_typed_outliers(ends, Text_outliers_->text().toStdString(),
                                                      outlier_field()) == Edit::changed) {
    Q_EMIT edited();
  }
}

void StatsPanel::leave_survey() {
  if (is_marked(*Text_outliers_)) {
    Text_outliers_->setText("1");
  }
}

void StatsPanel::mark_outlier_count() {
  const QString text = Text_outliers_->text();
  mark_entry(*Text_outliers_,
             Module_display_data::is_outlier_count(text.toStdString())
                 ? QString()
                 : QString("Outliers to clip: \"%1\" is not a number from 1 on").arg(text.trimmed()));
}

void StatsPanel::set_frequency_source(std::function<std::string()> frequency_text) {
  frequency_text_ = std::move(frequency_text);
}

void StatsPanel::choose_outlier_field(averaged::Component component) {
  Option_outlier_.at(static_cast<std::size_t>(component))->setChecked(true);
}

averaged::OutlierField StatsPanel::outlier_field() const {
  for (std::size_t index = 0; index < Option_outlier_.size(); ++index) {
    if (Option_outlier_[index]->isChecked()) {
      return static_cast<averaged::OutlierField>(index);
    }
  }
  return averaged::OutlierField::both;
}
