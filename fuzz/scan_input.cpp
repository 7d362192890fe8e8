#include "fuzz/scan_input.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <exception>
#include <string>

#include "formats/file_report.h"
#include "fuzz/input_file.h"
#include "fuzz/sound_errors.h"
#include "import/readers/reader_table.h"
#include "import/reading_record.h"
#include "import/store_blocks.h"

using namespace Module_data_file;

namespace {

// What is stored must be plain numbers.
bool is_plain(const Module_database::Curve& curve) {
  if (curve.data.size() != curve.count() * Module_database::field_count ||
      curve.mask.size() != curve.count() * Module_database::mask_count) {
    return false;
  }
  return std::ranges::all_of(curve.data, [](float value) { return std::isfinite(value); });
}

// An absent or zero value must not count. Others do, unless the file may switch points off.
bool is_sound(const Module_database::Curve& curve, bool may_be_off) {
  for (std::size_t index = 0; index < curve.count(); ++index) {
    const bool counts = curve.counts_at(1, index) == 1;
    const bool is_there = curve.value(1, index) > 0.0F;
    if ((counts && !is_there) || (!counts && is_there && !may_be_off)) return false;
  }
  return has_sound_errors(curve);
}

// Both parts of a tipper are masked where they are absent; elsewhere only a file can do so.
bool is_sound_tipper(const Module_database::Curve& curve, bool may_be_off) {
  if (!may_be_off) return has_sound_parts(curve);
  for (std::size_t index = 0; index < curve.count(); ++index) {
    for (const int part : {Module_database::field_resistivity, Module_database::field_phase}) {
      if (curve.counts_at(part, index) == 1 && !curve.is_present(part, index)) return false;
    }
  }
  return has_errors_of_values(curve);
}

}  // namespace

void scan_input(const std::uint8_t* data, std::size_t size, FileFormat format) {
  const std::string path = write_input_file(data, size, "input.dat");
  ReadingRecord record;
  record.choices.turn_ey = size % 2 == 1 ? TurnEy::where_needed : TurnEy::never;
  if (size % 3 == 1) {
    record.choices.stations_by = Module_data_file::StationsBy::sectid;
  }
  formats::FileReport report;
  StoreNotes notes;
  SampleFields sample;
  try {
    display_file_format(path, record, sample, report);
  } catch (const std::exception&) {
    return;  // no text file
  }
  record.SampleRate = 4096.0F;
  // A failure's message goes to the silent user interface.
  FileTask task{ImportMode::scan, path, record, report, notes, {}};
  task.reading_met = [&](std::string_view) {
    const bool may_be_off = is_site_file(format) || is_station_table(format);
    const bool is_tipper =
        (may_be_off || format == format_edi_spectra) && is_sound_tipper(record.curve, may_be_off);
    if (!is_plain(record.curve) || (!is_tipper && !is_sound(record.curve, may_be_off))) std::abort();
  };
  (void)reader_of(format)(task);
  if ((report.readings > 0) != !record.scan_list.empty()) std::abort();
}
