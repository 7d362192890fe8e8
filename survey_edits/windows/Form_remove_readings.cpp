#include "survey_edits/windows/Form_remove_readings.h"

#include <QCheckBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTabWidget>
#include <QVBoxLayout>
#include <algorithm>
#include <utility>

#include "core/calendar.h"
#include "core/number_text.h"
#include "core/user_interface.h"
#include "platform/widgets/panel_controls.h"
#include "survey_edits/remove_readings.h"
#include "survey_edits/undo_removal.h"
#include "survey_edits/windows/checked_list.h"

using namespace Module_survey_edits;

namespace {

constexpr QSize usual_size(760, 560);

QVariant count_value(std::size_t count) { return static_cast<qulonglong>(count); }

QVariant number_value(double number) { return number; }

}  // namespace

Form_remove_readings::Form_remove_readings(SurveyContents contents, QWidget* parent)
    : QDialog(parent),
      contents_(std::move(contents)),
      Tab_contents_(named(new QTabWidget, "Tab_contents")),
      Text_filter_(named(new QLineEdit, "Text_filter")),
      Check_ghosts_(named(new QCheckBox, "Check_ghosts")),
      Label_what_goes_(named(new QLabel, "Label_what_goes")) {
  setObjectName("Form_remove_readings");
  setWindowTitle("Remove from the Survey");
  list_files();
  list_stations();
  list_lines();
  compose();
  offer_ghosts();
  resize_to_fit(*this, usual_size);
  lists_.front()->setFocus();
  show_what_goes();
}

void Form_remove_readings::compose() {
  const auto button = [this](const char* text, const char* name, const char* tool_tip, auto pressed) {
    auto* const made = named(new QPushButton(text), name);
    made->setAutoDefault(false);
    made->setToolTip(tool_tip);
    connect(made, &QPushButton::clicked, this, pressed);
    return made;
  };
  auto* const filter_row = new QHBoxLayout;
  add_labelled(*filter_row, "&Filter", Text_filter_);
  filter_row->addWidget(button("&All Shown", "Command_check_all", "Checks all rows that the filter shows",
                               [this] { check_shown(true); }));
  filter_row->addWidget(button("&None Shown", "Command_check_none",
                               "Takes the check marks of all rows that the filter shows away",
                               [this] { check_shown(false); }));
  auto* const buttons = new QHBoxLayout;
  buttons->addWidget(Label_what_goes_, 1);
  Command_remove_ = button("&Remove", "Command_remove", "Takes out what is checked in all three lists (Del)",
                           [this] { remove_chosen(); });
  buttons->addWidget(Command_remove_);
  buttons->addWidget(
      button("&Cancel", "Command_cancel", "Closes the window; nothing goes (Esc)", [this] { reject(); }));
  auto* const rows = new QVBoxLayout(this);
  rows->addLayout(filter_row);
  rows->addWidget(Tab_contents_, 1);
  rows->addWidget(Check_ghosts_);
  rows->addLayout(buttons);
  Text_filter_->setClearButtonEnabled(true);
  Text_filter_->setToolTip("Shows what has this in its name, line or number");
  Text_filter_->setPlaceholderText("Part of a name, line or number");
  Label_what_goes_->setWordWrap(true);
  Label_what_goes_->setTextFormat(Qt::PlainText);
  connect(Text_filter_, &QLineEdit::textChanged, this, &Form_remove_readings::filter);
}

void Form_remove_readings::offer_ghosts() {
  const auto ghosts = static_cast<std::size_t>(std::ranges::count_if(
      contents_.stations, [](const HeldStation& station) { return station.is_ghost(); }));
  Check_ghosts_->setText(qt_text("&Ghost stations: " + counted(ghosts, "station") + " without readings"));
  Check_ghosts_->setToolTip("Left by an earlier import whose files have come to other stations since");
  Check_ghosts_->setEnabled(ghosts > 0);
  connect(Check_ghosts_, &QCheckBox::toggled, this, &Form_remove_readings::show_what_goes);
}

