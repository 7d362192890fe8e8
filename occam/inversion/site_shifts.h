// site_shifts.h: static shifts: what is added to the modelled log10 resistivities of a site in one mode, as
// the model's statics file has it or as the inversion is asked to find it.
#pragma once
#include <cstddef>
#include <optional>
#include <span>
#include <vector>

#include "formats/occam/data_file.h"
#include "formats/occam/occam_model.h"

namespace Module_occam {

/// A datum of free shifts: their sum.
struct ShiftDatum {
  int data_type = 0;  // of the shifts; 0: of both modes
  double datum = 0.0;
  double error = 1.0;
  std::vector<std::size_t> shifts;  // places among the free ones
};

class SiteShifts {
 public:
  /// @param drawn_to_0  decades: sites and modes that the model gives no shift get an unknown one, drawn to 0
  ///                    by a datum with this error
  /// Throws std::runtime_error for shifts that have no data or stand twice, constraints without an error, and
  /// for unknown shifts beside free ones of the model or where nothing could have one.
  SiteShifts(const OccamModel& model, const ObservedData& data, std::optional<double> drawn_to_0);

  /// Free shifts: those of the model, which iteration files list, then those that are to be found.
  [[nodiscard]] const std::vector<StaticShift>& free() const { return free_; }
  [[nodiscard]] std::size_t of_model() const { return of_model_; }

  /// What the free shifts have as data: constraints of the model first, then one for each shift to be found.
  [[nodiscard]] const std::vector<ShiftDatum>& data() const { return data_; }
  [[nodiscard]] std::size_t constraints() const { return data_.size() - (free_.size() - of_model_); }

  /// What is added to a row whatever the model, decades.
  [[nodiscard]] double fixed_of(std::size_t row) const { return fixed_of_row_[row]; }
  /// The place among the free shifts of the one that is added to a row.
  [[nodiscard]] std::optional<std::size_t> free_of(std::size_t row) const { return free_of_row_[row]; }

  /// The shifts that were found, with which a model file can name them in place of its statics file: fixed
  /// ones of the model and those that were to be found.
  /// @param values  of the free shifts, decades
  [[nodiscard]] StaticsFile found(std::span<const double> values) const;

 private:
  void take_model(const OccamModel& model, const ObservedData& data);
  void add_constraints(const OccamModel& model);
  void add_unknown(const ObservedData& data, double error);

  std::vector<StaticShift> fixed_;
  std::vector<StaticShift> free_;
  std::size_t of_model_ = 0;
  std::vector<ShiftDatum> data_;
  std::vector<double> fixed_of_row_;
  std::vector<std::optional<std::size_t>> free_of_row_;
  std::vector<bool> has_shift_;  // by row
  double error_ = 0.0;           // with which unknown shifts are drawn to 0
};

}  // namespace Module_occam
