#include "numerics/section/linear_response.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>
#include <stdexcept>
#include <string>

#include "core/number_text.h"
#include "numerics/parallel_jobs.h"
#include "numerics/section/ground_impedance.h"

namespace numerics::section {

namespace {

// The derivative of the field along the ground, from the site's node and its neighbours: the slope at the
// middle of the parabola through the three; nothing on the edges of the mesh.
std::array<GroundImpedance::Weight, 3> horizontal_weights(const ModeMesh& mesh, const Site& site) {
  if (site.column == 0 || site.column >= mesh.columns) {
    return {};
  }
  const double left = mesh.widths[site.column - 1];
  const double right = mesh.widths[site.column];
  const double both = left + right;
  const std::size_t row = site.row + mesh.added_rows;
  return {{{mesh.node(site.column - 1, row), -right / (left * both)},
           {mesh.node(site.column, row), (right - left) / (left * right)},
           {mesh.node(site.column + 1, row), left / (right * both)}}};
}

struct NodePlace {
  std::size_t column;
  std::size_t row;
};

NodePlace place_of(const ModeMesh& mesh, std::size_t node) {
  return {node / (mesh.rows + 1), node % (mesh.rows + 1)};
}

// One site as the field of a mode and frequency gives it.
struct SiteField {
  GroundImpedance ground;
  std::array<GroundImpedance::Weight, 3> along = {};
  Complex horizontal;  // dE/dy

  [[nodiscard]] Complex tipper() const { return -horizontal / ground.derivative; }
};

SiteField site_field(const ModeField& field, const Section& section, const Site& site, bool tipper) {
  SiteField result = {ground_impedance(field, section, site), {}, 0.0};
  if (tipper) {
    result.along = horizontal_weights(field.mesh(), site);
    for (const GroundImpedance::Weight& entry : result.along) {
      const NodePlace node = place_of(field.mesh(), entry.node);
      result.horizontal += entry.weight * field.secondary(node.column, node.row);
    }
  }
  return result;
}

// The change of the secondary field's equations of a cell for a decade of one parameter: at the four corners,
// the centre eliminated.
using CornerChange = std::array<Complex, corners>;

// Matrix and field of a cell, and what its parameters do.
class CellChanges {
 public:
  CellChanges(const ModeField& field, std::size_t column, std::size_t row)
      : field_(field), column_(column), row_(row), is_even_(is_even(cell())) {
    const ModeMesh& mesh = field.mesh();
    Complex inverse;
    Complex load;  // of the centre
    if (is_even_) {
      const EvenCellMatrix k =
          even_cell_matrix(coefficient(mesh.mode, cell()[0], field.frequency()), width(), height());
      inverse = reciprocal(k.centre);
      to_centre_.fill(product(k.to_centre, inverse));
      load = product(width() * load_factor(mesh, field.frequency(), cell()[0], row),
                     field.even_loads()[row][centre]);
    } else {
      const CellMatrix k = cell_matrix(coefficients(mesh.mode, cell(), field.frequency()), width(), height());
      inverse = reciprocal(k.centre);
      for (std::size_t i = 0; i < corners; ++i) {
        to_centre_[i] = product(k.to_centre[i], inverse);
      }
      load = cell_load(mesh, field.primary(), field.frequency(), column, row)[centre];
    }
    field_here_ = field.secondary_at_corners(column, row);
    field_here_[centre] = product(inverse, load);
    for (std::size_t i = 0; i < corners; ++i) {
      field_here_[centre] -= product(to_centre_[i], field_here_[i]);
    }
  }

  [[nodiscard]] bool has_one_conductivity() const { return is_even_; }

  /// What a change of the conductivity of the whole cell does, which has one conductivity: the derivative of
  /// the load less that of the matrix times the field. S/m
  [[nodiscard]] CornerChange change(double conductivity_change) const {
    const TriangleChange by = triangle_change(cell()[0], conductivity_change);
    CellLoad residual;
    for (std::size_t i = 0; i < residual.size(); ++i) {
      residual[i] = product(width() * by.load, field_.even_loads()[row_][i]);
    }
    even_cell_matrix(by.matrix, width(), height()).subtract_product(field_here_, residual);
    return at_corners(residual);
  }

