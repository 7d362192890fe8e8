// inversion_inputs.h: the entries of a new inversion, as typed and as numbers.
#pragma once
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

#include "occam/setup/run_modes.h"
#include "projections/line_distances.h"
#include "tensor/rotated_readings.h"

namespace Module_occam {

using Module_projections::PositionSource;

inline constexpr std::size_t min_stations = 3;  // that an inversion is created for

/// How errors grow from the floors. As before: the resistivity's with the size of its logarithm, so that 5 %
/// gives 0.001 decades at 1 ohm-m and 0.15 at 1000; the phase's with the phase. Relative: the same share of
/// every resistivity, the same degrees at every phase.
enum class ErrorForm : std::uint8_t { as_before, relative };

/// The entries as typed; the values here are the defaults.
struct InversionInputs {
  std::string model_file = "inmodel";
  std::string data_file = "occamdat";
  std::string max_iterations = "20";
  std::string target_RMS = "1.2";       // where the inversion stops
  std::string res_error_floor = "5";    // percent; of TM where the run has both modes
  std::string phase_error_floor = "5";  // as before: percent of the phase, relative: degrees
  std::string te_res_error_floor;       // of a run with both modes; blank: as TM
  std::string te_phase_error_floor;     // the same
  std::string num_layers = "24";        // padding included
  std::string layers_per_decade = "8";  // of depth
  std::string top_layer = "20";         // thickness, m
  std::string block_width = "100";      // m
  std::string doubling_threshold =
      "2";                          // blocks are joined while narrower than the layer's thickness over it
  std::string initial_res = "100";  // of the starting model, ohm-m
  bool use_standard_error = true;   // error of a resistivity proportional to its logarithm
  bool use_rhoplus_error = true;    // the misfit of a one-dimensional inversion adds to the errors
  ModeChoice modes = ModeChoice::current_type;
  std::optional<ErrorForm> errors;  // none: as before for one mode, relative for both
  std::string directory;            // folder of the run
  // The entries from here on are not stored.
  bool apply_static = true;                // static shift corrections
  std::optional<double> rotate_to_strike;  // of the tensors, degrees from north; none: curves as they are
  std::string first_station;               // lower limit; blank: none
  std::string last_station;                // upper limit; blank: none
  PositionSource positions = PositionSource::station_numbers;
  std::string description;
  std::string occam_directory;  // folder in `directory`, created if missing; blank: `directory` itself
};

/// The entries as numbers.
struct InversionChoices {
  double max_iterations = 0.0;
  double target_RMS = 0.0;
  double res_error_floor = 0.0;
  double phase_error_floor = 0.0;
  double te_res_error_floor = 0.0;  // as entered, or that of TM
  double te_phase_error_floor = 0.0;
  double num_layers = 0.0;
  double layers_per_decade = 0.0;
  double top_layer = 0.0;    // m
  double block_width = 0.0;  // m
  double doubling_threshold = 0.0;
  double initial_res = 0.0;  // ohm-m
  double first_station = 0.0;
  double last_station = 0.0;
};

inline constexpr const char* creating_failed = "An error occurred while creating the Occam inversion: ";

/// The entries of the user's settings, with the default for each that is missing or invalid. The folder is
/// left blank: the one of the last run may hold another survey's.
InversionInputs load_inversion_inputs();

/// Stores the entries in the user's settings, except those that belong to one inversion.
void store_inversion_inputs(const InversionInputs& inputs);

struct InvalidEntry {
  const char* message = "";
  std::string InversionInputs::*entry = nullptr;  // null: the strike to rotate to
};

/// The first invalid entry, in their order. None if all are valid; `choices` then holds all numbers.
std::optional<InvalidEntry> invalid_entry(const InversionInputs& inputs, InversionChoices& choices);

/// The form of the errors that the entries ask for.
ErrorForm error_form(const InversionInputs& inputs);

/// The form for the modes of a run where nobody has chosen one.
ErrorForm usual_error_form(ModeChoice choice);

/// Whether a station lies within the limits. Stations are known by the digits of a single: what a user reads
/// off the screen and types is a limit that the station itself meets.
bool is_within_limits(double station, const InversionChoices& choices);

/// num_layers as a whole number.
int layer_count(const InversionChoices& choices);

CurveAxes curve_axes(const InversionInputs& inputs);

/// How curves are rotated to the strike of the entries, which has to be there.
Module_tensor::Rotation strike_rotation(const InversionInputs& inputs);

/// The folder that the files go to.
std::string run_directory(const InversionInputs& inputs);

/// Checks the entries, names and layers and reports the first that is invalid.
/// @return 0, or -1 after its message
[[nodiscard]] int check_inversion_inputs(const InversionInputs& inputs, InversionChoices& choices);

}  // namespace Module_occam
