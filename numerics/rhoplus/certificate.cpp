#include "numerics/rhoplus/certificate.h"

#include <algorithm>
#include <cmath>

#include "numerics/rhoplus/log_ratio.h"

namespace numerics::rhoplus {

namespace {

constexpr double scan_reach = 32.0;                      // e-folds beyond the band
constexpr double scan_step = 2.302585092994046 / 100.0;  // 100 points a decade
constexpr int halvings = 24;
constexpr double misplacement = 0.03;  // of a switch, in x: no more than the polish makes up for

/// g(lambda) = sum_k 2 a_k Re K_k + b_k Im K_k with K = 1/(lambda + s) - 1/(lambda + 1). Over one denominator
///
///   lambda g(lambda) = lambda/(lambda + 1) sum_k (p_k lambda - q_k)/(lambda^2 + w_k^2),
///   p = 2 a - b w,  q = 2 a w^2 + b w.
class Gradient {
 public:
  Gradient(const FitProblem& problem, const Eigen::VectorXd& residuals)
      : omega_(problem.omega), a_(omega_.size(), 0.0), b_(omega_.size(), 0.0) {
    Eigen::Index row = 0;
    for (const FitValue& value : problem.values) {
      (value.is_phase ? b_ : a_)[static_cast<std::size_t>(value.frequency_index)] +=
          residuals[row++] * value.weight;
    }
    for (std::size_t k = 0; k < omega_.size(); ++k) {
      const double w = omega_[k];
      terms_.push_back({2.0 * a_[k] - b_[k] * w, 2.0 * a_[k] * w * w + b_[k] * w, w * w});
    }
    if (terms_.size() % 2 != 0) {
      terms_.push_back({0.0, 0.0, 1.0});
    }
  }

  /// lambda g(lambda) at each lambda: free of scale, so that roots anywhere are seen alike. Two frequencies
  /// share a division, the dearest part of it.
  [[nodiscard]] Eigen::ArrayXd scaled(const Eigen::ArrayXd& lambda) const {
    const Eigen::ArrayXd lambda2 = lambda.square();
    Eigen::ArrayXd sum = Eigen::ArrayXd::Zero(lambda.size());
    for (std::size_t k = 0; k < terms_.size(); k += 2) {
      const auto& [p1, q1, w1] = terms_[k];
      const auto& [p2, q2, w2] = terms_[k + 1];
      sum += ((p1 * lambda - q1) * (lambda2 + w2) + (p2 * lambda - q2) * (lambda2 + w1)) /
             ((lambda2 + w1) * (lambda2 + w2));
    }
    return sum * lambda / (lambda + 1.0);
  }

  [[nodiscard]] double scaled_at(double x) const {
    const double lambda = std::exp(x);
    const double lambda2 = lambda * lambda;
    double sum = 0.0;
    for (std::size_t k = 0; k < terms_.size(); k += 2) {
      const auto& [p1, q1, w1] = terms_[k];
      const auto& [p2, q2, w2] = terms_[k + 1];
      sum += ((p1 * lambda - q1) * (lambda2 + w2) + (p2 * lambda - q2) * (lambda2 + w1)) /
             ((lambda2 + w1) * (lambda2 + w2));
    }
    return sum * lambda / (lambda + 1.0);
  }

  /// Int g dlambda.
  [[nodiscard]] double area(double from, double to) const {
    double sum = 0.0;
    for (std::size_t k = 0; k < omega_.size(); ++k) {
      const std::complex<double> part = log_ratio(from, to, omega_[k]);
      sum += 2.0 * a_[k] * part.real() + b_[k] * part.imag();
    }
    return sum;
  }

 private:
  struct Term {
    double p;
    double q;
    double omega2;
  };

