#include "app/help/manual_pages.h"

#include <QFile>

/// A static library's resources are linked in only where they are asked for. (Qt wants the macro outside of
/// any namespace.)
static void load_pages() { Q_INIT_RESOURCE(manual); }

QUrl manual_page(const QString& name) {
  load_pages();
  return {"qrc:/manual/docs/" + name};
}

QString changelog() {
  load_pages();
  QFile file(":/manual/CHANGELOG.md");
  return file.open(QFile::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}
