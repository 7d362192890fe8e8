#include "import/readers/edi_spectra_reader.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <iterator>
#include <vector>

#include "core/absent_value.h"
#include "core/line_reader.h"
#include "core/number_text.h"
#include "core/text_fields.h"
#include "core/user_interface.h"
#include "formats/edi/edi_spectra_parser.h"
#include "formats/field_values.h"
#include "import/file_formats.h"
#include "import/readers/edi_curves.h"
#include "import/readers/edi_heads.h"
#include "import/readers/reader_steps.h"
#include "import/readers/standard_errors.h"
#include "import/readers/tipper_curves.h"
#include "numerics/constants.h"
#include "numerics/impedance/apparent_resistivity.h"
#include "numerics/impedance/mtcomp.h"

namespace Module_data_file {

using namespace formats::edi;
using formats::FileReport;
using formats::remark_unreadable;

namespace {

using numerics::impedance::MtcompError;

// E/H in ohm of E/B in mV/km/nT.
constexpr double ohms_of_field_unit = numerics::mu0 * numerics::field_unit;

// The places of the elements' real parts among the ten values of the tensor.
constexpr std::array<std::size_t, 4> real_parts{0, 2, 6, 8};

struct EstimatedFrequency {
  double frequency = 0.0;  // Hz
  double rotation = 0.0;   // degrees by which the tensor was turned back
  numerics::impedance::TensorEstimate estimate;
};

const char* why_no_tensor(MtcompError error) {
  switch (error) {
    case MtcompError::bad_frequency:
      return "has no frequency above 0";
    case MtcompError::singular:
      return "has a magnetic field of one direction only";
    default:
      return "has no usable matrix";
  }
}

// The user sees one message on an invalid number of averages for a file; the report has each of them. The
// frequency loses only the errors of its tensor.
void report_invalid_averages(const SpectraBlock& block, bool& shown, FileReport& report) {
  if (!block.invalid_AVGT) {
    return;
  }
  constexpr std::size_t longest_text = 40;  // bytes of it that a message has room for
  const std::string text =
      "The AVGT value is invalid: " + text_from_field_file(block.invalid_AVGT->substr(0, longest_text));
  if (!shown) {
    user_interface().show_message(text);
    shown = true;
  }
  remark_unreadable(report, block.line_number, text);
}

std::vector<EstimatedFrequency> estimate_section(EdiSpectraParser& parser, const SpectraSection& section,
                                                 bool& averages_shown, FileReport& report) {
  std::vector<EstimatedFrequency> estimated;
  SpectraBlock block;
  std::size_t blocks = 0;
  while (parser.next_block(block)) {
    ++blocks;
    report_invalid_averages(block, averages_shown, report);
    if (!section.roles.places || !block.complete) {
      continue;
    }
    EstimatedFrequency& next = estimated.emplace_back();
    next.frequency = block.FREQ;
    next.rotation = block.ROTSPEC;
    // A frequency that isn't above 0 is stored as it came: the tensor doesn't depend on it.
    const double frequency = block.has_FREQ && block.FREQ <= 0.0 ? 1.0 : block.FREQ;
    const MtcompError error = numerics::impedance::mtcomp(
        {frequency, block.AVGT, block.ROTSPEC, *section.roles.places, section.channel_count, block.matrix},
        next.estimate);
    if (error != MtcompError::none) {
      estimated.pop_back();
      remark_unreadable(
          report, block.line_number,
          std::string("block >SPECTRA ") + why_no_tensor(error) + "; the frequency is left out");
    }
  }
  std::vector<float> frequencies;
  std::ranges::transform(estimated, std::back_inserter(frequencies),
                         [](const auto& each) { return static_cast<float>(each.frequency); });
  formats::remark_on_frequencies(frequencies, section.line_number, report);
  if (section.NFREQ != 0 && blocks != section.NFREQ && !parser.is_cut()) {
    remark_unreadable(report, section.line_number,
                      "the section has " + std::to_string(blocks) + " of " + std::to_string(section.NFREQ) +
                          " frequencies");
  }
  return estimated;
}

void fill_element(const std::vector<EstimatedFrequency>& estimated, std::size_t element, bool turn,
                  Module_database::Curve& curve) {
  curve.assign(estimated.size());
  for (std::size_t index = 0; index < estimated.size(); ++index) {
    const double frequency = estimated[index].frequency;
    const numerics::impedance::TensorEstimate& estimate = estimated[index].estimate;
    const double real = estimate.impedance[real_parts[element]];
    const double imaginary = estimate.impedance[real_parts[element] + 1];
    TensorPoint point;
    point.frequency = frequency;
    point.resistivity = numerics::impedance::apparent_resistivity({real, imaginary}, frequency);
    point.real = real * ohms_of_field_unit;
    point.imaginary = imaginary * ohms_of_field_unit;
    point.magnitude_part = estimate.impedance[9] * ohms_of_field_unit;
    point.scalar = estimate.coherence;
    curve.frequencies[index] = static_cast<float>(frequency);
    set_tensor_point(point, curve, index);
    const double error = estimate.errors[element];
    const double magnitude = std::hypot(real, imaginary);
    if (!is_absent(error) && magnitude > 0.0) {
      set_errors(error / magnitude, curve, index);
    }
  }
  if (turn) {
    turn_sign(curve);
  }
  for (std::size_t index = 0; index < estimated.size(); ++index) {
    finish_point(curve, index);
  }
}

void fill_tipper(const std::vector<EstimatedFrequency>& estimated, std::size_t component,
                 Module_database::Curve& curve) {
  curve.assign(estimated.size());
  for (std::size_t index = 0; index < estimated.size(); ++index) {
    const numerics::impedance::TensorEstimate& estimate = estimated[index].estimate;
    curve.frequencies[index] = static_cast<float>(estimated[index].frequency);
    curve.value(13, index) = no_data;  // as in the readings of the tensor
    set_tipper_point({estimate.tipper[2 * component], estimate.tipper[2 * component + 1],
                      estimate.tipper_errors[component]},
                     curve, index);
  }
}

bool has_tipper(const std::vector<EstimatedFrequency>& estimated) {
  return std::ranges::any_of(estimated,
                             [](const auto& each) { return !is_absent(each.estimate.tipper.front()); });
}

// A dead channel of Hz gives one that was never measured.
bool has_zero_tipper(const std::vector<EstimatedFrequency>& estimated) {
  return std::ranges::all_of(estimated, [](const auto& each) {
    return std::ranges::all_of(each.estimate.tipper,
                               [](double part) { return is_absent(part) || part == 0.0; });
  });
}

std::vector<float> phases_of_yx(const std::vector<EstimatedFrequency>& estimated) {
  std::vector<float> phases;
  for (const EstimatedFrequency& each : estimated) {
    const std::size_t real = real_parts[element_yx];
    phases.push_back(static_cast<float>(numerics::impedance::phase_degrees(
        {each.estimate.impedance[real], each.estimate.impedance[real + 1]})));
  }
  return phases;
}

bool take_tipper_readings(const std::vector<EstimatedFrequency>& estimated, FileTask& task) {
  for (std::size_t component = 0; component < tipper_count; ++component) {
    fill_tipper(estimated, component, task.record.curve);
    if (!take_tipper_reading(task, component)) {
      return false;
    }
    task.record.scanned_types.emplace(Module_database::tipper_data_types[component]);
  }
  return true;
}

bool take_readings(const SpectraSection& section, const std::vector<EstimatedFrequency>& estimated,
                   FileTask& task) {
  ReadingRecord& record = task.record;
  const bool turn = turns_ey(record, [&] { return mostly_in_third_quadrant(phases_of_yx(estimated)); });
  task.report.sections_turned += turn ? 1 : 0;
  if (task.is_import()) {
    record.axes.EyTurned = turn ? Module_database::ey_turned : Module_database::ey_as_measured;
    find_station_of_record(record);
  }
  for (std::size_t element = 0; element < tensor_data_types.size(); ++element) {
    const bool is_ey = element >= element_yx;
    fill_element(estimated, element, is_ey && turn, record.curve);
    if (!take_reading(task, tensor_data_types[element])) {
      return false;
    }
  }
  if (!has_tipper(estimated)) {
    return true;
  }
  if (has_zero_tipper(estimated)) {
    remark_on_zero_tipper(section.line_number, task.report);
    return true;
  }
  return take_tipper_readings(estimated, task);
}

bool is_turned(const EstimatedFrequency& each) { return std::remainder(each.rotation, 360.0) != 0.0; }

// The tensor stands in the axes of the channels, unless the spectra were turned by the very azimuth of these:
// then ROTSPEC tells where the spectra's axes point, and turned back by it the tensor points north.
void take_rotation(const SpectraSection& section, const std::vector<EstimatedFrequency>& estimated,
                   ReadingRecord& record, FileReport& report) {
  if (std::ranges::none_of(estimated, is_turned)) {
    return;
  }
  constexpr double same_azimuth = 0.5;  // degrees
  const bool by_azimuth = section.local_hx && std::ranges::all_of(estimated, [&](const auto& each) {
                            const double difference =
                                std::remainder(each.rotation - section.local_hx->AZM, 360.0);
                            return is_turned(each) && std::abs(difference) <= same_azimuth;
                          });
  const auto [least, most] = std::ranges::minmax(estimated, {}, &EstimatedFrequency::rotation);
  std::string text = "the tensor was turned back by ROTSPEC, " + plain_text(least.rotation);
  text += (most.rotation > least.rotation ? " to " + plain_text(most.rotation) : "") + " degrees clockwise";
  if (by_azimuth) {
    record.Orientation = record.axes.HxAzimuth = 0.0F;
    text += ", which is the azimuth of its channels: it points north";
  }
  formats::remark_ignored(report, section.line_number, text);
}

// The first one is the file's failure, which is shown first; the others are remarks.
void report_lost_section(const SpectraSection& section, FileReport& report) {
  const std::string text =
      "section " + std::to_string(section.number) +
      (section.roles.places ? " has no usable frequency" : " has no channel " + section.roles.missing) +
      "; it is not stored";
  if (report.failure.empty()) {
    report.failure = text;
  } else {
    remark_unreadable(report, section.line_number, text);
  }
}

// False after a failed store.
bool take_section(const SpectraSection& section, const std::vector<EstimatedFrequency>& estimated,
                  FileTask& task) {
  ReadingRecord& record = task.record;
  FileReport& report = task.report;
  take_section_station(section_head(section), task);
  take_section_place(section, record, report);
  if (estimated.empty()) {
    report_lost_section(section, report);
  } else {
    take_rotation(section, estimated, record, report);
    if (!store_header_once(task) || !take_readings(section, estimated, task)) {
      return false;
    }
    add_tensor_to_scan_list(record);
    ++report.sections;
    report.frequencies = std::max(report.frequencies, static_cast<std::int32_t>(estimated.size()));
  }
  go_to_next_section(record, !estimated.empty());
  return true;
}

int read_sections(FileTask& task) {
  FileReport& report = task.report;
  LineReader reader(task.file);
  EdiSpectraParser parser(reader, report);
  if (!parser.has_sections()) {
    report.failure = "the file has no section >=SPECTRASECT";
  }
  set_up_section_header(task.record, filter_edi_spectra);
  take_file_place(parser.place(), task.record);
  SpectraSection section;
  bool averages_shown = false;
  while (parser.next_section(section)) {
    const std::vector<EstimatedFrequency> estimated =
        estimate_section(parser, section, averages_shown, report);
    if (parser.is_cut()) {
      break;
    }
    if (!take_section(section, estimated, task)) {
      return -1;
    }
    task.show_progress(reader);
  }
  remark_on_nul_bytes(reader, report);
  return 0;
}

}  // namespace

int read_edi_spectra(FileTask& task) {
  return run_reader(task, [&] { return read_sections(task); });
}

SpectraHead look_at_spectra(const std::string& file, FileReport& report,
                            const std::function<void(const SpectraLook&)>& take) {
  LineReader reader(file);
  EdiSpectraParser parser(reader, report);
  SpectraSection section;
  bool averages_shown = true;  // a look shows no messages
  while (parser.next_section(section)) {
    const std::vector<EstimatedFrequency> estimated =
        estimate_section(parser, section, averages_shown, report);
    if (parser.is_cut()) {
      break;
    }
    SpectraLook look{section_head(section), {}, phases_of_yx(estimated)};
    for (const EstimatedFrequency& each : estimated) {
      look.frequencies.push_back(static_cast<float>(each.frequency));
    }
    take(look);
  }
  return {parser.channels().has_remote(), parser.place().geographic};
}

}  // namespace Module_data_file
