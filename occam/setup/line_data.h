// line_data.h: from the stations' curves to the rows of a data file.
#pragma once
#include <cstdint>
#include <span>
#include <vector>

#include "formats/occam/data_file.h"
#include "occam/setup/inversion_inputs.h"
#include "occam/setup/station_positions.h"
#include "output/rhoplus_data.h"

namespace Module_occam {

/// How errors are formed.
struct ErrorRule {
  double res_floor = 0.0;    // percent
  double phase_floor = 0.0;  // percent of the phase
  bool standard_error = true;
  bool rhoplus_error = true;
};

// An absent fit (no_data) adds nothing to an error. No error is below 0.001 (log10) or 0.1 degrees, nor below
// that of the files, which is 0 where there is none.

/// Error of log10 resistivity.
/// @param rho, fit    resistivity measured and fitted in one dimension, ohm-m
/// @param file_error  of rho, ohm-m
double resistivity_error(double rho, double fit, double file_error, const ErrorRule& rule);

/// Error of a phase, degrees.
/// @param phase, fit  measured and fitted in one dimension, degrees
/// @param file_error  of the phase, degrees
double phase_error(double phase, double fit, double file_error, const ErrorRule& rule);

/// The data of a line, while its stations are added.
struct LineData {
  int taking_part = 0;                       // stations so far; the last one's site number
  std::vector<float> site_positions;         // of the stations with rows, m
  std::vector<double> site_stations;         // their numbers
  std::vector<std::int32_t> frequency_rows;  // rows of each frequency of the list
  std::vector<DataRow> rows;                 // without frequency numbers until number_frequencies
  std::vector<std::int32_t> row_positions;   // place of each row's frequency in the list, from 0
};

/// Adds the rows of a station that takes part; one without rows uses up a site number all the same.
/// @param tables  the station's curve and its fit
/// @param electric_along_strike  EyHx: TE, else TM
void add_station(LineData& line, const PositionedStation& station, const Module_output::RhoplusTables& tables,
                 bool electric_along_strike, const ErrorRule& rule);

/// Numbers the frequencies that have rows from 1, in ascending order, and puts these numbers into the rows.
/// @param frequency_list  Hz, as long as frequency_rows
/// @return the frequencies that have rows, Hz
std::vector<float> number_frequencies(LineData& line, std::span<const float> frequency_list);

}  // namespace Module_occam
