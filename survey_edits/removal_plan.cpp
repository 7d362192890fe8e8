#include "survey_edits/removal_plan.h"

#include <algorithm>

#include "core/number_text.h"

namespace Module_survey_edits {

namespace {

/// How many readings of each item go, of how many.
std::vector<std::size_t> gone_of(const SurveyContents& contents, const RemovalPlan& plan, std::size_t count,
                                 std::size_t HeldReading::*item) {
  std::vector<std::size_t> gone(count, 0);
  for (const std::size_t reading : plan.readings) {
    ++gone[contents.readings[reading].*item];
  }
  return gone;
}

template <class Item>
void sort_out(const std::vector<Item>& items, const std::vector<std::size_t>& gone,
              const std::set<std::size_t>& chosen, std::vector<std::size_t>& all_gone,
              std::vector<std::size_t>& cut) {
  for (std::size_t index = 0; index < items.size(); ++index) {
    const bool lost_all = gone[index] > 0 && gone[index] == items[index].readings;
    if (lost_all || (items[index].readings == 0 && chosen.contains(index))) {
      all_gone.push_back(index);
    } else if (gone[index] > 0) {
      cut.push_back(index);
    }
  }
}

void find_curves(const SurveyContents& contents, RemovalPlan& plan) {
  std::vector<bool> loses(contents.curves.size());
  std::vector<bool> keeps(contents.curves.size());
  const auto mark = [&](const std::vector<std::size_t>& readings, std::vector<bool>& curves) {
    for (const std::size_t index : readings) {
      const HeldReading& reading = contents.readings[index];
      if (reading.ReductionType == Module_database::reduction_raw) {
        curves[reading.curve] = true;
      }
    }
  };
  mark(plan.readings, loses);
  mark(plan.readings_left, keeps);
  for (std::size_t curve = 0; curve < contents.curves.size(); ++curve) {
    if (loses[curve]) {
      (keeps[curve] ? plan.averages : plan.curves_emptied).push_back(curve);
    }
  }
}

}  // namespace

void Choice::add_line(const SurveyContents& contents, std::size_t line) {
  stations.insert(contents.lines[line].stations.begin(), contents.lines[line].stations.end());
}

void Choice::add_ghosts(const SurveyContents& contents) {
  for (std::size_t index = 0; index < contents.stations.size(); ++index) {
    if (contents.stations[index].is_ghost()) {
      stations.insert(index);
    }
  }
}

RemovalPlan plan_removal(const SurveyContents& contents, const Choice& choice) {
  RemovalPlan plan;
  for (std::size_t index = 0; index < contents.readings.size(); ++index) {
    const HeldReading& reading = contents.readings[index];
    const bool goes = choice.files.contains(reading.file) || choice.stations.contains(reading.station);
    (goes ? plan.readings : plan.readings_left).push_back(index);
  }
  sort_out(contents.files, gone_of(contents, plan, contents.files.size(), &HeldReading::file), choice.files,
           plan.files_gone, plan.files_cut);
  sort_out(contents.stations, gone_of(contents, plan, contents.stations.size(), &HeldReading::station),
           choice.stations, plan.stations_gone, plan.stations_cut);
  for (std::size_t line = 0; line < contents.lines.size(); ++line) {
    if (std::ranges::all_of(contents.lines[line].stations, [&](std::size_t station) {
          return std::ranges::binary_search(plan.stations_gone, station);
        })) {
      plan.lines_gone.push_back(line);
    }
  }
  find_curves(contents, plan);
  return plan;
}

std::string counted(std::size_t count, const std::string& what) {
  return plain_text(static_cast<std::int64_t>(count)) + " " + what + (count == 1 ? "" : "s");
}

std::string what_goes(const RemovalPlan& plan) {
  std::vector<std::string> parts;
  const auto add = [&](std::size_t count, const std::string& what) {
    if (count > 0) {
      parts.push_back(counted(count, what));
    }
  };
  add(plan.files_gone.size(), "file");
  add(plan.readings.size(), "reading");
  add(plan.stations_gone.size(), "station");
  add(plan.lines_gone.size(), "line");
  std::string text;
  for (std::size_t index = 0; index < parts.size(); ++index) {
    text += (index == 0 ? "" : index + 1 == parts.size() ? " and " : ", ") + parts[index];
  }
  return text.empty() ? "nothing" : text;
}

std::string summary(const RemovalPlan& plan) {
  if (plan.empty()) {
    return "Nothing is chosen.";
  }
  const std::size_t items =
      plan.files_gone.size() + plan.readings.size() + plan.stations_gone.size() + plan.lines_gone.size();
  std::string text = what_goes(plan) + (items == 1 ? " goes" : " go");
  if (!plan.averages.empty()) {
    text += "; " + counted(plan.averages.size(), "average") + (plan.averages.size() == 1 ? " is" : " are") +
            " computed again";
  }
  return text + ".";
}

}  // namespace Module_survey_edits
