// text_literal.h: a text as it stands in a statement.
#pragma once
#include <string>
#include <string_view>

namespace dao {

/// In apostrophes, with each apostrophe inside written twice, so that any name can be searched for:
/// "O'Brien" is 'O''Brien'.
std::string text_literal(std::string_view text);

}  // namespace dao
