// reader_steps.h: the steps that readers of different formats have in common.
#pragma once
#include <array>
#include <cstddef>
#include <functional>
#include <initializer_list>
#include <optional>
#include <string_view>

#include "import/readers/field_reader.h"
#include "import/reading_record.h"
#include "import/store_blocks.h"

namespace Module_data_file {

inline constexpr float usual_dipole = 100.0F;  // m, where the file doesn't say

/// The readings of a tensor, in the order xx, xy, yx, yy.
inline constexpr std::array<std::string_view, 4> tensor_data_types{"ExHx", "ExHy", "EyHx", "EyHy"};
inline constexpr std::string_view quadrature_data_type = "QP";

enum class MapPlace { of_file, of_survey_grid };

/// Looks the record's station up, or creates it, and copies its rows and place. A new station is put at the
/// map place that the record has from the file, or where the survey grid has it. Notes its site.
void find_station_of_record(ReadingRecord& record, MapPlace map_place = MapPlace::of_file);

/// Notes a station that the file comes to, the name of its site and the record's station_place; of several
/// the first counts. Its sites are kept in the survey when the file has been read.
/// @param elevation  m, before that of station_place
void note_site(ReadingRecord& record, double station, std::optional<double> elevation);

/// Stores the header of the file unless that was done. @return false after a failure, whose message was shown
bool store_header_once(FileTask& task);

/// Counts the record's curve as a reading of this type and, in an import, stores it.
/// @return false after a failure, whose message was shown
bool take_reading(FileTask& task, std::string_view data_type);

/// Adds the record's station, its site and the types of its readings to those that this import has found.
void add_to_scan_list(ReadingRecord& record, std::initializer_list<std::string_view> data_types);
inline void add_tensor_to_scan_list(ReadingRecord& record) {
  add_to_scan_list(record,
                   {tensor_data_types[0], tensor_data_types[1], tensor_data_types[2], tensor_data_types[3]});
}

/// Copies the fields of one frequency to where they stay as they came in, and sets its masks: 1 where
/// resistivity or phase is above zero.
void finish_point(Module_database::Curve& curve, std::size_t index);

/// The fields of one frequency of a raw reading that follow from an impedance.
struct TensorPoint {
  double frequency = 0.0;    // Hz; not above 0: resistivity and magnitudes are absent
  double resistivity = 0.0;  // ohm-m
  double real = 0.0;         // of the impedance
  double imaginary = 0.0;
  double magnitude_part = 0.0;  // of an impedance; the magnitudes of the fields are computed from it
  double scalar = 0.0;          // field 19
};

/// Fills fields 1 to 4, 9, 10, 13 and 19. A phase below -90 degrees has 360 added; an absent part (-1e32)
/// makes absent what depends on it.
void set_tensor_point(const TensorPoint& point, Module_database::Curve& curve, std::size_t index);

/// The row of the plan for the record's section; null without a plan, or where the file has changed since.
const PlannedSection* planned_section(const ReadingRecord& record);

/// True if a section gets the other sign of Ey.
/// @param is_turned asked only where neither plan nor choices say so
bool turns_ey(const ReadingRecord& record, const std::function<bool()>& is_turned);

/// True if resistivity and phase of a section are computed where it has impedances only.
bool computes_from_impedance(const ReadingRecord& record);

/// Reports the NUL bytes that the file had where text belongs.
void remark_on_nul_bytes(const LineReader& lines, formats::FileReport& report);

/// atan2 in degrees, 360 added below -90.
double raised_phase(double imaginary, double real);

/// Runs a reader and keeps the sites that it has noted: a failure is one message, and the report has it too.
/// @param read gives 0, or -1 after a message, whose text the notes have
int run_reader(FileTask& task, const std::function<int()>& read);

}  // namespace Module_data_file
