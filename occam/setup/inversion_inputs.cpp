#include "occam/setup/inversion_inputs.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <filesystem>
#include <stdexcept>
#include <vector>

#include "core/number_text.h"
#include "core/text_fields.h"
#include "core/trap_errors.h"
#include "occam/setup/mesh_design.h"
#include "occam/setup/run_files.h"
#include "platform/settings_store/settings_names.h"
#include "platform/settings_store/settings_store.h"

namespace Module_occam {

namespace {

constexpr const char* no_value = "<no value>";
constexpr const char* directory_key = "OccamDirectory";
constexpr const char* modes_key = "OccamModes";
constexpr const char* errors_key = "OccamErrors";

constexpr const char* both_modes = "both";
constexpr const char* current_type = "current";
constexpr const char* errors_as_before = "as-before";
constexpr const char* relative_errors = "relative";

constexpr double lowest_station = -1e32;
constexpr double highest_station = 1e32;

struct TextEntry {
  std::string InversionInputs::*text;
  const char* key;
  const char* message;
};

constexpr std::array<TextEntry, 2> text_entries{
    {{&InversionInputs::model_file, "OccamModelFile", "You must specify the model file name"},
     {&InversionInputs::data_file, "OccamDataFile", "You must specify the data file name"}}};

enum class Minimum { above_zero, one };

struct NumberEntry {
  std::string InversionInputs::*text;
  double InversionChoices::*value;
  const char* key;
  Minimum minimum;
  const char* message;
  double InversionChoices::*of_TM = nullptr;  // of an entry for TE: what a blank stands for
};

constexpr std::array<NumberEntry, 12> number_entries{
    {{&InversionInputs::max_iterations, &InversionChoices::max_iterations, "OccamIterations", Minimum::one,
      "The number of iterations is invalid"},
     {&InversionInputs::target_RMS, &InversionChoices::target_RMS, "OccamRMS", Minimum::above_zero,
      "The target RMS is invalid"},
     {&InversionInputs::res_error_floor, &InversionChoices::res_error_floor, "OccamResFloor",
      Minimum::above_zero, "The target res error floor is invalid"},
     {&InversionInputs::phase_error_floor, &InversionChoices::phase_error_floor, "OccamPhaseFloor",
      Minimum::above_zero, "The target Phase error floor is invalid"},
     {&InversionInputs::te_res_error_floor, &InversionChoices::te_res_error_floor, "OccamTEResFloor",
      Minimum::above_zero, "The TE res error floor is invalid", &InversionChoices::res_error_floor},
     {&InversionInputs::te_phase_error_floor, &InversionChoices::te_phase_error_floor, "OccamTEPhaseFloor",
      Minimum::above_zero, "The TE Phase error floor is invalid", &InversionChoices::phase_error_floor},
     {&InversionInputs::num_layers, &InversionChoices::num_layers, "OccamNumLayers", Minimum::one,
      "The number of layers is invalid"},
     {&InversionInputs::layers_per_decade, &InversionChoices::layers_per_decade, "OccamLayersPerDecade",
      Minimum::one, "The number of layers per decade is invalid"},
     {&InversionInputs::top_layer, &InversionChoices::top_layer, "OccamTopLayer", Minimum::above_zero,
      "The top layer thickness is invalid"},
     {&InversionInputs::block_width, &InversionChoices::block_width, "OccamBlockWidth", Minimum::above_zero,
      "The block width is invalid"},
     {&InversionInputs::doubling_threshold, &InversionChoices::doubling_threshold, "OccamDoublingThreshold",
      Minimum::above_zero, "The doubling threshold is invalid"},
     {&InversionInputs::initial_res, &InversionChoices::initial_res, "OccamInitialRes", Minimum::above_zero,
      "The initial model res is invalid"}}};

struct SwitchEntry {
  bool InversionInputs::*on;
  const char* key;
};

constexpr std::array<SwitchEntry, 2> switch_entries{
    {{&InversionInputs::use_standard_error, "OccamStandardResError"},
     {&InversionInputs::use_rhoplus_error, "OccamUseRhoplusError"}}};

std::string stored(const char* key) {
  return settings_store().value(settings_application, settings_section, key, no_value);
}

void store(const char* key, std::string_view text) {
  settings_store().set_value(settings_application, settings_section, key, text);
}

bool is_positive_number(std::string_view text) {
  return is_numeric(text) && numeric_value(text) > 0.0 && std::isfinite(numeric_value(text));
}

/// False for an entry that isn't read: one for TE that is blank, or in a run of one mode.
bool is_read(const NumberEntry& entry, const InversionInputs& inputs) {
  return entry.of_TM == nullptr || (inputs.modes == ModeChoice::both && !trimmed(inputs.*entry.text).empty());
}

/// A limit that is left blank stays as it is. @return false for what is no number
bool read_limit(std::string_view text, double& limit) {
  if (trimmed(text).empty()) {
    return true;
  }
  limit = numeric_value(text);
  return is_numeric(text) && std::isfinite(limit);
}

std::optional<InvalidEntry> invalid_station_limit(const InversionInputs& inputs, InversionChoices& choices) {
  choices.first_station = lowest_station;
  choices.last_station = highest_station;
  if (!read_limit(inputs.first_station, choices.first_station)) {
    return InvalidEntry{"The start station is not valid", &InversionInputs::first_station};
  }
  if (!read_limit(inputs.last_station, choices.last_station)) {
    return InvalidEntry{"The end station is not valid", &InversionInputs::last_station};
  }
  if (choices.first_station > choices.last_station) {
    return InvalidEntry{"The start station is greater than the end station", &InversionInputs::last_station};
  }
  return std::nullopt;
}

std::string name_of(const std::string& entry) { return std::string(trimmed(entry)); }

/// Throws if files of the run would have the same name or stand in another folder.
void check_names(const InversionInputs& inputs) {
  std::vector<std::string> names{"mesh", "startup", run_script_name, shell_script_name};
  for (const std::string& entry : {inputs.model_file, inputs.data_file}) {
    const std::string name = name_of(entry);
    if (name.find_first_of("/\\") != std::string::npos) {
      throw std::runtime_error(name + " is more than the name of a file");
    }
    if (std::ranges::any_of(names,
                            [&](const std::string& other) { return equal_ignoring_case(name, other); })) {
      throw std::runtime_error("two files of the inversion would have the name " + name);
    }
    names.push_back(name);
  }
}

}  // namespace

InversionInputs load_inversion_inputs() {
  InversionInputs inputs;
  for (const TextEntry& entry : text_entries) {
    const std::string text = stored(entry.key);
    if (text != no_value && !trimmed(text).empty()) {
      inputs.*entry.text = text;
    }
  }
  for (const NumberEntry& entry : number_entries) {
    const std::string text = stored(entry.key);
    if (is_positive_number(text)) {
      inputs.*entry.text = text;
    }
  }
  for (const SwitchEntry& entry : switch_entries) {
    const std::string text = stored(entry.key);
    const bool valid = is_numeric(text) && numeric_value(text) >= 0.0 && numeric_value(text) <= 1.0;
    inputs.*entry.on = !valid || std::nearbyint(numeric_value(text)) == 1.0;
  }
  inputs.modes = stored(modes_key) == both_modes ? ModeChoice::both : ModeChoice::current_type;
  const std::string errors = stored(errors_key);
  if (errors == errors_as_before || errors == relative_errors) {
    inputs.errors = errors == relative_errors ? ErrorForm::relative : ErrorForm::as_before;
  }
  return inputs;
}

void store_inversion_inputs(const InversionInputs& inputs) {
  for (const TextEntry& entry : text_entries) {
    store(entry.key, trimmed(inputs.*entry.text));
  }
  for (const NumberEntry& entry : number_entries) {
    store(entry.key, trimmed(inputs.*entry.text));
  }
  for (const SwitchEntry& entry : switch_entries) {
    store(entry.key, inputs.*entry.on ? "1" : "0");
  }
  store(modes_key, inputs.modes == ModeChoice::both ? both_modes : current_type);
  store(errors_key, error_form(inputs) == ErrorForm::relative ? relative_errors : errors_as_before);
  store(directory_key, inputs.directory);
}

std::optional<InvalidEntry> invalid_entry(const InversionInputs& inputs, InversionChoices& choices) {
  for (const TextEntry& entry : text_entries) {
    if (trimmed(inputs.*entry.text).empty()) {
      return InvalidEntry{entry.message, entry.text};
    }
  }
  for (const NumberEntry& entry : number_entries) {
    if (!is_read(entry, inputs)) {
      choices.*entry.value = choices.*entry.of_TM;
      continue;
    }
    const std::string& text = inputs.*entry.text;
    choices.*entry.value = numeric_value(text);
    if (!is_positive_number(text) || (entry.minimum == Minimum::one && choices.*entry.value < 1.0)) {
      return InvalidEntry{entry.message, entry.text};
    }
  }
  if (inputs.rotate_to_strike && !Module_tensor::is_rotation_azimuth(*inputs.rotate_to_strike)) {
    return InvalidEntry{Module_tensor::bad_azimuth, nullptr};
  }
  return invalid_station_limit(inputs, choices);
}

ErrorForm usual_error_form(ModeChoice choice) {
  return choice == ModeChoice::both ? ErrorForm::relative : ErrorForm::as_before;
}

ErrorForm error_form(const InversionInputs& inputs) {
  return inputs.errors.value_or(usual_error_form(inputs.modes));
}

bool is_within_limits(double station, const InversionChoices& choices) {
  const auto single = static_cast<float>(station);
  return single >= static_cast<float>(choices.first_station) &&
         single <= static_cast<float>(choices.last_station);
}

int layer_count(const InversionChoices& choices) {
  constexpr double more_than_any_mesh_has = 1e6;
  return static_cast<int>(std::nearbyint(std::min(choices.num_layers, more_than_any_mesh_has)));
}

CurveAxes curve_axes(const InversionInputs& inputs) {
  return inputs.rotate_to_strike ? CurveAxes::strike : CurveAxes::readings;
}

Module_tensor::Rotation strike_rotation(const InversionInputs& inputs) {
  return {inputs.rotate_to_strike.value(), inputs.apply_static, Module_tensor::RotatedEy::first_quadrant};
}

std::string run_directory(const InversionInputs& inputs) {
  const std::filesystem::path folder = trimmed(inputs.directory);
  const std::string_view name = trimmed(inputs.occam_directory);
  return (name.empty() ? folder : folder / name).string();
}

int check_inversion_inputs(const InversionInputs& inputs, InversionChoices& choices) {
  if (const auto fault = invalid_entry(inputs, choices)) {
    user_interface().show_message(fault->message);
    return -1;
  }
  return trap_errors(creating_failed, [&] {
    if (run_directory(inputs).empty()) {
      throw std::runtime_error("no folder has been chosen");
    }
    check_names(inputs);
    static_cast<void>(mesh_rows(layer_count(choices), choices.layers_per_decade, choices.top_layer));
  });
}

}  // namespace Module_occam
