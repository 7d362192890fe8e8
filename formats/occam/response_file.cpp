#include "formats/occam/response_file.h"

#include <cmath>
#include <utility>

#include "core/file_names.h"
#include "core/text_fields.h"
#include "formats/occam/table_input.h"

namespace Module_occam {

namespace {

constexpr std::size_t max_site_frequencies = std::size_t{1} << 22U;  // each is a line of the fit table
constexpr std::size_t row_items = 7;
constexpr std::size_t data_row_items = 5;

// Positions of the items in a response row and a data row.
constexpr std::size_t site_item = 0;
constexpr std::size_t frequency_item = 1;
constexpr std::size_t type_item = 2;
constexpr std::size_t error_item = 4;   // of a data row
constexpr std::size_t datum_item = 4;   // of a response row without a header
constexpr std::size_t column_item = 5;  // residual or modelled value
constexpr std::size_t misfit_item = 6;

using ResponseRows = std::vector<Row<row_items>>;
using DataRows = std::vector<Row<data_row_items>>;

OccamResponse empty_response(TableHeader& header) {
  OccamResponse response;
  response.resp_site_names = std::move(header.site_names);
  response.resp_offsets = std::move(header.site_offsets);
  response.resp_frequencies = std::move(header.frequencies);
  return response;
}

ResponseRows read_rows(TextInput& input, int count) {
  ResponseRows rows;
  for (Row<row_items> row{}; static_cast<int>(rows.size()) < count; rows.push_back(row)) {
    if (!read_row(input, row)) {
      throw std::runtime_error("the file ends behind " + std::to_string(rows.size()) + " of " +
                               std::to_string(count) + " rows");
    }
  }
  return rows;
}

/// The rows of the data file, as many as it has.
DataRows read_data_rows(TextInput& input, int count) {
  DataRows rows;
  for (Row<data_row_items> row{}; static_cast<int>(rows.size()) < count && read_row(input, row);) {
    rows.push_back(row);
  }
  return rows;
}

bool agree(double a, double b, double largest_term) {
  constexpr double printed_digits = 2e-4;  // two numbers with five digits, each right to half of the last one
  return std::abs(a - b) <= printed_digits * (largest_term + std::abs(a));
}

/// Whether the column after the datum holds modelled values: in nearly all rows, misfit times error is datum
/// less column, and in fewer rows it is the column itself.
bool column_is_modelled(const ResponseRows& rows, const DataRows& data) {
  constexpr double nearly_all = 0.95;
  if (rows.size() != data.size()) {
    return false;
  }
  std::size_t as_modelled = 0;
  std::size_t as_residual = 0;
  for (std::size_t row = 0; row < rows.size(); ++row) {
    const Row<row_items>& response = rows[row];
    if (!std::equal(response.begin(), response.begin() + error_item - 1, data[row].begin())) {
      return false;  // not the same datum
    }
    const double residual = response[misfit_item] * data[row][error_item];
    const double datum = response[datum_item];
    const double column = response[column_item];
    const double largest = std::max(std::abs(datum), std::abs(column));
    as_modelled += agree(residual, datum - column, largest) ? 1 : 0;
    as_residual += agree(residual, column, largest) ? 1 : 0;
  }
  return static_cast<double>(as_modelled) >= nearly_all * static_cast<double>(rows.size()) &&
         as_modelled > as_residual;
}

int number_within(double value, int highest, const char* what) {
  const int number = integer_of(std::nearbyint(value));
  if (number < 0 || number > highest) {
    throw std::runtime_error("there is no " + std::string(what) + " " + std::to_string(number));
  }
  return number;
}

template <class ValuesOf>
OccamResponse store_rows(TableHeader& header, const ResponseRows& rows, ValuesOf values_of) {
  OccamResponse response = empty_response(header);
  if (response.resp_offsets.size() * response.resp_frequencies.size() > max_site_frequencies) {
    throw std::runtime_error("there are too many sites and frequencies");
  }
  std::vector<OccamResponse::FileRow> stored;
  stored.reserve(rows.size());
  for (const Row<row_items>& row : rows) {
    const int site = number_within(row[site_item], response.resp_sites(), "site");
    const int frequency = number_within(row[frequency_item], response.resp_frequency_count(), "frequency");
    const auto type = static_cast<DataType>(integer_of(std::nearbyint(row[type_item])));
    stored.push_back({site, frequency, type, values_of(row)});
  }
  response.set_rows(std::move(stored));
  return response;
}

OccamResponse::Row singles(double observed, double residual, double modelled, double misfit) {
  return {static_cast<float>(observed), static_cast<float>(residual), static_cast<float>(modelled),
          static_cast<float>(misfit)};
}

OccamResponse read_marked(TextInput& input) {
  TableHeader header = read_header(input, Labels::with_colon);
  const ResponseRows rows = read_rows(input, header.row_count);
  return store_rows(header, rows,
                    [](const Row<row_items>& row) { return singles(row[3], row[4], row[5], row[6]); });
}

OccamResponse read_unmarked(const std::string& path, const std::string& header_file) {
  TextInput header_input(header_file);
  if (header_input.line().find(data_marker) == std::string_view::npos) {
    throw Refusal("The file does not have the correct format");
  }
  TableHeader header = read_header(header_input, Labels::without_colon);
  TextInput input(path);
  const ResponseRows rows = read_rows(input, header.row_count);
  if (column_is_modelled(rows, read_data_rows(header_input, header.row_count))) {
    return store_rows(header, rows, [](const Row<row_items>& row) {
      return singles(row[datum_item], row[datum_item] - row[column_item], row[column_item], row[misfit_item]);
    });
  }
  return store_rows(header, rows, [](const Row<row_items>& row) {
    return singles(row[datum_item], row[column_item], row[datum_item] - row[column_item], row[misfit_item]);
  });
}

}  // namespace

std::string response_file_name(std::string_view iteration_file) {
  constexpr std::size_t iteration_word = 4;  // "ITER"
  const std::string name = Module_util::file_name_only(iteration_file);
  const std::string base = Module_util::strip_extension(name);
  if (equal_ignoring_case(Module_util::file_extension(name), "ITER")) {
    return "RESP" + base.substr(std::min(iteration_word, base.size())) + ".resp";
  }
  return "RESP_" + base + ".out";
}

OccamResponse read_response_file(const std::string& path, const std::string& header_file) {
  TextInput input(path);
  return input.line().find(data_marker) != std::string_view::npos ? read_marked(input)
                                                                  : read_unmarked(path, header_file);
}

}  // namespace Module_occam
