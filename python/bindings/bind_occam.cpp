// Runs of the two-dimensional inversion: what their files hold, models and responses.
#include <algorithm>
#include <cstdint>
#include <limits>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <pybind11/stl.h>

#include "core/trap_errors.h"
#include "formats/occam/data_type.h"
#include "formats/occam/text_input.h"
#include "occam/results/model_response.h"
#include "platform/files/settled_path.h"
#include "python/bindings/array_arguments.h"
#include "python/bindings/bindings.h"
#include "python/bindings/interruption.h"
#include "python/bindings/opened_run.h"
#include "python/bindings/python_interface.h"
#include "python/bindings/texts.h"

namespace Python {

namespace {

using namespace Module_occam;

/// Runs what reads files, without the interpreter lock. What it throws becomes a SurveyError.
template <class Read>
auto reading(const char* fixed_text, Read&& read) {
  const py::gil_scoped_release without_lock;
  try {
    return std::forward<Read>(read)();
  } catch (const Refusal& refusal) {
    throw SurveyError(refusal.what());
  } catch (const EmptyLine&) {
    throw SurveyError(std::string(fixed_text) + "an empty line in place of a text");
  } catch (const std::exception& failure) {
    throw SurveyError(failure_message(fixed_text, failure));
  }
}

std::unique_ptr<OpenedRun> open_run(const std::string& folder, const std::string& control_file) {
  return reading("The run can't be read: ",
                 [&] { return std::make_unique<OpenedRun>(settled_path(folder), control_file); });
}

template <class Row>
py::array_t<std::int32_t> integers_of(const std::vector<Row>& rows, int (*number)(const Row&)) {
  std::vector<std::int32_t> numbers;
  numbers.reserve(rows.size());
  for (const Row& row : rows) {
    numbers.push_back(number(row));
  }
  return array_of(std::move(numbers));
}

template <class Row>
py::array_t<double> numbers_of(const std::vector<Row>& rows, double Row::*number) {
  std::vector<double> numbers;
  numbers.reserve(rows.size());
  for (const Row& row : rows) {
    numbers.push_back(row.*number);
  }
  return array_of(std::move(numbers));
}

/// Sites and frequencies as indices from 0, the types as the files number them.
template <class Row>
py::dict places_of(const std::vector<Row>& rows) {
  py::dict arrays;
  arrays["site"] = integers_of<Row>(rows, [](const Row& row) { return row.site_number - 1; });
  arrays["frequency"] = integers_of<Row>(rows, [](const Row& row) { return row.frequency_number - 1; });
  arrays["type"] = integers_of<Row>(rows, [](const Row& row) { return static_cast<int>(row.type); });
  return arrays;
}

py::dict data_of(const OpenedRun& run) {
  const ObservedData& data = run.data();
  py::dict arrays = places_of(data.rows);
  arrays["datum"] = numbers_of(data.rows, &DataRow::datum);
  arrays["error"] = numbers_of(data.rows, &DataRow::error);
  arrays["title"] = text_of(run.files().data.title);
  arrays["site_names"] = texts_of(data.site_names);
  arrays["site_offsets"] = array_of(std::vector(data.site_offsets));
  arrays["frequencies"] = array_of(std::vector(data.frequencies));
  return arrays;
}

py::dict head_of(const ListedIteration& iteration) {
  py::dict head;
  head["number"] = iteration.number;
  head["rms"] = iteration.TLAST;
  head["roughness"] = iteration.RLAST;
  head["multiplier"] = iteration.PMU;
  head["file"] = text_of(iteration.file);
  return head;
}

py::tuple iterations_of(const OpenedRun& run) {
  std::vector<std::string> remarks;
  const std::vector<ListedIteration> iterations =
      reading("The iterations can't be listed: ", [&] { return run.iterations(remarks); });
  py::list heads;
  for (const ListedIteration& iteration : iterations) {
    heads.append(head_of(iteration));
  }
  return py::make_tuple(heads, texts_of(remarks));
}

/// The blocks in arrays of shape (b,), fixed ones with the parameter -1 and without a resistivity.
py::dict blocks_of(const OccamModel& model, const std::vector<double>& parameters) {
  struct Block {
    double left = 0.0;
    double right = 0.0;
    double top = 0.0;
    double bottom = 0.0;
    double log10_resistivity = std::numeric_limits<double>::quiet_NaN();
    int layer = 0;
    int parameter = -1;
  };
  std::vector<Block> blocks;
  for (const OccamBlock& each : model.blocks) {
    const auto x = [&](int column) { return model.node_x.at(static_cast<std::size_t>(column)); };
    const auto z = [&](int row) { return model.node_z.at(static_cast<std::size_t>(row)); };
    const BlockExtent& extent = each.block_extent;
    Block block{.left = x(extent.left_column),
                .right = x(extent.end_column),
                .top = z(extent.top_row),
                .bottom = z(extent.end_row),
                .layer = each.layer,
                .parameter = each.parameter_number - 1};
    if (block.parameter >= 0) {
      block.log10_resistivity = parameters.at(static_cast<std::size_t>(block.parameter));
    }
    blocks.push_back(block);
  }
  py::dict arrays;
  arrays["left"] = numbers_of(blocks, &Block::left);
  arrays["right"] = numbers_of(blocks, &Block::right);
  arrays["top"] = numbers_of(blocks, &Block::top);
  arrays["bottom"] = numbers_of(blocks, &Block::bottom);
  arrays["log10_resistivity"] = numbers_of(blocks, &Block::log10_resistivity);
  arrays["layer"] = integers_of<Block>(blocks, [](const Block& block) { return block.layer; });
  arrays["parameter"] = integers_of<Block>(blocks, [](const Block& block) { return block.parameter; });
  return arrays;
}

py::dict shifts_of(const OpenedRun& run, const OccamModel& model, const IterationModel& iteration) {
  py::dict shifts;
  for (const StaticShift& shift : static_shifts(model, iteration)) {
    const bool is_te = shift.data_type == static_cast<int>(DataType::te_resistivity);
    const auto site = static_cast<std::size_t>(shift.site_number - 1);
    if (site < run.data().site_names.size()) {
      shifts[py::make_tuple(text_of(run.data().site_names[site]), is_te ? "TE" : "TM")] = shift.shift;
    }
  }
  return shifts;
}

py::dict model_of(const OpenedRun& run, std::optional<int> number) {
  ListedIteration head;
  OccamModel model;
  IterationModel iteration;
  numerics::section::Section section;
  reading("The iteration can't be read: ", [&] {
    head = run.find_iteration(number);
    model = run.blocks_of(head);
    iteration = run.model_of(head, model);
    section = response_section(model, iteration.parameters, limits_at(iteration.debug_level));
  });
  py::dict result;
  result["iteration"] = head_of(head);
  result["node_x"] = array_of(std::vector(model.node_x));
  result["node_z"] = array_of(std::vector(model.node_z));
  const std::vector<py::ssize_t> triangle_shape{static_cast<py::ssize_t>(section.rows()),
                                                static_cast<py::ssize_t>(section.columns()),
                                                static_cast<py::ssize_t>(triangles)};
  result["left_edge"] = section.left_edge;
  result["column_widths"] = array_of(std::move(section.column_widths));
  result["row_heights"] = array_of(std::move(section.row_heights));
  result["resistivity"] = array_of(std::move(section.resistivities), triangle_shape);
  result["codes"] = array_of(std::move(section.codes), triangle_shape);
  result["host_layers"] = section.host_layers;
  result["blocks"] = blocks_of(model, iteration.parameters);
  result["static_shifts"] = shifts_of(run, model, iteration);
  result["parameters"] = array_of(std::move(iteration.parameters));
  return result;
}

py::dict arrays_of(const std::vector<FittedRow>& rows) {
  py::dict arrays = places_of(rows);
  arrays["datum"] = numbers_of(rows, &FittedRow::datum);
  arrays["modelled"] = numbers_of(rows, &FittedRow::modelled);
  arrays["residual"] = numbers_of(rows, &FittedRow::residual);
  arrays["misfit"] = numbers_of(rows, &FittedRow::misfit);
  return arrays;
}

/// @param compute  rather than read what the inversion has left; without a file it is computed, too
/// @return None if `progress` has stopped it
py::object response_of(const OpenedRun& run, std::optional<int> number, bool compute, py::object progress) {
  Interruption interruption(std::move(progress));
  ListedIteration head;
  std::optional<std::vector<FittedRow>> rows;
  reading("An error occurred while calculating the response: ", [&] {
    head = run.find_iteration(number);
    if (!compute) {
      rows = run.read_response(head);
    }
    if (!rows) {
      rows = run.compute_response(head, [&](double share) { return !interruption.asked(share); });
    }
  });
  interruption.rethrow();
  if (!rows) {
    return py::none();
  }
  py::dict result = arrays_of(*rows);
  result["iteration"] = head_of(head);
  return result;
}

const char* name_of(Quantity quantity) {
  switch (quantity) {
    case Quantity::log10_resistivity:
      return "log10_resistivity";
    case Quantity::phase:
      return "phase";
    case Quantity::resistivity:
      return "resistivity";
    case Quantity::real_impedance:
      return "real_impedance";
    case Quantity::imaginary_impedance:
      return "imaginary_impedance";
    case Quantity::real_tipper:
      return "real_tipper";
    case Quantity::imaginary_tipper:
      break;
  }
  return "imaginary_tipper";
}

/// Mode and quantity; empty texts for a type without a meaning.
py::tuple names_of_type(int type) {
  const TypeMeaning* const meaning = find_meaning(static_cast<DataType>(type));
  if (meaning == nullptr) {
    return py::make_tuple("", "");
  }
  return py::make_tuple(meaning->mode == FieldMode::te ? "TE" : "TM", name_of(meaning->quantity));
}

}  // namespace

void bind_occam(py::module_& module) {
  py::class_<OpenedRun>(module, "OccamRun")
      .def(py::init(&open_run), py::arg("folder"), py::arg("control_file"))
      .def_property_readonly("folder", [](const OpenedRun& run) { return text_of(run.folder().string()); })
      .def("data", &data_of)
      .def("iterations", &iterations_of)
      .def("model", &model_of, py::arg("number"))
      .def("response", &response_of, py::arg("number"), py::arg("compute"), py::arg("progress"));
  module.def("data_type_names", &names_of_type, py::arg("type"));
}

}  // namespace Python
