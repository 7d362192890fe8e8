#include "platform/widgets/folder_tree.h"

#include <QDir>
#include <QScrollBar>

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
  // Folders are read in the background and put in order once they are: the chosen one reaches its place only
  // after several of these signals, and the tree lays new rows out after each.
  connect(folders_, &QFileSystemModel::directoryLoaded, this, &FolderTree::bring_into_view,
          Qt::QueuedConnection);
  connect(folders_, &QFileSystemModel::layoutChanged, this, &FolderTree::bring_into_view,
          Qt::QueuedConnection);
  connect(verticalScrollBar(), &QScrollBar::actionTriggered, this, [this] { is_looked_through_ = true; });
}

void FolderTree::choose(const QString& folder) {
  setCurrentIndex(folders_->index(QDir(folder).absolutePath()));
  is_looked_through_ = false;
  bring_into_view();
}

QString FolderTree::folder() const { return folders_->filePath(currentIndex()); }

void FolderTree::bring_into_view() {
  if (!is_looked_through_) {
    scrollTo(currentIndex(), QAbstractItemView::PositionAtCenter);
  }
}

void FolderTree::showEvent(QShowEvent* event) {
  QTreeView::showEvent(event);
  bring_into_view();
}

void FolderTree::mousePressEvent(QMouseEvent* event) {
  is_looked_through_ = true;
  QTreeView::mousePressEvent(event);
}

void FolderTree::keyPressEvent(QKeyEvent* event) {
  is_looked_through_ = true;
  QTreeView::keyPressEvent(event);
}
