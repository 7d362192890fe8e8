// report_groups.h: the report of an import by what is told in place of by file, so that ten files that say
// the same are one line.
#pragma once
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "import/import_report.h"

namespace Module_data_file {

/// In the order in which they are shown.
enum class GroupKind : std::uint8_t {
  failure,          // the file gave nothing, or an error came on the way
  different_sites,  // come to one station
  negative_phases,  // all of YX, and so masked
  impedances_only,  // whose curves were not computed
  not_reduced,      // readings without averages or merged curves
  replaced,         // readings of an earlier import
  unreadable,       // read as absent or as 0, or otherwise not as it stands
  ignored,          // left unused
  not_kept,         // remarks beyond the number that is kept for one file
};

/// Whose names of the options advice uses.
enum class OptionNames { window, batch, script };

struct ReportGroup {
  GroupKind kind = GroupKind::ignored;
  std::string text;                 // what the remarks have in common: "block ... is not used"
  std::string examples;             // in what they differ, the most frequent first: ">COH, >TROT and 3 more"
  std::string advice;               // what can be done; empty if nothing is known
  std::vector<std::string> places;  // the stations that different sites come to
  std::int64_t remarks = 0;         // of which the group is made; 0 where it tells a fact of its files
  bool nothing_imported = false;    // none of its files gave a reading

  struct File {
    std::size_t index = 0;           // in ImportReport::files
    std::vector<std::size_t> lines;  // of its remarks, in the list that the kind says
  };
  std::vector<File> files;  // each once, in the order of the import

  /// Something went wrong, or an import with other options would give more.
  [[nodiscard]] bool needs_action() const { return kind <= GroupKind::not_reduced; }
  /// "24 files: block ... is not used (>COH, >TROT)": the group in a line, without its number of remarks.
  [[nodiscard]] std::string title() const;
};

/// All that a report tells, each remark in exactly one group. What needs an action comes first, then by the
/// number of files. The accounts of files are not in it.
std::vector<ReportGroup> report_groups(const ImportReport& report, OptionNames names);

/// What a group says of one of its files: its remarks with their lines.
std::vector<std::string> group_lines(const ImportReport& report, const ReportGroup& group,
                                     const ReportGroup::File& file);

/// The report as the user reads it: the summary, the groups with their files and remarks, then what each file
/// gave with its account.
std::string report_text(const ImportReport& report);

}  // namespace Module_data_file
