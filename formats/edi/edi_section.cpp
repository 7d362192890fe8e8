#include "formats/edi/edi_section.h"

namespace formats::edi {

void EdiSection::clear() {
  static_cast<EdiSectionHead&>(*this) = {};
  frequencies.clear();
  for (auto& element : elements) {
    for (EdiValues& quantity : element) {
      quantity.present = false;
      quantity.block = 0;
      quantity.values.clear();
    }
  }
}

}  // namespace formats::edi
