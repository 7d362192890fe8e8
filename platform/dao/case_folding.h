// case_folding.h: texts as the dialect compares them, without regard to case and trailing blanks.
#pragma once
#include <string>
#include <string_view>

namespace dao {

bool is_ascii(std::string_view text);

std::string_view without_trailing_blanks(std::string_view text);

/// The text in lower case, without trailing blanks: ASCII, the Latin letters of Western and Central Europe,
/// Greek and Cyrillic. Bytes that are not UTF-8 are left as they are.
std::string folded_text(std::string_view utf8);

}  // namespace dao
