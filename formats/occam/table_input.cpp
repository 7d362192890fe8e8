#include "formats/occam/table_input.h"

#include <stdexcept>

#include "core/text_fields.h"

namespace Module_occam {

namespace {

int labelled_count(std::string_view line, Labels labels, std::size_t label_length) {
  if (labels == Labels::with_colon) {
    return integer_value(behind_colon(line));
  }
  const std::string_view value = from_column(line, label_length + 1);
  return integer_value(value.starts_with(':') ? value.substr(1) : value);
}

void read_values(TextInput& input, int count, std::vector<double>& values, const char* what) {
  if (read_number_list(input, count, values) != 0) {
    throw std::runtime_error("the file ends behind " + std::to_string(values.size()) + " of " +
                             std::to_string(count) + " " + what);
  }
}

}  // namespace

TableHeader read_header(TextInput& input, Labels labels) {
  constexpr std::size_t sites_label = 5;
  constexpr std::size_t frequencies_label = 12;
  constexpr std::size_t blocks_label = 14;
  TableHeader header;
  input.filled_line();  // title
  const int sites = labelled_count(input.filled_line(), labels, sites_label);
  if (sites < 1) {
    throw Refusal("The file does not have any sites defined");
  }
  for (int site = 0; site < sites; ++site) {
    header.site_names.push_back(text_from_field_file(trimmed(input.filled_line())));
  }
  input.filled_line();  // the label of the offsets
  read_values(input, sites, header.site_offsets, "offsets");
  const int frequencies = labelled_count(input.filled_line(), labels, frequencies_label);
  if (frequencies < 1) {
    throw Refusal("The file does not have any frequencies defined");
  }
  read_values(input, frequencies, header.frequencies, "frequencies");
  header.row_count = labelled_count(input.filled_line(), labels, blocks_label);
  if (header.row_count < 1) {
    throw Refusal("The file does not have any data values defined");
  }
  input.filled_line();  // the label of the rows
  return header;
}

}  // namespace Module_occam
