#include "formats/zonge/zonge_raw_account.h"

#include <utility>

#include "core/number_text.h"
#include "core/text_fields.h"
#include "formats/file_report.h"

namespace formats::zonge {

namespace {

constexpr std::size_t shown_length = 40;  // bytes

}  // namespace

std::string shown_bytes(std::string_view bytes) {
  return text_from_field_file(bytes.substr(0, shown_length)) + (bytes.size() > shown_length ? "..." : "");
}

std::string ZongeAccount::text_of(double value) { return plain_text(value); }
std::string ZongeAccount::text_of(std::int64_t value) { return plain_text(value); }

void ZongeAccount::say(std::string_view text) {
  say_plainly("Block : " + plain_text(block_number_) + (text.starts_with(' ') ? "" : " ") +
              std::string(text));
}

void ZongeAccount::say_plainly(std::string text) { add_to_account(report_, std::move(text)); }

void ZongeAccount::fault(ZongeBlock& block, std::string_view text, std::string_view value,
                         std::int64_t line_number) {
  const std::string whole = std::string(text) + shown_bytes(value) + " on line : " + plain_text(line_number);
  say(whole);
  if (block.fault.empty()) {
    block.fault = whole;
  }
}

void ZongeAccount::ignored(std::int64_t line_number, const std::string& text) {
  remark_ignored(report_, line_number, text);
}

}  // namespace formats::zonge
