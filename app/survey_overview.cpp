#include "app/survey_overview.h"

#include <QHeaderView>
#include <QStringList>
#include <QVBoxLayout>

#include "core/number_text.h"

using namespace Module_Brenlox;

namespace {

constexpr int line_role = Qt::UserRole;  // index of the line, and of the station in it
constexpr int station_role = Qt::UserRole + 1;

template <class Number>
QString number(Number value) {
  return QString::fromStdString(plain_text(value));
}

QString count_of(std::int32_t count, const QString& one, const QString& many) {
  return number(count) + " " + (count == 1 ? one : many);
}

template <class Values, class Text>
QString list_of(const Values& values, Text&& text) {
  QStringList texts;
  for (const auto& value : values) {
    texts.append(text(value));
  }
  return texts.isEmpty() ? "none" : texts.join(", ");
}

void make_heading(QLabel* label, double size) {
  QFont font = label->font();
  font.setPointSizeF(font.pointSizeF() * size);
  font.setBold(true);
  label->setFont(font);
  label->setTextFormat(Qt::PlainText);
}

QTreeWidget* make_list(const QString& name, const QStringList& headings) {
  auto* const list = new QTreeWidget;
  list->setObjectName(name);
  list->setHeaderLabels(headings);
  list->setAlternatingRowColors(true);
  list->setUniformRowHeights(true);  // keeps long surveys quick
  list->header()->setStretchLastSection(false);
  list->header()->setSectionResizeMode(QHeaderView::ResizeToContents);
  list->setStyleSheet("QTreeView::item { padding: 2px 6px; }");
  return list;
}

QVBoxLayout* rows_in(QWidget* pane) {
  auto* const rows = new QVBoxLayout(pane);
  rows->setContentsMargins(6, 6, 6, 6);
  return rows;
}

void right_align(QTreeWidgetItem* item, int first_column, int columns) {
  for (int column = first_column; column < columns; ++column) {
    item->setTextAlignment(column, Qt::AlignRight | Qt::AlignVCenter);
  }
}

QString frequencies_text(const ReadingGroup& group) {
  const QString fewest = number(group.fewest_frequencies);
  return group.fewest_frequencies == group.most_frequencies
             ? fewest
             : fewest + " to " + number(group.most_frequencies);
}

QTreeWidgetItem* station_item(const StationSummary& station) {
  auto* const item = new QTreeWidgetItem({number(station.station), number(station.readings(0)),
                                          number(station.readings(1)), number(station.readings(2))});
  right_align(item, 1, 4);
  return item;
}

QTreeWidgetItem* line_item(const LineSummary& line) {
  std::int32_t readings[3] = {0, 0, 0};
  for (const StationSummary& station : line.stations) {
    for (int reduction = 0; reduction < 3; ++reduction) {
      readings[reduction] += station.readings(reduction);
    }
  }
  const QString stations = count_of(static_cast<std::int32_t>(line.stations.size()), "station", "stations");
  auto* const item =
      new QTreeWidgetItem({"Line " + QString::fromStdString(line.line) + "  (" + stations + ")",
                           number(readings[0]), number(readings[1]), number(readings[2])});
  right_align(item, 1, 4);
  return item;
}

}  // namespace

SurveyOverview::SurveyOverview(QWidget* profile_pane, QWidget* station_pane, QWidget* plan_pane)
    : QObject(profile_pane),
      survey_name_(new QLabel),
      totals_(new QLabel),
      tree_(make_list("Tree_survey", {"Line and station", "Raw", "Averaged", "Merged"})),
      station_name_(new QLabel),
      readings_(make_list("List_readings", {"Data type", "Reference", "Reduction", "Scan rate (Hz)",
                                            "Dipole (m)", "Readings", "Used", "Frequencies"})) {
  survey_name_->setObjectName("Label_survey_name");
  make_heading(survey_name_, 1.3);
  totals_->setObjectName("Label_survey_totals");
  totals_->setWordWrap(true);
  totals_->setTextInteractionFlags(Qt::TextSelectableByMouse);
  station_name_->setObjectName("Label_station_name");
  make_heading(station_name_, 1.1);
  readings_->setRootIsDecorated(false);
  tree_->header()->setSectionResizeMode(0, QHeaderView::Stretch);

  QVBoxLayout* const profile_rows = rows_in(profile_pane);
  profile_rows->addWidget(survey_name_);
  profile_rows->addWidget(totals_);
  profile_rows->addStretch();
  rows_in(station_pane)->addWidget(tree_);
  QVBoxLayout* const plan_rows = rows_in(plan_pane);
  plan_rows->addWidget(station_name_);
  plan_rows->addWidget(readings_);

  connect(tree_, &QTreeWidget::currentItemChanged, this, &SurveyOverview::show_station);
}

