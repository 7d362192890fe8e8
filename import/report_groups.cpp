#include "import/report_groups.h"

#include <algorithm>
#include <map>
#include <unordered_map>
#include <utility>

#include "core/number_text.h"
#include "import/remark_kinds.h"

namespace Module_data_file {

using formats::FileReport;
using formats::ReportRemark;

namespace {

constexpr std::size_t examples_shown = 6;

std::string counted(std::size_t count, const std::string& what) {
  return plain_text(static_cast<std::int64_t>(count)) + " " + what + (count == 1 ? "" : "s");
}

ReportGroup group_of(GroupKind kind) {
  ReportGroup group;
  group.kind = kind;
  return group;
}

const std::vector<ReportRemark>& remarks_of(const FileReport& file, GroupKind kind) {
  return kind == GroupKind::unreadable ? file.unreadable : file.ignored;
}

/// The groups of one kind that are told apart by their texts. Most files say the same: a text is looked at
/// once, however often it comes.
class Grouping {
 public:
  explicit Grouping(GroupKind kind) : kind_(kind) {}

  /// @param kind  of the text, if it can't be told from the words
  void add(const std::string& text, const std::string& kind, std::size_t file, std::size_t line) {
    const auto [known, is_new] = texts_.try_emplace(text);
    if (is_new) {
      known->second.group = group_index(text, kind);
      groups_[known->second.group].common.add(text);
    }
    ++known->second.count;
    ReportGroup& group = groups_[known->second.group].group;
    ++group.remarks;
    if (group.files.empty() || group.files.back().index != file) {
      group.files.push_back({file, {}});
    }
    group.files.back().lines.push_back(line);
  }

  void finish(std::vector<ReportGroup>& groups) {
    std::vector<Examples> examples(groups_.size());
    for (const auto& [text, known] : texts_) {
      const std::string example = groups_[known.group].common.differing(text);
      if (!example.empty()) {
        examples[known.group][example] += known.count;
      }
    }
    for (std::size_t index = 0; index < groups_.size(); ++index) {
      Entry& entry = groups_[index];
      const bool is_named = !entry.named.empty();
      entry.group.text = is_named ? entry.named : entry.common.text();
      entry.group.examples = is_named ? std::string() : most_frequent(examples[index]);
    }
    std::ranges::stable_sort(groups_, std::ranges::greater(),
                             [](const Entry& entry) { return entry.group.files.size(); });
    for (Entry& entry : groups_) {
      groups.push_back(std::move(entry.group));
    }
  }

 private:
  using Examples = std::map<std::string, std::int64_t>;  // how often each comes
  struct Entry {
    ReportGroup group;
    CommonText common;
    std::string named;
  };
  struct Text {
    std::size_t group = 0;
    std::int64_t count = 0;
  };

  std::size_t group_index(const std::string& text, const std::string& kind) {
    const auto [entry, is_new] = places_.try_emplace(kind.empty() ? remark_kind(text) : kind, groups_.size());
    if (is_new) {
      groups_.push_back({group_of(kind_), {}, kind});
    }
    return entry->second;
  }

  static std::string most_frequent(const Examples& examples) {
    std::vector<std::pair<std::string, std::int64_t>> sorted(examples.begin(), examples.end());
    std::ranges::stable_sort(sorted, std::ranges::greater(), &std::pair<std::string, std::int64_t>::second);
    std::string text;
    for (std::size_t index = 0; index < std::min(sorted.size(), examples_shown); ++index) {
      text += (index == 0 ? "" : ", ") + sorted[index].first;
    }
    if (sorted.size() > examples_shown) {
      text += " and " + plain_text(static_cast<std::int64_t>(sorted.size() - examples_shown)) + " more";
    }
    return text;
  }

