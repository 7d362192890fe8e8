#include "numerics/section/sensitivity.h"

#include <numbers>
#include <stdexcept>

#include "numerics/constants.h"
#include "numerics/parallel_jobs.h"
#include "numerics/section/ground_impedance.h"

namespace numerics::section {

namespace {

// a^T K b for values at the nodes of a cell and the stiffness or mass matrix of one triangle.
Complex triangle_product(const ModeMesh& mesh, double omega_mu0, std::size_t triangle, std::size_t column,
                         std::size_t row, const CellLoad& a, const CellLoad& b) {
  Cell alone;
  (mesh.mode == Mode::te ? alone.mass : alone.stiffness)[triangle] = 1.0;
  const CellMatrix k = cell_matrix(alone, mesh.widths[column], mesh.heights[row], omega_mu0);
  Complex sum = a[centre] * k.centre * b[centre];
  for (std::size_t i = 0; i < corners; ++i) {
    sum += k.to_centre[i] * (a[i] * b[centre] + a[centre] * b[i]) + k.corner[i][i] * a[i] * b[i];
    for (std::size_t j = i + 1; j < corners; ++j) {
      sum += k.corner[i][j] * (a[i] * b[j] + a[j] * b[i]);
    }
  }
  return sum;
}

// The derivative of the load less that of the matrix times the field: what a triangle's change does to ln Z.
Complex triangle_change(const ModeField& field, std::size_t triangle, std::size_t column, std::size_t row,
                        const CellLoad& secondary, const CellLoad& adjoint) {
  const ModeMesh& mesh = field.mesh();
  CellLoad load = {};
  // Above the host's ground the load of TM doesn't depend on the resistivity: the host has no gradient there.
  if (mesh.mode == Mode::te || row >= mesh.host.ground_row) {
    add_unit_load(mesh, field.primary(), field.omega_mu0(), triangle, column, row, 1.0, load);
  }
  Complex change = -triangle_product(mesh, field.omega_mu0(), triangle, column, row, adjoint, secondary);
  for (std::size_t i = 0; i < load.size(); ++i) {
    change += adjoint[i] * load[i];
  }
  return change;
}

// What the field at each node adds to ln Z of a site.
std::vector<Complex> impedance_weights(const ModeField& field, const GroundImpedance& site) {
  const ModeMesh& mesh = field.mesh();
  std::vector<Complex> weights((mesh.columns + 1) * (mesh.rows + 1));
  const double sign = mesh.mode == Mode::te ? -1.0 : 1.0;
  for (std::size_t k = 0; k < site.nodes.size(); ++k) {
    weights[site.nodes[k]] += sign * site.weights[k] / site.derivative;
  }
  weights[site.nodes[0]] -= sign / site.field;
  return weights;
}

class ModeJob {
 public:
  ModeJob(const Section& section, std::span<const std::size_t> parameter_index,
          std::span<const SurfaceNode> sites, std::size_t parameters)
      : section_(section), parameter_index_(parameter_index), sites_(sites), parameters_(parameters) {}

  void run(const ModeMesh& mesh, double frequency, BandedLdlt& solver, std::size_t frequency_index,
           std::size_t frequencies, ModeSensitivity& result) const {
    const ModeField field(mesh, frequency, solver);
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
  [[nodiscard]] std::vector<Complex> of_site(const ModeField& field, const SurfaceNode& site) const {
    const ModeMesh& mesh = field.mesh();
    const GroundImpedance impedance = ground_impedance(field, site);
    const std::vector<Complex> adjoint = field.adjoint(impedance_weights(field, impedance));
    std::vector<Complex> change(parameters_);
    for (std::size_t column = 0; column < mesh.columns; ++column) {
      for (std::size_t row = mesh.added_rows; row < mesh.rows; ++row) {
        const Cell& cell = mesh.cell(column, row);
        if (cell.all_air()) {
          continue;
        }
        const std::size_t first = 4 * ((row - mesh.added_rows) * mesh.columns + column);
        const CellLoad u = field.secondary_in_cell(column, row);
        const CellLoad v = field.adjoint_in_cell(adjoint, column, row);
        for (std::size_t t = 0; t < 4; ++t) {
          const std::size_t parameter = parameter_index_[first + t];
          if (parameter == no_parameter || cell.air[t]) {
            continue;
          }
          const double resistivity = section_.resistivities[first + t];
          // sigma falls as rho grows
          const double by_decade = mesh.mode == Mode::te ? -1.0 / resistivity : resistivity;
          change[parameter] += by_decade * std::numbers::ln10 * triangle_change(field, t, column, row, u, v);
        }
      }
    }
    if (mesh.mode == Mode::tm && parameter_index_[site.triangle_index] != no_parameter) {
      change[parameter_index_[site.triangle_index]] += std::numbers::ln10;
    }
    return change;
  }

  const Section& section_;
  std::span<const std::size_t> parameter_index_;
  std::span<const SurfaceNode> sites_;
  std::size_t parameters_;
};

}  // namespace

std::optional<Sensitivity> compute_sensitivity(const Section& section,
                                               std::span<const std::size_t> parameter_index,
                                               std::size_t parameters, std::span<const double> site_positions,
                                               std::span<const double> frequencies,
                                               const ResponseOptions& options) {
  const CheckedInput input = check_input(section, site_positions, frequencies);
  for (const std::size_t index : parameter_index) {
    if (index >= parameters && index != no_parameter) {
      throw std::invalid_argument("the section names a parameter that doesn't exist");
    }
  }
  if (parameter_index.size() != section.resistivities.size()) {
    throw std::invalid_argument("the parameters don't fit the section");
  }
  const ModeMesh te_mesh = make_mode_mesh(section, input.air, Mode::te);
  const ModeMesh tm_mesh = make_mode_mesh(section, input.air, Mode::tm);
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