void SurveyOverview::show_survey(const QString& name, const SurveySummary& summary) {
  if (name == shown_name_ && summary == shown_) {
    return;
  }
  shown_ = summary;
  shown_name_ = name;
  show_totals(name);
  fill_tree();
}

void SurveyOverview::show_totals(const QString& name) {
  survey_name_->setText(name);
  const auto plain = [](auto value) { return number(value); };
  const QString rows[][2] = {
      {"Survey", count_of(static_cast<std::int32_t>(shown_.lines.size()), "line", "lines") + ", " +
                     count_of(shown_.station_count(), "station", "stations") + ", " +
                     count_of(shown_.files, "file header", "file headers")},
      {"Readings", number(shown_.readings[0]) + " raw, " + number(shown_.readings[1]) + " averaged, " +
                       number(shown_.readings[2]) + " merged"},
      {"Reference types",
       list_of(shown_.reference_types,
               [](auto type) { return QString::fromStdString(reference_type_name(type)); })},
      {"Data types",
       list_of(shown_.data_types, [](const std::string& type) { return QString::fromStdString(type); })},
      {"Dipole lengths (m)", list_of(shown_.dipoles, plain)},
      {"Scan rates (Hz)", list_of(shown_.scan_rates, plain)}};
  QString table = "<table>";
  for (const auto& row : rows) {
    table +=
        "<tr><td style='padding-right:18px'>" + row[0] + "</td><td>" + row[1].toHtmlEscaped() + "</td></tr>";
  }
  totals_->setText(table + "</table>");
}

void SurveyOverview::fill_tree() {
  const QTreeWidgetItem* const chosen = tree_->currentItem();
  const QString chosen_text = chosen == nullptr ? QString() : chosen->text(0);
  const QString chosen_line =
      chosen == nullptr || chosen->parent() == nullptr ? QString() : chosen->parent()->text(0);
  tree_->clear();
  QTreeWidgetItem* current = nullptr;
  for (std::size_t line = 0; line < shown_.lines.size(); ++line) {
    QTreeWidgetItem* const line_row = line_item(shown_.lines[line]);
    for (std::size_t station = 0; station < shown_.lines[line].stations.size(); ++station) {
      QTreeWidgetItem* const row = station_item(shown_.lines[line].stations[station]);
      row->setData(0, line_role, static_cast<int>(line));
      row->setData(0, station_role, static_cast<int>(station));
      line_row->addChild(row);
      if (current == nullptr || (row->text(0) == chosen_text && line_row->text(0) == chosen_line)) {
        current = row;
      }
    }
    tree_->addTopLevelItem(line_row);
  }
  tree_->expandAll();
  tree_->setCurrentItem(current);
  show_station();
}

void SurveyOverview::show_station() {
  readings_->clear();
  const QTreeWidgetItem* const chosen = tree_->currentItem();
  if (chosen == nullptr || chosen->parent() == nullptr) {
    station_name_->setText("Choose a station to see its readings");
    return;
  }
  const LineSummary& line = shown_.lines.at(static_cast<std::size_t>(chosen->data(0, line_role).toInt()));
  const StationSummary& station =
      line.stations.at(static_cast<std::size_t>(chosen->data(0, station_role).toInt()));
  station_name_->setText("Line " + QString::fromStdString(line.line) + ", station " +
                         number(station.station));
  for (const ReadingGroup& group : station.groups) {
    auto* const row = new QTreeWidgetItem({QString::fromStdString(group.data_type),
                                           QString::fromStdString(reference_type_name(group.reference_type)),
                                           QString::fromStdString(reduction_type_name(group.reduction_type)),
                                           group.reduction_type == 2 ? "all" : number(group.scan_rate),
                                           number(group.dipole), number(group.readings),
                                           number(group.used_readings), frequencies_text(group)});
    right_align(row, 3, 8);
    readings_->addTopLevelItem(row);
  }
}
