#include "app/help/manual_pages.h"

#include <QFile>

/// The pages come with a library, whose resources nobody else would ask for. (Qt wants this one outside of
/// any namespace.)
static void take_in_pages() { Q_INIT_RESOURCE(manual); }

QUrl manual_page(const QString& name) {
  take_in_pages();
  return {"qrc:/manual/docs/" + name};
}

QString changelog() {
  take_in_pages();
  QFile file(":/manual/CHANGELOG.md");
  return file.open(QFile::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}
