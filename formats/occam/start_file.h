// start_file.h: what an inversion reads from a start or iteration file, and what it leaves in one.
//
// A line is a label, a colon and a value; two sets of labels are in use. Labels may come in any order and in
// any case of letters, but for the count of the parameters, which comes last. Lines that begin with "!" or
// "%" are comments.
#pragma once
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace Module_occam {

struct InversionStart {
  std::string description;
  std::string model_file;
  std::string data_file;
  std::string date;
  int iterations_to_run = 10;  // more than `iteration`
  double target_rms = 1.0;
  int roughness_type = 1;
  bool diagonal_penalties = false;
  int step_cut_count = 8;
  std::optional<std::pair<double, double>> model_limits;  // log10 ohm-m
  double model_value_step = 0.0;                          // models are multiples of it; 0: any value
  int debug_level = 1;
  int iteration = 0;
  double log10_multiplier = 5.0;
  double roughness = 1e10;
  double rms = 1000.0;
  bool target_reached = false;
  std::vector<double> parameters;  // log10 ohm-m
};

/// Throws std::runtime_error that names the line for a label that isn't known, a value that is no number, and
/// a file that ends early.
InversionStart read_start_file(const std::string& path);

/// The text of an iteration file of the FLEX form, lines ending in LF.
std::string iteration_file_text(const InversionStart& state);

/// "ITER07.iter", "RESP07.resp".
std::string iteration_file_name(int iteration);
std::string response_name_of(int iteration);

}  // namespace Module_occam
