#include "import/readers/zonge_raw_reader.h"

#include <algorithm>
#include <iterator>
#include <optional>
#include <set>
#include <string_view>
#include <utility>
#include <vector>

#include "core/absent_value.h"
#include "core/line_reader.h"
#include "core/number_text.h"
#include "database/stations.h"
#include "formats/field_values.h"
#include "formats/zonge/zonge_raw_parser.h"
#include "formats/zonge/zonge_stn_file.h"
#include "import/readers/reader_steps.h"

namespace Module_data_file {

using namespace formats::zonge;
using formats::FileReport;
using formats::remark_unreadable;
using formats::single_or_absent;

namespace {

using Module_database::StationSearch;

void set_up_header(ReadingRecord& record) {
  record.EventNumber = 0;
  record.Station = 0.0;
  record.DipoleLength = usual_dipole;
  record.StationSpacing = usual_dipole;
  record.Filter = "ZongeRaw";
  record.axes.EyTurned = Module_database::ey_as_measured;
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
  /// @param placed  the stations of the file of stations
  BlockStore(FileTask& task, ZongeAccount& account, std::set<double> placed)
      : task_(task), account_(account), placed_(std::move(placed)) {}

  /// @return false after a failure to store, whose message was shown
  bool take(const ZongeBlock& block) {
    without_data_.reset();
    if (block.type != ZongeBlockType::mt) {
      return true;
    }
    task_.record.DipoleLength = static_cast<float>(block.a_spacing.value_or(usual_dipole));
    return take_header(block) && take_data(block);
  }

  /// What was left out, and what is without a place of its own.
  void report_missing() const {
    if (without_data_) {
      remark_unreadable(
          task_.report, 0,
          "block " + plain_text(*without_data_) + ", the last one, has no data: the file may be cut off");
    }
    if (!unplaced_.empty()) {
      remark_unreadable(task_.report, 0,
                        stations_missing(static_cast<std::int64_t>(unplaced_.size())) +
                            "; new ones get their places from the survey grid");
    }
    if (blocks_dropped_ > 0) {
      remark_unreadable(task_.report, 0,
                        plain_text(blocks_dropped_) + (blocks_dropped_ == 1 ? " block is" : " blocks are") +
                            " not stored; the account says why");
    }
  }

 private:
  bool take_header(const ZongeBlock& block);
  bool take_data(const ZongeBlock& block);
  bool take_channel(const ZongeBlock& block, const ZongeChannel& channel);
  void drop(std::string_view what, const ZongeBlock& block, const std::string& reason);

  FileTask& task_;
  ZongeAccount& account_;
  std::set<double> placed_;
  std::set<double> unplaced_;
  std::optional<std::int64_t> without_data_;  // the number of the last block, if it should have some
  std::int64_t blocks_dropped_ = 0;
};

void BlockStore::drop(std::string_view what, const ZongeBlock& block, const std::string& reason) {
  account_.say_plainly(std::string(what) + " Block : " + plain_text(block.number) + " not stored because " +
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
  if (!task_.is_import()) {
    return true;
  }
  // Not the task's notes: a header that finds the row of its own file isn't an earlier import.
  StoreNotes header_notes;
  const int stored = store_header_block(task_.record, header_notes);
  task_.notes.replaced_keys.merge(header_notes.replaced_keys);
  if (stored == 0) {
    return true;
  }
  task_.notes.failure = header_notes.failure;
  account_.say_plainly("There was an error storing the header block");
  drop("Header", block, header_notes.failure);
  return false;
}

bool BlockStore::take_data(const ZongeBlock& block) {
  if (block.channels.empty() && (block.is_header || block.fault.empty())) {
    if (!block.is_header && !block.aborted) {
      without_data_ = block.number;
    }
    return true;
  }
  if (block.aborted || !block.fault.empty()) {
    drop("Data", block, block.aborted ? std::string(aborted_text) : block.fault);
    return true;
  }
  ++task_.report.sections;
  task_.report.frequencies =
      std::max(task_.report.frequencies, static_cast<std::int32_t>(block.harmonics.size()));
  task_.record.SampleRate = static_cast<float>(*block.base_frequency);
  for (const ZongeChannel& channel : block.channels) {
    if (is_reading(channel) && !take_channel(block, channel)) {
      return false;
    }
  }
  return true;
}

bool BlockStore::take_channel(const ZongeBlock& block, const ZongeChannel& channel) {
  task_.record.Station = channel.station;
  if (!placed_.contains(channel.station)) {
    unplaced_.insert(channel.station);
  }
  if (task_.is_import()) {
    // A new station that the file of stations doesn't have gets its place from the survey grid.
    find_station_of_record(task_.record, MapPlace::of_survey_grid);
  }
  fill_curve(block, channel, task_.record.curve);
  if (!take_reading(task_, channel.name)) {
    drop("Data", block, task_.notes.failure);
    return false;
  }
  add_to_scan_list(task_.record, {channel.name});
  ++task_.record.EventNumber;
  return true;
}

// Creates the stations at their places before any reading does without. @return their numbers
std::set<double> create_stations(const std::string& stn_file, FileTask& task) {
  const std::vector<ZongeStation> stations = read_stn_file(stn_file, task.report);
  if (task.is_import()) {
    for (const ZongeStation& entry : stations) {
      const Module_database::GivenPlace place{entry.x, entry.y, entry.elevation};
      note_site(task.record, entry.station,
                entry.elevation != 0.0 ? std::optional(entry.elevation) : std::nullopt);
      (void)Module_database::find_station(StationSearch::create, task.record.LineNumber, entry.station,
                                          &place);
    }
  }
  std::set<double> numbers;
  std::ranges::transform(stations, std::inserter(numbers, numbers.end()), &ZongeStation::station);
  return numbers;
}

int read_blocks(FileTask& task, std::set<double> placed) {
  set_up_header(task.record);
  if (task.is_import() && store_header_block(task.record, task.notes) != 0) {
    return -1;
  }
  LineReader reader(task.file);
  ZongeAccount account(task.report);
  ZongeRawParser parser(reader, account);
  BlockStore store(task, account, std::move(placed));
  ZongeBlock block;
  std::int64_t shown = 0;
  while (parser.next_block(block)) {
    if (!store.take(block)) {
      return -1;
    }
    constexpr std::int64_t bytes_between =
        16384;  // blocks are small; to show progress costs more than to read one
    if (reader.bytes_read() - shown >= bytes_between) {
      shown = reader.bytes_read();
      task.show_progress(reader);
    }
  }
  store.report_missing();
  remark_on_nul_bytes(reader, task.report);
  return 0;
}

}  // namespace

int read_zonge_raw(FileTask& task) {
  const std::optional<std::string> stn_file = find_stn_file(task.file);
  if (!stn_file) {
    task.report.failure = no_stn_file_text;
    return -1;
  }
  return run_reader(task, [&] { return read_blocks(task, create_stations(*stn_file, task)); });
}

}  // namespace Module_data_file
