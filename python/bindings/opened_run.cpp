#include "python/bindings/opened_run.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

#include "core/number_text.h"
#include "formats/occam/model_file.h"
#include "formats/occam/response_file.h"
#include "occam/results/iteration_response.h"

namespace fs = std::filesystem;

namespace Python {

using namespace Module_occam;

OpenedRun::OpenedRun(fs::path folder, const std::string& control_file)
    : folder_(std::move(folder)),
      files_(read_run_files(folder_, control_file)),
      data_(read_data_file((folder_ / files_.names.data_file).string())) {}

std::vector<ListedIteration> OpenedRun::iterations(std::vector<std::string>& remarks) const {
  return list_iterations(folder_, files_, remarks);
}

ListedIteration OpenedRun::find_iteration(std::optional<int> number) const {
  std::vector<std::string> remarks;
  const std::vector<ListedIteration> all = iterations(remarks);
  const auto found =
      number ? std::ranges::find(all, *number, &ListedIteration::number) : all.end() - (all.empty() ? 0 : 1);
  if (found != all.end()) {
    return *found;
  }
  std::string text =
      number ? "There is no file of iteration " + std::to_string(*number) : "There is no iteration file";
  for (const std::string& remark : remarks) {
    text += "\n" + remark;
  }
  throw std::runtime_error(text);
}

OccamModel OpenedRun::blocks_of(const ListedIteration& iteration) const {
  const bool is_own = !iteration.model_file.empty() && iteration.model_file != files_.names.model_file;
  return is_own ? read_model_file(folder_, iteration.model_file, files_.data) : files_.model;
}

IterationModel OpenedRun::model_of(const ListedIteration& iteration, const OccamModel& blocks) const {
  return read_iteration_model(folder_, iteration.file, blocks);
}

std::optional<std::vector<FittedRow>> OpenedRun::read_response(const ListedIteration& iteration) const {
  const fs::path file = find_response(folder_, folder_ / derived_folder, iteration.file);
  if (file.empty()) {
    return {};
  }
  const OccamResponse response =
      read_response_file(file.string(), (folder_ / files_.names.data_file).string());
  std::vector<FittedRow> rows;
  for (const OccamResponse::FileRow& row : response.rows()) {
    // Sums of static shifts belong to no site.
    if (row.site_number >= 1 && row.frequency_number >= 1) {
      const auto value = [&](ResponseValue which) { return decimal_of_single(row.values[which - 1U]); };
      rows.push_back({row.site_number, row.frequency_number, row.type, value(observed), value(residual),
                      value(modelled), value(misfit)});
    }
  }
  return rows;
}

std::optional<std::vector<FittedRow>> OpenedRun::compute_response(
    const ListedIteration& iteration, const std::function<bool(double)>& progress) const {
  const OccamModel blocks = blocks_of(iteration);
  const auto computed = modelled_with_shifts(blocks, model_of(iteration, blocks), data_, progress);
  if (!computed) {
    return {};
  }
  std::vector<FittedRow> rows;
  for (std::size_t index = 0; index < computed->rows.size(); ++index) {
    const DataRow& row = computed->rows[index];
    const FitOfRow fit = fit_of_row(row, computed->modelled[index]);
    rows.push_back(
        {row.site_number, row.frequency_number, row.type, fit.datum, fit.residual, fit.modelled, fit.misfit});
  }
  return rows;
}

}  // namespace Python
