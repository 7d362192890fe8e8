// Any text where people and field files write numbers, latitudes, coordinate systems and dates: what is read
// is what a second reader finds, and a number within its range.
#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <stdexcept>
#include <string>
#include <string_view>

#include "core/number_text.h"
#include "core/text_fields.h"
#include "formats/zonge/zonge_avg_set.h"
#include "fuzz/input_file.h"
#include "numerics/geodesy/geographic_angle.h"
#include "projections/definition_list.h"

namespace {

void require(bool condition) {
  if (!condition) std::abort();
}

/// The C library reads a plain number alike.
void check_number(std::string_view text) {
  const std::string_view number = trimmed(text);
  if (!is_numeric(text) || number.find_first_not_of("+-.eE0123456789") != std::string_view::npos) return;
  require(numeric_value(text) == std::strtod(std::string(number).c_str(), nullptr));
}

void check_angle(std::string_view text) {
  using namespace numerics::geodesy;
  const auto latitude = read_geographic_angle(text, GeographicAngle::latitude);
  const auto longitude = read_geographic_angle(text, GeographicAngle::longitude);
  require(!latitude || std::abs(*latitude) <= 90.0);
  require(!longitude || std::abs(*longitude) <= 360.0);
}

void check_definition(std::string_view text) {
  std::string fault;
  const auto values = Module_projections::definition_from_text(text, fault);
  require(values.has_value() == fault.empty());
  if (values) {
    const auto again =
        Module_projections::definition_from_text(Module_projections::definition_text(*values), fault);
    require(again && *again == *values);
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  check_number(text);
  check_angle(text);
  check_definition(text);
  (void)formats::zonge::data_type_in_name(text);
  try {
    (void)formats::zonge::line_of_mde(write_input_file(data, size, "set.mde"));
  } catch (const std::runtime_error&) {  // no text file
  }
  return 0;
}
