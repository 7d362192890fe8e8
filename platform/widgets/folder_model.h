// folder_model.h: the folders of the disks, shown without opening any file.
#pragma once
#include <QAbstractFileIconProvider>
#include <QFileSystemModel>
#include <QIcon>

/// Icons and type names from the folder's entry alone. The library's own open each file to find its type:
/// slow on a network drive, and endless on a pipe or device that has no data yet.
class PlainFileIcons : public QAbstractFileIconProvider {
 public:
  PlainFileIcons();
  [[nodiscard]] QIcon icon(IconType type) const override;
  [[nodiscard]] QIcon icon(const QFileInfo& file) const override;
  [[nodiscard]] QString type(const QFileInfo& file) const override;

 private:
  QIcon folder_;
  QIcon file_;
};

struct FolderModelIcons {
  PlainFileIcons icons;
};

/// The icons are a base class, because the thread that reads the folders ends only with the model's own base.
class FolderModel : private FolderModelIcons, public QFileSystemModel {
 public:
  explicit FolderModel(QObject* parent);
};
