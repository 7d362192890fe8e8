// removal_plan.h: what goes when files and stations are taken out, before anything is done.
#pragma once
#include <set>
#include <string>
#include <vector>

#include "survey_edits/survey_contents.h"

namespace Module_survey_edits {

/// What the user has chosen, as indices into the contents.
struct Choice {
  std::set<std::size_t> files;
  std::set<std::size_t> stations;

  [[nodiscard]] bool empty() const { return files.empty() && stations.empty(); }
  void add_line(const SurveyContents& contents, std::size_t line);
  void add_ghosts(const SurveyContents& contents);
};

/// Indices into the contents, ascending. A file goes when it has no readings left, and so does a station;
/// those that had none go only if they are chosen.
struct RemovalPlan {
  std::vector<std::size_t> readings;
  std::vector<std::size_t> readings_left;
  std::vector<std::size_t> files_gone;
  std::vector<std::size_t> files_cut;  // keep some of their readings
  std::vector<std::size_t> stations_gone;
  std::vector<std::size_t> stations_cut;
  std::vector<std::size_t> lines_gone;
  std::vector<std::size_t> averages;        // curves whose average is computed again
  std::vector<std::size_t> curves_emptied;  // that lose all of their repeats

  [[nodiscard]] bool empty() const { return readings.empty() && files_gone.empty() && stations_gone.empty(); }
};

RemovalPlan plan_removal(const SurveyContents& contents, const Choice& choice);

/// "2 files, 8 readings and 1 station"; "nothing".
std::string what_goes(const RemovalPlan& plan);
/// "24 averages", "1 average".
std::string counted(std::size_t count, const std::string& what);
/// "2 files, 8 readings and 1 station go; 24 averages are computed again."
std::string summary(const RemovalPlan& plan);

}  // namespace Module_survey_edits
