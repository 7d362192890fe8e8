// merge_curves.h: the arithmetic of a merged curve: the averages of several scan rates on one frequency axis.
#pragma once
#include "database/reading.h"

namespace Module_averaged_data {

/// The union of averages, added in ascending order of their scan rates. At a frequency that several of them
/// have, resistivity and phase are means of the corrected values; the other fields are those of the highest
/// scan rate, uncorrected.
///
///   resistivity  field 1 x ResOffset    (the static factor multiplies resistivity, not impedance)
///   phase        field 2 + PhaseOffset, degrees
///
///   errors       sqrt(sum e^2) / n over the n values of each mean, those of resistivity times ResOffset;
///                no_data if one of them has none, empty if no average has errors
///
/// A value that is masked, switched off or absent contributes nothing; its frequency still has its place.
class MergedCurve {
 public:
  /// Adds one average. Frequencies are compared exactly; those that aren't above 0 are left out.
  void add(const Module_database::StoredReading& average);

  /// The merged curve: no_data where nothing contributed; masks are 1 where there is a value.
  [[nodiscard]] Module_database::Curve finish() const;

 private:
  // Fields 1, 2 are sums, the errors roots of sums of squares, the masks numbers of contributions.
  Module_database::Curve merged_;
};

}  // namespace Module_averaged_data
