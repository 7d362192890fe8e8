// The response of a two-dimensional section, and how it changes with the resistivity of groups of triangles.
#include <cmath>
#include <initializer_list>
#include <numeric>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <pybind11/stl.h>

#include "numerics/constants.h"
#include "numerics/section/linear_response.h"
#include "numerics/section/mesh_warnings.h"
#include "numerics/section/response.h"
#include "python/bindings/array_arguments.h"
#include "python/bindings/bindings.h"
#include "python/bindings/interruption.h"

namespace Python {

namespace {

using namespace numerics::section;

constexpr py::ssize_t triangles = 4;

std::vector<double> vector_of(const Numbers& numbers) {
  return {numbers.data(), numbers.data() + numbers.size()};
}

Section section_of(double left_edge, const Numbers& column_widths, const Numbers& row_heights,
                   const Numbers& resistivities, const Codes& codes, std::optional<std::size_t> host_layers) {
  check_shape("column_widths", column_widths, {any_length});
  check_shape("row_heights", row_heights, {any_length});
  const py::ssize_t rows = row_heights.shape(0);
  const py::ssize_t columns = column_widths.shape(0);
  check_shape("resistivity", resistivities, {rows, columns, triangles});
  check_shape("codes", codes, {rows, columns, triangles});
  Section section;
  section.left_edge = left_edge;
  section.column_widths = vector_of(column_widths);
  section.row_heights = vector_of(row_heights);
  section.resistivities = vector_of(resistivities);
  section.codes = {codes.data(), codes.data() + codes.size()};
  section.host_layers = host_layers.value_or(section.host_layers);
  return section;
}

ResponseOptions options_of(Interruption& interruption, std::size_t threads) {
  ResponseOptions options;
  options.threads = threads;
  options.progress = [&interruption](double share) { return !interruption.asked(share); };
  return options;
}

py::dict response(const Section& section, const Numbers& sites, const Numbers& frequencies,
                  std::size_t threads, py::object progress) {
  check_shape("sites", sites, {any_length});
  check_shape("frequencies", frequencies, {any_length});
  Interruption interruption(std::move(progress));
  std::optional<Response> computed;
  {
    const py::gil_scoped_release without_lock;
    computed = compute_response(section, elements_of(sites), elements_of(frequencies),
                                options_of(interruption, threads));
  }
  interruption.rethrow();
  py::dict result;
  if (computed) {
    const std::vector<py::ssize_t> shape{sites.shape(0), frequencies.shape(0)};
    const auto put = [&](const char* name, std::vector<double>& numbers) {
      result[name] = array_of(std::move(numbers), shape);
    };
    put("te_log10_resistivity", computed->te.log10_resistivity);
    put("te_phase", computed->te.phase);
    put("tm_log10_resistivity", computed->tm.log10_resistivity);
    put("tm_phase", computed->tm.phase);
  }
  return result;
}

/// One mode's part of a Jacobian.
struct ModeChanges {
  std::vector<double> log10_resistivity;  // by decades of the parameters
  std::vector<double> phase;              // degrees a decade

  explicit ModeChanges(std::size_t count) : log10_resistivity(count), phase(count) {}
};

struct Changes {
  std::size_t frequencies = 0;
  std::size_t parameters = 0;
  ModeChanges te;
  ModeChanges tm;

  Changes(std::size_t sites, std::size_t frequency_count, std::size_t parameter_count)
      : frequencies(frequency_count),
        parameters(parameter_count),
        te(sites * frequency_count * parameter_count),
        tm(sites * frequency_count * parameter_count) {}

