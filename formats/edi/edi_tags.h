// edi_tags.h: the block tags of an impedance section and what their values are.
#pragma once
#include <cstddef>
#include <string>
#include <string_view>

#include "formats/edi/edi_section.h"

namespace formats::edi {

enum class EdiTagKind {
  frequencies,
  values,
  tipper,
  impedance_rotation,  // one angle for each frequency
  tipper_rotation,
  discarded,  // skipped: what follows from other blocks
  section,    // >=MTSECT
  end_of_file
};

struct EdiTag {
  std::string_view name;  // without ">"
  EdiTagKind kind = EdiTagKind::discarded;
  EdiElement element = element_count;
  EdiTipper tipper = tipper_count;
  EdiQuantity quantity = quantity_count;
  std::size_t index = 0;  // place in the table, below 64
};

/// The tag of a line that begins with ">": "RHOXY.ERR" of ">rhoxy.err ROT=NONE //88", in upper case.
std::string tag_name(std::string_view line);

/// The meaning of a whole tag name; null if the name is not known.
const EdiTag* find_edi_tag(std::string_view name);

/// True if the name is the beginning of a block's tag, as the end of a cut file leaves it. What may be the
/// beginning of END doesn't count.
bool is_cut_edi_tag(std::string_view name);

}  // namespace formats::edi