  const std::vector<double>& omega_;
  std::vector<double> a_;
  std::vector<double> b_;
  std::vector<Term> terms_;  // an even number of them
};

double root_between(const Gradient& gradient, double low, double high, bool rises) {
  for (int i = 0; i < halvings; ++i) {
    const double middle = 0.5 * (low + high);
    ((gradient.scaled_at(middle) > 0.0) == rises ? high : low) = middle;
  }
  return 0.5 * (low + high);
}

/// lambda g over the whole scan.
struct Scan {
  Eigen::ArrayXd x;
  Eigen::ArrayXd h;
};

Scan scan_gradient(const Gradient& gradient, double low, double high) {
  const auto points = static_cast<Eigen::Index>(std::ceil((high - low) / scan_step)) + 1;
  Scan scan{Eigen::ArrayXd::LinSpaced(points, low, high), {}};
  scan.h = gradient.scaled(scan.x.exp());
  return scan;
}

/// Adds the roots of g to the cuts. Between three points of one sign a dip across zero shows as a turning
/// point near it; there the vertex of the parabola is looked at too.
void add_roots(const Gradient& gradient, const Scan& scan, std::vector<double>& cuts) {
  const Eigen::ArrayXd& x = scan.x;
  const Eigen::ArrayXd& h = scan.h;
  const Eigen::Index points = x.size();
  for (Eigen::Index i = 1; i < points; ++i) {
    if ((h[i] > 0.0) != (h[i - 1] > 0.0)) {
      cuts.push_back(root_between(gradient, x[i - 1], x[i], h[i] > 0.0));
      continue;
    }
    if (i + 1 == points || (h[i + 1] > 0.0) != (h[i] > 0.0)) {
      continue;
    }
    const double bend = h[i + 1] - 2.0 * h[i] + h[i - 1];
    const double slope = 0.5 * (h[i + 1] - h[i - 1]);
    if (bend * h[i] <= 0.0 || std::abs(slope) > std::abs(bend)) {
      continue;
    }
    const double vertex = x[i] - slope / bend * (x[1] - x[0]);
    if ((gradient.scaled_at(vertex) > 0.0) != (h[i] > 0.0)) {
      cuts.push_back(root_between(gradient, x[i - 1], vertex, h[i] <= 0.0));
      cuts.push_back(root_between(gradient, vertex, x[i + 1], h[i] > 0.0));
    }
  }
}

double peak_between(const Scan& scan, double first, double end) {
  const double* const begin = scan.x.data();
  const auto low = std::lower_bound(begin, begin + scan.x.size(), first) - begin;
  const auto high = std::lower_bound(begin, begin + scan.x.size(), end) - begin;
  if (low >= high) {
    return 0.5 * (first + end);
  }
  Eigen::Index largest = 0;
  scan.h.segment(low, high - low).abs().maxCoeff(&largest);
  return scan.x[low + largest];
}

}  // namespace

Certificate certify(const FitProblem& problem, const SwitchModel& model, const Eigen::VectorXd& residuals) {
  const Gradient gradient(problem, residuals);
  const double low = std::log(problem.omega.front()) - scan_reach;
  const double high = std::min(std::log(problem.omega.back()) + scan_reach, problem.wall);
  const Scan scan = scan_gradient(gradient, low, high);
  constexpr double of_each = 10.0;  // a division and some products
  problem.limit->spend(of_each * static_cast<double>(scan.x.size()) *
                       static_cast<double>(problem.omega.size()));
  std::vector<double> cuts = model.switches;
  add_roots(gradient, scan, cuts);
  std::sort(cuts.begin(), cuts.end());

  const auto is_switch = [&](double x) {
    return std::binary_search(model.switches.begin(), model.switches.end(), x);
  };
  Certificate certificate;
  double from = 0.0;
  std::size_t passed = 0;
  for (std::size_t i = 0; i <= cuts.size(); ++i) {
    const double end = i < cuts.size() ? cuts[i] : problem.wall;
    const double to = std::exp(end);
    const double area = gradient.area(from, to);
    if (model.state_after(passed) ? area > 0.0 : area < 0.0) {
      const double share = 2.0 * std::abs(area);
      certificate.gap += share;
      const double first = i > 0 ? cuts[i - 1] : low;
      certificate.wrong_stretches.push_back(
          {peak_between(scan, first, std::min(end, high)), share,
           end - first < misplacement && (is_switch(first) || is_switch(end))});
    }
    from = to;
    while (passed < model.switches.size() && model.switches[passed] <= end) {
      ++passed;
    }
  }
  return certificate;
}

}  // namespace numerics::rhoplus
