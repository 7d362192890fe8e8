#include "rhoplus/section_residuals.h"

#include <cstddef>
#include <span>
#include <utility>

namespace Module_rhoplus {

using Module_tensor::LineTensors;
using Module_tensor::StationResiduals;

namespace {

/// What differs where the fit may differ: FNV-1a over the numbers.
class Fingerprint {
 public:
  void add(std::span<const std::byte> bytes) {
    for (const std::byte byte : bytes) {
      constexpr std::uint64_t prime = 1099511628211ULL;
      hash_ = (hash_ ^ std::to_integer<std::uint64_t>(byte)) * prime;
    }
  }
  template <class Number>
  void add_number(Number number) {
    add(std::as_bytes(std::span(&number, 1)));
  }
  [[nodiscard]] std::uint64_t value() const { return hash_; }

 private:
  std::uint64_t hash_ = 14695981039346656037ULL;
};

void add_settings(const Module_output::RhoplusSettings& settings, Fingerprint& print) {
  for (const std::int32_t flag : {settings.surface, settings.exclude_data, settings.apply_static,
                                  settings.exclude_negative_phase, settings.use_file_errors}) {
    print.add_number(flag);
  }
  for (const float number :
       {settings.resistivity_error_floor, settings.phase_error_floor, settings.resistivity_scale}) {
    print.add_number(number);
  }
}

std::vector<std::uint64_t> inputs_of(const LineTensors& line, const Frequencies& frequencies,
                                     const Module_output::RhoplusSettings& settings) {
  Fingerprint common;
  add_settings(settings, common);
  common.add(std::as_bytes(std::span(frequencies.list)));
  common.add(std::as_bytes(std::span(frequencies.enabled)));
  std::vector<std::uint64_t> inputs;
  for (std::size_t i = 0; i < line.stations.size(); ++i) {
    Fingerprint print = common;
    print.add_number(line.stations[i].station);
    print.add_number(Module_tensor::yx_points_away(line.curves.stations[i], line.stations[i]) ? 1 : 0);
    for (const auto type : consistency_types) {
      const auto& merged = line.curves.stations[i].of(type);
      print.add_number(merged.ID);
      print.add_number(merged.ResOffset);
      print.add_number((merged.UseReading ? 1 : 0) + (merged.UseResistivity ? 2 : 0) +
                       (merged.UsePhase ? 4 : 0));
      print.add(std::as_bytes(std::span(merged.curve.frequencies)));
      print.add(std::as_bytes(std::span(merged.curve.data)));
      print.add(std::as_bytes(std::span(merged.curve.mask)));
      print.add(std::as_bytes(std::span(merged.curve.errors)));
    }
    inputs.push_back(print.value());
  }
  return inputs;
}

StationResiduals residuals_of(const StationConsistency& station) {
  StationResiduals result;
  for (std::size_t mode = 0; mode < mode_count; ++mode) {
    for (const PointResidual& point : station.modes[mode].points) {
      result[mode].push_back({point.frequency, point.resistivity, point.phase});
    }
  }
  return result;
}

}  // namespace

bool SectionResiduals::update(const LineTensors& line, const Frequencies& frequencies,
                              const Module_output::RhoplusSettings& settings,
                              const std::function<bool(double)>& progress) {
  constexpr std::size_t at_a_glance = 4;  // stations, a few milliseconds each
  std::vector<std::uint64_t> inputs = inputs_of(line, frequencies, settings);
  std::vector<std::size_t> changed;
  for (std::size_t i = 0; i < inputs.size(); ++i) {
    if (i >= inputs_.size() || inputs_.size() != inputs.size() || inputs_[i] != inputs[i]) {
      changed.push_back(i);
    }
  }
  if (changed.size() > at_a_glance) {
    LineConsistency all = line_consistency(line, frequencies, settings, progress);
    if (all.stopped) {
      return false;
    }
    consistency_ = std::move(all);
  } else {
    consistency_.stations.resize(inputs.size());
    for (const std::size_t i : changed) {
      consistency_.stations[i] =
          station_consistency(line.curves.stations[i], line.stations[i], frequencies, settings);
    }
  }
  residuals_.clear();
  for (const StationConsistency& station : consistency_.stations) {
    residuals_.push_back(residuals_of(station));
  }
  inputs_ = std::move(inputs);
  return true;
}

}  // namespace Module_rhoplus
