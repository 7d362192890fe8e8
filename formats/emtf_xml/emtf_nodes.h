// emtf_nodes.h: elements and attributes of a transfer function in XML, found whatever their case.
#pragma once
#include <optional>
#include <string>
#include <string_view>

#include <pugixml.hpp>

namespace formats::emtf_xml {

/// The first child of this name.
pugi::xml_node child_of(const pugi::xml_node& node, std::string_view name);

/// Empty where there is no such attribute.
std::string_view attribute_of(const pugi::xml_node& node, std::string_view name);

/// The text of an element, as UTF-8 and without blanks at its ends.
std::string text_of(const pugi::xml_node& node);

/// None for a text that is no number, or one that marks an absent value.
std::optional<double> number_of(std::string_view text);

/// A value of a block of the period's, a row of a matrix.
bool is_value(const pugi::xml_node& node);

}  // namespace formats::emtf_xml
