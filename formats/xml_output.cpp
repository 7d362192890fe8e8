#include "formats/xml_output.h"

#include <cstddef>
#include <utility>

#include "core/text_fields.h"

namespace formats {

namespace {

// A stream of the installed library is one of the standard library that it was built with.
class TextWriter : public pugi::xml_writer {
 public:
  void write(const void* bytes, std::size_t size) override {
    text.append(static_cast<const char*>(bytes), size);
  }
  std::string text;
};

}  // namespace

std::string xml_characters(std::string_view text) {
  constexpr std::string_view start_of_no_characters = "\xEF\xBF";  // U+FFFE and U+FFFF are none
  std::string characters = text_from_field_file(text);
  for (std::size_t i = 0; i < characters.size(); ++i) {
    const auto byte = static_cast<unsigned char>(characters[i]);
    if ((byte < ' ' && byte != '\n') || byte == 0x7F) {
      characters[i] = ' ';
    } else if ((byte == 0xBE || byte == 0xBF) && i >= 2 &&
               characters.compare(i - 2, 2, start_of_no_characters) == 0) {
      characters[i] = '\xBD';  // the sign for a character that can't be shown
    }
  }
  return characters;
}

void add_text_element(pugi::xml_node parent, const char* name, std::string_view text) {
  if (!text.empty()) {
    parent.append_child(name).text().set(xml_characters(text).c_str());
  }
}

pugi::xml_document new_xml_document() {
  pugi::xml_document document;
  pugi::xml_node declaration = document.append_child(pugi::node_declaration);
  declaration.append_attribute("version") = "1.0";
  declaration.append_attribute("encoding") = "UTF-8";
  return document;
}

std::string text_of_document(const pugi::xml_document& document) {
  TextWriter writer;
  document.save(writer, "  ", pugi::format_default, pugi::encoding_utf8);
  return std::move(writer.text);
}

}  // namespace formats
