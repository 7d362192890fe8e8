// zonge_raw_account.h: the running account of a raw receiver file, block by block.
#pragma once
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "formats/file_report.h"
#include "formats/zonge/zonge_raw_block.h"

namespace formats::zonge {

class ZongeAccount {
 public:
  explicit ZongeAccount(FileReport& report) : report_(report) {}

  void begin_block(std::int64_t number) { block_number_ = number; }

  /// "Block : 12" and the text.
  void say(std::string_view text);
  /// A line that doesn't begin with the block.
  void say_plainly(std::string text);

  /// Says a value that is new or differs from the known one, which it replaces: " A spacing is 100",
  /// " A spacing has changed to 50".
  template <class Value>
  void say_value(std::string_view what, std::optional<Value>& known, const Value& value) {
    if (!known) {
      say(std::string(what) + " is " + text_of(value));
    } else if (*known != value) {
      say(std::string(what) + " has changed to " + text_of(value));
    }
    known = value;
  }

  /// Says a fault, " on line : " and the line; the block's first fault is why it will not be stored.
  void fault(ZongeBlock& block, std::string_view text, std::string_view value, std::int64_t line_number);

  /// Something that is left unused without harm.
  void ignored(std::int64_t line_number, const std::string& text);

 private:
  static std::string text_of(double value);
  static std::string text_of(std::int64_t value);
  static std::string text_of(const std::string& value) { return value; }

  FileReport& report_;
  std::int64_t block_number_ = 0;
};

/// Bytes of the file as the account shows them: as UTF-8, cut to a readable length.
std::string shown_bytes(std::string_view bytes);

}  // namespace formats::zonge
