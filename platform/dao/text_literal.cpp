#include "platform/dao/text_literal.h"

namespace dao {

std::string text_literal(std::string_view text) {
  std::string literal = "'";
  for (const char c : text) {
    literal.append(c == '\'' ? 2 : 1, c);
  }
  return literal + "'";
}

}  // namespace dao
