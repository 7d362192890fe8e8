#include "import/windows/Form_import_report.h"

#include <QClipboard>
#include <QFileInfo>
#include <QGuiApplication>
#include <QHeaderView>
#include <QScreen>
#include <algorithm>
#include <filesystem>
#include <iterator>
#include <utility>

#include "core/file_names.h"
#include "core/session_state.h"
#include "core/trap_errors.h"
#include "platform/files/files_in_use.h"
#include "platform/files/safe_files.h"
#include "platform/widgets/copy_cells.h"
#include "ui_Form_import_report.h"

using namespace Module_data_file;
using formats::FileReport;

namespace {

// Lines unfolded from the first file on; later files unfold on demand. A tree takes these within a moment.
constexpr std::size_t lines_unfolded = 5000;

std::size_t line_count(const FileReport& file) {
  return file.ignored.size() + file.unreadable.size() + file.account.size() + 1;
}

}  // namespace

Form_import_report::Form_import_report(ImportReport report, QWidget* parent)
    : QDialog(parent), ui_(std::make_unique<Ui::Form_import_report>()), report_(std::move(report)) {
  ui_->setupUi(this);
  resize(QSize(fontMetrics().averageCharWidth() * 130, fontMetrics().height() * 30)
             .boundedTo(screen()->availableSize() * 0.95));
  make_cells_copyable(*ui_->Tree_report);
  connect(ui_->Tree_report, &QTreeWidget::itemExpanded, this, &Form_import_report::add_remarks);
  ui_->Tree_report->setHeaderLabels(
      {"File and remarks", "Sections", "Readings", "Frequencies", "Ey turned", "Remarks"});
  for (int column = 1; column < ui_->Tree_report->columnCount(); ++column) {
    ui_->Tree_report->headerItem()->setTextAlignment(column, Qt::AlignRight | Qt::AlignVCenter);
  }
  fill();
  QHeaderView& header = *ui_->Tree_report->header();
  header.setStretchLastSection(false);
  header.setSectionResizeMode(QHeaderView::ResizeToContents);
  header.setSectionResizeMode(0, QHeaderView::Stretch);
  connect(ui_->Command_copy, &QPushButton::clicked, this, &Form_import_report::copy);
  connect(ui_->Command_save_report, &QPushButton::clicked, this, &Form_import_report::save);
  connect(ui_->Command_done, &QPushButton::clicked, this, &QDialog::accept);
}

Form_import_report::~Form_import_report() = default;

void Form_import_report::fill() {
  ui_->Label_summary->setText(QString::fromStdString(report_.summary()));
  std::size_t unfolded = 0;
  for (std::size_t index = 0; index < report_.files.size(); ++index) {
    const FileReport& file = report_.files[index];
    auto* const row = new QTreeWidgetItem(
        {QFileInfo(QString::fromStdString(file.file)).fileName(), QString::number(file.sections),
         QString::number(file.readings), QString::number(file.frequencies),
         QString::number(file.sections_turned), QString::number(remark_count(file))});
    for (int column = 1; column < row->columnCount(); ++column) {
      row->setTextAlignment(column, Qt::AlignRight | Qt::AlignVCenter);
    }
    row->setToolTip(0, QString::fromStdString(file.file));
    row->setData(0, Qt::UserRole, static_cast<qulonglong>(index));
    ui_->Tree_report->addTopLevelItem(row);
    if (file.has_remarks() || !replaced_line(file).empty()) {
      row->setChildIndicatorPolicy(QTreeWidgetItem::ShowIndicator);
      row->setExpanded(unfolded == 0 || unfolded + line_count(file) <= lines_unfolded);
      unfolded += line_count(file);
    }
  }
}

// A large import has more remarks than a tree takes at once: a file's come when it is unfolded.
void Form_import_report::add_remarks(QTreeWidgetItem* row) const {
  if (row->parent() != nullptr || row->childCount() > 0) {
    return;
  }
  const FileReport& file = report_.files.at(row->data(0, Qt::UserRole).toULongLong());
  QList<QTreeWidgetItem*> remarks;
  std::vector<std::string> lines = remark_lines(file);
  if (std::string line = replaced_line(file); !line.empty()) {
    lines.insert(lines.begin(), std::move(line));
  }
  for (const std::string& line : lines) {
    const QString text = QString::fromStdString(line);
    remarks.append(new QTreeWidgetItem({text}));
    remarks.back()->setToolTip(0, text);
  }
  // All at once and by their place: one by one a long account takes seconds.
  row->addChildren(remarks);
  const QModelIndex parent = ui_->Tree_report->indexFromItem(row);
  for (int index = 0; index < row->childCount(); ++index) {
    ui_->Tree_report->setFirstColumnSpanned(index, parent, true);
  }
}

void Form_import_report::copy() const {
  QGuiApplication::clipboard()->setText(QString::fromStdString(report_.to_text()));
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
  }
}
