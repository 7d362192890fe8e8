// Any bytes as a transfer function in XML, parsed and scanned by the import.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "formats/emtf_xml/emtf_xml.h"
#include "fuzz/scan_input.h"
#include "fuzz/sound_functions.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  formats::FileReport report;
  const std::string text(reinterpret_cast<const char*>(data), size);
  (void)formats::emtf_xml::begins_emtf_xml(text);
  if (!is_sound(formats::emtf_xml::read_emtf_xml(text, report), report)) std::abort();
  scan_input(data, size, Module_data_file::format_emtf_xml);
  return 0;
}
