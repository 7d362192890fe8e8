#include "formats/occam/occam_response.h"

#include <algorithm>
#include <numeric>
#include <tuple>
#include <utility>

#include "core/absent_value.h"

namespace Module_occam {

namespace {

auto place_of(const OccamResponse::FileRow& row) {
  return std::tuple(row.type, row.site_number, row.frequency_number);
}

}  // namespace

void OccamResponse::set_rows(std::vector<FileRow> rows) {
  rows_ = std::move(rows);
  by_place_.resize(rows_.size());
  std::iota(by_place_.begin(), by_place_.end(), std::size_t{0});
  std::ranges::stable_sort(by_place_, {}, [this](std::size_t row) { return place_of(rows_[row]); });
}

OccamResponse::Row OccamResponse::row(DataType type, int site_number, int frequency_number) const {
  const std::tuple place(type, site_number, frequency_number);
  const auto after = std::ranges::upper_bound(by_place_, place, {},
                                              [this](std::size_t row) { return place_of(rows_[row]); });
  if (after == by_place_.begin() || place_of(rows_[*std::prev(after)]) != place) {
    return {no_data, no_data, no_data, no_data};
  }
  return rows_[*std::prev(after)].values;
}

bool OccamResponse::has(DataType type) const {
  const auto first =
      std::ranges::lower_bound(by_place_, type, {}, [this](std::size_t row) { return rows_[row].type; });
  return first != by_place_.end() && rows_[*first].type == type;
}

}  // namespace Module_occam
