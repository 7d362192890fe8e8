// zonge_avg_end.h: whether a file of averaged soundings breaks off between two of its rows.
#pragma once
#include <cstddef>
#include <map>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "formats/transfer_function/transfer_function.h"

namespace formats::zonge {

/// Nothing in the file counts its rows, so that one whose last rows are missing looks whole. Where all curves
/// before the last one are alike, they tell what it should have.
class AvgEnd {
 public:
  /// A row, in the order of the file.
  void note(std::size_t station_index, transfer_function::Component component, double frequency);

  /// What the last station seems to lack; empty if nothing.
  [[nodiscard]] std::string missing() const;

 private:
  using Curve = std::pair<std::size_t, transfer_function::Component>;

  [[nodiscard]] std::string missing_rows() const;
  [[nodiscard]] bool lacks_components() const;

  std::map<Curve, std::vector<double>> frequencies_;
  std::map<std::size_t, std::set<transfer_function::Component>> components_;
  std::vector<Curve> curves_;  // in the order in which they begin
  Curve last_;                 // of the last row
};

}  // namespace formats::zonge
