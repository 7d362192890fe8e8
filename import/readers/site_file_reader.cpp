#include "import/readers/site_file_reader.h"

#include <algorithm>
#include <memory>

#include "formats/field_values.h"
#include "import/readers/edi_curves.h"
#include "import/readers/reader_steps.h"
#include "import/readers/site_curves.h"
#include "import/readers/site_files.h"
#include "import/readers/tipper_curves.h"

namespace Module_data_file {

using formats::FileReport;
using formats::edi::EdiElement;
using formats::edi::EdiTipper;
using formats::transfer_function::TransferFunction;

namespace {

void take_place(const formats::transfer_function::Site& site, ReadingRecord& record) {
  record.place = {site.latitude, site.longitude, site.elevation, site.datum};
  record.Elevation = site.elevation.value_or(0.0);
  record.axes = {};
  record.Orientation = static_cast<float>(site.x_azimuth.value_or(0.0));
  if (site.x_azimuth) {  // else the axes stay not known
    record.axes.HxAzimuth = record.Orientation;
  }
}

// False after a failed store, whose message has been shown.
bool store_readings(const TransferFunction& function, const SiteReadings& readings, bool turn,
                    FileTask& task) {
  ReadingRecord& record = task.record;
  find_station_of_record(record);
  record.axes.EyTurned = turn ? Module_database::ey_turned : Module_database::ey_as_measured;
  return std::ranges::all_of(readings.elements,
                             [&](EdiElement element) {
                               fill_site_curve(function, element, turn, record.curve);
                               return take_reading(task, tensor_data_types[element]);
                             }) &&
         std::ranges::all_of(readings.tipper, [&](EdiTipper component) {
           fill_site_tipper(function, component, record.curve);
           return take_tipper_reading(task, component);
         });
}

void note_for_averages(const SiteReadings& readings, ReadingRecord& record) {
  add_to_scan_list(record, {});
  for (const EdiElement element : readings.elements) {
    record.scanned_types.emplace(tensor_data_types[element]);
  }
  for (const EdiTipper component : readings.tipper) {
    record.scanned_types.emplace(Module_database::tipper_data_types[component]);
  }
}

int store_site(const TransferFunction& function, FileTask& task) {
  ReadingRecord& record = task.record;
  FileReport& report = task.report;
  set_up_section_header(record, filter_of_site_file(record.file_format));
  const SiteReadings readings(function);
  remark_on_site_tipper(readings, report);
  if (readings.empty()) {
    return 0;
  }
  take_section_station(site_head(record.file_format, function.site), task);
  take_place(function.site, record);
  if (!store_header_once(task)) {
    return -1;
  }
  const auto is_turned = [&] { return mostly_in_third_quadrant(phases_of_yx(function)); };
  const bool turn = !readings.elements.empty() && turns_ey(record, is_turned);
  if (!task.is_import()) {
    report.readings += static_cast<std::int32_t>(readings.count());
  } else if (!store_readings(function, readings, turn, task)) {
    return -1;
  }
  note_for_averages(readings, record);
  formats::remark_on_frequencies(frequencies_of(function), 0, report);
  report.sections_turned += turn ? 1 : 0;
  report.frequencies = static_cast<std::int32_t>(function.points.size());
  ++report.sections;
  go_to_next_section(record, true);
  return 0;
}

}  // namespace

int read_site(FileTask& task) {
  return run_reader(task, [&] {
    // Read when the format was recognised, unless the caller knew it.
    if (!task.record.site_file) {
      task.record.site_file = std::make_shared<const TransferFunction>(
          read_site_file(task.record.file_format, task.file, task.report));
    }
    return store_site(*task.record.site_file, task);
  });
}

}  // namespace Module_data_file
