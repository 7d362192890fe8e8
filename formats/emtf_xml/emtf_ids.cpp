#include "formats/emtf_xml/emtf_ids.h"

#include <cstddef>

#include "core/number_text.h"
#include "core/text_fields.h"

namespace formats::emtf_xml {

namespace {

bool is_digit(char c) { return c >= '0' && c <= '9'; }

bool is_letter_or_digit(char c) { return is_digit(c) || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z'); }

std::string letters_and_digits(std::string_view text) {
  std::string plain;
  for (const char c : text) {
    if (is_letter_or_digit(c)) {
      plain += c;
    }
  }
  return plain;
}

/// The point of a number as a letter: without it 100.5 were station 1005.
std::string with_point(std::string_view name) {
  const std::size_t point = name.find('.');
  const bool has_point =
      is_numeric(name) && point != std::string_view::npos && point > 0 && point + 1 < name.size();
  return has_point && is_digit(name[point - 1]) && is_digit(name[point + 1])
             ? letters_and_digits(name.substr(0, point)) + "p" + letters_and_digits(name.substr(point + 1))
             : letters_and_digits(name);
}

/// The number that the id of a document has behind the name of its site; empty if it has none, or isn't made
/// of that name.
std::string_view number_behind(std::string_view document_id, std::string_view name) {
  std::size_t length = 0;  // in characters, for each of which the id has one byte
  for (const char c : name) {
    const bool continues_character = (static_cast<unsigned char>(c) & 0xC0U) == 0x80U;
    const bool is_same =
        length < document_id.size() && document_id[length] == (is_letter_or_digit(c) ? c : '_');
    if (continues_character) {
      continue;
    }
    if (!is_same) {
      return {};
    }
    ++length;
  }
  const std::string_view rest = document_id.substr(length);
  return rest.starts_with('_') && rest.find_first_not_of("0123456789", 1) == std::string_view::npos
             ? rest.substr(1)
             : std::string_view();
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

std::string emtf_site_id(const transfer_function::SiteDocument& site) {
  // The id of the document has underscores for points as for all else, so that it can't tell them apart.
  const std::string name(trimmed(site.function.site.name));
  const std::string station = plain_text(site.station);
  std::string id = name.empty() ? letters_and_digits(site.line) + with_point(station) : with_point(name);
  id += number_behind(site.id, name.empty() ? site.line + "_" + station : name);
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
