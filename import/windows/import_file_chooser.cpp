#include "import/windows/import_file_chooser.h"

#include <QApplication>
#include <QDir>
#include <QDropEvent>
#include <QFileInfo>
#include <QHeaderView>
#include <QKeyEvent>
#include <QMimeData>
#include <QShortcut>
#include <QStorageInfo>
#include <QToolTip>

#include "core/user_interface.h"
#include "import/field_files.h"
#include "import/import_run.h"
#include "platform/widgets/dropped_files.h"
#include "platform/widgets/entry_mark.h"
#include "platform/widgets/folder_model.h"
#include "ui_import_file_chooser.h"

using namespace Module_data_file;

ImportFileChooser::ImportFileChooser(QWidget* parent)
    : QFrame(parent), ui_(std::make_unique<Ui::import_file_chooser>()), folders_(new FolderModel(this)) {
  ui_->setupUi(this);
  folders_->setFilter(QDir::Dirs | QDir::NoDotAndDotDot);
  ui_->Dir_binary->setModel(folders_);
  for (int column = 1; column < folders_->columnCount(); ++column) {
    ui_->Dir_binary->hideColumn(column);
  }
  ui_->columns->setStretch(0, 3);
  ui_->columns->setStretch(1, 3);
  ui_->columns->setStretch(2, 5);
  ui_->ListView_binary->setHeaderLabels({"File Name", "Location"});
  ui_->ListView_binary->header()->resizeSection(0, fontMetrics().averageCharWidth() * 32);
  ui_->Text_file_extension->setText(QString::fromStdString(import_extension()));
  fill_drives();
  go_to_folder(QString::fromStdString(import_start_folder()));

  connect(ui_->Drive_binary, &QComboBox::activated, this, &ImportFileChooser::show_drive);
  connect(ui_->Text_folder, &QLineEdit::returnPressed, this, &ImportFileChooser::type_folder);
  connect(ui_->Dir_binary->selectionModel(), &QItemSelectionModel::currentChanged, this,
          &ImportFileChooser::show_folder_files);
  // Queued, as the tree lays new rows out after this signal.
  connect(
      folders_, &QFileSystemModel::directoryLoaded, ui_->Dir_binary,
      [tree = ui_->Dir_binary] { tree->scrollTo(tree->currentIndex(), QAbstractItemView::PositionAtCenter); },
      Qt::QueuedConnection);
  connect(ui_->Text_file_extension, &QLineEdit::textChanged, this, &ImportFileChooser::show_folder_files);
  connect(ui_->File_binary, &QListWidget::itemDoubleClicked, this, [this] { add_shown(true); });
  connect(ui_->Command_add_selected, &QPushButton::clicked, this, [this] { add_shown(true); });
  connect(ui_->Command_find_and_add_files, &QPushButton::clicked, this, [this] { add_shown(false); });
  connect(ui_->Command_add_all, &QPushButton::clicked, this, &ImportFileChooser::add_all);
  connect(ui_->Command_clear_selected, &QPushButton::clicked, this, &ImportFileChooser::clear_selected);
  auto* const delete_key = new QShortcut(QKeySequence::Delete, ui_->ListView_binary);
  delete_key->setContext(Qt::WidgetShortcut);
  connect(delete_key, &QShortcut::activated, this, &ImportFileChooser::clear_selected);
  connect(ui_->Command_clear_list, &QPushButton::clicked, this, [this] {
    list_.clear();
    show_list();
  });
  setAcceptDrops(true);
  for (QLineEdit* const box : {ui_->Text_folder, ui_->Text_file_extension}) {
    box->setAcceptDrops(false);  // a file dropped there would be typed in as a name
  }
  show_folder_files();
  show_list();
}

ImportFileChooser::~ImportFileChooser() = default;

QString ImportFileChooser::folder() const { return folders_->filePath(ui_->Dir_binary->currentIndex()); }

QString ImportFileChooser::extension() const { return ui_->Text_file_extension->text().trimmed(); }

// Enter belongs to the folder and the lists; it must not go on to the next page with a half-finished list.
void ImportFileChooser::keyPressEvent(QKeyEvent* event) {
  const bool enter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
  if (!enter || ui_->Text_file_extension->hasFocus()) {
    QFrame::keyPressEvent(event);
  } else if (ui_->File_binary->hasFocus()) {
    add_shown(true);
  }
}

void ImportFileChooser::fill_drives() {
  ui_->Drive_binary->addItem("Home (" + QDir::toNativeSeparators(QDir::homePath()) + ")", QDir::homePath());
  ui_->Drive_binary->addItem("Computer (" + QDir::toNativeSeparators(QDir::rootPath()) + ")",
                             QDir::rootPath());
  for (const QStorageInfo& volume : QStorageInfo::mountedVolumes()) {
    // Nobody keeps field files on what the system mounts for itself.
    const bool of_the_system = !volume.device().startsWith("/dev/") && !volume.rootPath().contains(':');
    if (volume.isReady() && !of_the_system && QFileInfo(volume.rootPath()).isDir() &&
        ui_->Drive_binary->findData(volume.rootPath()) < 0) {
      ui_->Drive_binary->addItem(
          volume.displayName() == volume.rootPath()
              ? QDir::toNativeSeparators(volume.rootPath())
              : volume.displayName() + " (" + QDir::toNativeSeparators(volume.rootPath()) + ")",
          volume.rootPath());
    }
  }
}

