#include "import/readers/zonge_raw_reader.h"

#include <algorithm>
#include <optional>
#include <string_view>
#include <vector>

#include "core/absent_value.h"
#include "core/line_reader.h"
#include "core/number_text.h"
#include "core/scope_guard.h"
#include "database/stations.h"
#include "formats/field_values.h"
#include "formats/remarks.h"
#include "formats/zonge/zonge_raw_parser.h"
#include "import/readers/reader_steps.h"
#include "import/readers/zonge_stn_file.h"
#include "import/reading_record.h"

namespace Module_data_file {

namespace {

using Module_database::StationSearch;

void set_up_header(ReadingRecord& record) {
  record.EventNumber = 0;
  record.Station = 0.0;
  record.DipoleLength = usual_dipole;
  record.StationSpacing = usual_dipole;
  record.Filter = "ZongeRaw";
}

bool is_reading(const ZongeChannel& channel) { return channel.name == "ExHy" || channel.name == "EyHx"; }

void fill_curve(const ZongeBlock& block, const ZongeChannel& channel, Module_database::Curve& curve) {
  curve.assign(block.harmonics.size());
  for (std::size_t index = 0; index < curve.count(); ++index) {
    curve.frequencies[index] = static_cast<float>(*block.base_frequency * block.harmonics[index]);
    const auto value = std::ranges::find(channel.values, block.harmonics[index], &ZongeValue::harmonic);
    const bool measured = value != channel.values.end();
    curve.value(Module_database::field_resistivity, index) =
        measured ? single_or_absent(value->resistivity) : no_data;
    curve.value(Module_database::field_phase, index) = measured ? single_or_absent(value->phase) : no_data;
    finish_point(curve, index);
  }
}

// Takes the blocks of one file, one after the other.
class BlockStore {
 public:
  BlockStore(ImportMode mode, FileReport& report, StoreNotes& notes, ZongeAccount& account)
      : mode_(mode), report_(report), notes_(notes), account_(account) {}

  /// @return false after a failure to store, whose message was shown
  bool take(const ZongeBlock& block) {
    record_.DipoleLength = static_cast<float>(block.a_spacing.value_or(usual_dipole));
    return take_header(block) && take_data(block);
  }

  void tell_dropped() const {
    if (blocks_dropped_ > 0) {
      remark_unreadable(report_, 0,
                        plain_text(blocks_dropped_) + (blocks_dropped_ == 1 ? " block is" : " blocks are") +
                            " not stored; the account says why");
    }
  }

 private:
  bool take_header(const ZongeBlock& block);
  bool take_data(const ZongeBlock& block);
  bool take_channel(const ZongeBlock& block, const ZongeChannel& channel);
  void drop(std::string_view what, const ZongeBlock& block, const std::string& reason);

  ImportMode mode_;
  FileReport& report_;
  StoreNotes& notes_;
  ZongeAccount& account_;
  ReadingRecord& record_ = reading_record();
  std::int64_t blocks_dropped_ = 0;
};

void BlockStore::drop(std::string_view what, const ZongeBlock& block, const std::string& reason) {
  account_.tell_plainly(std::string(what) + " Block : " + plain_text(block.number) + " not stored because " +
                        reason);
  ++blocks_dropped_;
}

bool BlockStore::take_header(const ZongeBlock& block) {
  if (!block.is_header) {
    return true;
  }
  if (!block.fault.empty()) {
    drop("Header", block, block.fault);
    return true;
  }
  if (mode_ == ImportMode::scan) {
    return true;
  }
  // Not the import's own notes: a header that meets the row of its own file is no earlier import.
  StoreNotes header_notes;
  if (store_header_block(header_notes) == 0) {
    return true;
  }
  notes_.failure = header_notes.failure;
  account_.tell_plainly("There was an error storing the header block");
  drop("Header", block, header_notes.failure);
  return false;
}

bool BlockStore::take_data(const ZongeBlock& block) {
  if (block.channels.empty() && (block.is_header || block.fault.empty())) {
    return true;
  }
  if (block.aborted || !block.fault.empty()) {
    drop("Data", block, block.aborted ? std::string(aborted_text) : block.fault);
    return true;
  }
  ++report_.sections;
  report_.frequencies = std::max(report_.frequencies, static_cast<std::int32_t>(block.harmonics.size()));
  record_.SampleRate = static_cast<float>(*block.base_frequency);
  for (const ZongeChannel& channel : block.channels) {
    if (is_reading(channel) && !take_channel(block, channel)) {
      return false;
    }
  }
  return true;
}

bool BlockStore::take_channel(const ZongeBlock& block, const ZongeChannel& channel) {
  record_.Station = channel.station;
  if (mode_ == ImportMode::import) {
    // A new station that the file of stations doesn't have gets its place from the survey grid.
    find_station_of_record(record_, MapPlace::of_survey_grid);
  }
  fill_curve(block, channel, record_.curve);
  if (!take_reading(mode_, channel.name, report_, notes_)) {
    drop("Data", block, notes_.failure);
    return false;
  }
  add_to_scan_list(record_, {channel.name});
  ++record_.EventNumber;
  return true;
}

// Station and step that the person gave are for the files behind this one.
[[nodiscard]] auto keep_station_and_step(ReadingRecord& record) {
  return ScopeGuard([&record, station = record.Station, step = record.StationSpacing] {
    record.Station = station;
    record.StationSpacing = step;
  });
}

// Makes the stations at their places before any reading does without.
void make_stations(const std::string& stn_file, ImportMode mode, FileReport& report) {
  const std::vector<ZongeStation> stations = read_stn_file(stn_file, report);
  if (mode == ImportMode::import) {
    for (const ZongeStation& entry : stations) {
      (void)Module_database::find_station(StationSearch::create, reading_record().LineNumber, entry.station,
                                          &entry.place);
    }
  }
}

int read_blocks(ImportMode mode, const std::string& file, FileReport& report, StoreNotes& notes,
                const FileProgress& progress) {
  ReadingRecord& record = reading_record();
  const auto restored = keep_station_and_step(record);
  set_up_header(record);
  if (mode == ImportMode::import && store_header_block(notes) != 0) {
    return -1;
  }
  LineReader reader(file);
  ZongeAccount account(report);
  ZongeRawParser parser(reader, account);
  BlockStore store(mode, report, notes, account);
  ZongeBlock block;
  std::int64_t told = 0;
  while (parser.next_block(block)) {
    if (block.type == ZongeBlockType::mt && !store.take(block)) {
      return -1;
    }
    constexpr std::int64_t bytes_between = 16384;
    if (progress && reader.bytes_read() - told >= bytes_between) {
      progress(told = reader.bytes_read(), reader.file_size());
    }
  }
  store.tell_dropped();
  return 0;
}

}  // namespace

int read_zonge_raw(ImportMode mode, const std::string& file, FileReport& report, StoreNotes& notes,
                   const FileProgress& progress) {
  const std::optional<std::string> stn_file = find_stn_file(file);
  if (!stn_file) {
    report.failure = no_stn_file_text;
    return -1;
  }
  return run_reader(report, notes, [&] {
    make_stations(*stn_file, mode, report);
    return read_blocks(mode, file, report, notes, progress);
  });
}

}  // namespace Module_data_file
