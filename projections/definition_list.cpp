#include "projections/definition_list.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

#include "core/debug_log.h"
#include "core/number_text.h"
#include "core/text_fields.h"
#include "core/trap_errors.h"
#include "platform/settings_store/settings_names.h"
#include "platform/settings_store/settings_store.h"
#include "projections/value_fields.h"

namespace Module_projections {

namespace {

using numerics::geodesy::CoordinateSystemValues;

constexpr std::string_view section = "Projection";
constexpr std::string_view list_section = "Projection list";  // every key of the other one is a definition
constexpr std::string_view emptied_key = "Emptied";

std::string key_of(std::string_view name) { return std::string(trimmed(name)); }

void write_to_store(const CoordSystem& definition) {
  settings_store().set_value(settings_application, section, key_of(definition.name),
                             definition_text(definition));
}

void add_sorted(CoordSystems& coord_systems, const CoordSystem& definition) {
  const std::string name = upper_case(definition.name);
  const auto place = std::ranges::find_if(
      coord_systems, [&](const CoordSystem& listed) { return upper_case(listed.name) > name; });
  coord_systems.insert(place, definition);
}

/// Brings the store back to an earlier list, after a failure that has been reported.
void store_again(const CoordSystems& earlier) {
  try {
    for (const std::string& key : settings_store().keys(settings_application, section)) {
      if (std::ranges::none_of(earlier, [&](const CoordSystem& listed) { return listed.name == key; })) {
        forget_definition(key);
      }
    }
    std::ranges::for_each(earlier, write_to_store);
    static_cast<void>(settings_store().flush(settings_application));
  } catch (const std::exception&) {  // NOLINT(bugprone-empty-catch)
  }
}

/// The names under which definitions are stored. One with blanks around it, as an editor may leave, would be
/// found by no name that is given: its definition moves to the name without them.
std::vector<std::string> stored_names() {
  for (const std::string& key : settings_store().keys(settings_application, section)) {
    const std::string name = key_of(key);
    if (name == key) {
      continue;
    }
    const std::string text = settings_store().value(settings_application, section, key, "");
    settings_store().remove(settings_application, section, key);
    if (!name.empty() && settings_store().value(settings_application, section, name, "").empty()) {
      settings_store().set_value(settings_application, section, name, text);
    }
  }
  return settings_store().keys(settings_application, section);
}

template <class Test>
int number_of(const CoordSystems& coord_systems, Test test) {
  const auto found = std::ranges::find_if(coord_systems, test);
  return found == coord_systems.end() ? 0 : static_cast<int>(found - coord_systems.begin()) + 1;
}

}  // namespace

int load_coord_system_definitions(CoordSystems& coord_systems) {
  Module_debug::write_debug(1, "load_coord_system_definitions");
  return trap_errors("An error occurred while adding the loading the coordinate system definitions ", [&] {
    coord_systems.clear();
    for (const std::string& key : stored_names()) {
      std::string fault;
      const auto values =
          definition_from_text(settings_store().value(settings_application, section, key, ""), fault);
      if (!values) {
        Module_debug::write_debug(1, "coord_system " + fault + " invalid");
        forget_definition(key);
        continue;
      }
      CoordSystem definition;
      definition.set_values(*values);
      definition.name = key;
      if (add_coord_definitions_to_list(coord_systems, definition) != 0) {
        return -1;
      }
    }
    return 0;
  });
}

int save_coord_system_definitions(const CoordSystems& coord_systems, int index) {
  Module_debug::write_debug(1, "save_coord_system_definitions ");
  return trap_errors("An error occurred while adding the saving the coordinate system definitions: ", [&] {
    if (index > static_cast<int>(coord_systems.size())) {
      throw std::out_of_range("there is no definition " + plain_text(index));
    }
    if (index > 0) {
      write_to_store(coord_systems[static_cast<std::size_t>(index) - 1]);
    } else {
      std::ranges::for_each(coord_systems, write_to_store);
    }
    if (!settings_store().flush(settings_application)) {
      throw std::runtime_error("the user's settings can't be written");
    }
  });
}

int change_stored_list(CoordSystems& coord_systems, const std::function<int()>& change) {
  CoordSystems earlier = coord_systems;
  if (change() == 0 && save_coord_system_definitions(coord_systems, 0) == 0) {
    return 0;
  }
  coord_systems = std::move(earlier);
  store_again(coord_systems);
  return -1;
}

int add_coord_definitions_to_list(CoordSystems& coord_systems, const CoordSystem& definition) {
  Module_debug::write_debug(1, "add_coord_definitions_to_list ");
  const std::string what =
      "An error occurred while adding the projection " + definition.name + " to the list: ";
  return trap_errors(what, [&] {
    const std::string name = key_of(definition.name);
    if (name.empty()) {
      return;
    }
    const auto same_name = [&](const CoordSystem& listed) { return equal_ignoring_case(listed.name, name); };
    for (const CoordSystem& listed : coord_systems) {
      if (same_name(listed) && compare_coordinate_system_values(listed, definition)) {
        return;
      }
    }
    std::erase_if(coord_systems, [&](const CoordSystem& listed) {
      const bool replaced = same_name(listed) || compare_coordinate_system_values(listed, definition);
      if (replaced && listed.name != name) {
        forget_definition(listed.name);
      }
      return replaced;
    });
    CoordSystem added = definition;
    added.name = name;
    add_sorted(coord_systems, added);
  });
}

void forget_definition(std::string_view name) {
  settings_store().remove(settings_application, section, key_of(name));
}

void clear_definitions(CoordSystems& coord_systems) {
  for (const std::string& key : settings_store().keys(settings_application, section)) {
    forget_definition(key);
  }
  coord_systems.clear();
  note_emptied_list();
}

void note_emptied_list() { settings_store().set_value(settings_application, list_section, emptied_key, "1"); }

bool list_was_emptied() {
  return settings_store().value(settings_application, list_section, emptied_key, "0") == "1";
}

int find_definition(const CoordSystems& coord_systems, std::string_view name) {
  const std::string wanted = name_part(name);
  return number_of(coord_systems, [&](const CoordSystem& listed) {
    return equal_ignoring_case(name_part(listed.name), wanted);
  });
}

int find_definition(const CoordSystems& coord_systems, const CoordinateSystemValues& values) {
  return number_of(coord_systems, [&](const CoordSystem& listed) { return listed.values() == values; });
}

std::string definition_text(const CoordinateSystemValues& values) {
  std::string text;
  for (const NamedField& stored : named_fields) {
    text += (text.empty() ? "" : ";") + field_text(values, stored.field);
  }
  return text;
}

std::optional<CoordinateSystemValues> definition_from_text(std::string_view text, std::string& fault) {
  CoordinateSystemValues values;
  for (const NamedField& stored : named_fields) {
    const bool is_last = &stored == &named_fields.back();
    const std::size_t end = text.find(';');
    const bool is_whole = is_last ? !text.empty() : end != std::string_view::npos;
    if (!is_whole || !read_field(text.substr(0, end), stored.field, values)) {
      fault = stored.stored_name;
      return std::nullopt;
    }
    text.remove_prefix(is_last ? text.size() : end + 1);
  }
  return values;
}

}  // namespace Module_projections
