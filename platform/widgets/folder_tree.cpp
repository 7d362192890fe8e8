#include "platform/widgets/folder_tree.h"

#include <QDir>

#include "platform/widgets/folder_model.h"

FolderTree::FolderTree(QWidget* parent) : QTreeView(parent), folders_(new FolderModel(this)) {
  folders_->setFilter(QDir::AllDirs | QDir::NoDotAndDotDot);
  folders_->setRootPath(QDir::rootPath());
  setModel(folders_);
  setHeaderHidden(true);
  setUniformRowHeights(true);
  for (int column = 1; column < folders_->columnCount(); ++column) {
    hideColumn(column);
  }
  connect(selectionModel(), &QItemSelectionModel::currentChanged, this,
          [this] { Q_EMIT folder_chosen(folder()); });
  // Folders are read as they come into view, and the tree lays new rows out after this signal: the chosen one
  // reaches its place only after several of them.
  connect(
      folders_, &QFileSystemModel::directoryLoaded, this,
      [this](const QString& loaded) {
        if (folder().startsWith(loaded)) {
          scrollTo(currentIndex(), QAbstractItemView::PositionAtCenter);
        }
      },
      Qt::QueuedConnection);
}

void FolderTree::choose(const QString& folder) {
  const QModelIndex place = folders_->index(QDir(folder).absolutePath());
  setCurrentIndex(place);
  scrollTo(place, QAbstractItemView::PositionAtCenter);
}

QString FolderTree::folder() const { return folders_->filePath(currentIndex()); }

void FolderTree::showEvent(QShowEvent* event) {
  QTreeView::showEvent(event);
  scrollTo(currentIndex(), QAbstractItemView::PositionAtCenter);
}
