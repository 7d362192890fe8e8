#include "platform/widgets/dropped_files.h"

#include <QDir>
#include <QUrl>

QStringList local_paths(const QMimeData& dragged) {
  QStringList paths;
  for (const QUrl& url : dragged.urls()) {
    if (!url.isLocalFile()) {
      return {};
    }
    paths.append(QDir::cleanPath(url.toLocalFile()));
  }
  return paths;
}
