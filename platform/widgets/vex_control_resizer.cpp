#include "platform/widgets/vex_control_resizer.h"

#include <QList>
#include <cassert>
#include <cmath>
#include <numeric>

namespace {

/// The shares as whole pixels that add up to `length`: each divider is at the rounded sum of the shares
/// before it.
QList<int> sizes_of(const std::vector<double>& shares, int length) {
  const double whole = std::accumulate(shares.begin(), shares.end(), 0.0);
  QList<int> sizes;
  double sum = 0.0;
  int edge = 0;
  for (const double share : shares) {
    sum += share;
    const int next_edge = static_cast<int>(std::lround(length * sum / whole));
    sizes.append(next_edge - edge);
    edge = next_edge;
  }
  return sizes;
}

}  // namespace

VexControlResizer::VexControlResizer(QObject* parent) : QObject(parent) {}

void VexControlResizer::manage(QSplitter* splitter, const std::vector<double>& shares) {
  assert(splitter->count() == static_cast<int>(shares.size()));
  managed_.push_back({splitter, shares});
}

void VexControlResizer::capture_layout() {
  for (Managed& managed : managed_) {
    const QList<int> sizes = managed.splitter->sizes();
    if (managed.splitter->isVisible() && std::accumulate(sizes.begin(), sizes.end(), 0) > 0) {
      managed.shares.assign(sizes.begin(), sizes.end());
    }
  }
}

void VexControlResizer::apply_resize() {
  for (const Managed& managed : managed_) {
    const QList<int> present = managed.splitter->sizes();
    const int length = std::accumulate(present.begin(), present.end(), 0);
    if (length > 0) {
      managed.splitter->setSizes(sizes_of(managed.shares, length));
    }
  }
}
