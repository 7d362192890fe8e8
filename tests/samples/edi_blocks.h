// edi_blocks.h: numbers of made field files.
#pragma once
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "core/number_text.h"
#include "core/text_fields.h"

/// The values of a block, in the order of the file.
inline std::vector<double> block(const std::string& text, const std::string& tag) {
  const std::size_t start = text.find("\n>" + tag + " ");
  if (start == std::string::npos) {
    throw std::runtime_error("no block " + tag);
  }
  const std::size_t first = text.find('\n', start + 1) + 1;
  std::string_view rest = std::string_view(text).substr(first, text.find('>', first) - first);
  std::vector<double> values;
  while (!rest.empty()) {
    const std::size_t end = rest.find('\n');
    std::string_view line = rest.substr(0, end);
    for (std::string_view token = next_token(line); !token.empty(); token = next_token(line)) {
      values.push_back(numeric_value(token));
    }
    rest = end == std::string_view::npos ? std::string_view{} : rest.substr(end + 1);
  }
  return values;
}
