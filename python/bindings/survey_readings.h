// survey_readings.h: readings of the open survey, as a script asks for them.
#pragma once
#include <compare>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "python/bindings/curve_arrays.h"
#include "tensor/line_choice.h"

namespace Python {

/// What a caller says of a curve; what is left out is found where there is one only.
struct CurveQuery {
  std::string line;
  std::string station;  // number or name of the site
  std::string data_type;
  std::optional<std::int32_t> reference_type;
  std::optional<double> dipole;     // m
  std::optional<double> scan_rate;  // Hz
};

/// The kind of recording that is asked for. Throws std::invalid_argument, with what the line has, unless
/// there is exactly one.
Module_tensor::LineChoice find_kind(const CurveQuery& query);

/// The curves that a file of a whole line is made of. Throws as find_kind, and SurveyError for a line without
/// readings of QP where these are asked for.
Module_database::LineSelection find_line_selection(const CurveQuery& query);

/// The number of a station of a line, given by it or by the name of its site. Throws std::invalid_argument.
double find_station(const std::string& line, const std::string& station);

/// What there are readings of at a station.
struct StationKind {
  std::string data_type;
  std::int32_t reduction = 0;
  float scan_rate = 0.0F;  // Hz; of a merged curve 0
  std::int32_t reference_type = 0;
  float dipole = 0.0F;  // m
  friend auto operator<=>(const StationKind&, const StationKind&) = default;
};

/// Each once, ascending. Throws std::invalid_argument for a line or station that the survey doesn't have.
std::vector<StationKind> kinds_of_station(const std::string& line, const std::string& station);

/// The average (reduction 1) or merged curve (2), computed if it is missing. Throws std::invalid_argument for
/// what the survey doesn't have, dao::Error.
std::unique_ptr<TakenReading> find_curve(const CurveQuery& query, std::int32_t reduction);

/// The raw readings, by scan rate and event.
std::vector<std::unique_ptr<TakenReading>> find_repeats(const CurveQuery& query);

/// Which readings: what is left out may be anything.
struct CurveFilter {
  std::optional<std::string> line;
  std::optional<std::string> station;  // number or name of the site; needs the line
  std::optional<std::string> data_type;
  std::optional<std::int32_t> reference_type;
  std::optional<double> dipole;     // m
  std::optional<double> scan_rate;  // Hz
};

/// All readings of a reduction, by line, station, reference type, dipole, data type, scan rate and event.
/// Those of reduction 1 and 2 are one for a key and computed where they are missing. Throws
/// std::invalid_argument for a line or station that the survey doesn't have, dao::Error.
std::vector<std::unique_ptr<TakenReading>> find_curves(const CurveFilter& filter, std::int32_t reduction);

/// The reading of a row. Throws std::invalid_argument if it is gone.
std::unique_ptr<TakenReading> find_reading(std::int32_t ID);

}  // namespace Python
