#include "import/file_sample.h"

#include <exception>

#include "core/number_text.h"
#include "core/trap_errors.h"
#include "formats/zonge/zonge_stn_file.h"
#include "import/readers/edi_spectra_reader.h"
#include "import/readers/edi_stations.h"

namespace Module_data_file {

namespace {

void add_notes(const EdiTraits& traits, const ImportChoices& choices, FileSample& sample) {
  if (traits.impedances_only && !choices.compute_from_impedance) {
    sample.notes.emplace_back("This file has impedances only");
  }
  if (traits.all_yx_phases_negative && choices.turn_ey == TurnEy::never) {
    sample.notes.emplace_back("All YX phases are negative");
  }
}

}  // namespace

FileSample FileSampler::sample(const std::string& file, const ImportChoices& choices) {
  FileSample sample;
  ReadingRecord record;
  record.choices = choices;
  sample.fault = choices_fault(record.choices);
  try {
    formats::FileReport report;
    display_file_format(file, record, sample.fields, report);
    if (!report.failure.empty()) {
      sample.notes.push_back(report.failure);
    }
    if (record.file_format == format_edi_mt) {
      const EdiTraits& traits = traits_of(file);
      if (by_sectid(choices) && has_name(traits.first_sectid)) {
        sample.fields.station = plain_text(
            sectid_station(*traits.first_sectid, choices.stations_by == StationsBy::sectid_digits));
      }
      add_notes(traits, choices, sample);
    } else if (record.file_format == format_zonge_raw && !formats::zonge::find_stn_file(file)) {
      sample.notes.emplace_back(formats::zonge::no_stn_file_text);
    }
    if (record.file_format == format_edi_spectra && by_sectid(choices)) {
      if (const std::optional<std::string> sectid = first_spectra_sectid(file); has_name(sectid)) {
        sample.fields.station =
            plain_text(sectid_station(*sectid, choices.stations_by == StationsBy::sectid_digits));
      }
    }
  } catch (const std::exception& failure) {
    sample.fault = failure_text(failure);
  }
  return sample;
}

const EdiTraits& FileSampler::traits_of(const std::string& file) {
  const auto found = traits_.find(file);
  return found != traits_.end() ? found->second : traits_.emplace(file, examine_edi_mt(file)).first->second;
}

}  // namespace Module_data_file
