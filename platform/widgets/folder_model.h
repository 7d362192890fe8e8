// folder_model.h: the folders of the disks, shown without a look into any file.
#pragma once
#include <QAbstractFileIconProvider>
#include <QFileSystemModel>
#include <QIcon>

/// Pictures and names of kinds from the folder's entry alone. The library's own open each file to tell its
/// kind: slow on a network drive, and for ever at a file of the system that has nothing to give yet.
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

/// The icons are a base, as the thread that reads the folders ends only with the model's last part.
class FolderModel : private FolderModelIcons, public QFileSystemModel {
 public:
  explicit FolderModel(QObject* parent);
};
