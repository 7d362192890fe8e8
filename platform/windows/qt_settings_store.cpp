#include "platform/windows/qt_settings_store.h"

#include <QSettings>
#include <QString>

namespace {

QString text(std::string_view value) {
  return QString::fromUtf8(value.data(), static_cast<qsizetype>(value.size()));
}

// Separators in a key would split it into groups; they are written as %2F and %5C.
QString key_path(std::string_view section, std::string_view key) {
  QString escaped = text(key);
  escaped.replace('%', "%25").replace('/', "%2F").replace('\\', "%5C");
  return text(section) + "/" + escaped;
}

std::string key_of(QString escaped) {
  return escaped.replace("%5C", "\\").replace("%2F", "/").replace("%25", "%").toStdString();
}

}  // namespace

std::string QtSettingsStore::value(std::string_view application, std::string_view section,
                                   std::string_view key, std::string_view default_value) const {
  const QSettings settings(QSettings::UserScope, "Brenlox", text(application));
  return settings.value(key_path(section, key), text(default_value)).toString().toStdString();
}

void QtSettingsStore::set_value(std::string_view application, std::string_view section, std::string_view key,
                                std::string_view value) {
  QSettings settings(QSettings::UserScope, "Brenlox", text(application));
  settings.setValue(key_path(section, key), text(value));
}

std::vector<std::string> QtSettingsStore::keys(std::string_view application, std::string_view section) const {
  QSettings settings(QSettings::UserScope, "Brenlox", text(application));
  settings.beginGroup(text(section));
  std::vector<std::string> found;
  for (const QString& key : settings.childKeys()) {
    found.push_back(key_of(key));
  }
  return found;
}

void QtSettingsStore::remove(std::string_view application, std::string_view section, std::string_view key) {
  QSettings settings(QSettings::UserScope, "Brenlox", text(application));
  settings.remove(key_path(section, key));
}

bool QtSettingsStore::flush(std::string_view application) {
  QSettings settings(QSettings::UserScope, "Brenlox", text(application));
  settings.sync();
  return settings.status() == QSettings::NoError && settings.isWritable();
}