  /// The same for changes of the conductivities of triangles; 0 for none.
  [[nodiscard]] CornerChange change(const std::array<double, 4>& conductivity_changes) const {
    Coefficients matrix_change = {};
    CellLoad residual = {};
    for (std::size_t t = 0; t < conductivity_changes.size(); ++t) {
      if (conductivity_changes[t] != 0.0) {
        const TriangleChange by = triangle_change(cell()[t], conductivity_changes[t]);
        matrix_change[t] = by.matrix;
        add_unit_load(field_.mesh(), field_.primary(), field_.frequency(), t, row_, width(), by.load,
                      residual);
      }
    }
    subtract_product(cell_matrix(matrix_change, width(), height()), residual);
    return at_corners(residual);
  }

 private:
  struct TriangleChange {
    Coefficient matrix;
    Complex load;  // of what its unit load is multiplied by
  };

  [[nodiscard]] TriangleChange triangle_change(double conductivity, double change) const {
    if (field_.mesh().mode == Mode::te) {
      return {{0.0, {0.0, change * field_.frequency().omega_mu()}}, change};
    }
    const Complex resistivity = reciprocal(field_.frequency().admittivity(conductivity));
    const Complex square = change * product(resistivity, resistivity);
    return {{-square, 0.0}, product(field_.primary().rows[row_].admittivity, square)};
  }

  void subtract_product(const CellMatrix& k, CellLoad& residual) const {
    residual[centre] -= product(k.centre, field_here_[centre]);
    for (std::size_t i = 0; i < corners; ++i) {
      residual[centre] -= product(k.to_centre[i], field_here_[i]);
      residual[i] -= product(k.to_centre[i], field_here_[centre]) + product(k.corner[i][i], field_here_[i]);
      for (std::size_t j = i + 1; j < corners; ++j) {
        residual[i] -= product(k.corner[i][j], field_here_[j]);
        residual[j] -= product(k.corner[i][j], field_here_[i]);
      }
    }
  }

  [[nodiscard]] CornerChange at_corners(const CellLoad& residual) const {
    CornerChange result;
    for (std::size_t i = 0; i < corners; ++i) {
      result[i] = residual[i] - product(to_centre_[i], residual[centre]);
    }
    return result;
  }

  [[nodiscard]] const Cell& cell() const { return field_.mesh().cell(column_, row_); }
  [[nodiscard]] double width() const { return field_.mesh().widths[column_]; }
  [[nodiscard]] double height() const { return field_.mesh().heights[row_]; }

  const ModeField& field_;
  std::size_t column_;
  std::size_t row_;
  bool is_even_;
  CellLoad field_here_;
  std::array<Complex, corners> to_centre_;
};

// Derivatives of several sides by all parameters, those of one parameter beside one another.
class ParameterSums {
 public:
  void reset(std::size_t parameters, std::size_t stride) {
    stride_ = stride;
    real_.assign(parameters * stride, 0.0);
    imaginary_.assign(parameters * stride, 0.0);
  }

  /// Adds the changes at the corners of a cell times the values of all sides there.
  void add(std::size_t parameter, const CornerChange& change,
           const std::array<std::size_t, corners>& unknowns, const RightSides& sides) {
    sides.add_products(change, unknowns, real_.data() + parameter * stride_,
                       imaginary_.data() + parameter * stride_);
  }

  void copy_side(std::size_t side, std::span<Complex> changes) const {
    for (std::size_t parameter = 0; parameter < changes.size(); ++parameter) {
      changes[parameter] = {real_[parameter * stride_ + side], imaginary_[parameter * stride_ + side]};
    }
  }

 private:
  std::size_t stride_ = 0;
  std::vector<double> real_;
  std::vector<double> imaginary_;
};

// What a thread keeps from one request to the next.
struct Workspace {
  BandedLdlt solver;
  RightSides sides;
  ParameterSums sums;
};

class RequestJob {
 public:
  RequestJob(const Section& section, const CheckedInput& input, std::span<const double> frequencies,
             const Parameters& parameters, const TakeSiteResponse& take)
      : section_(section), input_(input), frequencies_(frequencies), parameters_(parameters), take_(take) {}

