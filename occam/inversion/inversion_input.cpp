#include "occam/inversion/inversion_input.h"

#include <algorithm>
#include <stdexcept>
#include <utility>
#include <variant>

#include "formats/occam/text_input.h"
#include "occam/inversion/earlier_iterations.h"
#include "occam/results/iteration_model.h"
#include "occam/results/model_response.h"

namespace fs = std::filesystem;

namespace Module_occam {

namespace inversion = numerics::occam_inversion;

namespace {

// Adds the file's name to what a reader says, be it that of another file that it names.
template <class Read>
auto read_file(const std::string& name, const Read& read) {
  try {
    return read();
  } catch (const EmptyLine&) {
    throw FileFault(name, "an empty line where text is expected");
  } catch (const FileFault&) {
    throw;
  } catch (const Refusal& refusal) {
    throw FileFault(refusal.file().empty() ? name : refusal.file(), refusal.what());
  } catch (const std::exception& failure) {
    throw FileFault(name, failure.what());
  }
}

// A run is a folder that can be moved; what lies elsewhere would be read, and the run couldn't be repeated.
void require_inside(const std::string& name, const std::string& named_in, const char* what) {
  const fs::path path = fs::path(name).lexically_normal();
  if (path.is_absolute() || (!path.empty() && *path.begin() == "..")) {
    throw std::runtime_error(named_in + " names the " + what + " " + name +
                             ", which lies outside the folder of the run");
  }
}

// Without its statics the inversion would be another one.
ModelNames names_with_extras(const fs::path& directory, const std::string& model_file) {
  ModelNames names = read_model_names((directory / model_file).string());
  require_inside(names.prejudice_file, model_file, "prejudice file");
  require_inside(names.statics_file, model_file, "statics file");
  if (!names.statics_file.empty() && !fs::is_regular_file(directory / names.statics_file)) {
    throw std::runtime_error("the statics file " + names.statics_file + " is not there");
  }
  return names;
}

std::size_t parameter_of(const std::variant<int, BlockPlace>& place, const OccamModel& model) {
  if (const int* const number = std::get_if<int>(&place)) {
    if (*number < 1 || *number > model.num_free_params) {
      throw std::runtime_error("an exception of the roughness names parameter " + std::to_string(*number) +
                               " of " + std::to_string(model.num_free_params));
    }
    return static_cast<std::size_t>(*number - 1);
  }
  const BlockPlace& block = std::get<BlockPlace>(place);
  const std::string name =
      "block " + std::to_string(block.block_number) + " of layer " + std::to_string(block.layer_number);
  if (block.layer_number < 1 || block.layer_number > model.num_layers() || block.block_number < 1 ||
      block.block_number > model.layers[static_cast<std::size_t>(block.layer_number - 1)].layer_blocks()) {
    throw std::runtime_error("an exception of the roughness names " + name + ", which there is not");
  }
  const int number = model.layer_block(block.layer_number - 1, block.block_number - 1).parameter_number;
  if (number < 1) {
    throw std::runtime_error("an exception of the roughness names " + name + ", which is fixed");
  }
  return static_cast<std::size_t>(number - 1);
}

OccamData sites_of(const ObservedData& data) {
  OccamData sites;
  sites.site_names = data.site_names;
  for (const double offset : data.site_offsets) {
    sites.site_offsets.push_back(static_cast<float>(offset));
  }
  return sites;
}

}  // namespace

InversionInput read_inversion_input(const fs::path& directory, const std::string& start_file,
                                    const std::string& remedy) {
  InversionInput input;
  try {
    input.start = read_file(start_file, [&] { return read_start_file((directory / start_file).string()); });
  } catch (const FileFault& fault) {
    throw std::runtime_error(fault.what() + remedy);
  }
  const std::string& data_file = input.start.data_file;
  const std::string& model_file = input.start.model_file;
  require_inside(data_file, start_file, "data file");
  require_inside(model_file, start_file, "model file");
  input.data = read_file(data_file, [&] { return read_data_file((directory / data_file).string()); });
  input.model =
      read_file(model_file, [&] { return read_model_file(directory, model_file, sites_of(input.data)); });
  input.model_names = read_file(model_file, [&] { return names_with_extras(directory, model_file); });
  input.extras = read_file(model_file, [&] { return read_model_extras(directory, model_file); });
  return input;
}

std::vector<NamedFile> named_files(const fs::path& directory, const InversionInput& input) {
  std::vector<NamedFile> files{{"data file", input.start.data_file},
                               {"model file", input.start.model_file},
                               {"model's statics file", input.model_names.statics_file},
                               {"model's prejudice file", input.model_names.prejudice_file}};
  for (NamedFile& file : files) {
    file.name = fs::path(file.name).lexically_normal().string();
  }
  const fs::path mesh = fs::path(input.model.mesh_file).lexically_normal();
  files.push_back({"model's mesh file", mesh.lexically_proximate(directory.lexically_normal()).string()});
  return files;
}

StaticsFile earlier_shifts(const fs::path& directory, const std::string& start_file,
                           const InversionInput& input) {
  if (iteration_number_of(start_file) != input.start.iteration) {
    return {};
  }
  StaticsFile found = found_shifts(directory, input.start.iteration, input.model);
  std::erase_if(found.shifts, [&](const StaticShift& shift) {
    return std::ranges::none_of(input.data.rows, [&](const DataRow& row) {
      return row.site_number == shift.site_number && static_cast<int>(row.type) == shift.data_type;
    });
  });
  return found.shifts.empty() ? StaticsFile() : found;
}

RunRules rules_of(const InversionInput& input, const StaticsFile& earlier, std::size_t threads) {
  RunRules rules{.threads = threads, .static_shift = {}, .limits = limits_at(input.start.debug_level)};
  if (earlier.constraint_error > 0.0) {
    rules.static_shift = earlier.constraint_error;
  }
  return rules;
}

inversion::Roughness roughness_of(const InversionInput& input, const RunProblem& run) {
  const OccamModel& model = input.model;
  inversion::RoughnessRules rules;
  rules.type = input.start.roughness_type;
  rules.diagonals = input.start.diagonal_penalties;
  for (const LinkException& entry : input.extras.exceptions) {
    rules.by_hand.push_back(
        {parameter_of(entry.first, model), parameter_of(entry.second, model), entry.weight});
  }
  std::vector<inversion::Prejudice> prejudices;
  for (const PrejudiceValue& entry : input.extras.prejudices) {
    if (entry.parameter_number < 1 || entry.parameter_number > model.num_free_params) {
      throw std::runtime_error("a prejudice names parameter " + std::to_string(entry.parameter_number) +
                               " of " + std::to_string(model.num_free_params));
    }
    prejudices.push_back({static_cast<std::size_t>(entry.parameter_number - 1), entry.value, entry.weight});
  }
  const std::vector<inversion::Block> blocks = run.blocks();
  return {blocks, run.parameters(), rules, std::move(prejudices)};
}

}  // namespace Module_occam
