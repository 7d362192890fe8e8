#include "formats/emtf_xml/xml_text.h"

#include <algorithm>
#include <utility>

#include "core/text_encoding.h"

namespace formats::emtf_xml {

namespace {

constexpr std::size_t longest_entity = 12;  // bytes
constexpr std::size_t first_bytes = 4096;   // tell the encoding

/// Whether the "&" at this place begins an entity, of any name.
bool is_entity(std::string_view text, std::size_t ampersand) {
  const std::string_view rest = text.substr(ampersand + 1, longest_entity);
  const auto end = std::ranges::find_if_not(rest, [](char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '#';
  });
  return end != rest.begin() && end != rest.end() && *end == ';';
}

}  // namespace

std::string without_utf16(std::string bytes) {
  const TextEncoding encoding = text_encoding(std::string_view(bytes).substr(0, first_bytes));
  if (encoding == TextEncoding::bytes) {
    return bytes;
  }
  std::string text;
  decode_utf16(bytes, encoding, true, text);
  return text;
}

int mend_ampersands(std::string& text) {
  std::string mended;
  int count = 0;
  std::size_t from = 0;
  for (std::size_t at = text.find('&'); at != std::string::npos; at = text.find('&', at + 1)) {
    if (!is_entity(text, at)) {
      mended.append(text, from, at + 1 - from).append("amp;");
      from = at + 1;
      ++count;
    }
  }
  if (count > 0) {
    mended.append(text, from);
    text = std::move(mended);
  }
  return count;
}

int line_of(std::string_view text, std::size_t offset) {
  return 1 + static_cast<int>(std::ranges::count(text.substr(0, offset), '\n'));
}

}  // namespace formats::emtf_xml
