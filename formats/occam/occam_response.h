// occam_response.h: observed and modelled data of one iteration, every data type apart.
#pragma once
#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "formats/occam/data_type.h"

namespace Module_occam {

/// What a response holds for a data type, site and frequency.
enum ResponseValue : std::uint8_t {
  observed = 1,  // the datum
  residual = 2,  // the datum less the modelled value
  modelled = 3,
  misfit = 4,  // the residual in units of the datum's error
};

/// One iteration's response. Sites and frequencies are numbered from 1, as in the files; a file may use 0,
/// too.
class OccamResponse {
 public:
  std::vector<std::string> resp_site_names;  // entry i belongs to site number i + 1
  std::vector<double> resp_offsets;          // m along the line, likewise
  std::vector<double> resp_frequencies;      // Hz, likewise

  [[nodiscard]] int resp_sites() const { return static_cast<int>(resp_offsets.size()); }
  [[nodiscard]] int resp_frequency_count() const { return static_cast<int>(resp_frequencies.size()); }

  /// The four values in the order of ResponseValue.
  using Row = std::array<float, 4>;

  /// A row as the file has it, of any data type.
  struct FileRow {
    int site_number = 0;
    int frequency_number = 0;
    DataType type = DataType::tm_resistivity;
    Row values = {};
  };

  void set_rows(std::vector<FileRow> rows);
  /// In the order of the file.
  [[nodiscard]] const std::vector<FileRow>& rows() const { return rows_; }

  /// @return the values of a place, no_data where the file has no row; of several rows for one place the last
  [[nodiscard]] Row row(DataType type, int site_number, int frequency_number) const;
  [[nodiscard]] float value(ResponseValue k, DataType type, int site_number, int frequency_number) const {
    return row(type, site_number, frequency_number)[k - std::size_t{1}];
  }
  [[nodiscard]] bool has(DataType type) const;

 private:
  std::vector<FileRow> rows_;
  std::vector<std::size_t> by_place_;  // rows by type, site and frequency, then in their order
};

}  // namespace Module_occam
