#include "database/frequency_store.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "core/absent_value.h"
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

FrequencySelection with_added(const FrequencySelection& stored, const std::vector<float>& added) {
  FrequencySelection merged;
  const std::size_t total = stored.frequencies.size() + added.size();
  merged.frequencies.reserve(total);
  merged.flags.reserve(total);
  std::size_t next = 0;
  for (std::size_t i = 0; i < stored.frequencies.size(); ++i) {
    for (; next < added.size() && added[next] < stored.frequencies[i]; ++next) {
      merged.frequencies.push_back(added[next]);
      merged.flags.push_back(1);
    }
    merged.frequencies.push_back(stored.frequencies[i]);
    merged.flags.push_back(stored.flags[i]);
  }
  merged.frequencies.insert(merged.frequencies.end(), added.begin() + static_cast<std::ptrdiff_t>(next),
                            added.end());
  merged.flags.resize(total, 1);
  return merged;
}

FrequencySelection read_flags(const dao::Recordset& row) {
  FrequencySelection list{singles_from(row.get_binary("FreqBinary")),
                          longs_from(row.get_binary("MaskBinary"))};
  const auto count = static_cast<std::size_t>(std::max(row.get_long("NumFrequencies"), 0));
  if (list.frequencies.size() != count || list.flags.size() != count) {
    throw dao::Error("the frequency list of reference type " + plain_text(row.get_long("ReferenceType")) +
                     " is damaged");
  }
  return list;
}

void write_flags(dao::Recordset& row, const FrequencySelection& list) {
  row.set_long("NumFrequencies", static_cast<std::int32_t>(list.frequencies.size()));
  row.set_binary("FreqBinary", bytes_of(list.frequencies));
  row.set_binary("MaskBinary", bytes_of(list.flags));
}

// A file may lack some of its frequencies; such a point belongs to no place on the axis.
std::vector<float> present_frequencies(std::span<const float> frequencies) {
  std::vector<float> present(frequencies.begin(), frequencies.end());
  std::erase_if(present, [](float frequency) { return is_absent(frequency); });
  return present;
}

void merge_frequencies(std::int32_t reference_type, std::span<const float> given) {
  const std::vector<float> frequencies = present_frequencies(given);
  dao::Recordset row = open_survey().database.open_recordset(
      "SELECT * FROM ReadingsFrequencyTable WHERE ReferenceType = " + format_number(reference_type, "0"));
  if (row.eof()) {
    FrequencySelection list{{frequencies.begin(), frequencies.end()}, {}};
    // A reading may hold a frequency twice, the list never does.
    list.frequencies.erase(std::unique(list.frequencies.begin(), list.frequencies.end()),
                           list.frequencies.end());
    list.flags.assign(list.frequencies.size(), 1);
    row.add_new();
    row.set_long("ReferenceType", reference_type);
    write_flags(row, list);
    row.update();
    return;
  }
  const FrequencySelection stored = read_flags(row);
  if (same_list(stored.frequencies, frequencies)) {
    return;
  }
  const std::vector<float> added = missing_from(stored.frequencies, frequencies);
  if (added.empty()) {
    return;
  }
  row.edit();
  write_flags(row, with_added(stored, added));
  row.update();
}

/// Stands on the row of a reference type. @return false if it has none
bool find_list(dao::Recordset& lists, std::int32_t reference_type) {
  lists.requery();
  lists.find_first("ReferenceType = " + format_number(reference_type, "0"));
  return !lists.no_match();
}

}  // namespace

int add_reading_frequencies(std::int32_t reference_type, float /*scan_rate*/,
                            std::span<const float> frequencies) {
  return trap_errors("An error occurred while adding the frequency data: ",
                     [&] { merge_frequencies(reference_type, frequencies); });
}

int load_reference_frequencies(std::int32_t reference_type) {
  return trap_errors("An error occurred while creating the frequency lists: ", [&] {
    dao::Recordset& lists = open_survey().frequency_lists;
    if (!find_list(lists, reference_type)) {
      session().frequency_count = 0;
      return;
    }
    FrequencySelection list = read_flags(lists);
    session().frequency_count = static_cast<std::int32_t>(list.frequencies.size());
    session().frequency_list = std::move(list.frequencies);
    session().frequency_enabled = std::move(list.flags);
  });
}

std::optional<FrequencySelection> read_frequency_selection(std::int32_t reference_type) {
  std::optional<FrequencySelection> selection;
  const int status = trap_errors("An error occurred while creating the frequency lists: ", [&] {
    dao::Recordset& lists = open_survey().frequency_lists;
    if (find_list(lists, reference_type)) {
      selection = read_flags(lists);
    }
  });
  return status == 0 ? selection : std::nullopt;
}

int save_frequency_selection(std::int32_t reference_type, const FrequencySelection& selection) {
  return trap_errors("An error occurred while saving the frequency selection: ", [&] {
    dao::Recordset& lists = open_survey().frequency_lists;
    if (selection.frequencies.empty() || !find_list(lists, reference_type)) {
      return;
    }
    lists.edit();
    write_flags(lists, selection);
    lists.update();
    session().data_changed = true;
  });
}

}  // namespace Module_database
