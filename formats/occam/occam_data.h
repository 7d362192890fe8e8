// occam_data.h: sites and data of a two-dimensional inversion.
#pragma once
#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "core/absent_value.h"

namespace Module_occam {

/// The sites of a data file.
struct OccamData {
  std::string title;
  std::vector<std::string> site_names;
  std::vector<float> site_offsets;  // m along the line

  [[nodiscard]] int site_count() const { return static_cast<int>(site_offsets.size()); }
};

/// The two curves of a response.
enum class ResponseKind : std::uint8_t {
  resistivity = 1,  // rows of DataType::tm_resistivity, log10 ohm-m
  phase = 2,        // rows of every other data type; the last one of a site and frequency wins
};

/// What a response holds for a site, frequency and kind.
enum ResponseValue : std::uint8_t {
  observed = 1,  // the datum
  residual = 2,  // the datum less the modelled value
  modelled = 3,
  misfit = 4,  // the residual in units of the datum's error
};

/// One iteration's response. Sites and frequencies are numbered from 1, as in the files; a file may use 0,
/// too.
struct OccamResponse {
  std::vector<std::string> resp_site_names;  // entry i belongs to site number i + 1
  std::vector<double> resp_offsets;          // m along the line, likewise
  std::vector<double> resp_frequencies;      // Hz, likewise

  [[nodiscard]] int resp_sites() const { return static_cast<int>(resp_offsets.size()); }
  [[nodiscard]] int resp_frequency_count() const { return static_cast<int>(resp_frequencies.size()); }

  /// resp_values[k, t, site, frequency]; no_data where the file has no row.
  [[nodiscard]] float value(ResponseValue k, ResponseKind t, int site_number, int frequency_number) const {
    return resp_values[index(t, site_number, frequency_number)][k - std::size_t{1}];
  }

  /// The four values of a row in the order of ResponseValue.
  using Row = std::array<float, 4>;
  [[nodiscard]] const Row& row(ResponseKind t, int site_number, int frequency_number) const {
    return resp_values[index(t, site_number, frequency_number)];
  }
  Row& row(ResponseKind t, int site_number, int frequency_number) {
    return resp_values[index(t, site_number, frequency_number)];
  }

  /// Sizes resp_values for every site and frequency, all no_data.
  void assign_no_data() {
    const std::size_t pairs = (resp_offsets.size() + 1) * (resp_frequencies.size() + 1);
    resp_values.assign(2 * pairs, {no_data, no_data, no_data, no_data});
  }

  /// A row as the file has it, of any data type.
  struct FileRow {
    int site_number = 0;
    int frequency_number = 0;
    int data_type = 0;
    Row values = {};
  };
  std::vector<FileRow> rows;  // in the order of the file

  std::vector<Row> resp_values;  // by kind, site number and frequency number, the last running fastest

 private:
  [[nodiscard]] std::size_t index(ResponseKind t, int site_number, int frequency_number) const {
    const auto kind = static_cast<std::size_t>(t) - 1;
    return (kind * (resp_offsets.size() + 1) + static_cast<std::size_t>(site_number)) *
               (resp_frequencies.size() + 1) +
           static_cast<std::size_t>(frequency_number);
  }
};

}  // namespace Module_occam
