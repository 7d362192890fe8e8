#include "database/frequency_store.h"

#include <algorithm>
#include <cmath>
#include <utility>
#include <vector>

#include "core/number_text.h"
#include "core/session_state.h"
#include "core/trap_errors.h"
#include "database/reading.h"
#include "database/survey_database.h"

namespace Module_database {

namespace {

constexpr float same_list_tolerance = 0.001F;  // Hz; only for lists of equal length

bool same_list(const std::vector<float>& stored, std::span<const float> given) {
  return stored.size() == given.size() &&
         std::equal(stored.begin(), stored.end(), given.begin(),
                    [](float a, float b) { return !(std::fabs(a - b) > same_list_tolerance); });
}

// The given frequencies that the list lacks, ascending, each once.
std::vector<float> missing_from(const std::vector<float>& stored, std::span<const float> given) {
  std::vector<float> missing;
  std::copy_if(given.begin(), given.end(), std::back_inserter(missing),
               [&](float frequency) { return !std::binary_search(stored.begin(), stored.end(), frequency); });
  std::sort(missing.begin(), missing.end());
  missing.erase(std::unique(missing.begin(), missing.end()), missing.end());
  return missing;
}

Frequencies with_added(const Frequencies& stored, const std::vector<float>& added) {
  Frequencies merged;
  const std::size_t total = stored.list.size() + added.size();
  merged.list.reserve(total);
  merged.enabled.reserve(total);
  std::size_t next = 0;
  for (std::size_t i = 0; i < stored.list.size(); ++i) {
    for (; next < added.size() && added[next] < stored.list[i]; ++next) {
      merged.list.push_back(added[next]);
      merged.enabled.push_back(1);
    }
    merged.list.push_back(stored.list[i]);
    merged.enabled.push_back(stored.enabled[i]);
  }
  merged.list.insert(merged.list.end(), added.begin() + static_cast<std::ptrdiff_t>(next), added.end());
  merged.enabled.resize(total, 1);
  return merged;
}

/// A frequency that is absent, 0 or negative has no place on an axis. A reading keeps it, a list doesn't.
bool has_place(float frequency) { return frequency > 0.0F; }

/// Earlier versions took every frequency of a file into the list.
Frequencies with_place(Frequencies list) {
  if (std::ranges::all_of(list.list, has_place)) {
    return list;
  }
  Frequencies result;
  for (std::size_t i = 0; i < list.list.size(); ++i) {
    if (has_place(list.list[i])) {
      result.list.push_back(list.list[i]);
      result.enabled.push_back(list.enabled[i]);
    }
  }
  return result;
}

Frequencies read_flags(const dao::Recordset& row) {
  const dao::Bytes frequencies = row.get_binary("FreqBinary");
  const dao::Bytes enabled = row.get_binary("MaskBinary");
  const std::size_t wanted =
      sizeof(float) * static_cast<std::size_t>(std::max(row.get_long("NumFrequencies"), 0));
  if (frequencies.size() != wanted || enabled.size() != wanted) {
    throw dao::Error("the frequency list of reference type " + plain_text(row.get_long("ReferenceType")) +
                     " is damaged");
  }
  return with_place({singles_from(frequencies), longs_from(enabled)});
}

void write_flags(dao::Recordset& row, const Frequencies& list) {
  row.set_long("NumFrequencies", static_cast<std::int32_t>(list.list.size()));
  row.set_binary("FreqBinary", bytes_of(list.list));
  row.set_binary("MaskBinary", bytes_of(list.enabled));
}

/// Makes the row of a reference type the current one. @return false if it has none
bool find_list(dao::Recordset& lists, std::int32_t reference_type) {
  lists.requery();
  lists.find_first("ReferenceType = " + format_number(reference_type, "0"));
  return !lists.no_match();
}

}  // namespace

void join_frequency_list(std::int32_t reference_type, std::span<const float> given) {
  std::vector<float> frequencies;
  std::ranges::copy_if(given, std::back_inserter(frequencies), has_place);
  dao::Recordset row = open_survey().database.open_recordset(
      "SELECT * FROM ReadingsFrequencyTable WHERE ReferenceType = " + format_number(reference_type, "0"));
  if (row.eof()) {
    Frequencies list{{frequencies.begin(), frequencies.end()}, {}};
    // A reading may hold a frequency twice, the list never does.
    list.list.erase(std::unique(list.list.begin(), list.list.end()), list.list.end());
    list.enabled.assign(list.list.size(), 1);
    row.add_new();
    row.set_long("ReferenceType", reference_type);
    write_flags(row, list);
    row.update();
    return;
  }
  const Frequencies stored = read_flags(row);
  if (same_list(stored.list, frequencies)) {
    return;
  }
  const std::vector<float> added = missing_from(stored.list, frequencies);
  if (added.empty()) {
    return;
  }
  row.edit();
  write_flags(row, with_added(stored, added));
  row.update();
}

int add_reading_frequencies(std::int32_t reference_type, float /*scan_rate*/,
                            std::span<const float> frequencies) {
  return trap_errors("An error occurred while adding the frequency data: ",
                     [&] { join_frequency_list(reference_type, frequencies); });
}

Frequencies read_frequency_list(std::int32_t reference_type) {
  dao::Recordset& lists = open_survey().frequency_lists;
  return find_list(lists, reference_type) ? read_flags(lists) : Frequencies{};
}

std::optional<Frequencies> load_reference_frequencies(std::int32_t reference_type) {
  Frequencies frequencies;
  const int status = trap_errors("An error occurred while creating the frequency lists: ",
                                 [&] { frequencies = read_frequency_list(reference_type); });
  return status == 0 ? std::optional(std::move(frequencies)) : std::nullopt;
}

int load_selected_frequencies() {
  auto frequencies = load_reference_frequencies(session().current_reference_type);
  if (!frequencies) {
    return -1;
  }
  session().frequencies = std::move(*frequencies);
  return 0;
}

int save_frequency_selection(std::int32_t reference_type, const Frequencies& selection) {
  return trap_errors("An error occurred while saving the frequency selection: ", [&] {
    require_writable();
    dao::Recordset& lists = open_survey().frequency_lists;
    if (selection.empty() || !find_list(lists, reference_type)) {
      return;
    }
    lists.edit();
    write_flags(lists, selection);
    lists.update();
    session().data_changed = true;
  });
}

const Frequencies& FrequencyLists::of(std::int32_t reference_type) {
  auto found = lists_.find(reference_type);
  if (found == lists_.end()) {
    found = lists_.emplace(reference_type, read_frequency_list(reference_type)).first;
  }
  return found->second;
}

}  // namespace Module_database
