#include "formats/edi/edi_section.h"

#include <algorithm>

namespace formats::edi {

namespace {

// Keeps what the arrays have allocated: sections of a file are mostly of one size.
void clear(std::array<EdiValues, quantity_count>& element) {
  for (EdiValues& quantity : element) {
    quantity.present = false;
    quantity.block = 0;
    quantity.values.clear();
    quantity.rests.clear();
  }
}

}  // namespace

void EdiSection::clear() {
  static_cast<EdiSectionHead&>(*this) = {};
  frequencies.clear();
  std::ranges::for_each(elements, &formats::edi::clear);
  std::ranges::for_each(tipper, &formats::edi::clear);
  ZROT.clear();
  TROT.clear();
}

}  // namespace formats::edi
