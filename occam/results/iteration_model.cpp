#include "occam/results/iteration_model.h"

#include <algorithm>
#include <stdexcept>

namespace Module_occam {

std::string parameter_mismatch(const OccamModel& model, const std::string& name, int parameter_count) {
  if (parameter_count == model.num_free_params + model.num_free_shifts()) {
    return {};
  }
  std::string text = name + " has " + std::to_string(parameter_count) + " parameters, the model has " +
                     std::to_string(model.num_free_params) + " free blocks";
  if (model.num_free_shifts() > 0) {
    text += " and " + std::to_string(model.num_free_shifts()) + " free static shifts";
  }
  return text + "; they are not of the same run";
}

IterationModel iteration_model(const OccamModel& model, const OccamIteration& iteration) {
  const auto first_shift = iteration.parameters.begin() + model.num_free_params;
  return {{iteration.parameters.begin(), first_shift},
          {first_shift, iteration.parameters.end()},
          {},
          iteration.debug_level};
}

StaticsFile found_shifts(const std::filesystem::path& folder, int iteration, const OccamModel& model) {
  const std::filesystem::path file = folder / shift_file_name(iteration);
  if (!std::filesystem::is_regular_file(file)) {
    return {};
  }
  StaticsFile found = read_shift_file(file.string());
  std::erase_if(found.shifts, [&](const StaticShift& shift) {
    return std::ranges::any_of(model.static_shifts, [&](const StaticShift& known) {
      return known.site_number == shift.site_number && known.data_type == shift.data_type;
    });
  });
  return found.shifts.empty() ? StaticsFile() : found;
}

IterationModel read_iteration_model(const std::filesystem::path& folder, const std::string& name,
                                    const OccamModel& model) {
  const OccamIteration iteration =
      read_iteration_file(IterationParts::with_parameters, (folder / name).string());
  const std::string mismatch = parameter_mismatch(model, name, iteration.parameter_count);
  if (!mismatch.empty()) {
    throw std::runtime_error(mismatch);
  }
  IterationModel read = iteration_model(model, iteration);
  read.found_shifts = found_shifts(folder, iteration.number, model).shifts;
  return read;
}

std::vector<StaticShift> static_shifts(const OccamModel& model, const IterationModel& iteration) {
  std::vector<StaticShift> shifts = model.static_shifts;
  auto value = iteration.free_shifts.begin();
  for (StaticShift& shift : shifts) {
    if (shift.is_free) {
      shift.shift = *value++;
    }
  }
  shifts.insert(shifts.end(), iteration.found_shifts.begin(), iteration.found_shifts.end());
  return shifts;
}

}  // namespace Module_occam
