#include "import/windows/Form_import_report.h"

#include <QClipboard>
#include <QFileInfo>
#include <QGuiApplication>
#include <QHeaderView>
#include <QIcon>
#include <QScreen>
#include <QStyle>
#include <algorithm>
#include <filesystem>
#include <iterator>
#include <utility>

#include "core/file_names.h"
#include "core/finished_work.h"
#include "core/session_state.h"
#include "core/trap_errors.h"
#include "platform/files/files_in_use.h"
#include "platform/files/safe_files.h"
#include "platform/widgets/copy_cells.h"
#include "platform/widgets/panel_controls.h"
#include "ui_Form_import_report.h"

using namespace Module_data_file;
using formats::FileReport;

namespace {

// Lines unfolded from the first file on; later files unfold on demand. A tree takes these within a moment.
constexpr std::size_t lines_unfolded = 5000;

std::size_t line_count(const FileReport& file) {
  return file.ignored.size() + file.unreadable.size() + file.account.size() + 1;
}

bool needs_action(const FileReport& file) {
  return !file.failure.empty() || file.readings == 0 || has_negative_phases(file) || lacks_curves(file);
}

/// Texts over all columns under a row. All at once and by their place: one by one a long list takes seconds.
void add_lines(QTreeWidget& tree, QTreeWidgetItem& row, const std::vector<std::string>& lines) {
  const int before = row.childCount();
  QList<QTreeWidgetItem*> items;
  for (const std::string& line : lines) {
    const QString text = QString::fromStdString(line);
    items.append(new QTreeWidgetItem({text}));
    items.back()->setToolTip(0, text);
  }
  row.addChildren(items);
  const QModelIndex parent = tree.indexFromItem(&row);
  for (int index = before; index < row.childCount(); ++index) {
    tree.setFirstColumnSpanned(index, parent, true);
  }
}

void align_numbers(QTreeWidgetItem& row) {
  for (int column = 1; column < row.columnCount(); ++column) {
    row.setTextAlignment(column, Qt::AlignRight | Qt::AlignVCenter);
  }
}

void set_columns(QTreeWidget& tree, const QStringList& titles) {
  make_cells_copyable(tree);
  tree.setHeaderLabels(titles);
  align_numbers(*tree.headerItem());
  QHeaderView& header = *tree.header();
  header.setStretchLastSection(false);
  header.setSectionResizeMode(QHeaderView::ResizeToContents);
  header.setSectionResizeMode(0, QHeaderView::Stretch);
}

QTreeWidgetItem* file_row(const FileReport& file, std::size_t index, const QStringList& numbers) {
  auto* const row =
      new QTreeWidgetItem(QStringList(QFileInfo(QString::fromStdString(file.file)).fileName()) + numbers);
  align_numbers(*row);
  row->setToolTip(0, QString::fromStdString(file.file));
  row->setData(0, Qt::UserRole, static_cast<qulonglong>(index));
  return row;
}

std::size_t number_in(const QTreeWidgetItem& row) { return row.data(0, Qt::UserRole).toULongLong(); }

}  // namespace

Form_import_report::Form_import_report(ImportReport report, QWidget* parent)
    : QDialog(parent),
      ui_(std::make_unique<Ui::Form_import_report>()),
      report_(std::move(report)),
      groups_(report_groups(report_, OptionNames::window)) {
  ui_->setupUi(this);
  resize_to_fit(*this, {fontMetrics().averageCharWidth() * 150, fontMetrics().height() * 34});
  set_columns(*ui_->Tree_kinds, {"What was found", "Remarks"});
  set_columns(*ui_->Tree_report,
              {"File and remarks", "Sections", "Readings", "Frequencies", "Ey turned", "Remarks"});
  connect(ui_->Tree_kinds, &QTreeWidget::itemExpanded, this, &Form_import_report::add_files);
  connect(ui_->Tree_kinds, &QTreeWidget::itemDoubleClicked, this, &Form_import_report::show_file);
  connect(ui_->Tree_report, &QTreeWidget::itemExpanded, this, &Form_import_report::add_remarks);
  ui_->Label_summary->setText(QString::fromStdString(report_.summary()));
  fill_kinds();
  fill_files();
  connect(ui_->Command_copy, &QPushButton::clicked, this, &Form_import_report::copy);
  connect(ui_->Command_save_report, &QPushButton::clicked, this, &Form_import_report::save);
  connect(ui_->Command_done, &QPushButton::clicked, this, &QDialog::accept);
}

Form_import_report::~Form_import_report() = default;

