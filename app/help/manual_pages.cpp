#include "app/help/manual_pages.h"

#include <QDirIterator>
#include <algorithm>
#include <utility>

/// A static library's resources are linked in only where they are asked for. (Qt wants the macro outside of
/// any namespace.)
static void load_pages() { Q_INIT_RESOURCE(manual); }

QUrl manual_page(const QString& name) {
  load_pages();
  return {"qrc:/manual/docs/" + name};
}

QStringList manual_page_names() {
  load_pages();
  const QString folder(":/manual/docs/");
  QStringList names;
  QDirIterator files(folder, {"*.md"}, QDir::Files, QDirIterator::Subdirectories);
  while (files.hasNext()) {
    names.append(files.next().mid(folder.size()));
  }
  std::ranges::sort(names, {}, [](const QString& name) {
    return std::pair(name != "tutorial.md", std::pair(name.count('/'), name));
  });
  return names;
}

QUrl changelog() {
  load_pages();
  return {"qrc:/manual/CHANGELOG.md"};
}
