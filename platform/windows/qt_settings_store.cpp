#include "platform/windows/qt_settings_store.h"

#include <QSettings>
#include <QString>

namespace {

QString text(std::string_view value) {
  return QString::fromUtf8(value.data(), static_cast<qsizetype>(value.size()));
}

}  // namespace

std::string QtSettingsStore::value(std::string_view application, std::string_view section,
                                   std::string_view key, std::string_view default_value) const {
  const QSettings settings(QSettings::UserScope, "Brenlox", text(application));
  return settings.value(text(section) + "/" + text(key), text(default_value)).toString().toStdString();
}

void QtSettingsStore::set_value(std::string_view application, std::string_view section, std::string_view key,
                                std::string_view value) {
  QSettings settings(QSettings::UserScope, "Brenlox", text(application));
  settings.setValue(text(section) + "/" + text(key), text(value));
}
