// folder_tree.h: a tree in which the user chooses a folder.
#pragma once
#include <QTreeView>

class QFileSystemModel;

class FolderTree : public QTreeView {
  Q_OBJECT

 public:
  explicit FolderTree(QWidget* parent = nullptr);

  /// Chooses a folder and brings it into view.
  void choose(const QString& folder);
  /// The chosen folder, with "/"; empty if none is.
  [[nodiscard]] QString folder() const;

 Q_SIGNALS:
  void folder_chosen(const QString& folder);

 protected:
  void showEvent(QShowEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  void bring_into_view();

  QFileSystemModel* folders_;
  bool is_looked_through_ = false;  // by the user, who then decides what is in view
};
