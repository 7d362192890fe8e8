// iteration_response.h: the response of an iteration: where it stands, and computing it here.
#pragma once
#include <filesystem>
#include <functional>
#include <optional>
#include <string>

#include "formats/occam/data_file.h"
#include "formats/occam/occam_response.h"
#include "occam/results/iteration_model.h"
#include "occam/results/model_response.h"
#include "occam/results/run_results.h"

namespace Module_occam {

/// The response file of an iteration: in the folder of derived files, unless the iteration is newer, or else
/// beside the iteration's file. Empty without either.
std::filesystem::path find_response(const RunResults& results, int iteration);

/// The same of an iteration's file, by its name.
std::filesystem::path find_response(const std::filesystem::path& folder,
                                    const std::filesystem::path& output_folder,
                                    const std::string& iteration_file);

/// The data file with the sites and frequencies of a response without a header: the one that the run names.
/// A file of the usual name may be left from another run in the same folder.
std::filesystem::path response_header(const RunResults& results);

/// Reports what the mesh of a run lacks for the frequencies of its data; nothing if it is good enough.
void report_mesh_warnings(const RunResults& results, const IterationModel& iteration);

struct ComputedResponse {
  ObservedData data;
  ModelledData modelled;
};

/// Computes the response of an iteration, the static shifts of the run added. Shows nothing.
/// @param progress  called with the share done, 0 to 1; false stops
/// @return nothing if it was stopped. Throws as model_data
std::optional<ModelledData> modelled_with_shifts(const OccamModel& model, const IterationModel& iteration,
                                                 const ObservedData& data,
                                                 const std::function<bool(double)>& progress);

/// "3 data have types that can't be computed (7, 11); the response leaves them out"; empty if all can be.
std::string left_out_text(const ObservedData& data, const ModelledData& modelled);

/// Computes the response of an iteration, the static shifts of the run added.
/// @return nothing after a message, or without one if the user stopped it
std::optional<ComputedResponse> compute_response(const RunResults& results, const IterationModel& iteration);

/// What a reader of the response's file would get.
OccamResponse as_read(const ComputedResponse& computed);

/// Computes the response of an iteration and writes it into the folder of derived files.
/// @return 0; -1 after a message, or without one if the user stopped it
[[nodiscard]] int make_response(const RunResults& results, int number, const IterationModel& iteration);

}  // namespace Module_occam
