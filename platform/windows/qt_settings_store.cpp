#include "platform/windows/qt_settings_store.h"

#include <QSettings>
#include <QString>
#include <algorithm>

#include "core/finished_work.h"

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
  const std::vector<std::string> unsaved = unsaved_.keys(application, section);
  if (std::ranges::find(unsaved, key) != unsaved.end()) {
    return unsaved_.value(application, section, key, default_value);
  }
  return settings.value(key_path(section, key), text(default_value)).toString().toStdString();
}

void QtSettingsStore::set_value(std::string_view application, std::string_view section, std::string_view key,
                                std::string_view value) {
  QSettings settings(QSettings::UserScope, "Brenlox", text(application));
  settings.setValue(key_path(section, key), text(value));
  settings.sync();
  if (settings.status() == QSettings::NoError) {
    unsaved_.remove(application, section, key);
    return;
  }
  unsaved_.set_value(application, section, key, value);
  if (!told_) {
    told_ = true;
    const std::string file = settings.fileName().toStdString();
    Module_Brenlox::tell_finished(
        "The settings can't be written to " + file + ": they are kept until the program ends", file);
  }
}

std::vector<std::string> QtSettingsStore::keys(std::string_view application, std::string_view section) const {
  QSettings settings(QSettings::UserScope, "Brenlox", text(application));
  settings.beginGroup(text(section));
  std::vector<std::string> found = unsaved_.keys(application, section);
  for (const QString& escaped : settings.childKeys()) {
    const std::string key = key_of(escaped);
    if (std::ranges::find(found, key) == found.end()) {
      found.push_back(key);
    }
  }
  return found;
}

void QtSettingsStore::remove(std::string_view application, std::string_view section, std::string_view key) {
  QSettings settings(QSettings::UserScope, "Brenlox", text(application));
  settings.remove(key_path(section, key));
  unsaved_.remove(application, section, key);
}

bool QtSettingsStore::flush(std::string_view application) {
  QSettings settings(QSettings::UserScope, "Brenlox", text(application));
  settings.sync();
  return settings.status() == QSettings::NoError && settings.isWritable();
}
