#include "platform/dao/case_folding.h"

#include <algorithm>

namespace dao {

namespace {

unsigned lower_of(unsigned letter) {
  const auto within = [&](unsigned first, unsigned last) { return letter >= first && letter <= last; };
  if (within('A', 'Z') || (within(0xC0, 0xDE) && letter != 0xD7) || within(0x391, 0x3A9) ||
      within(0x410, 0x42F)) {
    return letter + 0x20;
  }
  if (within(0x400, 0x40F)) {
    return letter + 0x50;
  }
  if (letter == 0x178) {
    return 0xFF;
  }
  // In these two ranges capitals and small letters alternate; in the second, capitals are odd.
  if (within(0x100, 0x12F) || within(0x132, 0x137) || within(0x14A, 0x177)) {
    return letter | 1U;
  }
  if (within(0x139, 0x148) || within(0x179, 0x17E)) {
    return letter + (letter & 1U);
  }
  return letter;
}

}  // namespace

bool is_ascii(std::string_view text) {
  return std::all_of(text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

std::string_view without_trailing_blanks(std::string_view text) {
  const std::size_t last = text.find_last_not_of(' ');
  return text.substr(0, last == std::string_view::npos ? 0 : last + 1);
}

std::string folded_text(std::string_view utf8) {
  std::string folded(without_trailing_blanks(utf8));
  for (std::size_t i = 0; i < folded.size(); ++i) {
    const auto byte = static_cast<unsigned char>(folded[i]);
    if (byte < 0x80) {
      folded[i] = static_cast<char>(lower_of(byte));
    } else if ((byte & 0xE0U) == 0xC0U && i + 1 < folded.size()) {
      // Every letter that folds here has two bytes, and so has its small form.
      const auto second = static_cast<unsigned char>(folded[i + 1]);
      const unsigned small = lower_of(((byte & 0x1FU) << 6U) | (second & 0x3FU));
      folded[i] = static_cast<char>(0xC0U | (small >> 6U));
      folded[++i] = static_cast<char>(0x80U | (small & 0x3FU));
    }
  }
  return folded;
}

}  // namespace dao
