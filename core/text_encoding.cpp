#include "core/text_encoding.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <utility>

namespace {

constexpr std::size_t bytes_looked_at = 512;  // for UTF-16 without a mark

struct Compression {
  std::string_view first_bytes;
  std::string_view name;
};

constexpr std::array<Compression, 9> compressions{{{"\x1F\x8B", "gzip"},
                                                   {"\x1F\x9D", "compress"},
                                                   {"PK\x03\x04", "zip"},
                                                   {"\xFD\x37zXZ", "xz"},
                                                   {"7z\xBC\xAF\x27\x1C", "7z"},
                                                   {"\x28\xB5\x2F\xFD", "zstd"},
                                                   {"\x04\x22\x4D\x18", "lz4"},
                                                   {"Rar!\x1A\x07", "rar"},
                                                   {"BZh", "bzip2"}}};
constexpr std::string_view bzip2_block = "1AY&SY";  // behind "BZh" and a digit; "BZh" alone may be text

std::uint32_t unit_at(std::string_view units, std::size_t place, bool low_first) {
  const auto first = static_cast<unsigned char>(units[place]);
  const auto second = static_cast<unsigned char>(units[place + 1]);
  return low_first ? first | (std::uint32_t{second} << 8U) : second | (std::uint32_t{first} << 8U);
}

void append_utf8(std::uint32_t code, std::string& text) {
  const auto continuation = [&](unsigned shift) {
    text += static_cast<char>(0x80U | ((code >> shift) & 0x3FU));
  };
  if (code < 0x80) {
    text += static_cast<char>(code);
  } else if (code < 0x800) {
    text += static_cast<char>(0xC0U | (code >> 6U));
    continuation(0);
  } else if (code < 0x10000) {
    text += static_cast<char>(0xE0U | (code >> 12U));
    continuation(6);
    continuation(0);
  } else {
    text += static_cast<char>(0xF0U | (code >> 18U));
    continuation(12);
    continuation(6);
    continuation(0);
  }
}

bool is_first_of_pair(std::uint32_t unit) { return (unit & 0xFC00U) == 0xD800U; }
bool is_second_of_pair(std::uint32_t unit) { return (unit & 0xFC00U) == 0xDC00U; }

}  // namespace

TextEncoding text_encoding(std::string_view first_bytes) {
  if (first_bytes.starts_with("\xFF\xFE")) {
    return TextEncoding::utf16_low_first;
  }
  if (first_bytes.starts_with("\xFE\xFF")) {
    return TextEncoding::utf16_high_first;
  }
  const std::size_t units = std::min(first_bytes.size(), bytes_looked_at) / 2;
  std::size_t first_is_nul = 0;
  std::size_t second_is_nul = 0;
  for (std::size_t unit = 0; unit < units; ++unit) {
    first_is_nul += first_bytes[2 * unit] == '\0' ? 1 : 0;
    second_is_nul += first_bytes[2 * unit + 1] == '\0' ? 1 : 0;
  }
  const auto nearly_all = [&](std::size_t count) { return units >= 2 && 10 * count >= 9 * units; };
  if (nearly_all(second_is_nul) && first_is_nul == 0) {
    return TextEncoding::utf16_low_first;
  }
  return nearly_all(first_is_nul) && second_is_nul == 0 ? TextEncoding::utf16_high_first
                                                        : TextEncoding::bytes;
}

std::string_view compression_of(std::string_view first_bytes) {
  for (const Compression& compression : compressions) {
    if (first_bytes.starts_with(compression.first_bytes) &&
        (compression.name != "bzip2" || first_bytes.substr(0, 10).ends_with(bzip2_block))) {
      return compression.name;
    }
  }
  return {};
}

bool is_binary(std::string_view first_bytes) {
  std::size_t lines = 0;
  std::size_t lines_with_nul = 0;
  while (!first_bytes.empty()) {
    const std::string_view line = first_bytes.substr(0, first_bytes.find_first_of("\r\n"));
    ++lines;
    lines_with_nul += line.find('\0') != std::string_view::npos ? 1 : 0;
    first_bytes.remove_prefix(std::min(line.size() + 1, first_bytes.size()));
  }
  return 2 * lines_with_nul > lines;
}

void decode_utf16(std::string& units, TextEncoding encoding, bool last, std::string& text) {
  const bool low_first = encoding == TextEncoding::utf16_low_first;
  std::size_t place = 0;
  for (; place + 1 < units.size(); place += 2) {
    const std::uint32_t unit = unit_at(units, place, low_first);
    if (!is_first_of_pair(unit)) {
      append_utf8(is_second_of_pair(unit) ? std::uint32_t{'?'} : unit, text);
      continue;
    }
    if (place + 3 >= units.size()) {
      if (!last) {
        break;  // the other half comes with the next bytes
      }
      text += '?';
      continue;
    }
    const std::uint32_t second = unit_at(units, place + 2, low_first);
    if (is_second_of_pair(second)) {
      append_utf8(0x10000U + ((unit & 0x3FFU) << 10U) + (second & 0x3FFU), text);
      place += 2;
    } else {
      text += '?';
    }
  }
  units.erase(0, place);
  if (last && !units.empty()) {
    text += '?';
    units.clear();
  }
}
