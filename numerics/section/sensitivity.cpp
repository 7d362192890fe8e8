#include "numerics/section/sensitivity.h"

#include <algorithm>
#include <numbers>
#include <stdexcept>

#include "numerics/constants.h"
#include "numerics/parallel_jobs.h"
#include "numerics/section/ground_impedance.h"

namespace numerics::section {

namespace {

// a^T K b for values at the nodes of a cell and the matrix K of one triangle.
Complex triangle_product(const CellMatrix& k, const CellLoad& a, const CellLoad& b) {
  Complex sum = a[centre] * k.centre * b[centre];
  for (std::size_t i = 0; i < corners; ++i) {
    sum += k.to_centre[i] * (a[i] * b[centre] + a[centre] * b[i]) + k.corner[i][i] * a[i] * b[i];
    for (std::size_t j = i + 1; j < corners; ++j) {
      sum += k.corner[i][j] * (a[i] * b[j] + a[j] * b[i]);
    }
  }
  return sum;
}

// What a change of the triangle's conductivity does to ln Z, by S/m: the derivative of the load less that of
// the matrix times the field.
Complex triangle_change(const ModeField& field, std::size_t triangle, std::size_t column, std::size_t row,
                        const CellLoad& secondary, const CellLoad& adjoint) {
  const ModeMesh& mesh = field.mesh();
  const Frequency& frequency = field.frequency();
  Coefficients change;   // of the triangle's share of the matrix
  Complex factor = 1.0;  // of the unit load
  if (mesh.mode == Mode::te) {
    change.mass[triangle] = {0.0, frequency.omega_mu()};
  } else {
    const Complex resistivity = reciprocal(frequency.admittivity(mesh.cell(column, row)[triangle]));
    const Complex square = resistivity * resistivity;
    change.stiffness[triangle] = -square;
    factor = field.primary().rows[row].admittivity * square;
  }
  CellLoad load = {};
  add_unit_load(mesh, field.primary(), frequency, triangle, column, row, factor, load);
  Complex sum =
      -triangle_product(cell_matrix(change, mesh.widths[column], mesh.heights[row]), adjoint, secondary);
  for (std::size_t i = 0; i < load.size(); ++i) {
    sum += adjoint[i] * load[i];
  }
  return sum;
}

// What the secondary field at each node adds to ln Z of a site.
std::vector<Complex> impedance_weights(const ModeField& field, const GroundImpedance& site) {
  const ModeMesh& mesh = field.mesh();
  std::vector<Complex> weights((mesh.columns + 1) * (mesh.rows + 1));
  const double sign = mesh.mode == Mode::te ? -1.0 : 1.0;
  for (const GroundImpedance::Weight& entry : site.weights) {
    weights[entry.node] += sign * entry.weight / site.derivative;
  }
  weights[site.node] -= sign / site.field;
  return weights;
}

class ModeJob {
 public:
  ModeJob(const Section& section, std::span<const std::size_t> parameter_index, std::span<const Site> sites,
          std::size_t parameters)
      : section_(section), parameter_index_(parameter_index), sites_(sites), parameters_(parameters) {}

  void run(const ModeMesh& mesh, double frequency, BandedLdlt& solver, std::size_t frequency_index,
           std::size_t frequencies, ModeSensitivity& result) const {
    const ModeField field(mesh, Frequency(frequency), solver);
    for (std::size_t s = 0; s < sites_.size(); ++s) {
      const std::vector<Complex> change = of_site(field, sites_[s]);
      for (std::size_t p = 0; p < parameters_; ++p) {
        const std::size_t at = (s * frequencies + frequency_index) * parameters_ + p;
        result.log10_resistivity[at] = 2.0 / std::numbers::ln10 * change[p].real();
        result.phase[at] = degrees_per_radian * change[p].imag();
      }
    }
  }

