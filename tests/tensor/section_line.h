// section_line.h: lines of stations whose curves and tensors a test says.
#pragma once
#include <cmath>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "numerics/impedance/tensor.h"
#include "tensor/pseudo_section.h"

namespace section_line {

using namespace Module_tensor;

inline Module_database::StoredReading reading(const std::vector<float>& frequencies, float resistivity,
                                              float phase) {
  Module_database::StoredReading merged;
  merged.ID = 1;
  merged.curve.assign(frequencies.size());
  merged.curve.frequencies = frequencies;
  for (std::size_t i = 0; i < frequencies.size(); ++i) {
    merged.curve.value(Module_database::field_resistivity, i) = resistivity;
    merged.curve.value(Module_database::field_phase, i) = phase;
    merged.curve.counts_at(Module_database::field_resistivity, i) = 1;
    merged.curve.counts_at(Module_database::field_phase, i) = 1;
  }
  return merged;
}

struct Line {
  LineTensors line;
  Frequencies frequencies;
  std::vector<StationPhaseTensors> phase_tensors;
  std::vector<StationResiduals> residuals;

  /// ExHy of one resistivity at 45 degrees, EyHx of twice that at -135 degrees.
  StationCurves& add(double station, const std::vector<float>& at, float resistivity = 100.0F) {
    StationCurves curves;
    curves.station = station;
    curves.merged[static_cast<std::size_t>(CurveType::ExHy)] = reading(at, resistivity, 45.0F);
    curves.merged[static_cast<std::size_t>(CurveType::EyHx)] = reading(at, 2.0F * resistivity, -135.0F);
    StationTensor tensor;
    tensor.station = station;
    line.curves.stations.push_back(std::move(curves));
    line.stations.push_back(tensor);
    for (const float frequency : at) {
      if (frequencies.position(frequency) < 0) {
        frequencies.list.push_back(frequency);
        std::ranges::sort(frequencies.list);
        frequencies.enabled.assign(frequencies.list.size(), 1);
      }
    }
    return line.curves.stations.back();
  }
  /// A tensor of the last station.
  void add_tensor(double frequency, const numerics::impedance::Tensor& tensor) {
    line.stations.back().points.push_back({frequency, tensor, 0});
  }
  Module_database::Curve& curve(std::size_t station, CurveType type) {
    return line.curves.stations[station].merged[static_cast<std::size_t>(type)].curve;
  }
  void mask(std::size_t station, CurveType type, int field, std::size_t point) {
    curve(station, type).counts_at(field, point) = 0;
  }
  [[nodiscard]] SectionSource source() {
    phase_tensors = phase_tensors_of(line);
    return {&line, &frequencies, phase_tensors, residuals};
  }
  [[nodiscard]] PseudoSection section(SectionQuantity quantity) {
    return make_pseudo_section(source(), quantity, [](double station) { return std::optional(station); });
  }
};

}  // namespace section_line
