#include "occam/inversion/data_checks.h"

#include <algorithm>
#include <cstddef>
#include <map>
#include <stdexcept>
#include <string>

#include "core/number_text.h"

namespace Module_occam {

namespace {

void refuse_other_types(const ObservedData& data) {
  struct Rows {
    std::size_t count = 0;
    std::size_t first_number = 0;
  };
  std::map<int, Rows> by_type;
  for (std::size_t row = 0; row < data.rows.size(); ++row) {
    const int type = static_cast<int>(data.rows[row].type);
    if (find_meaning(data.rows[row].type) == nullptr) {
      Rows& rows = by_type[type];
      rows.first_number = rows.count == 0 ? row + 1 : rows.first_number;
      ++rows.count;
    }
  }
  std::string text;
  for (const auto& [type, rows] : by_type) {
    text += (text.empty() ? "row " : "; row ") + std::to_string(rows.first_number) +
            " of the data has type " + std::to_string(type) + ", which can't be inverted here" +
            (rows.count > 1 ? ", as have " + std::to_string(rows.count) + " rows in all" : "");
  }
  if (!text.empty()) {
    throw std::runtime_error(text);
  }
}

void refuse_numbers(const ObservedData& data) {
  for (std::size_t row = 0; row < data.rows.size(); ++row) {
    if (data.rows[row].error == 0.0) {
      throw std::runtime_error("row " + std::to_string(row + 1) +
                               " of the data has an error of 0; it would outweigh all others");
    }
  }
  for (std::size_t index = 0; index < data.frequencies.size(); ++index) {
    if (!(data.frequencies[index] > 0.0)) {
      throw std::runtime_error("frequency " + std::to_string(index + 1) + " is " +
                               plain_text(data.frequencies[index]) + " Hz");
    }
  }
}

void refuse_sites_off_mesh(const OccamModel& model, const ObservedData& data) {
  for (std::size_t site = 0; site < data.site_offsets.size(); ++site) {
    const double offset = data.site_offsets[site];
    if (!(offset >= model.node_x.front() && offset <= model.node_x.back())) {
      throw std::runtime_error("site " + std::to_string(site + 1) + " at " + plain_text(offset) +
                               " m is off the mesh, which spans " + plain_text(model.node_x.front()) +
                               " to " + plain_text(model.node_x.back()) + " m");
    }
  }
}

}  // namespace

void refuse_unusable_rows(const OccamModel& model, const ObservedData& data) {
  refuse_other_types(data);
  refuse_numbers(data);
  refuse_sites_off_mesh(model, data);
}

}  // namespace Module_occam