void Form_import_report::fill_kinds() {
  const QIcon problem = style()->standardIcon(QStyle::SP_MessageBoxWarning);
  const QIcon note = style()->standardIcon(QStyle::SP_MessageBoxInformation);
  for (std::size_t index = 0; index < groups_.size(); ++index) {
    const ReportGroup& group = groups_[index];
    const std::string text = group.title() + (group.advice.empty() ? "" : "; " + group.advice);
    auto* const row = new QTreeWidgetItem(
        {QString::fromStdString(text), group.remarks > 0 ? QString::number(group.remarks) : QString()});
    align_numbers(*row);
    row->setIcon(0, group.needs_action() ? problem : note);
    row->setToolTip(0, QString::fromStdString(text));
    row->setData(0, Qt::UserRole, static_cast<qulonglong>(index));
    ui_->Tree_kinds->addTopLevelItem(row);
    if (!group.files.empty() || !group.places.empty()) {
      row->setChildIndicatorPolicy(QTreeWidgetItem::ShowIndicator);
    }
  }
  ui_->Tree_kinds->setCurrentItem(ui_->Tree_kinds->topLevelItem(0));
  ui_->Tree_kinds->setFocus();
}

// Files and their remarks come when a line is unfolded: a large import has more than a tree takes at once.
void Form_import_report::add_files(QTreeWidgetItem* row) const {
  if (row->childCount() > 0) {
    return;
  }
  if (const QTreeWidgetItem* const above = row->parent(); above != nullptr) {
    const ReportGroup& group = groups_.at(number_in(*above));
    add_lines(*ui_->Tree_kinds, *row,
              group_lines(
                  report_, group,
                  group.files.at(static_cast<std::size_t>(above->indexOfChild(row)) - group.places.size())));
    return;
  }
  const ReportGroup& group = groups_.at(number_in(*row));
  add_lines(*ui_->Tree_kinds, *row, group.places);
  QList<QTreeWidgetItem*> files;
  for (const ReportGroup::File& file : group.files) {
    const std::size_t lines = file.lines.size();
    files.append(
        file_row(report_.files[file.index], file.index, {lines > 0 ? QString::number(lines) : QString()}));
    if (lines > 0 || group.kind == GroupKind::replaced || group.kind == GroupKind::not_kept) {
      files.back()->setChildIndicatorPolicy(QTreeWidgetItem::ShowIndicator);
    }
  }
  row->addChildren(files);
}

void Form_import_report::fill_files() {
  const QIcon problem = style()->standardIcon(QStyle::SP_MessageBoxWarning);
  std::size_t unfolded = 0;
  for (std::size_t index = 0; index < report_.files.size(); ++index) {
    const FileReport& file = report_.files[index];
    auto* const row = file_row(
        file, index,
        {QString::number(file.sections), QString::number(file.readings), QString::number(file.frequencies),
         QString::number(file.sections_turned), QString::number(remark_count(file))});
    if (needs_action(file)) {
      row->setIcon(0, problem);
    }
    ui_->Tree_report->addTopLevelItem(row);
    if (file.has_remarks() || !replaced_line(file).empty()) {
      row->setChildIndicatorPolicy(QTreeWidgetItem::ShowIndicator);
      row->setExpanded(unfolded == 0 || unfolded + line_count(file) <= lines_unfolded);
      unfolded += line_count(file);
    }
  }
}

void Form_import_report::add_remarks(QTreeWidgetItem* row) const {
  if (row->parent() != nullptr || row->childCount() > 0) {
    return;
  }
  const FileReport& file = report_.files.at(number_in(*row));
  std::vector<std::string> lines = remark_lines(file);
  if (std::string line = replaced_line(file); !line.empty()) {
    lines.insert(lines.begin(), std::move(line));
  }
  add_lines(*ui_->Tree_report, *row, lines);
}

/// All that is told of a file, whatever of it stands under a kind.
void Form_import_report::show_file(QTreeWidgetItem* row) {
  if (row->parent() == nullptr || !row->data(0, Qt::UserRole).isValid()) {
    return;
  }
  QTreeWidgetItem* const file = ui_->Tree_report->topLevelItem(static_cast<int>(number_in(*row)));
  ui_->Tabs_report->setCurrentWidget(ui_->Page_files);
  file->setExpanded(true);
  ui_->Tree_report->setCurrentItem(file);
  ui_->Tree_report->scrollToItem(file, QAbstractItemView::PositionAtTop);
  ui_->Tree_report->setFocus();
}

void Form_import_report::copy() const {
  QGuiApplication::clipboard()->setText(QString::fromStdString(report_text(report_)));
}

void Form_import_report::save() const {
  std::string path = Module_util::directory_of(session().database_file) + "import_report.json";
  if (Module_util::select_output_file(path, "Save the import report",
                                      "JSON files (*.json)|*.json|All files (*.*)|*.*") != 0 ||
      path.empty()) {
    return;
  }
  std::vector<std::filesystem::path> imported;
  std::ranges::transform(report_.files, std::back_inserter(imported), &formats::FileReport::file);
  const safe_files::FilesInUse inputs(std::move(imported));
  // After a failure, which the user has seen, the report is still on the screen.
  if (trap_errors("An error occurred while saving the import report: ",
                  [&] { safe_files::write_into_place(path, report_.to_json()); }) == 0) {
    user_interface().show_message("The report is written to " + path);
    Module_Brenlox::tell_finished("The import report is written to " + path, path);
  }
}
