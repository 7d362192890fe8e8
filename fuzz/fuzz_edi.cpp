// Any text as an EDI file: its impedance sections, the curves that all additions make of them, and tippers.
#include <cstdlib>
#include <exception>
#include <string>

#include "core/line_reader.h"
#include "formats/edi/edi_parser.h"
#include "fuzz/input_file.h"
#include "fuzz/sound_errors.h"
#include "import/readers/edi_curves.h"
#include "import/readers/edi_errors.h"
#include "import/readers/tipper_curves.h"

using namespace Module_data_file;
using namespace formats::edi;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string path = write_input_file(data, size, "input.edi");
  try {
    formats::FileReport report;
    LineReader reader(path);
    EdiMtParser parser(reader, report);
    (void)parser.place();
    EdiSection section;
    Module_database::Curve curve;
    while (parser.next_section(section)) {
      const ResistivityErrorKind kind = resistivity_error_kind(section);
      for (std::size_t element = 0; element < element_count; ++element) {
        compute_from_impedance(section, element);
      }
      if (has_turned_ey(section)) turn_ey(section);
      for (std::size_t element = 0; element < element_count; ++element) {
        fill_curve(section, element, curve);
        fill_errors(section, element, kind, curve);
        if (curve.count() != section.frequencies.size() || !has_sound_errors(curve)) std::abort();
      }
      remark_on_tipper(section, report);
      for (const EdiTipper element : tipper_of(section)) {
        fill_tipper_curve(section, element, curve);
        if (curve.count() != section.frequencies.size() || !has_sound_parts(curve)) std::abort();
      }
    }
  } catch (const std::exception&) {
    return 0;  // refused with a reason
  }
  return 0;
}
