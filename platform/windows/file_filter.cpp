#include "platform/windows/file_filter.h"

#include <QString>

namespace {

QString from_utf8(std::string_view text) {
  return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

}  // namespace

QStringList dialog_filters(std::string_view filter) {
  const QStringList parts = from_utf8(filter).split('|');
  QStringList filters;
  for (qsizetype i = 0; i + 1 < parts.size(); i += 2) {
    QString description = parts[i];
    const qsizetype patterns_in_text = description.lastIndexOf('(');
    if (patterns_in_text >= 0) {
      description.truncate(patterns_in_text);  // the dialog takes the text in brackets for the patterns
    }
    QStringList patterns = parts[i + 1].split(';', Qt::SkipEmptyParts);
    for (QString& pattern : patterns) {
      pattern = pattern.trimmed();
      if (pattern == "*.*") {
        pattern = "*";
      }
    }
    filters.append(description.trimmed() + " (" + patterns.join(' ') + ")");
  }
  return filters;
}

QString dialog_suffix(std::string_view default_extension) {
  const QString suffix = from_utf8(default_extension).section('.', -1).trimmed();
  return suffix.contains('*') ? QString() : suffix;
}

QString suffix_of_type(const QString& dialog_filter) {
  const QString patterns = dialog_filter.section('(', -1).section(')', 0, 0);
  const QString first = patterns.section(' ', 0, 0);
  return first.contains('.') ? dialog_suffix(first.toStdString()) : QString();
}
