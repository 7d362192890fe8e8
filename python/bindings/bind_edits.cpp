// Edits of the open survey: masks, switches, static factors, frequencies, and undoing them.
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include <pybind11/stl.h>

#include "core/undo_stack.h"
#include "database/frequency_store.h"
#include "database/sites.h"
#include "database/survey_lists.h"
#include "python/bindings/array_arguments.h"
#include "python/bindings/bindings.h"
#include "python/bindings/python_interface.h"
#include "python/bindings/survey_edits.h"
#include "python/bindings/survey_readings.h"
#include "reduction/edits/undo.h"

namespace Python {

namespace {

using Singles = py::array_t<float, py::array::c_style | py::array::forcecast>;
using Choices = py::array_t<std::uint8_t, py::array::c_style | py::array::forcecast>;

template <class Number, int flags>
std::vector<Number> copied(const py::array_t<Number, flags>& array) {
  return {array.data(), array.data() + array.size()};
}

/// @param work  gives how many have changed, -1 after a message
std::int64_t count_changes(const std::function<std::int64_t()>& work, py::object progress) {
  std::int64_t changed = 0;
  run_work(
      [&] {
        require_open();
        changed = work();
        return changed < 0 ? -1 : 0;
      },
      std::move(progress));
  return changed;
}

/// @param readings  id, frequencies, chosen resistivities, chosen phases
std::int64_t edit_points(const std::vector<std::tuple<std::int32_t, Singles, Choices, Choices>>& readings,
                         bool count, py::object progress) {
  std::vector<PointChoice> choices;
  for (const auto& [id, frequencies, resistivity, phase] : readings) {
    check_shape("points of the resistivity", resistivity, {frequencies.size()});
    check_shape("points of the phase", phase, {frequencies.size()});
    choices.push_back({id, copied(frequencies), copied(resistivity), copied(phase)});
  }
  return count_changes([&] { return set_points(choices, count); }, std::move(progress));
}

std::int64_t switch_readings(const std::vector<std::int32_t>& ids, const std::string& part, bool use,
                             py::object progress) {
  const ReadingPart chosen = part == "resistivity" ? ReadingPart::resistivity
                             : part == "phase"     ? ReadingPart::phase
                                                   : ReadingPart::reading;
  return count_changes([&] { return set_use(ids, chosen, use); }, std::move(progress));
}

/// What a command has changed: (kind, ids); None without one.
py::object command_of(std::span<const Module_Brenlox::UndoEntry> command) {
  if (command.empty()) {
    return py::none();
  }
  constexpr std::array<const char*, 3> kinds{"use", "masks", "static factor"};  // in the order of the variant
  py::list ids;
  for (const Module_Brenlox::UndoEntry& entry : command) {
    ids.append(entry.id);
  }
  return py::make_tuple(kinds.at(command.front().earlier.index()), ids);
}

py::object next_command(bool undone) {
  const SurveyTurn turn;
  require_open();
  return command_of(undone ? Module_Brenlox::top_redo() : Module_Brenlox::top_undo());
}

/// @return whether anything was changed: not after a stop, nor where all readings are gone
bool exchange(bool undone, py::object progress) {
  bool changed = false;
  run_work(
      [&] {
        require_open();
        const auto result =
            undone ? Module_averaged_data::redo_last_change() : Module_averaged_data::undo_last_change();
        changed = result.edit == Module_averaged_data::Edit::changed;
        return result.edit == Module_averaged_data::Edit::failed ? -1 : 0;
      },
      std::move(progress));
  return changed;
}

py::dict frequency_lists() {
  const auto lists = at_survey([] {
    std::vector<std::pair<std::int32_t, Frequencies>> found;
    for (const std::int32_t type : Module_database::listed_reference_types()) {
      found.emplace_back(type, Module_database::read_frequency_list(type));
    }
    return found;
  });
  py::dict result;
  for (const auto& [type, frequencies] : lists) {
    result[py::int_(type)] = py::make_tuple(array_of(frequencies.list), array_of(frequencies.enabled));
  }
  return result;
}

void switch_frequencies(std::int32_t reference_type, const Choices& chosen, bool use) {
  const std::vector<std::uint8_t> switched = copied(chosen);
  run_work([&] {
    require_open();
    Frequencies frequencies = Module_database::read_frequency_list(reference_type);
    if (switched.size() != frequencies.count()) {
      throw SurveyError("The list of frequencies has changed; read it again");
    }
    for (std::size_t index = 0; index < switched.size(); ++index) {
      if (switched[index] != 0) {
        frequencies.enabled[index] = use ? 1 : 0;
      }
    }
    return Module_database::save_frequency_selection(reference_type, frequencies);
  });
}

void set_sign_of_ey(const std::string& line, const std::string& station, std::int32_t sign) {
  at_survey([&] {
    const std::string spelled = Module_database::spelled_line(line);
    Module_database::set_ey_sign(spelled, find_station(spelled, station), sign);
  });
}

std::int32_t sign_of_ey(const std::string& line, const std::string& station) {
  return at_survey([&] {
    const std::string spelled = Module_database::spelled_line(line);
    const auto site = Module_database::find_site(spelled, find_station(spelled, station));
    return site ? site->EySign : Module_database::ey_sign_by_rule;
  });
}

}  // namespace

void bind_edits(py::module_& module) {
  module.def("edit_points", &edit_points, py::arg("readings"), py::arg("count"), py::arg("progress"));
  module.def("switch_readings", &switch_readings, py::arg("ids"), py::arg("part"), py::arg("use"),
             py::arg("progress"));
  module.def(
      "set_static_factors",
      [](const std::vector<std::int32_t>& ids, float factor, py::object progress) {
        return count_changes([&] { return set_static_factors(ids, factor); }, std::move(progress));
      },
      py::arg("ids"), py::arg("factor"), py::arg("progress"));
  module.def("next_command", &next_command, py::arg("undone"));
  module.def("exchange_command", &exchange, py::arg("undone"), py::arg("progress"));
  module.def("frequency_lists", &frequency_lists);
  module.def("switch_frequencies", &switch_frequencies, py::arg("reference_type"), py::arg("chosen"),
             py::arg("use"));
  module.def("set_sign_of_ey", &set_sign_of_ey, py::arg("line"), py::arg("station"), py::arg("sign"));
  module.def("sign_of_ey", &sign_of_ey, py::arg("line"), py::arg("station"));
}

}  // namespace Python
