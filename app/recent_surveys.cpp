#include "app/recent_surveys.h"

#include <QFileInfo>
#include <algorithm>

#include "core/session_state.h"
#include "core/text_fields.h"

namespace {

constexpr int most_characters = 70;  // fits the menu on a screen of 1280 pixels

}  // namespace

QString shortened_path(const QString& path, int most) {
  if (path.size() <= most) {
    return path;
  }
  const QString ellipsis("\u2026");
  const qsizetype name = path.size() - 1 - std::max(path.lastIndexOf('/'), path.lastIndexOf('\\'));
  const qsizetype room = std::max<qsizetype>(most - ellipsis.size(), 2);
  const qsizetype behind = std::clamp<qsizetype>(name + 1, room / 2, room - room / 4);
  return path.left(room - behind) + ellipsis + path.right(behind);
}

std::vector<RecentSurvey> recent_surveys() {
  std::vector<RecentSurvey> surveys;
  for (std::size_t index = 0; index < static_cast<std::size_t>(session().recent_count); ++index) {
    const QString path = QString::fromStdString(std::string(trimmed(session().recent_files.at(index))));
    const bool is_gone = !QFileInfo::exists(path);
    surveys.push_back(
        {path, shortened_path(path, most_characters) + (is_gone ? " (not found)" : ""), is_gone});
  }
  return surveys;
}
