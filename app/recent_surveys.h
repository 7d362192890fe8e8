// recent_surveys.h: the recent surveys as menu and first page show them.
#pragma once
#include <QString>
#include <vector>

struct RecentSurvey {
  QString path;
  QString shown;         // the path, shortened in its middle, with what is to be known of it
  bool is_gone = false;  // there is no such file now
};

/// Those of the session, the last one opened first.
std::vector<RecentSurvey> recent_surveys();

/// A path of at most so many characters: the beginning and the file's name stay, folders between them go.
QString shortened_path(const QString& path, int most_characters);
