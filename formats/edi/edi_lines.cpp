#include "formats/edi/edi_lines.h"

#include <cmath>

#include "core/number_text.h"
#include "core/text_fields.h"
#include "formats/field_values.h"

namespace formats::edi {

bool EdiLines::skip_to_tag() {
  while (next()) {
    if (at_tag()) {
      return true;
    }
  }
  return false;
}

void EdiLines::rewind() {
  reader_.rewind();
  line_ = {};
}

bool InfoText::holds(std::string_view tag) {
  if (tag == "=DEFINEMEAS" || tag == "HMEAS" || tag == "EMEAS") {
    inside_ = false;
  }
  held_section_ = held_section_ || (inside_ && tag.starts_with('='));
  const bool held = inside_;
  inside_ = inside_ || (tag == "INFO" && !never_);
  return held;
}

std::optional<std::string_view> option_text(std::string_view line, std::string_view key) {
  for (std::size_t place = line.find(key); place != std::string_view::npos;
       place = line.find(key, place + 1)) {
    if (place > 0 && !is_separator(line[place - 1])) {
      continue;
    }
    const std::string_view behind = trimmed(line.substr(place + key.size()));
    if (behind.starts_with('=')) {
      return trimmed(behind.substr(1));
    }
  }
  return std::nullopt;
}

std::string_view as_written(std::string_view part, std::string_view upper, std::string_view line) {
  return part.empty() ? std::string_view()
                      : line.substr(static_cast<std::size_t>(part.data() - upper.data()), part.size());
}

std::string option_item(std::string_view line, std::string_view key) {
  std::string_view text = option_text(line, key).value_or(std::string_view());
  std::string item(next_token(text));
  std::erase(item, '"');
  return item.find('=') == std::string::npos ? item : std::string();  // "Z= AZM=0": Z has no value
}

double option_number(std::string_view line, std::string_view key) {
  const double value = numeric_value(option_item(line, key));
  return std::isfinite(value) ? value : 0.0;
}

std::optional<std::string> sectid_option(std::string_view line) {
  const std::string upper = upper_case(line);
  const auto text = option_text(upper, "SECTID");
  if (!text) {
    return std::nullopt;
  }
  std::string_view id = as_written(*text, upper, line);
  if (id.starts_with('"')) {
    id = id.substr(1, id.find('"', 1) - 1);
  }
  return std::string(id);
}

}  // namespace formats::edi
