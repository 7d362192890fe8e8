#include "formats/edi/edi_tags.h"

#include <algorithm>
#include <array>

#include "core/text_fields.h"

namespace formats::edi {

namespace {

constexpr EdiTag frequencies(std::string_view name) {
  return {.name = name, .kind = EdiTagKind::frequencies};
}
constexpr EdiTag discarded(std::string_view name) { return {.name = name, .kind = EdiTagKind::discarded}; }
constexpr EdiTag values(std::string_view name, EdiElement element, EdiQuantity quantity) {
  return {.name = name, .kind = EdiTagKind::values, .element = element, .quantity = quantity};
}

constexpr EdiTag tipper(std::string_view name, EdiTipper element, EdiQuantity quantity) {
  return {.name = name, .kind = EdiTagKind::tipper, .tipper = element, .quantity = quantity};
}

constexpr std::size_t tag_count = 56;

// Sorted by name for the search.
constexpr std::array<EdiTag, tag_count> sorted_tags() {
  std::array<EdiTag, tag_count> tags{{
      {.name = "=MTSECT", .kind = EdiTagKind::section},
      {.name = "END", .kind = EdiTagKind::end_of_file},
      frequencies("FREQ"),
      values("ZXXR", element_xx, quantity_real),
      values("ZXYR", element_xy, quantity_real),
      values("ZYXR", element_yx, quantity_real),
      values("ZYYR", element_yy, quantity_real),
      values("ZXXI", element_xx, quantity_imaginary),
      values("ZXYI", element_xy, quantity_imaginary),
      values("ZYXI", element_yx, quantity_imaginary),
      values("ZYYI", element_yy, quantity_imaginary),
      values("ZXX.VAR", element_xx, quantity_variance),
      values("ZXY.VAR", element_xy, quantity_variance),
      values("ZYX.VAR", element_yx, quantity_variance),
      values("ZYY.VAR", element_yy, quantity_variance),
      values("RHOXX", element_xx, quantity_resistivity),
      values("RHOXY", element_xy, quantity_resistivity),
      values("RHOYX", element_yx, quantity_resistivity),
      values("RHOYY", element_yy, quantity_resistivity),
      values("RHOXX.ERR", element_xx, quantity_resistivity_error),
      values("RHOXY.ERR", element_xy, quantity_resistivity_error),
      values("RHOYX.ERR", element_yx, quantity_resistivity_error),
      values("RHOYY.ERR", element_yy, quantity_resistivity_error),
      values("PHSXX", element_xx, quantity_phase),
      values("PHSXY", element_xy, quantity_phase),
      values("PHSYX", element_yx, quantity_phase),
      values("PHSYY", element_yy, quantity_phase),
      values("PHSXX.ERR", element_xx, quantity_phase_error),
      values("PHSXY.ERR", element_xy, quantity_phase_error),
      values("PHSYX.ERR", element_yx, quantity_phase_error),
      values("PHSYY.ERR", element_yy, quantity_phase_error),
      {.name = "ZROT", .kind = EdiTagKind::impedance_rotation},
      {.name = "TROT", .kind = EdiTagKind::tipper_rotation},
      {.name = "TROT.EXP", .kind = EdiTagKind::tipper_rotation},
      tipper("TXR.EXP", tipper_x, quantity_real),
      tipper("TXI.EXP", tipper_x, quantity_imaginary),
      tipper("TXVAR.EXP", tipper_x, quantity_variance),
      tipper("TYR.EXP", tipper_y, quantity_real),
      tipper("TYI.EXP", tipper_y, quantity_imaginary),
      tipper("TYVAR.EXP", tipper_y, quantity_variance),
      // Without the mark of an estimate by expected values: 15 of 440 public files.
      tipper("TXR", tipper_x, quantity_real),
      tipper("TXI", tipper_x, quantity_imaginary),
      tipper("TX.VAR", tipper_x, quantity_variance),
      tipper("TXVAR", tipper_x, quantity_variance),
      tipper("TYR", tipper_y, quantity_real),
      tipper("TYI", tipper_y, quantity_imaginary),
      tipper("TY.VAR", tipper_y, quantity_variance),
      tipper("TYVAR", tipper_y, quantity_variance),
      // Follow from the blocks above.
      discarded("RHOROT"),
      discarded("EPREDCOH"),
      discarded("TIPMAG"),
      discarded("TIPPHS"),
      discarded("TSTRIKE"),
      discarded("TSKEW"),
      discarded("TIPMAG.VAR"),
      discarded("TELLIP"),
  }};
  std::sort(tags.begin(), tags.end(), [](const EdiTag& a, const EdiTag& b) { return a.name < b.name; });
  for (std::size_t index = 0; index < tags.size(); ++index) {
    tags[index].index = index;
  }
  return tags;
}

constexpr std::array<EdiTag, tag_count> tags = sorted_tags();
static_assert(tag_count <= 64, "a section marks its tags in the bits of one number");

}  // namespace

std::string tag_name(std::string_view line) {
  std::string_view rest = line.substr(1);
  rest.remove_prefix(std::min(rest.find_first_not_of(" \t"), rest.size()));
  const std::size_t blank = std::min(rest.find_first_of(" \t,;"), rest.size());
  const std::size_t count_mark = std::min(rest.find("//"), rest.size());
  return upper_case(trimmed(rest.substr(0, std::min(blank, count_mark))));
}

const EdiTag* find_edi_tag(std::string_view name) {
  const auto place = std::lower_bound(tags.begin(), tags.end(), name,
                                      [](const EdiTag& tag, std::string_view n) { return tag.name < n; });
  return place != tags.end() && place->name == name ? &*place : nullptr;
}

bool is_cut_edi_tag(std::string_view name) {
  if (std::string_view("END").starts_with(name)) {
    return false;
  }
  return std::any_of(tags.begin(), tags.end(), [&](const EdiTag& tag) {
    const bool holds_values = tag.kind != EdiTagKind::end_of_file && tag.kind != EdiTagKind::section;
    return holds_values && tag.name.size() > name.size() && tag.name.starts_with(name);
  });
}

}  // namespace formats::edi
