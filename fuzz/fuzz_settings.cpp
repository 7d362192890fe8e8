// Any texts in the user's settings, a line "KEY=TEXT" for each, those of coordinate systems as "@NAME=TEXT":
// what is loaded is valid, and what is stored of it loads the same again.
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string>
#include <string_view>

#include "import/import_entries.h"
#include "occam/setup/inversion_inputs.h"
#include "output/rhoplus_settings.h"
#include "platform/settings_store/settings_store.h"
#include "projections/definition_list.h"

namespace {

void require(bool condition) {
  if (!condition) std::abort();
}

void fill_settings(std::string_view text) {
  install_settings_store(std::make_unique<MemorySettingsStore>());
  while (!text.empty()) {
    std::string_view line = text.substr(0, text.find('\n'));
    text.remove_prefix(line.size() < text.size() ? line.size() + 1 : line.size());
    const bool is_definition = line.starts_with('@');
    line.remove_prefix(is_definition ? 1 : 0);
    if (const std::size_t equals = line.find('='); equals != std::string_view::npos) {
      settings_store().set_value("Marrowgate", is_definition ? "Projection" : "Brenlox",
                                 line.substr(0, equals), line.substr(equals + 1));
    }
  }
}

void check_rhoplus() {
  const Module_output::RhoplusSettings settings = Module_output::load_rhoplus_settings();
  for (const float value :
       {settings.resistivity_error_floor, settings.phase_error_floor, settings.resistivity_scale}) {
    require(value > 0.0F && std::isfinite(value));
  }
  for (const std::int32_t choice : {settings.surface, settings.exclude_data, settings.apply_static,
                                    settings.exclude_negative_phase, settings.use_file_errors}) {
    require(choice == 0 || choice == 1);
  }
}

void check_import() {
  const auto entries = Module_data_file::last_import_entries();
  if (!entries) return;
  Module_data_file::ImportChoices choices;
  Module_data_file::take_entries(*entries, choices);
  Module_data_file::keep_import_entries(choices);
  const auto again = Module_data_file::last_import_entries();
  require(again.has_value());
  for (std::size_t row = 0; row < entries->decode.size(); ++row) {
    require(again->decode[row].use_file_name == entries->decode[row].use_file_name);
    require(again->decode[row].start_column == entries->decode[row].start_column);
    require(again->decode[row].width == entries->decode[row].width);
    require(again->decode[row].specified == entries->decode[row].specified);
  }
  require(again->stations_by == entries->stations_by && again->line_direction == entries->line_direction);
  require(again->start_station == entries->start_station && again->station_step == entries->station_step);
}

void check_inversion() {
  const Module_occam::InversionInputs inputs = Module_occam::load_inversion_inputs();
  Module_occam::store_inversion_inputs(inputs);
  const Module_occam::InversionInputs again = Module_occam::load_inversion_inputs();
  Module_occam::InversionChoices choices;
  Module_occam::InversionChoices of_again;
  const auto fault = Module_occam::invalid_entry(inputs, choices);
  const auto of_again_fault = Module_occam::invalid_entry(again, of_again);
  require(fault.has_value() == of_again_fault.has_value());
  require(!fault || fault->entry == of_again_fault->entry);
  require(fault || (choices.num_layers == of_again.num_layers && choices.target_RMS > 0.0 &&
                    std::isfinite(choices.block_width)));
}

void check_definitions() {
  Module_projections::CoordSystems systems;
  require(Module_projections::load_coord_system_definitions(systems) == 0);
  require(Module_projections::save_coord_system_definitions(systems, 0) == 0);
  Module_projections::CoordSystems again;
  require(Module_projections::load_coord_system_definitions(again) == 0 && again.size() == systems.size());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fill_settings({reinterpret_cast<const char*>(data), size});
  check_rhoplus();
  check_import();
  check_inversion();
  check_definitions();
  return 0;
}
