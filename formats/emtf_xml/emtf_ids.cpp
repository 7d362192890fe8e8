#include "formats/emtf_xml/emtf_ids.h"

#include <cstddef>

namespace formats::emtf_xml {

namespace {

bool is_digit(char c) { return c >= '0' && c <= '9'; }

bool is_letter_or_digit(char c) { return is_digit(c) || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z'); }

bool is_point_of_number(std::string_view text, std::size_t at) {
  return (text[at] == '.' || text[at] == '_') && at > 0 && at + 1 < text.size() && is_digit(text[at - 1]) &&
         is_digit(text[at + 1]);
}

/// What isn't allowed is one underscore, however long.
std::string product_part(std::string_view text) {
  std::string part;
  bool replaced = false;
  for (const char c : text) {
    const bool is_allowed = is_letter_or_digit(c) || c == '.' || c == '_' || c == '-';
    if (is_allowed || !replaced) {
      part += is_allowed ? c : '_';
    }
    replaced = !is_allowed;
  }
  return part;
}

}  // namespace

std::string emtf_site_id(std::string_view document_id) {
  std::string id;
  for (std::size_t i = 0; i < document_id.size(); ++i) {
    if (is_point_of_number(document_id, i)) {
      id += 'p';
    } else if (is_letter_or_digit(document_id[i])) {
      id += document_id[i];
    }
  }
  return id.empty() ? "site" : id;
}

std::string emtf_product_id(std::string_view survey, std::string_view document_id, std::string_view year) {
  std::string id;
  for (const std::string_view part : {survey, document_id, year}) {
    if (!part.empty()) {
      id += (id.empty() ? "" : ".") + product_part(part);
    }
  }
  return id;
}

}  // namespace formats::emtf_xml