  void run(const ModeMesh& mesh, const ModeRequest& request, Workspace& workspace) const {
    const ModeField field(mesh, Frequency(frequencies_[request.frequency_index]), workspace.solver);
    std::vector<SiteField> sites;
    for (const std::size_t site : request.site_indices) {
      sites.push_back(site_field(field, section_, input_.sites[site], request.tipper));
      check_finite(sites.back(), request, site);
    }
    if (parameters_.count == 0) {
      for (std::size_t i = 0; i < sites.size(); ++i) {
        take_(request, request.site_indices[i],
              {sites[i].ground.impedance, request.tipper ? sites[i].tipper() : Complex(), {}, {}});
      }
      return;
    }
    RightSides& sides = workspace.sides;
    sides.reset(field.unknowns(), sites.size() * (request.tipper ? 2 : 1));
    for (std::size_t i = 0; i < sites.size(); ++i) {
      add_impedance_weights(field, sites[i], sides, i);
      if (request.tipper) {
        add_tipper_weights(field, sites[i], sides, sites.size() + i);
      }
    }
    workspace.solver.solve(sides);
    sum_up(field, sides, workspace.sums);
    give(request, sites, workspace.sums);
  }

 private:
  void check_finite(const SiteField& site, const ModeRequest& request, std::size_t site_index) const {
    const Complex& impedance = site.ground.impedance;
    if (!std::isfinite(impedance.real()) || !std::isfinite(impedance.imag()) || impedance == Complex()) {
      throw std::runtime_error(std::string("the ") + (request.mode == Mode::te ? "TE" : "TM") +
                               " response of site " + std::to_string(site_index + 1) + " at " +
                               plain_text(frequencies_[request.frequency_index]) + " Hz is not finite");
    }
  }

  static void add_weight(const ModeField& field, const GroundImpedance::Weight& entry, const Complex& factor,
                         RightSides& sides, std::size_t side) {
    const NodePlace node = place_of(field.mesh(), entry.node);
    if (const auto unknown = field.unknown(node.column, node.row)) {
      sides.add(*unknown, side, entry.weight * factor);
    }
  }

  // What the secondary field at each node adds to ln Z.
  static void add_impedance_weights(const ModeField& field, const SiteField& site, RightSides& sides,
                                    std::size_t side) {
    const double sign = field.mesh().mode == Mode::te ? -1.0 : 1.0;
    for (const GroundImpedance::Weight& entry : site.ground.weights) {
      add_weight(field, entry, sign / site.ground.derivative, sides, side);
    }
    add_weight(field, {site.ground.node, 1.0}, -sign / site.ground.field, sides, side);
  }

  // The same to the tipper.
  static void add_tipper_weights(const ModeField& field, const SiteField& site, RightSides& sides,
                                 std::size_t side) {
    const Complex inverse = 1.0 / site.ground.derivative;
    for (const GroundImpedance::Weight& entry : site.along) {
      add_weight(field, entry, -inverse, sides, side);
    }
    for (const GroundImpedance::Weight& entry : site.ground.weights) {
      add_weight(field, entry, site.horizontal * inverse * inverse, sides, side);
    }
  }

  void sum_up(const ModeField& field, const RightSides& sides, ParameterSums& sums) const {
    const ModeMesh& mesh = field.mesh();
    sums.reset(parameters_.count, sides.stride());
    for (std::size_t column = 0; column < mesh.columns; ++column) {
      for (std::size_t row = 0; row < section_.rows(); ++row) {
        add_cell(field, column, row, sides, sums);
      }
    }
  }

