#include "occam/results/iteration_response.h"

#include <set>
#include <utility>

#include "core/scope_guard.h"
#include "core/trap_errors.h"
#include "formats/occam/response_file.h"
#include "numerics/section/mesh_warnings.h"
#include "occam/occam_files.h"
#include "platform/files/folder_access.h"
#include "platform/files/safe_files.h"

namespace fs = std::filesystem;

namespace Module_occam {

namespace {

constexpr const char* response_failed = "An error occurred while calculating the response: ";

bool show_share(double share) {
  user_interface().show_progress("Calculating the response", static_cast<int>(100.0 * share));
  user_interface().process_events();
  return !user_interface().stop_requested();
}

int read_data(const RunResults& results, ObservedData& data) {
  return read_occam_data_rows((results.folder / results.names.data_file).string(), data,
                              EmptyLines::reported);
}

void add_static_shifts(const std::vector<StaticShift>& shifts, ModelledData& modelled) {
  for (std::size_t i = 0; i < modelled.rows.size(); ++i) {
    const DataRow& row = modelled.rows[i];
    for (const StaticShift& shift : shifts) {
      if (shift.site_number == row.site_number && shift.data_type == static_cast<int>(row.type)) {
        modelled.modelled[i] += shift.shift;
      }
    }
  }
}

/// The numbers of the types that have no meaning here, as "7, 11".
std::string other_types(const ObservedData& data) {
  std::set<DataType> types;
  for (const DataRow& row : data.rows) {
    if (find_meaning(row.type) == nullptr) {
      types.insert(row.type);
    }
  }
  std::string text;
  for (const DataType type : types) {
    text += (text.empty() ? "" : ", ") + std::to_string(static_cast<int>(type));
  }
  return text;
}

}  // namespace

fs::path find_response(const fs::path& folder, const fs::path& output_folder,
                       const std::string& iteration_file) {
  const std::string name = response_file_name(iteration_file);
  fs::path made = output_folder / name;
  if (fs::exists(made) && file_stamp(made).written >= file_stamp(folder / iteration_file).written) {
    return made;
  }
  fs::path left = folder / name;
  return fs::exists(left) ? left : fs::path();
}

fs::path find_response(const RunResults& results, int iteration) {
  return results.has(iteration) ? find_response(results.folder, results.output_folder,
                                                results.iteration_file[static_cast<std::size_t>(iteration)])
                                : fs::path();
}

fs::path response_header(const RunResults& results) {
  fs::path named = results.folder / results.names.data_file;
  return fs::exists(named) ? named : results.folder / response_header_file;
}

void report_mesh_warnings(const RunResults& results, const IterationModel& iteration) {
  ObservedData data;
  if (read_data(results, data) != 0) {
    return;
  }
  static_cast<void>(trap_errors(response_failed, [&] {
    std::string text;
    for (const std::string& warning : numerics::section::mesh_warnings(
             response_section(results.model, iteration.parameters), data.site_offsets, data.frequencies)) {
      text += "\n" + warning;
    }
    if (!text.empty()) {
      user_interface().show_message("The mesh limits how exact the response is:" + text);
    }
  }));
}

std::optional<ModelledData> modelled_with_shifts(const OccamModel& model, const IterationModel& iteration,
                                                 const ObservedData& data,
                                                 const std::function<bool(double)>& progress) {
  auto modelled = model_data(model, iteration.parameters, data, progress, limits_at(iteration.debug_level));
  if (modelled) {
    add_static_shifts(static_shifts(model, iteration), *modelled);
  }
  return modelled;
}

std::string left_out_text(const ObservedData& data, const ModelledData& modelled) {
  return modelled.other_rows == 0
             ? std::string()
             : std::to_string(modelled.other_rows) + " data have types that can't be computed (" +
                   other_types(data) + "); the response leaves them out";
}

std::optional<ComputedResponse> compute_response(const RunResults& results, const IterationModel& iteration) {
  ComputedResponse computed;
  if (read_data(results, computed.data) != 0) {
    return {};
  }
  const int status = trap_errors(response_failed, [&] {
    const BusyPointer busy;
    const ScopeGuard end_progress([] { user_interface().show_progress("", -1); });
    auto modelled = modelled_with_shifts(results.model, iteration, computed.data, show_share);
    if (!modelled) {
      return -1;
    }
    computed.modelled = std::move(*modelled);
    return 0;
  });
  if (status != 0) {
    return {};
  }
  if (const std::string left_out = left_out_text(computed.data, computed.modelled); !left_out.empty()) {
    user_interface().show_message(left_out);
  }
  return computed;
}

OccamResponse as_read(const ComputedResponse& computed) {
  OccamResponse response;
  response.resp_site_names = computed.data.site_names;
  response.resp_offsets = computed.data.site_offsets;
  response.resp_frequencies = computed.data.frequencies;
  std::vector<OccamResponse::FileRow> rows;
  for (std::size_t i = 0; i < computed.modelled.rows.size(); ++i) {
    const DataRow& row = computed.modelled.rows[i];
    const FitOfRow fit = fit_of_row(row, computed.modelled.modelled[i]);
    rows.push_back({row.site_number,
                    row.frequency_number,
                    row.type,
                    {static_cast<float>(fit.datum), static_cast<float>(fit.residual),
                     static_cast<float>(fit.modelled), static_cast<float>(fit.misfit)}});
  }
  response.set_rows(std::move(rows));
  return response;
}

int make_response(const RunResults& results, int number, const IterationModel& iteration) {
  const auto computed = compute_response(results, iteration);
  if (!computed) {
    return -1;
  }
  return trap_errors(response_failed, [&] {
    make_folder(results.output_folder);
    safe_files::write_into_place(
        results.output_folder / results.response_file[static_cast<std::size_t>(number)],
        response_file_text(computed->data, computed->modelled));
  });
}

}  // namespace Module_occam
