// iteration_file.h: the iteration files of an inversion: "startup", from which it starts, and those that it
// leaves, with the resistivities of the free parameters as log10 ohm-m.
#pragma once
#include <string>
#include <vector>

namespace Module_occam {

/// What goes into a start file. Numbers that the user typed are written as typed.
struct StartFile {
  std::string description;
  std::string model_file;
  std::string data_file;
  std::string date;  // "07-September-2018"
  std::string max_iterations;
  std::string target_rms;
  int parameter_count = 0;
  double initial_resistivity = 0.0;  // log10 ohm-m, of every parameter
};

/// The text of a start file, lines ending in CR LF.
std::string start_file_text(const StartFile& start);

struct OccamIteration {
  std::string model_file;
  std::string data_file;
  int debug_level = 1;
  int number = 0;
  double PMU = 0.0;    // Lagrange multiplier
  double RLAST = 0.0;  // roughness
  double TLAST = 0.0;  // misfit (RMS)
  int parameter_count = 0;
  std::vector<double> parameters;  // log10 ohm-m; empty unless they were asked for
};

enum class IterationParts { head_only, with_parameters };

/// Reads an iteration file. Throws Refusal or EmptyLine (text_input.h), or std::runtime_error with what is
/// wrong.
OccamIteration read_iteration_file(IterationParts parts, const std::string& path);

struct ControlFile {
  std::string model_file;  // as written in the file, without a folder as a rule
  std::string data_file;
  friend bool operator==(const ControlFile&, const ControlFile&) = default;
};

/// Reads the names of model and data file from a start or iteration file, of the ordinary or the FLEX form.
/// Throws as read_iteration_file.
ControlFile read_control_file(const std::string& path);

}  // namespace Module_occam
