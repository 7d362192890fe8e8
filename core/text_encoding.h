// text_encoding.h: what the first bytes of a file tell of the text in it.
#pragma once
#include <string>
#include <string_view>

enum class TextEncoding {
  bytes,            // ASCII, UTF-8 or a code page: each line end is a byte
  utf16_low_first,  // two bytes a unit, as Windows programs save "Unicode" text
  utf16_high_first,
};

/// By a byte-order mark, or because every other byte is NUL as in UTF-16 of plain letters.
TextEncoding text_encoding(std::string_view first_bytes);

/// The usual name of the compression that the bytes begin with ("gzip"); empty if there is none.
std::string_view compression_of(std::string_view first_bytes);

/// True if most of the lines hold a NUL byte. A text may have some, where a disk or a transfer failed.
bool is_binary(std::string_view first_bytes);

/// Moves what `units` hold of UTF-16 to the end of `text` as UTF-8. An unfinished character at their end
/// stays unless they are the `last`; half a pair and half a unit become "?".
void decode_utf16(std::string& units, TextEncoding encoding, bool last, std::string& text);
