// xml_output.h: what all XML files that are written have in common.
#pragma once
#include <string>
#include <string_view>

#include <pugixml.hpp>

namespace formats {

/// Text as XML 1.0 may hold it: bytes that aren't UTF-8 are taken as Windows-1252; control characters but for
/// line ends, which no XML file may hold, are blanks. Escaping is left to the library.
std::string xml_characters(std::string_view text);

/// An element with a text; none is added for an empty one.
void add_text_element(pugi::xml_node parent, const char* name, std::string_view text);

/// A document with its declaration, UTF-8.
pugi::xml_document new_xml_document();

/// The text of a file, two blanks for each level.
std::string text_of_document(const pugi::xml_document& document);

}  // namespace formats