  /// Resistivity goes with the square of the impedance, phase with the imaginary part of its logarithm.
  void take(const ModeRequest& request, std::size_t site_index, const SiteResponse& site) {
    ModeChanges& changes = request.mode == Mode::te ? te : tm;
    const std::size_t first = (site_index * frequencies + request.frequency_index) * parameters;
    for (std::size_t parameter = 0; parameter < parameters; ++parameter) {
      const Complex change = site.impedance_change[parameter];
      changes.log10_resistivity[first + parameter] = 2.0 * change.real() / std::log(10.0);
      changes.phase[first + parameter] = change.imag() * numerics::degrees_per_radian;
    }
  }
};

std::vector<ModeRequest> all_requests(std::size_t sites, std::size_t frequencies,
                                      std::initializer_list<Mode> modes, bool tipper) {
  std::vector<std::size_t> site_indices(sites);
  std::iota(site_indices.begin(), site_indices.end(), std::size_t{0});
  std::vector<ModeRequest> requests;
  for (const Mode mode : modes) {
    for (std::size_t frequency = 0; frequency < frequencies; ++frequency) {
      requests.push_back({mode, frequency, site_indices, tipper});
    }
  }
  return requests;
}

/// None if `progress` has stopped it.
py::object tipper(const Section& section, const Numbers& sites, const Numbers& frequencies,
                  std::size_t threads, py::object progress) {
  check_shape("sites", sites, {any_length});
  check_shape("frequencies", frequencies, {any_length});
  const auto site_count = static_cast<std::size_t>(sites.size());
  const auto frequency_count = static_cast<std::size_t>(frequencies.size());
  Interruption interruption(std::move(progress));
  std::vector<Complex> tippers(site_count * frequency_count);
  bool finished = false;
  {
    const py::gil_scoped_release without_lock;
    const CheckedInput input = check_input(section, elements_of(sites), elements_of(frequencies));
    finished = compute_linear_response(
        section, input, elements_of(frequencies), all_requests(site_count, frequency_count, {Mode::te}, true),
        {},
        [&](const ModeRequest& request, std::size_t site_index, const SiteResponse& site) {
          tippers[site_index * frequency_count + request.frequency_index] = site.tipper;
        },
        options_of(interruption, threads));
  }
  interruption.rethrow();
  return finished ? py::object(array_of(std::move(tippers), {sites.shape(0), frequencies.shape(0)}))
                  : py::object(py::none());
}

std::vector<std::string> warnings(const Section& section, const Numbers& sites, const Numbers& frequencies) {
  check_shape("sites", sites, {any_length});
  check_shape("frequencies", frequencies, {any_length});
  const py::gil_scoped_release without_lock;
  return mesh_warnings(section, elements_of(sites), elements_of(frequencies));
}

/// Parameters as counted from 0; below 0 none.
std::vector<std::size_t> parameters_of(const Codes& of_triangle) {
  std::vector<std::size_t> parameters;
  parameters.reserve(static_cast<std::size_t>(of_triangle.size()));
  for (const std::int32_t parameter : elements_of(of_triangle)) {
    parameters.push_back(parameter < 0 ? no_parameter : static_cast<std::size_t>(parameter));
  }
  return parameters;
}

py::dict jacobian(const Section& section, const Numbers& sites, const Numbers& frequencies,
                  const Codes& parameter_of_triangle, std::size_t parameter_count, std::size_t threads,
                  py::object progress) {
  check_shape("sites", sites, {any_length});
  check_shape("frequencies", frequencies, {any_length});
  check_shape(
      "parameters", parameter_of_triangle,
      {static_cast<py::ssize_t>(section.rows()), static_cast<py::ssize_t>(section.columns()), triangles});
  const auto site_count = static_cast<std::size_t>(sites.size());
  const auto frequency_count = static_cast<std::size_t>(frequencies.size());
  const std::vector<std::size_t> of_triangle = parameters_of(parameter_of_triangle);
  Interruption interruption(std::move(progress));
  Changes changes(site_count, frequency_count, parameter_count);
  bool finished = false;
  {
    const py::gil_scoped_release without_lock;
    const CheckedInput input = check_input(section, elements_of(sites), elements_of(frequencies));
    finished = compute_linear_response(
        section, input, elements_of(frequencies),
        all_requests(site_count, frequency_count, {Mode::te, Mode::tm}, false),
        {of_triangle, parameter_count},
        [&changes](const ModeRequest& request, std::size_t site_index, const SiteResponse& site) {
          changes.take(request, site_index, site);
        },
        options_of(interruption, threads));
  }
  interruption.rethrow();
  py::dict result;
  if (finished) {
    const std::vector<py::ssize_t> shape{sites.shape(0), frequencies.shape(0),
                                         static_cast<py::ssize_t>(parameter_count)};
    const auto put = [&](const char* name, std::vector<double>& numbers) {
      result[name] = array_of(std::move(numbers), shape);
    };
    put("te_log10_resistivity", changes.te.log10_resistivity);
    put("te_phase", changes.te.phase);
    put("tm_log10_resistivity", changes.tm.log10_resistivity);
    put("tm_phase", changes.tm.phase);
  }
  return result;
}

}  // namespace

void bind_section(py::module_& module) {
  py::class_<Section>(module, "Section")
      .def(py::init(&section_of), py::arg("left_edge"), py::arg("column_widths"), py::arg("row_heights"),
           py::arg("resistivity"), py::arg("codes"), py::arg("host_layers"));
  module.def("section_response", &response, py::arg("section"), py::arg("sites"), py::arg("frequencies"),
             py::arg("threads"), py::arg("progress"));
  module.def("section_tipper", &tipper, py::arg("section"), py::arg("sites"), py::arg("frequencies"),
             py::arg("threads"), py::arg("progress"));
  module.def("section_warnings", &warnings, py::arg("section"), py::arg("sites"), py::arg("frequencies"));
  module.def("section_jacobian", &jacobian, py::arg("section"), py::arg("sites"), py::arg("frequencies"),
             py::arg("parameters"), py::arg("parameter_count"), py::arg("threads"), py::arg("progress"));
}

}  // namespace Python
