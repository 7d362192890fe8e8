#include "import/edi_mt_reader.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <exception>
#include <string_view>

#include "core/number_text.h"
#include "core/text_fields.h"
#include "core/trap_errors.h"
#include "database/stations.h"
#include "import/edi_curves.h"
#include "import/edi_parser.h"
#include "import/line_reader.h"
#include "import/reading_record.h"
#include "import/remarks.h"

namespace Module_data_file {

namespace {

constexpr std::string_view failure_text = "An error occurred while importing the data file: ";
constexpr std::array<std::string_view, element_count> data_types{"ExHx", "ExHy", "EyHx", "EyHy"};
constexpr float usual_dipole = 100.0F;  // m, where no station spacing was given

void set_up_header(ReadingRecord& record) {
  record.EventNumber = 0;
  record.DipoleLength = usual_dipole;
  if (record.Station == station_not_set) {
    record.Station = 0.0;
  }
  if (record.StationSpacing <= 0.0F) {
    record.StationSpacing = record.DipoleLength;
  } else {
    record.DipoleLength = record.StationSpacing;
  }
  record.Filter = "EMIRes";
}

std::string_view first_digits(std::string_view text) {
  constexpr std::string_view digits = "0123456789";
  const std::size_t first = std::min(text.find_first_of(digits), text.size());
  const std::string_view behind = text.substr(first);
  return behind.substr(0, behind.find_first_not_of(digits));
}

struct NamedStation {
  double station = 0.0;
  bool has_number = false;
};

NamedStation station_of_sectid(std::string_view sectid, bool only_digits) {
  const std::string_view text = only_digits ? first_digits(sectid) : sectid;
  const double station = std::trunc(numeric_value(text));
  const std::string_view number = trimmed(text);
  return {
      std::isfinite(station) ? station + 0.0 : 0.0,
      !number.empty() && std::string_view("+-.0123456789").find(number.front()) != std::string_view::npos};
}

// The station that the section names, if the choices ask for it.
void take_station(const EdiSection& section, ReadingRecord& record, FileReport& report) {
  if (!record.choices.sectid_as_station) {
    return;
  }
  if (!section.SECTID) {
    remark_unreadable(report, section.line_number,
                      "the section has no SECTID; the station stays " + plain_text(record.Station));
    return;
  }
  const NamedStation named = station_of_sectid(*section.SECTID, record.choices.sectid_digits);
  record.Station = named.station;
  if (!named.has_number) {
    remark_unreadable(report, section.line_number,
                      "SECTID " + in_quotes(*section.SECTID) + " has no number, taken as station 0");
  }
}

void take_place(const EdiSection& section, ReadingRecord& record, FileReport& report) {
  record.Orientation = 0.0F;
  record.MapX = record.MapY = record.Elevation = 0.0;
  if (!section.local_hx) {
    remark_unreadable(report, section.line_number,
                      "the section names no local HX channel; place and orientation are 0");
    return;
  }
  const EdiChannel& hx = *section.local_hx;
  record.Orientation = static_cast<float>(hx.AZM);
  record.MapX = hx.Y;
  record.MapY = hx.X;
  record.Elevation = hx.Z;
}

void find_station_of_record(ReadingRecord& record) {
  const Module_database::GivenPlace place{record.MapX, record.MapY, record.Elevation};
  const Module_database::StationRows rows = Module_database::find_station(
      Module_database::StationSearch::create, record.LineNumber, record.Station, &place);
  record.StationID = rows.StationID;
  record.LocationID = rows.LocationID;
  record.LocalX = rows.LocalX;
  record.LocalY = rows.LocalY;
  record.MapX = rows.MapX;
  record.MapY = rows.MapY;
  record.Elevation = rows.Elevation;
}

void add_to_scan_list(ReadingRecord& record) {
  const ScannedStation key{record.LineNumber, record.Station, record.choices.ReferenceType, record.SampleRate,
                           record.DipoleLength};
  if (record.scanned.insert(key).second) {
    record.scan_list.push_back(key);
  }
}

// What a person should know before choosing the additions for files of this kind.
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

void apply_additions(const ImportChoices& choices, EdiSection& section) {
  if (choices.compute_from_impedance) {
    for (std::size_t element = 0; element < element_count; ++element) {
      compute_from_impedance(section, element);
    }
  }
  if (choices.turn_ey_phase) {
    turn_ey(section);
  }
}

// Stores the four readings of a section. False after a failed store, whose message has been shown.
bool store_section(const EdiSection& section, ReadingRecord& record, FileReport& report, StoreNotes& notes) {
  find_station_of_record(record);
  for (std::size_t element = 0; element < element_count; ++element) {
    fill_curve(section, element, record.curve);
    // -1 without a failure says that the frequencies were not ascending in the file, which is no fault.
    if (store_data_block(data_types[element], notes) != 0 && !notes.failure.empty()) {
      return false;
    }
    ++report.readings;
  }
  return true;
}

void advance(ReadingRecord& record) {
  ++record.EventNumber;
  if (!record.choices.sectid_as_station) {
    // By its decimal text, so that steps of 0.1 don't gather a tail that no criterion would find.
    record.Station = numeric_value(plain_text(record.Station + decimal_of_single(record.StationSpacing)));
  }
}

int read_sections(ImportMode mode, const std::string& file, FileReport& report, StoreNotes& notes,
                  const FileProgress& progress) {
  ReadingRecord& record = reading_record();
  LineReader reader(file);
  EdiMtParser parser(reader, report);
  if (!parser.has_sections()) {
    report.failure = "the file has no section >=MTSECT";
  }
  set_up_header(record);
  if (mode == ImportMode::import && store_header_block(notes) != 0) {
    return -1;
  }
  SectionCensus census;
  EdiSection section;
  while (parser.next_section(section)) {
    census.add(section);
    census.note(report);
    take_station(section, record, report);
    take_place(section, record, report);
    if (mode == ImportMode::import) {
      apply_additions(record.choices, section);
      if (!store_section(section, record, report, notes)) {
        return -1;
      }
    } else {
      report.readings += static_cast<std::int32_t>(element_count);
    }
    add_to_scan_list(record);
    ++report.sections;
    report.frequencies = std::max(report.frequencies, static_cast<std::int32_t>(section.frequencies.size()));
    advance(record);
    if (progress) {
      progress(reader.bytes_read(), reader.file_size());
    }
  }
  return 0;
}

}  // namespace

int read_edi_mt(ImportMode mode, const std::string& file, FileReport& report, StoreNotes& notes,
                const FileProgress& progress) {
  return trap_errors(failure_text, [&] {
    try {
      const int result = read_sections(mode, file, report, notes, progress);
      if (result != 0) {
        report.failure = notes.failure;
      }
      return result;
    } catch (const std::exception& failure) {
      report.failure = std::string(failure_text) + failure.what();
      throw;
    }
  });
}

EdiTraits examine_edi_mt(const std::string& file) {
  FileReport report;
  LineReader reader(file);
  EdiMtParser parser(reader, report);
  SectionCensus census;
  EdiSection section;
  EdiTraits traits;
  while (parser.next_section(section)) {
    census.add(section);
    if (traits.sections++ == 0) {
      traits.first_sectid = section.SECTID;
    }
  }
  census.note(report);
  traits.impedances_only = report.impedances_only;
  traits.all_yx_phases_negative = report.all_yx_phases_negative;
  return traits;
}

double sectid_station(std::string_view sectid, bool only_digits) {
  return station_of_sectid(sectid, only_digits).station;
}

}  // namespace Module_data_file
