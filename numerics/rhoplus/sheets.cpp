#include "numerics/rhoplus/sheets.h"

#include <cmath>

#include "numerics/constants.h"

namespace numerics::rhoplus {

namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();

/// x of the poles and zeros; -infinity is lambda = 0.
struct PolesAndZeros {
  std::vector<double> poles;
  std::vector<double> zeros;
};

PolesAndZeros poles_and_zeros(const FitProblem& problem, const SwitchModel& model) {
  PolesAndZeros result;
  if (model.starts_at_one) {
    result.poles.push_back(-infinity);
  }
  for (std::size_t i = 0; i < model.switches.size(); ++i) {
    (model.state_after(i) ? result.zeros : result.poles).push_back(model.switches[i]);
  }
  if (has_pole_at_wall(problem, model)) {
    result.poles.push_back(problem.wall);
  }
  return result;
}

/// ln(exp(x) + 1), the distance of a pole or zero from the reference.
double log_distance_from_reference(double x) { return std::log1p(std::exp(x)); }

/// ln |exp(x) - exp(y)|, formed from the distance x - y.
double log_distance(double x, double y) {
  const double high = std::max(x, y);
  return high + std::log(-std::expm1(-std::abs(x - y)));
}

/// c = gap + sum_n residue_n/(lambda_n + s), lambda and s in units of the reference; metres.
struct PartialFractions {
  double gap = 0.0;
  std::vector<double> poles;     // lambda, ascending
  std::vector<double> residues;  // m
};

PartialFractions partial_fractions(double gamma, const PolesAndZeros& places) {
  double common = gamma;
  for (const double pole : places.poles) {
    common += log_distance_from_reference(pole);
  }
  for (const double zero : places.zeros) {
    common -= log_distance_from_reference(zero);
  }
  PartialFractions result;
  result.gap = places.poles.size() == places.zeros.size() ? std::exp(common) : 0.0;
  for (const double pole : places.poles) {
    double log_residue = common;
    for (const double zero : places.zeros) {
      log_residue += log_distance(zero, pole);
    }
    for (const double other : places.poles) {
      if (other != pole) {
        log_residue -= log_distance(other, pole);
      }
    }
    result.poles.push_back(std::exp(pole));
    result.residues.push_back(std::exp(log_residue));
  }
  return result;
}

/// The string (t_1, h_1, ..., t_n, h_n) of a growing number of poles, for the variable s + shift.
class SheetString {
 public:
  explicit SheetString(double residue) : t_{1.0 / residue}, h_{infinity} {}

  /// All poles move away from 0 by `distance` > 0.
  void shift(double distance) {
    double k = 1.0;
    double q = distance * t_[0];
    for (std::size_t i = 0; i < t_.size(); ++i) {
      t_[i] *= k;
      if (i + 1 == t_.size()) {
        h_[i] = 1.0 / (k * q);
      } else {
        const double p = 1.0 + q * h_[i];
        h_[i] /= p * k;
        k *= p * p;
        q = distance * t_[i + 1] + q / p;
      }
    }
  }

  /// A pole at 0 joins; the others are away from it.
  void add(double residue) {
    double k = 1.0;
    double w = residue;
    for (std::size_t i = 0; i < t_.size(); ++i) {
      const double p = 1.0 + w * t_[i];
      t_[i] /= p * k;
      k *= p * p;
      w /= p;
      h_[i] *= k;
    }
    t_.push_back(1.0 / (k * w));
    h_.push_back(infinity);
  }

  [[nodiscard]] const std::vector<double>& t() const { return t_; }
  [[nodiscard]] const std::vector<double>& h() const { return h_; }

 private:
  std::vector<double> t_;
  std::vector<double> h_;
};

}  // namespace

double SheetModel::total_conductance() const {
  double sum = 0.0;
  for (const Sheet& sheet : sheets) {
    sum += sheet.conductance;
  }
  return sum;
}

std::size_t row_count(const FitProblem& problem, const SwitchModel& model) {
  return poles_and_zeros(problem, model).poles.size() + (model.starts_at_one ? 0U : 1U);
}

SheetModel sheets_of(const FitProblem& problem, const SwitchModel& model) {
  const PolesAndZeros places = poles_and_zeros(problem, model);
  const PartialFractions fractions = partial_fractions(model.gamma, places);
  SheetModel result;
  if (fractions.poles.empty()) {
    result.conductor_depth = fractions.gap;
    return result;
  }
  SheetString string(fractions.residues.back());
  for (std::size_t k = fractions.poles.size() - 1; k-- > 0;) {
    string.shift(std::exp(log_distance(places.poles[k + 1], places.poles[k])));
    string.add(fractions.residues[k]);
  }
  if (fractions.poles.front() > 0.0) {
    string.shift(fractions.poles.front());
  }
  double depth = fractions.gap;
  for (std::size_t i = 0; i < string.t().size(); ++i) {
    result.sheets.push_back({depth, string.t()[i] / (mu0 * problem.reference)});
    depth += string.h()[i];
  }
  result.conductor_depth = depth;
  return result;
}

std::vector<std::complex<double>> log_admittance(const SheetModel& model, std::span<const double> omega) {
  std::vector<std::complex<double>> result;
  for (const double w : omega) {
    // Admittance seen from just below a place: of a perfect conductor 0 at its own depth, of an insulator
    // infinite.
    const std::complex<double> s(0.0, w);
    double below = model.conductor_depth;
    std::complex<double> c = 0.0;
    bool endless = std::isinf(below);
    for (std::size_t i = model.sheets.size(); i-- > 0;) {
      const std::complex<double> sheet = s * (mu0 * model.sheets[i].conductance);
      if (endless) {
        c = 1.0 / sheet;
        endless = false;
      } else {
        c += below - model.sheets[i].depth;
        c = c / (1.0 + sheet * c);
      }
      below = model.sheets[i].depth;
    }
    result.push_back(std::log(c + below));
  }
  return result;
}

}  // namespace numerics::rhoplus