 private:
  // d ln Z by the log10 resistivity of each parameter
  [[nodiscard]] std::vector<Complex> of_site(const ModeField& field, const Site& site) const {
    const ModeMesh& mesh = field.mesh();
    const GroundImpedance impedance = ground_impedance(field, section_, site);
    const std::vector<Complex> adjoint = field.adjoint(impedance_weights(field, impedance));
    std::vector<Complex> change(parameters_);
    for (std::size_t column = 0; column < mesh.columns; ++column) {
      for (std::size_t row = 0; row < section_.rows(); ++row) {
        if (!has_parameter(column, row)) {
          continue;
        }
        const std::size_t mesh_row = row + mesh.added_rows;
        const CellLoad u = field.secondary_in_cell(column, mesh_row);
        const CellLoad v = field.adjoint_in_cell(adjoint, column, mesh_row);
        for (std::size_t t = 0; t < 4; ++t) {
          const std::size_t triangle = section_.index(column, row, t);
          if (parameter_index_[triangle] != no_parameter) {
            change[parameter_index_[triangle]] +=
                by_decade(triangle) * triangle_change(field, t, column, mesh_row, u, v);
          }
        }
      }
    }
    const std::size_t beside = site.triangle_beside;
    if (mesh.mode == Mode::tm && parameter_index_[beside] != no_parameter) {
      change[parameter_index_[beside]] -= by_decade(beside) / impedance.admittivity;
    }
    return change;
  }

  [[nodiscard]] bool has_parameter(std::size_t column, std::size_t row) const {
    const auto cell = parameter_index_.subspan(section_.index(column, row, 0), 4);
    return std::ranges::any_of(cell, [](std::size_t parameter) { return parameter != no_parameter; });
  }

  // S/m that the conductivity of a triangle changes by for each decade of its resistivity
  [[nodiscard]] double by_decade(std::size_t triangle) const {
    return -std::numbers::ln10 / section_.resistivities[triangle];
  }

  const Section& section_;
  std::span<const std::size_t> parameter_index_;
  std::span<const Site> sites_;
  std::size_t parameters_;
};

}  // namespace

std::optional<Sensitivity> compute_sensitivity(const Section& section,
                                               std::span<const std::size_t> parameter_index,
                                               std::size_t parameters, std::span<const double> site_positions,
                                               std::span<const double> frequencies,
                                               const ResponseOptions& options) {
  const CheckedInput input = check_input(section, site_positions, frequencies);
  if (parameter_index.size() != section.codes.size()) {
    throw std::invalid_argument("the parameters don't fit the section");
  }
  for (std::size_t i = 0; i < parameter_index.size(); ++i) {
    if (parameter_index[i] == no_parameter) {
      continue;
    }
    if (parameter_index[i] >= parameters) {
      throw std::invalid_argument("the section names a parameter that doesn't exist");
    }
    if (section.codes[i] == air_code) {
      throw std::invalid_argument("the section gives air a parameter");
    }
  }
  const ModeMesh te_mesh = make_mode_mesh(section, input.host, Mode::te);
  const ModeMesh tm_mesh = make_mode_mesh(section, input.host, Mode::tm);
  const std::size_t values = input.sites.size() * frequencies.size() * parameters;
  Sensitivity result = {{std::vector<double>(values), std::vector<double>(values)},
                        {std::vector<double>(values), std::vector<double>(values)}};
  const ModeJob mode_job(section, parameter_index, input.sites, parameters);
  const std::size_t jobs = 2 * frequencies.size();
  std::vector<BandedLdlt> solvers(job_threads(jobs, options.threads));
  const auto job = [&](std::size_t item, std::size_t thread) {
    const bool te = item < frequencies.size();
    const std::size_t f = item % frequencies.size();
    mode_job.run(te ? te_mesh : tm_mesh, frequencies[f], solvers[thread], f, frequencies.size(),
                 te ? result.te : result.tm);
  };
  if (!run_jobs(jobs, options.threads, job, options.progress)) {
    return std::nullopt;
  }
  return result;
}

}  // namespace numerics::section
