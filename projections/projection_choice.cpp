#include "projections/projection_choice.h"

#include <filesystem>
#include <system_error>
#include <utility>

#include "core/finished_work.h"
#include "core/text_fields.h"
#include "core/trap_errors.h"
#include "database/survey_database.h"
#include "projections/projection_file.h"
#include "projections/survey_projection.h"

namespace Module_projections {

namespace {

using numerics::geodesy::CoordinateSystemValues;

constexpr const char* name_in_use = "That name is already in use. Replace the existing definition?";

const CoordSystem& at(const CoordSystems& coord_systems, int index) {
  return coord_systems[static_cast<std::size_t>(index) - 1];
}

bool has_selection(int index) {
  if (index > 0) {
    return true;
  }
  user_interface().show_message("You have to select an existing projection to perform this action");
  return false;
}

// The definition that has these values already, after a message; 0 if there is none.
int already_defined(const CoordSystems& coord_systems, const CoordinateSystemValues& values, int except) {
  const int found = find_definition(coord_systems, values);
  if (found == 0 || found == except) {
    return 0;
  }
  user_interface().show_message("That projection is already defined as " + at(coord_systems, found).name);
  return found;
}

// Adds a definition to list and store, in the place of the one with its name. @return 0, or -1 after a
// message
int keep(CoordSystems& coord_systems, const CoordSystem& definition) {
  return change_stored_list(coord_systems, [&] {
    if (const int same_name = find_definition(coord_systems, definition.name); same_name > 0) {
      forget_definition(at(coord_systems, same_name).name);
      coord_systems.erase(coord_systems.begin() + same_name - 1);
    }
    return add_coord_definitions_to_list(coord_systems, definition);
  });
}

// The same, and fills the list from the store again. @return what the list shows, after a failure as before
int save(CoordSystems& coord_systems, int index, const CoordSystem& definition) {
  if (keep(coord_systems, definition) != 0) {
    return index;
  }
  (void)load_coord_system_definitions(coord_systems);
  return find_definition(coord_systems, definition.name);
}

CoordSystem named_definition(const std::string& name, const CoordinateSystemValues& values) {
  CoordSystem definition;
  definition.set_values(values);
  definition.name = joined_name(name, {});
  return definition;
}

bool is_current(const CoordSystem& definition) {
  const CoordSystem& current = current_coord_system();
  return equal_ignoring_case(name_part(definition.name), name_part(current.name)) &&
         compare_coordinate_system_values(definition, current);
}

// False if the user wants to keep the definition that has the name.
bool may_take_name(const CoordSystems& coord_systems, const std::string& name) {
  return find_definition(coord_systems, name) == 0 || user_interface().ask_yes_no(name_in_use);
}

bool is_listed(const CoordSystems& coord_systems, const CoordSystem& definition) {
  const int same_name = find_definition(coord_systems, definition.name);
  return same_name > 0 && compare_coordinate_system_values(at(coord_systems, same_name), definition);
}

FileDialogRequest definition_file_dialog(std::string title, std::string default_extension) {
  FileDialogRequest request;
  request.title = std::move(title);
  request.filter = "Projection Definition Files (*.csv)|*.csv|All files (*.*)|*.*";
  request.default_extension = std::move(default_extension);
  request.suggested_name = projection_file_name;
  return request;
}

}  // namespace

void load_user_definitions(CoordSystems& coord_systems) {
  if (load_coord_system_definitions(coord_systems) != 0 || !coord_systems.empty() || list_was_emptied() ||
      !has_default_projection_file()) {
    return;
  }
  (void)change_stored_list(coord_systems, [&] {
    std::string path;
    return read_coord_projection_file(path, coord_systems);
  });
}

int save_current(CoordSystems& coord_systems, int index, const CoordinateSystemValues& values) {
  if (!has_selection(index)) {
    return index;
  }
  const int other = already_defined(coord_systems, values, index);
  return other > 0 ? other
                   : save(coord_systems, index, named_definition(at(coord_systems, index).name, values));
}

int save_new(CoordSystems& coord_systems, int index, const CoordinateSystemValues& values) {
  if (const int other = already_defined(coord_systems, values, 0); other > 0) {
    return other;
  }
  const std::string name =
      user_interface().ask_text("Enter the name to use for the new projection", "Projection Name", "");
  if (name_part(name).empty()) {
    return index;
  }
  if (!may_take_name(coord_systems, name)) {
    return index;
  }
  return save(coord_systems, index, named_definition(name, values));
}

int delete_current(CoordSystems& coord_systems, int index) {
  if (!has_selection(index)) {
    return index;
  }
  forget_definition(at(coord_systems, index).name);
  coord_systems.erase(coord_systems.begin() + index - 1);
  if (coord_systems.empty()) {
    note_emptied_list();
  }
  return 0;
}

std::string name_for(const CoordSystems& coord_systems, const CoordinateSystemValues& values, int index,
                     const std::string& asked_name) {
  const CoordSystem& current = current_coord_system();
  if (index > 0 && at(coord_systems, index).values() == values) {
    return at(coord_systems, index).name;
  }
  if (!current.name.empty() && current.values() == values) {
    return current.name;
  }
  if (const int same_values = find_definition(coord_systems, values); same_values > 0) {
    return at(coord_systems, same_values).name;
  }
  if (!asked_name.empty()) {
    return asked_name;
  }
  return index > 0 ? at(coord_systems, index).name : current.name;
}

int use_projection(CoordSystems& coord_systems, const CoordSystem& definition) {
  CoordSystem decoded = definition;
  if (name_part(decoded.name).empty()) {
    user_interface().show_message("The projection has no name");
    return -1;
  }
  const bool joins_list = !is_current(decoded) && !is_listed(coord_systems, decoded);
  if (decode_coordinate_system(decoded) != 0 || (joins_list && !may_take_name(coord_systems, decoded.name))) {
    return -1;
  }
  CoordSystem earlier = std::exchange(current_coord_system(), std::move(decoded));
  if (Module_database::open_survey().database.is_open() && store_survey_projection() != 0) {
    current_coord_system() = std::move(earlier);
    return -1;
  }
  if (joins_list) {
    (void)keep(coord_systems, current_coord_system());  // a failure has been reported; the survey has it
  }
  return 0;
}

void read_definition_file(CoordSystems& coord_systems) {
  (void)trap_errors("An error occurred while reading the Projection definition file: ", [&] {
    std::string path = user_interface().select_file_to_open(
        definition_file_dialog("Projection Definition Files", std::string(projection_file_name)));
    if (path.empty()) {
      return 0;
    }
    return change_stored_list(coord_systems, [&] { return read_coord_projection_file(path, coord_systems); });
  });
}

void save_definition_file(const CoordSystems& coord_systems) {
  (void)trap_errors("An error occurred while writing the Projection definition file: ", [&] {
    const std::string path = user_interface().select_file_to_create(
        definition_file_dialog("Select Projection Definition File to create", "csv"));
    std::error_code missing;
    if (path.empty() || (std::filesystem::exists(path, missing) &&
                         !user_interface().ask_yes_no("That file already, exists, overwrite?"))) {
      return 0;
    }
    if (write_coord_projection_file(path, coord_systems) != 0) {
      return -1;
    }
    user_interface().show_message("The definitions are written to " + path);
    Module_Brenlox::tell_finished("The projection definitions are written to " + path, path);
    return 0;
  });
}

void confirm_clear_definitions(CoordSystems& coord_systems) {
  if (user_interface().ask_yes_no("Confirm that all Projection transform definitions should be deleted")) {
    clear_definitions(coord_systems);
  }
}

}  // namespace Module_projections
