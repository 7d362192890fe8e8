#include "formats/edi/edi_names.h"

#include <optional>
#include <string_view>

#include "core/line_reader.h"
#include "core/text_fields.h"
#include "formats/edi/edi_lines.h"
#include "formats/edi/edi_tags.h"

namespace formats::edi {

namespace {

constexpr std::string_view impedances = "=MTSECT";
constexpr std::string_view spectra = "=SPEC";  // whatever follows

std::string_view section_kind(std::string_view tag) {
  return tag == impedances ? impedances : tag.starts_with(spectra) ? spectra : std::string_view();
}

// The text in quotes, or all of it; of several options on the line, the first word.
std::string name_in(std::string_view text) {
  if (text.starts_with('"')) {
    text = text.substr(1, text.find('"', 1) - 1);
  } else if (text.find('=') != std::string_view::npos) {
    text = next_token(text);
  }
  return std::string(trimmed(text));
}

EdiNames names_in(EdiLines& lines, InfoText& info) {
  EdiNames names;
  std::string_view kind;
  bool in_head = false;
  while (in_head ? lines.next() : lines.skip_to_tag()) {
    const std::string tag = lines.at_tag() ? tag_name(lines.line()) : std::string();
    if (lines.at_tag() && kind.empty() && info.holds(tag)) {
      continue;
    }
    if (tag == "END") {
      break;
    }
    if (lines.at_tag()) {
      in_head = tag == "HEAD";
    }
    if (in_head && names.DATAID.empty()) {
      const std::string line = upper_case(lines.line());
      const std::string_view text = option_text(line, "DATAID").value_or(std::string_view());
      names.DATAID = name_in(as_written(text, line, lines.line()));
    }
    if (const std::string_view this_kind = section_kind(tag); !this_kind.empty()) {
      kind = kind.empty() ? this_kind : kind;
      names.sections += this_kind == kind ? 1 : 0;
    }
  }
  return names;
}

}  // namespace

EdiNames read_edi_names(const std::string& file) {
  LineReader reader(file);
  EdiLines lines(reader);
  EdiNames names;
  (void)find_first_section(lines, [&](InfoText& info) {
    names = names_in(lines, info);
    return names.sections > 0;
  });
  return names;
}

}  // namespace formats::edi
