// line_data.h: from the stations' curves to the rows of a data file.
#pragma once
#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "formats/occam/data_file.h"
#include "occam/setup/inversion_inputs.h"
#include "occam/setup/station_positions.h"
#include "output/rhoplus_data.h"

namespace Module_occam {

/// How errors are formed, in one mode.
struct ErrorRule {
  double res_floor = 0.0;    // percent
  double phase_floor = 0.0;  // as_before: percent of the phase; relative: degrees
  bool standard_error = true;
  bool rhoplus_error = true;
  ErrorForm form = ErrorForm::as_before;
};

// An absent fit (no_data) adds nothing to an error. As before no error is below 0.001 (log10) or 0.1 degrees,
// relative ones are not below 0.0001, the least that a data file can hold. None is below that of the files,
// which is 0 where there is none.

/// Error of log10 resistivity, relative: (floor / 100 + |fit - rho| / rho) / ln 10, in decades.
/// @param rho, fit    resistivity measured and fitted in one dimension, ohm-m
/// @param file_error  of rho, ohm-m
double resistivity_error(double rho, double fit, double file_error, const ErrorRule& rule);

/// Error of a phase, degrees. Relative: floor + |fit - phase|.
/// @param phase, fit  measured and fitted in one dimension, degrees
/// @param file_error  of the phase, degrees
double phase_error(double phase, double fit, double file_error, const ErrorRule& rule);

/// The data of a line, while its stations are added.
struct LineData {
  int taking_part = 0;                       // stations so far; the last one's site number
  std::vector<float> site_positions;         // of the stations with rows, m
  std::vector<double> site_stations;         // their numbers
  Module_tensor::RotationReport rotation;    // of a run in the axes of the strike
  std::vector<std::int32_t> frequency_rows;  // rows of each frequency of the list
  std::vector<DataRow> rows;  // until number_frequencies, frequency_number is the place in the list, from 1
};

/// A station's curve and its fit in one mode.
struct ModeCurve {
  Mode mode;
  Module_output::RhoplusTables tables;
  ErrorRule rule;
};

/// Adds the rows of a station that takes part; one without rows uses up a site number all the same. The modes
/// share the station's site; rows of several stand together at each frequency.
void add_station(LineData& line, const PositionedStation& station, std::span<const ModeCurve> curves);

/// Numbers the frequencies that have rows from 1, in ascending order, and puts these numbers into the rows.
/// @param frequency_list  Hz, as long as frequency_rows
/// @return the frequencies that have rows, Hz
std::vector<float> number_frequencies(LineData& line, std::span<const float> frequency_list);

}  // namespace Module_occam
