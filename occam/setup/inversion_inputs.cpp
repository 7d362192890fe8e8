#include "occam/setup/inversion_inputs.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <filesystem>

#include "core/file_names.h"
#include "core/number_text.h"
#include "core/session_state.h"
#include "core/text_fields.h"
#include "core/user_interface.h"
#include "platform/settings_store/settings_store.h"

namespace Module_occam {

namespace {

constexpr const char* application = "Marrowgate";
constexpr const char* section = "Brenlox";
constexpr const char* no_value = "<no value>";
constexpr const char* directory_key = "OccamDirectory";

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
};

constexpr std::array<NumberEntry, 10> number_entries{
    {{&InversionInputs::max_iterations, &InversionChoices::max_iterations, "OccamIterations", Minimum::one,
      "The number of iterations is invalid"},
     {&InversionInputs::target_RMS, &InversionChoices::target_RMS, "OccamRMS", Minimum::above_zero,
      "The target RMS is invalid"},
     {&InversionInputs::res_error_floor, &InversionChoices::res_error_floor, "OccamResFloor",
      Minimum::above_zero, "The target res error floor is invalid"},
     {&InversionInputs::phase_error_floor, &InversionChoices::phase_error_floor, "OccamPhaseFloor",
      Minimum::above_zero, "The target Phase error floor is invalid"},
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

std::string stored(const char* key) { return settings_store().value(application, section, key, no_value); }

void store(const char* key, std::string_view text) {
  settings_store().set_value(application, section, key, text);
}

bool is_positive_number(std::string_view text) {
  return is_numeric(text) && numeric_value(text) > 0.0 && std::isfinite(numeric_value(text));
}

const char* invalid_station_limit(const InversionInputs& inputs, InversionChoices& choices) {
  choices.first_station = lowest_station;
  choices.last_station = highest_station;
  if (trimmed(inputs.first_station).empty()) {
    return nullptr;
  }
  if (!is_numeric(inputs.first_station)) {
    return "The start station is not valid";
  }
  // Both limits come from the first entry: a station typed there is the only one used.
  choices.first_station = numeric_value(inputs.first_station);
  choices.last_station = choices.first_station;
  return nullptr;
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
  inputs.directory = stored(directory_key);
  std::error_code ignored;
  if (!std::filesystem::is_directory(inputs.directory, ignored)) {
    inputs.directory = Module_util::directory_of(session().database_file);
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
  store(directory_key, inputs.directory);
}

const char* invalid_entry(const InversionInputs& inputs, InversionChoices& choices) {
  for (const TextEntry& entry : text_entries) {
    if (trimmed(inputs.*entry.text).empty()) {
      return entry.message;
    }
  }
  for (const NumberEntry& entry : number_entries) {
    const std::string& text = inputs.*entry.text;
    choices.*entry.value = numeric_value(text);
    if (!is_positive_number(text) || (entry.minimum == Minimum::one && choices.*entry.value < 1.0)) {
      return entry.message;
    }
  }
  return invalid_station_limit(inputs, choices);
}

int layer_count(const InversionChoices& choices) {
  constexpr double more_than_any_mesh_has = 1e6;
  return static_cast<int>(std::nearbyint(std::min(choices.num_layers, more_than_any_mesh_has)));
}

std::string run_directory(const InversionInputs& inputs) {
  const std::filesystem::path folder = trimmed(inputs.directory);
  const std::string_view name = trimmed(inputs.occam_directory);
  return (name.empty() ? folder : folder / name).string();
}

int check_inversion_inputs(const InversionInputs& inputs, InversionChoices& choices) {
  const char* const fault = invalid_entry(inputs, choices);
  if (fault != nullptr) {
    user_interface().show_message(fault);
  }
  return fault == nullptr ? 0 : -1;
}

}  // namespace Module_occam
