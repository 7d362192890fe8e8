// curve_heads.h: what a table of curves says of each beside its points: names, place, date, axes.
#pragma once
#include <cstdint>
#include <map>
#include <optional>
#include <string>

#include "database/survey_lists.h"
#include "exchange/site_places.h"
#include "formats/csv/curve_table.h"
#include "tensor/line_choice.h"

namespace Module_exchange {

/// The stations of a line, read once.
class CurveHeads {
 public:
  /// Needs an open survey; throws dao::Error.
  explicit CurveHeads(const Module_tensor::LineChoice& choice);

  /// A curve without points. Its date is that of its file, of a computed one that of the station's first
  /// file.
  [[nodiscard]] formats::csv::CurveRows head(double station, const std::string& data_type,
                                             const Module_database::StoredReading& reading) const;

 private:
  void read_dates();
  /// Days since 30 December 1899; none where the files name no date.
  [[nodiscard]] std::optional<double> date_of(double station, std::int32_t FileID) const;

  Module_tensor::LineChoice choice_;
  std::map<double, Module_database::ListedStation> stations_;
  std::map<double, GeographicSite> places_;
  std::map<std::int32_t, double> dates_of_files_;
  std::map<double, double> first_dates_;
};

}  // namespace Module_exchange