void Form_remove_readings::add_list(const QString& title, const QString& name, const QStringList& headers,
                                    std::size_t rows, const std::function<QVariant(std::size_t, int)>& value,
                                    std::set<std::size_t>& checked) {
  auto* const model = new CheckedRows(headers, rows, value, checked, this);
  auto* const list = new CheckedList(model, name);
  list->setAccessibleName(title);
  list->setToolTip("Space checks the selected rows, Ctrl+A selects all, Del removes what is checked");
  Tab_contents_->addTab(list, title + " (" + QString::number(rows) + ")");
  lists_.push_back(list);
  connect(model, &CheckedRows::checked_changed, this, &Form_remove_readings::show_what_goes);
  connect(list, &CheckedList::delete_pressed, this, [this] { Command_remove_->click(); });
}

void Form_remove_readings::list_files() {
  add_list(
      "Files", "List_files", {"File", "Line", "Stations", "Date", "Readings"}, contents_.files.size(),
      [this](std::size_t row, int column) -> QVariant {
        const HeldFile& file = contents_.files[row];
        switch (column) {
          case 0:
            return qt_text(file.name);
          case 1:
            return lines_of(file);
          case 2:
            return stations_of(file);
          case 3:
            return file.rows.empty() ? QString() : qt_text(display_date(file.date));
          default:
            return count_value(file.readings);
        }
      },
      files_);
}

void Form_remove_readings::list_stations() {
  add_list(
      "Stations", "List_stations", {"Line", "Station", "Name", "Files", "Readings"},
      contents_.stations.size(),
      [this](std::size_t row, int column) -> QVariant {
        const HeldStation& station = contents_.stations[row];
        switch (column) {
          case 0:
            return qt_text(station.line);
          case 1:
            return number_value(station.station);
          case 2:
            return station.is_ghost() ? "(ghost station)" : qt_text(station.name);
          case 3:
            return count_value(station.files);
          default:
            return count_value(station.readings);
        }
      },
      stations_);
}

void Form_remove_readings::list_lines() {
  add_list(
      "Lines", "List_lines", {"Line", "Stations", "Readings"}, contents_.lines.size(),
      [this](std::size_t row, int column) -> QVariant {
        const HeldLine& line = contents_.lines[row];
        return column == 0 ? QVariant(qt_text(line.line))
                           : count_value(column == 1 ? line.stations.size() : line.readings);
      },
      lines_);
}

QString Form_remove_readings::lines_of(const HeldFile& file) const {
  QStringList lines;
  for (const std::size_t station : file.stations) {
    lines.append(qt_text(contents_.stations[station].line));
  }
  if (lines.empty() && !file.rows.empty()) {
    lines.append(qt_text(file.rows.front().line));
  }
  lines.removeDuplicates();
  return lines.join(", ");
}

QString Form_remove_readings::stations_of(const HeldFile& file) const {
  if (file.stations.empty()) {
    return {};
  }
  const auto text = [this](std::size_t station) {
    return qt_text(plain_text(contents_.stations[station].station));
  };
  const QString first = text(file.stations.front());
  return file.stations.size() == 1 ? first
                                   : first + " to " + text(file.stations.back()) + " (" +
                                         QString::number(file.stations.size()) + ")";
}

Choice Form_remove_readings::choice() const {
  Choice choice{files_, stations_};
  for (const std::size_t line : lines_) {
    choice.add_line(contents_, line);
  }
  if (Check_ghosts_->isChecked()) {
    choice.add_ghosts(contents_);
  }
  return choice;
}

void Form_remove_readings::show_what_goes() {
  plan_ = plan_removal(contents_, choice());
  Label_what_goes_->setText(qt_text(summary(plan_)));
  Command_remove_->setEnabled(!plan_.empty());
}

void Form_remove_readings::filter(const QString& text) {
  for (CheckedList* const list : lists_) {
    list->filter(text);
  }
}

void Form_remove_readings::check_shown(bool checked) {
  lists_[static_cast<std::size_t>(Tab_contents_->currentIndex())]->check_shown(checked);
}

void Form_remove_readings::remove_chosen() {
  if (!user_interface().ask_yes_no(
          "Remove " + what_goes(plan_) +
          "? \"Undo Removal\" brings them back until the next removal or renaming, or "
          "until the survey is closed." +
          (removal_can_be_undone() ? " What was removed before can't come back then." : ""))) {
    return;
  }
  if (remove_readings(contents_, plan_) == Module_averaged_data::Outcome::finished) {
    accept();
  }
}