  void add_cell(const ModeField& field, std::size_t column, std::size_t row, const RightSides& sides,
                ParameterSums& sums) const {
    const std::size_t first = section_.index(column, row, 0);
    std::array<std::size_t, 4> of_triangle = {};
    std::ranges::copy(parameters_.of_triangle.subspan(first, of_triangle.size()), of_triangle.begin());
    if (std::ranges::all_of(of_triangle, [](std::size_t p) { return p == no_parameter; })) {
      return;
    }
    const std::size_t mesh_row = row + field.mesh().added_rows;
    const CellChanges cell(field, column, mesh_row);
    std::array<std::size_t, corners> unknowns = {};
    std::array<bool, corners> is_free = {};
    for (std::size_t i = 0; i < corners; ++i) {
      const auto unknown = field.unknown(column + i % 2, mesh_row + i / 2);
      is_free[i] = unknown.has_value();
      unknowns[i] = unknown.value_or(0);
    }
    const auto add = [&](std::size_t parameter, CornerChange change) {
      for (std::size_t i = 0; i < corners; ++i) {
        change[i] = is_free[i] ? change[i] : 0.0;
      }
      sums.add(parameter, change, unknowns, sides);
    };
    if (cell.has_one_conductivity() && std::ranges::count(of_triangle, of_triangle[0]) == 4) {
      add(of_triangle[0], cell.change(conductivity_by_decade(first)));
      return;
    }
    for (std::size_t t = 0; t < of_triangle.size(); ++t) {
      const std::size_t parameter = of_triangle[t];
      if (parameter == no_parameter ||
          std::find(of_triangle.begin(), of_triangle.begin() + t, parameter) != of_triangle.begin() + t) {
        continue;  // taken with an earlier triangle
      }
      std::array<double, 4> changes = {};
      for (std::size_t other = t; other < of_triangle.size(); ++other) {
        changes[other] = of_triangle[other] == parameter ? conductivity_by_decade(first + other) : 0.0;
      }
      add(parameter, cell.change(changes));
    }
  }

  void give(const ModeRequest& request, std::span<const SiteField> sites, const ParameterSums& sums) const {
    std::vector<Complex> change(parameters_.count);
    std::vector<Complex> tipper_change(request.tipper ? parameters_.count : 0);
    for (std::size_t i = 0; i < sites.size(); ++i) {
      const std::size_t site_index = request.site_indices[i];
      sums.copy_side(i, change);
      const std::size_t beside = input_.sites[site_index].triangle_beside;
      if (request.mode == Mode::tm && parameters_.of_triangle[beside] != no_parameter) {
        change[parameters_.of_triangle[beside]] -=
            conductivity_by_decade(beside) / sites[i].ground.admittivity;
      }
      if (request.tipper) {
        sums.copy_side(sites.size() + i, tipper_change);
      }
      take_(
          request, site_index,
          {sites[i].ground.impedance, request.tipper ? sites[i].tipper() : Complex(), change, tipper_change});
    }
  }

  // S/m that the conductivity of a triangle changes by for each decade of its resistivity
  [[nodiscard]] double conductivity_by_decade(std::size_t triangle) const {
    return -std::numbers::ln10 / section_.resistivities[triangle];
  }

  const Section& section_;
  const CheckedInput& input_;
  std::span<const double> frequencies_;
  const Parameters& parameters_;
  const TakeSiteResponse& take_;
};

void check_parameters(const Section& section, const Parameters& parameters) {
  if (parameters.count == 0) {
    return;
  }
  if (parameters.of_triangle.size() != section.codes.size()) {
    throw std::invalid_argument("the parameters don't fit the section");
  }
  for (std::size_t i = 0; i < parameters.of_triangle.size(); ++i) {
    if (parameters.of_triangle[i] == no_parameter) {
      continue;
    }
    if (parameters.of_triangle[i] >= parameters.count) {
      throw std::invalid_argument("the section names a parameter that doesn't exist");
    }
    if (section.codes[i] == air_code) {
      throw std::invalid_argument("the section gives air a parameter");
    }
  }
}

}  // namespace

bool compute_linear_response(const Section& section, const CheckedInput& input,
                             std::span<const double> frequencies, std::span<const ModeRequest> requests,
                             const Parameters& parameters, const TakeSiteResponse& take,
                             const ResponseOptions& options) {
  check_parameters(section, parameters);
  const ModeMesh te_mesh = make_mode_mesh(section, input.host, Mode::te);
  const ModeMesh tm_mesh = make_mode_mesh(section, input.host, Mode::tm);
  const RequestJob request_job(section, input, frequencies, parameters, take);
  std::vector<Workspace> workspaces(job_threads(requests.size(), options.threads));
  const auto job = [&](std::size_t item, std::size_t thread) {
    const ModeRequest& request = requests[item];
    request_job.run(request.mode == Mode::te ? te_mesh : tm_mesh, request, workspaces[thread]);
  };
  return run_jobs(requests.size(), options.threads, job, options.progress);
}

}  // namespace numerics::section
