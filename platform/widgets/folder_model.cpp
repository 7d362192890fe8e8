#include "platform/widgets/folder_model.h"

#include <QApplication>
#include <QFileInfo>
#include <QStyle>

PlainFileIcons::PlainFileIcons()
    : folder_(QApplication::style()->standardIcon(QStyle::SP_DirIcon)),
      file_(QApplication::style()->standardIcon(QStyle::SP_FileIcon)) {}

QIcon PlainFileIcons::icon(IconType type) const { return type == File ? file_ : folder_; }

QIcon PlainFileIcons::icon(const QFileInfo& file) const { return file.isDir() ? folder_ : file_; }

QString PlainFileIcons::type(const QFileInfo& file) const {
  return file.isDir() ? QStringLiteral("Folder") : QStringLiteral("File");
}

FolderModel::FolderModel(QObject* parent) : QFileSystemModel(parent) { setIconProvider(&icons); }
