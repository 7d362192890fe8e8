#include "import/readers/edi_mt_reader.h"

#include <algorithm>
#include <cmath>
#include <functional>

#include "core/absent_value.h"
#include "core/line_reader.h"
#include "core/number_text.h"
#include "formats/edi/edi_parser.h"
#include "import/file_formats.h"
#include "import/readers/edi_curves.h"
#include "import/readers/edi_errors.h"
#include "import/readers/edi_heads.h"
#include "import/readers/reader_steps.h"
#include "import/readers/tipper_curves.h"

namespace Module_data_file {

using namespace formats::edi;
using formats::FileReport;

namespace {

// What the user should know before choosing the additions for files of this kind.
class SectionCensus {
 public:
  void add(const EdiSection& section) {
    for (const auto& element : section.elements) {
      impedances_ = impedances_ || element[quantity_real].present || element[quantity_imaginary].present;
      resistivities_ =
          resistivities_ || element[quantity_resistivity].present || element[quantity_phase].present;
    }
    for (const float phase : section.get(element_yx, quantity_phase).values) {
      if (!is_absent(phase)) {
        (phase < 0.0F ? negative_yx_ : other_yx_) = true;
      }
    }
  }
  void note(FileReport& report) const {
    report.impedances_only = impedances_ && !resistivities_;
    report.all_yx_phases_negative = negative_yx_ && !other_yx_;
  }

 private:
  bool impedances_ = false;
  bool resistivities_ = false;
  bool negative_yx_ = false;
  bool other_yx_ = false;
};

void compute_curves(EdiSection& section) {
  for (std::size_t element = 0; element < element_count; ++element) {
    compute_from_impedance(section, element);
  }
}

// What a section gives. One that has neither a tensor nor a tipper gives a tensor without values.
struct SectionReadings {
  explicit SectionReadings(const EdiSection& section)
      : tipper(tipper_of(section)), tensor(tipper.empty() || has_tensor(section)) {}

  [[nodiscard]] std::size_t count() const { return tipper.size() + (tensor ? tensor_data_types.size() : 0); }

  std::vector<EdiTipper> tipper;
  bool tensor = true;
};

// Some programs write the azimuth of the axes there, others the angle by which they turned the data: nothing
// is turned by it. What is neither 0 nor that of the sensors, with either sign, tells of other axes than
// theirs.
void remark_on_rotation(const EdiSection& section, FileReport& report) {
  constexpr double same_axes = 0.5;  // degrees
  const double sensor = section.local_hx ? section.local_hx->AZM : 0.0;
  const auto found = std::ranges::find_if(section.ZROT, [&](double rotation) {
    const auto differs_from = [&](double angle) {
      return std::abs(std::remainder(rotation - angle, 360.0)) > same_axes;
    };
    return !is_absent(rotation) && differs_from(0.0) && differs_from(sensor) && differs_from(-sensor);
  });
  if (found != section.ZROT.end()) {
    formats::remark_ignored(report, section.line_number,
                            "ZROT is " + plain_text(*found) + " degrees and the azimuth of HX " +
                                plain_text(sensor) +
                                ": the axes of the impedances may be turned; their readings keep the azimuth "
                                "of HX",
                            "impedances whose axes may be turned");
  }
}

// Files of this program have the azimuth of the axes of their values there, which aren't those of the sensors
// where the export turned them. False where it isn't one for all.
bool take_own_rotation(const EdiSection& section, ReadingRecord& record) {
  if (!record.is_own_edi || section.ZROT.empty() || is_absent(section.ZROT.front()) ||
      std::ranges::adjacent_find(section.ZROT, std::not_equal_to<>()) != section.ZROT.end()) {
    return false;
  }
  record.axes.HxAzimuth = section.ZROT.front();
  return true;
}

// False after a failed store, whose message has been shown.
bool store_tensor(EdiSection& section, bool turn, FileTask& task) {
  ReadingRecord& record = task.record;
  const ResistivityErrorKind kind = resistivity_error_kind(section);  // by the file's own blocks
  if (computes_from_impedance(record)) {
    compute_curves(section);
  }
  if (turn) {
    turn_ey(section);
  }
  record.axes.EyTurned = turn ? Module_database::ey_turned : Module_database::ey_as_measured;
  for (std::size_t element = 0; element < element_count; ++element) {
    fill_curve(section, element, record.curve);
    fill_errors(section, element, kind, record.curve);
    if (!take_reading(task, tensor_data_types[element])) {
      return false;
    }
  }
  return true;
}

bool store_section(EdiSection& section, const SectionReadings& readings, bool turn, FileTask& task) {
  find_station_of_record(task.record);
  if (readings.tensor && !store_tensor(section, turn, task)) {
    return false;
  }
  return std::ranges::all_of(readings.tipper, [&](EdiTipper element) {
    fill_tipper_curve(section, element, task.record.curve);
    return take_tipper_reading(task, element);
  });
}

void note_for_averages(const SectionReadings& readings, ReadingRecord& record) {
  if (readings.tensor) {
    add_tensor_to_scan_list(record);
  } else {
    add_to_scan_list(record, {});
  }
  for (const EdiTipper element : readings.tipper) {
    record.scanned_types.emplace(Module_database::tipper_data_types[element]);
  }
}

int read_sections(FileTask& task) {
  ReadingRecord& record = task.record;
  FileReport& report = task.report;
  LineReader reader(task.file);
  EdiMtParser parser(reader, report);
  if (!parser.has_sections()) {
    report.failure = "the file has no section >=MTSECT";
  }
  set_up_section_header(record, filter_edi_mt);
  take_file_place(parser.place(), record);
  SectionCensus census;
  EdiSection section;
  while (parser.next_section(section)) {
    census.add(section);
    census.note(report);
    take_section_station(section_head(section), task);
    take_section_place(section, record, report);
    if (!store_header_once(task)) {
      return -1;
    }
    const SectionReadings readings(section);
    const bool turn = readings.tensor && turns_ey(record, [&] { return has_turned_ey(section); });
    report.sections_turned += turn ? 1 : 0;
    report.curves_computed = record.choices.compute_from_impedance;
    if (!take_own_rotation(section, record)) {
      remark_on_rotation(section, report);
    }
    remark_on_tipper(section, report);
    if (!task.is_import()) {
      report.readings += static_cast<std::int32_t>(readings.count());
    } else if (!store_section(section, readings, turn, task)) {
      return -1;
    }
    note_for_averages(readings, record);
    ++report.sections;
    report.frequencies = std::max(report.frequencies, static_cast<std::int32_t>(section.frequencies.size()));
    go_to_next_section(record, true);
    task.show_progress(reader);
  }
  remark_on_nul_bytes(reader, report);
  return 0;
}

}  // namespace

int read_edi_mt(FileTask& task) {
  return run_reader(task, [&] { return read_sections(task); });
}

}  // namespace Module_data_file