  GroupKind kind_;
  std::vector<Entry> groups_;
  std::unordered_map<std::string, Text> texts_;
  std::map<std::string, std::size_t> places_;  // in groups_, by kind of remark
};

std::string failure_of(const FileReport& file) {
  return file.failure.empty() && file.readings == 0 ? "the file gave no reading" : file.failure;
}

void add_failures(const ImportReport& report, std::vector<ReportGroup>& groups) {
  Grouping grouping(GroupKind::failure);
  for (std::size_t index = 0; index < report.files.size(); ++index) {
    if (const std::string failure = failure_of(report.files[index]); !failure.empty()) {
      grouping.add(failure, {}, index, 0);
    }
  }
  grouping.finish(groups);
  for (ReportGroup& group : groups) {
    group.nothing_imported = std::ranges::all_of(
        group.files, [&](const ReportGroup::File& file) { return report.files[file.index].readings == 0; });
  }
}

/// The remarks of one kind that are not among those of different sites, or only these.
void add_remarks(const ImportReport& report, GroupKind kind, std::vector<ReportGroup>& groups) {
  const GroupKind list = kind == GroupKind::different_sites ? GroupKind::ignored : kind;
  Grouping grouping(kind);
  for (std::size_t index = 0; index < report.files.size(); ++index) {
    const std::vector<ReportRemark>& remarks = remarks_of(report.files[index], list);
    for (std::size_t line = 0; line < remarks.size(); ++line) {
      const bool of_sites = remarks[line].kind == different_sites_kind;
      if (of_sites == (kind == GroupKind::different_sites)) {
        grouping.add(remarks[line].text, remarks[line].kind, index, line);
      }
    }
  }
  grouping.finish(groups);
}

void add_different_sites(const ImportReport& report, std::vector<ReportGroup>& groups) {
  const std::size_t before = groups.size();
  add_remarks(report, GroupKind::different_sites, groups);
  if (report.shared_stations.empty()) {
    return;
  }
  if (groups.size() == before) {  // their files have more remarks than are kept
    groups.push_back(group_of(GroupKind::different_sites));
  }
  for (const SharedStation& station : report.shared_stations) {
    groups[before].places.push_back(station.text());
  }
}

template <class Applies>
void add_fact(const ImportReport& report, GroupKind kind, const std::string& text, const std::string& advice,
              std::vector<ReportGroup>& groups, Applies applies) {
  ReportGroup group = group_of(kind);
  group.text = text;
  group.advice = advice;
  for (std::size_t index = 0; index < report.files.size(); ++index) {
    if (applies(report.files[index])) {
      group.files.push_back({index, {}});
    }
  }
  if (!group.files.empty()) {
    groups.push_back(std::move(group));
  }
}

const char* advice(OptionNames names, const char* window, const char* batch, const char* script) {
  return names == OptionNames::window ? window : names == OptionNames::batch ? batch : script;
}

void add_facts(const ImportReport& report, OptionNames names, std::vector<ReportGroup>& groups) {
  add_fact(report, GroupKind::negative_phases, "all YX phases are negative, and masked",
           advice(names, "import again with \"Turn the sign of Ey where needed\", or \"in every file\"",
                  "--turn-ey turns those of -180..-90, --turn-ey=always all",
                  "turn_ey='needed' turns those of -180..-90, turn_ey='always' all"),
           groups, has_negative_phases);
  add_fact(report, GroupKind::impedances_only, "impedances only, without curves",
           advice(names, "import again with \"Compute resistivity and phase from impedances\"",
                  "--from-impedance computes the curves", "from_impedance=True computes the curves"),
           groups, lacks_curves);
  if (report.groups_skipped > 0) {
    groups.push_back(group_of(GroupKind::not_reduced));
    groups.back().text =
        counted(report.groups_skipped, "group") + " of readings without average or merged curve";
  }
  add_fact(report, GroupKind::replaced, "replaced readings of an earlier import", {}, groups,
           [](const FileReport& file) { return file.replaced_readings > 0; });
}

void add_not_kept(const ImportReport& report, std::vector<ReportGroup>& groups) {
  add_fact(report, GroupKind::not_kept, "further remarks that were not kept", {}, groups,
           [](const FileReport& file) { return file.remarks_dropped > 0; });
  if (!groups.empty() && groups.back().kind == GroupKind::not_kept) {
    for (const ReportGroup::File& file : groups.back().files) {
      groups.back().remarks += report.files[file.index].remarks_dropped;
    }
  }
}

std::string file_line(const FileReport& file) {
  return file.file + ": " + plain_text(file.sections) + " sections, " + plain_text(file.readings) +
         " readings, " + plain_text(file.frequencies) + " frequencies, Ey turned in " +
         counted(static_cast<std::size_t>(file.sections_turned), "section");
}

}  // namespace

std::string ReportGroup::title() const {
  if (!places.empty()) {
    return counted(places.size(), "station") + " that different sites come to, as repeats";
  }
  const std::string of_files =
      files.empty() ? "" : counted(files.size(), "file") + (nothing_imported ? " not imported: " : ": ");
  return of_files + text + (examples.empty() ? "" : " (" + examples + ")");
}

std::vector<ReportGroup> report_groups(const ImportReport& report, OptionNames names) {
  std::vector<ReportGroup> groups;
  add_failures(report, groups);
  add_different_sites(report, groups);
  add_facts(report, names, groups);
  add_remarks(report, GroupKind::unreadable, groups);
  add_remarks(report, GroupKind::ignored, groups);
  add_not_kept(report, groups);
  return groups;
}

std::vector<std::string> group_lines(const ImportReport& report, const ReportGroup& group,
                                     const ReportGroup::File& file) {
  const FileReport& of_file = report.files.at(file.index);
  switch (group.kind) {
    case GroupKind::failure:
      return {failure_of(of_file)};
    case GroupKind::replaced:
      return {replaced_line(of_file)};
    case GroupKind::not_kept:
      return {plain_text(of_file.remarks_dropped) + " more remarks"};
    case GroupKind::negative_phases:
    case GroupKind::impedances_only:
    case GroupKind::not_reduced:
      return {};
    case GroupKind::different_sites:
    case GroupKind::unreadable:
    case GroupKind::ignored:
      break;
  }
  std::vector<std::string> lines;
  for (const std::size_t line : file.lines) {
    lines.push_back(remark_line(remarks_of(of_file, group.kind).at(line)));
  }
  return lines;
}

std::string report_text(const ImportReport& report) {
  std::string text = report.summary() + "\n";
  for (const ReportGroup& group : report_groups(report, OptionNames::window)) {
    text += "\n" + group.title() + (group.advice.empty() ? "" : "; " + group.advice) + "\n";
    for (const std::string& place : group.places) {
      text += "    " + place + "\n";
    }
    for (const ReportGroup::File& file : group.files) {
      text += "    " + report.files[file.index].file + "\n";
      for (const std::string& line : group_lines(report, group, file)) {
        text += "        " + line + "\n";
      }
    }
  }
  text += "\nAll files\n";
  for (const FileReport& file : report.files) {
    text += "    " + file_line(file) + "\n";
    for (const std::string& line : account_lines(file)) {
      text += "        " + line + "\n";
    }
  }
  return text;
}

}  // namespace Module_data_file
