// xml_text.h: the bytes of a file made ready for an XML parser, which is stricter than those who write such
// files.
#pragma once
#include <cstddef>
#include <string>
#include <string_view>

namespace formats::emtf_xml {

/// UTF-16 as UTF-8; other bytes as they are.
std::string without_utf16(std::string bytes);

/// A bare "&", as it stands in citations, begins no entity: it becomes one. No line end is added.
/// @return how many there were
int mend_ampersands(std::string& text);

/// The line, from 1, in which a byte stands.
int line_of(std::string_view text, std::size_t offset);

}  // namespace formats::emtf_xml
