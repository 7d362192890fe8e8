// Any bytes as a transfer function in XML.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "formats/emtf_xml/emtf_xml.h"
#include "fuzz/sound_functions.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  formats::FileReport report;
  const std::string text(reinterpret_cast<const char*>(data), size);
  (void)formats::emtf_xml::begins_emtf_xml(text);
  if (!is_sound(formats::emtf_xml::read_emtf_xml(text, report), report)) std::abort();
  return 0;
}
