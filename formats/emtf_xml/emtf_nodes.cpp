#include "formats/emtf_xml/emtf_nodes.h"

#include <cmath>

#include "core/number_text.h"
#include "core/text_fields.h"
#include "formats/field_values.h"

namespace formats::emtf_xml {

pugi::xml_node child_of(const pugi::xml_node& node, std::string_view name) {
  return node.find_child(
      [name](const pugi::xml_node& child) { return equal_ignoring_case(child.name(), name); });
}

std::string_view attribute_of(const pugi::xml_node& node, std::string_view name) {
  return node
      .find_attribute(
          [name](const pugi::xml_attribute& each) { return equal_ignoring_case(each.name(), name); })
      .value();
}

std::string text_of(const pugi::xml_node& node) { return text_from_field_file(trimmed(node.child_value())); }

std::optional<double> number_of(std::string_view text) {
  const double value = numeric_value(text);
  return is_numeric(text) && std::abs(value) <= largest_value ? std::optional(value) : std::nullopt;
}

bool is_value(const pugi::xml_node& node) { return equal_ignoring_case(node.name(), "value"); }

}  // namespace formats::emtf_xml
