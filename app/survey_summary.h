// survey_summary.h: what a survey holds, counted: its lines, stations and readings.
#pragma once
#include <array>
#include <cstdint>
#include <string>
#include <vector>

namespace Module_Brenlox {

/// Readings of a station that belong to one curve: repeats of a scan rate, its average, or the merged curve.
struct ReadingGroup {
  std::string data_type;
  std::int32_t reference_type = 0;
  std::int32_t reduction_type = 0;  // 0 raw, 1 averaged, 2 merged
  float dipole = 0.0F;              // m
  float scan_rate = 0.0F;           // Hz; 0 for a merged curve
  std::int32_t readings = 0;
  std::int32_t used_readings = 0;       // with their use flag on
  std::int32_t fewest_frequencies = 0;  // of one reading
  std::int32_t most_frequencies = 0;
  bool operator==(const ReadingGroup&) const = default;
};

struct StationSummary {
  double station = 0.0;
  std::vector<ReadingGroup> groups;  // by data type, reference type, reduction, dipole, scan rate
  [[nodiscard]] std::int32_t readings(std::int32_t reduction_type) const;
  bool operator==(const StationSummary&) const = default;
};

struct LineSummary {
  std::string line;
  std::vector<StationSummary> stations;  // in the survey's order
  bool operator==(const LineSummary&) const = default;
};

struct SurveySummary {
  std::vector<LineSummary> lines;  // in the survey's order
  std::int32_t files = 0;
  std::array<std::int32_t, 3> readings{};  // raw, averaged, merged
  std::vector<std::int32_t> reference_types;
  std::vector<std::string> data_types;
  std::vector<float> dipoles;     // m
  std::vector<float> scan_rates;  // Hz, of raw and averaged readings
  [[nodiscard]] std::int32_t station_count() const;
  bool operator==(const SurveySummary&) const = default;
};

/// Counts the open survey. Reads no curve, so it takes one walk over the readings' rows. Throws dao::Error.
SurveySummary survey_summary();

/// "Not Remote Ref", "Remote Ref", "Cross Ref".
std::string reference_type_name(std::int32_t reference_type);

/// "Raw", "Averaged", "Merged".
std::string reduction_type_name(std::int32_t reduction_type);

}  // namespace Module_Brenlox