void ImportFileChooser::go_to_folder(const QString& folder) {
  const QString path = QDir(folder.isEmpty() ? QDir::homePath() : folder).absolutePath();
  int drive = ui_->Drive_binary->findData(QDir::rootPath());
  for (int i = 0; i < ui_->Drive_binary->count(); ++i) {
    const QString root = ui_->Drive_binary->itemData(i).toString();
    const bool holds = path == root || path.startsWith(root.endsWith('/') ? root : root + '/');
    if (holds && root.size() > ui_->Drive_binary->itemData(drive).toString().size()) {
      drive = i;
    }
  }
  ui_->Drive_binary->setCurrentIndex(drive);
  show_drive();
  ui_->Dir_binary->setCurrentIndex(folders_->index(path));
  ui_->Dir_binary->expand(folders_->index(path));
}

void ImportFileChooser::show_drive() {
  const QString root = ui_->Drive_binary->currentData().toString();
  ui_->Dir_binary->setRootIndex(folders_->setRootPath(root));
  ui_->Dir_binary->setCurrentIndex(folders_->index(root));
}

void ImportFileChooser::type_folder() {
  if (const QString typed = ui_->Text_folder->text().trimmed(); QFileInfo(typed).isDir()) {
    go_to_folder(typed);
  } else {
    QApplication::beep();
    mark_entry(*ui_->Text_folder, "There is no folder " + typed);
    QToolTip::showText(ui_->Text_folder->mapToGlobal(QPoint(0, ui_->Text_folder->height())),
                       ui_->Text_folder->toolTip(), ui_->Text_folder);
  }
}

void ImportFileChooser::show_folder_files() {
  ui_->Text_folder->setText(QDir::toNativeSeparators(folder()));
  mark_entry(*ui_->Text_folder, {});
  ui_->File_binary->clear();
  for (const std::string& name : files_in_folder(folder().toStdString(), extension().toStdString())) {
    ui_->File_binary->addItem(QString::fromStdString(name));
  }
  ui_->Command_find_and_add_files->setEnabled(ui_->File_binary->count() > 0);
}

void ImportFileChooser::ask_for_files() {
  ui_->Label_file_count->setText("No files are chosen. Add or drop files here first");
  ui_->File_binary->setFocus();
}

void ImportFileChooser::add_shown(bool only_selected) {
  std::vector<std::string> paths;
  for (int row = 0; row < ui_->File_binary->count(); ++row) {
    if (const QListWidgetItem& item = *ui_->File_binary->item(row); !only_selected || item.isSelected()) {
      paths.push_back(QDir(folder()).filePath(item.text()).toStdString());
    }
  }
  list_.add(paths);
  show_list();
}

void ImportFileChooser::add_all() {
  const BusyPointer busy;
  const std::string ending = plain_extension(extension().toStdString());
  list_.add(ending.empty() ? field_files_of({folder().toStdString()})
                           : find_import_files(folder().toStdString(), ending));
  show_list();
}

void ImportFileChooser::take_paths(const QStringList& paths) {
  std::vector<std::string> given;
  for (const QString& path : paths) {
    given.push_back(path.toStdString());
  }
  list_.add(field_files_of(given));
  show_list();
}

void ImportFileChooser::dragEnterEvent(QDragEnterEvent* event) {
  if (!local_paths(*event->mimeData()).isEmpty()) {
    event->setDropAction(Qt::CopyAction);  // whatever is proposed: the files stay where they are
    event->accept();
  }
}

void ImportFileChooser::dropEvent(QDropEvent* event) {
  if (const QStringList paths = local_paths(*event->mimeData()); !paths.isEmpty()) {
    event->setDropAction(Qt::CopyAction);
    event->accept();
    take_paths(paths);
  }
}

void ImportFileChooser::clear_selected() {
  std::set<std::size_t> places;
  for (const QModelIndex& index : ui_->ListView_binary->selectionModel()->selectedRows()) {
    places.insert(static_cast<std::size_t>(index.row()));
  }
  list_.remove(places);
  show_list();
}

void ImportFileChooser::show_list() {
  ui_->ListView_binary->clear();
  QList<QTreeWidgetItem*> rows;
  for (const std::string& path : list_.paths()) {
    const QFileInfo file(QString::fromStdString(path));
    rows.append(new QTreeWidgetItem({file.fileName(), QDir::toNativeSeparators(file.path())}));
  }
  ui_->ListView_binary->addTopLevelItems(rows);
  ui_->Label_file_count->setText(rows.size() == 1 ? QString("1 file to import")
                                                  : QString("%1 files to import").arg(rows.size()));
  ui_->Command_clear_selected->setEnabled(!rows.isEmpty());
  ui_->Command_clear_list->setEnabled(!rows.isEmpty());
}
