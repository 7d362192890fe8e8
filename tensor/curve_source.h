// curve_source.h: what the readings behind a merged curve say of it and it doesn't keep.
//
// A merged curve has no value where all that went into it was masked, doesn't say how many repeats it is the
// mean of, and its axes are unknown both where the readings differ and where they say nothing.
#pragma once
#include <array>
#include <cstddef>
#include <map>
#include <span>
#include <vector>

#include "core/absent_value.h"
#include "database/reading.h"

namespace Module_tensor {

/// Resistivity (0) and phase (1).
inline constexpr std::size_t quantity_count = 2;

struct SourceValue {
  float value = no_data;  // ohm-m or degrees
  float error = no_data;  // its standard error; no_data where it isn't known
};

/// Arrays of points have the length of the merged curve, or none where nothing is known.
struct CurveSource {
  /// The mean over all repeats in use that have the frequency, whatever masks they have, with the offsets of
  /// their average; where scan rates overlap the mean over these, as in a merged curve. Phases on the circle.
  std::vector<std::array<SourceValue, quantity_count>> regardless_of_masks;
  /// Whether a repeat that is in these means is masked there.
  std::vector<std::array<bool, quantity_count>> some_masked;
  /// The errors of the curve's own values that the spread of repeats gives: their standard deviation divided
  /// by the root of their number; no_data where there is one value only. Where scan rates overlap, that of
  /// the mean over these: a rate with one value has the error of its file then.
  std::vector<std::array<float, quantity_count>> repeat_errors;
  std::vector<Module_database::ReadingAxes> axes;  // of the readings, each once
  /// Resistivity over 0.2 |Z|^2 / f at the points of the readings that have both: how the resistivities were
  /// found, but for the unit of the impedances.
  std::vector<double> impedance_ratios;
};

/// The standard error of a value of a merged curve: what repeats show goes before what files say. no_data
/// where neither says anything.
/// @param quantity  as in quantity_count
float curve_error(const Module_database::StoredReading& merged, const CurveSource& source,
                  std::size_t quantity, std::size_t point);

/// The flags and offsets of an average of one scan rate.
struct AverageSettings {
  bool UseReading = true;
  bool UseResistivity = true;
  bool UsePhase = true;
  float ResOffset = 1.0F;
  float PhaseOffset = 0.0F;  // degrees
};

/// Collects the readings of one merged curve.
class SourceSums {
 public:
  /// Adds a repeat that is in use, or a curve that came reduced, of a scan rate (Hz).
  void add(float scan_rate, const Module_database::StoredReading& repeat, std::span<const float> frequencies);

  /// @param settings     of the averages by scan rate; one that isn't there is as by default
  /// @param frequencies  of the merged curve, ascending
  [[nodiscard]] CurveSource finish(const std::map<float, AverageSettings>& settings,
                                   std::span<const float> frequencies) const;

 private:
  /// Mean and spread of values as they come (Welford 1962, Technometrics 4, 419-420): equal values have
  /// exactly no spread.
  struct Mean {
    int count = 0;
    double mean = 0.0;
    double squares = 0.0;  // of the differences from the mean
    double error_squares = 0.0;
    int errors = 0;

    void add(double value, double error);
    void add_on_circle(double phase, double error);
    [[nodiscard]] float error_by_spread() const;
    /// Of values with errors of their own; no_data where one of them has none.
    [[nodiscard]] float error_by_values() const;
    [[nodiscard]] float error() const;
  };
  struct PointSums {
    std::array<Mean, quantity_count> all;
    std::array<Mean, quantity_count> used;
  };
  struct RateSums {
    std::vector<PointSums> points;
    std::vector<Module_database::ReadingAxes> axes;
    std::vector<double> impedance_ratios;
  };

  /// The means of the rates at a point, in the order in which they come.
  struct RateMeans {
    Mean all;   // of the values regardless of masks
    Mean used;  // of the curve's own
    bool some_masked = false;
    bool used_have_spread = false;  // at least one of them
  };
  using PointMeans = std::array<RateMeans, quantity_count>;

  static void add_point(const Module_database::StoredReading& repeat, std::size_t index, PointSums& sums);
  static void give(const RateSums& sums, const AverageSettings& settings, std::vector<PointMeans>& means);
  static void take(const std::vector<PointMeans>& means, CurveSource& source);

  std::map<float, RateSums> rates_;  // by scan rate, Hz
};

}  // namespace Module_tensor
