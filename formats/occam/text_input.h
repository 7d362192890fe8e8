// text_input.h: what the readers of the inversion's files have in common.
#pragma once
#include <cstdint>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "core/line_reader.h"

namespace Module_occam {

/// Ends a read; its text is the whole message for the user.
class Refusal : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
  /// @param file  what can't be read, where that isn't the file that was asked for but one that it names
  Refusal(const char* message, std::string file) : std::runtime_error(message), file_(std::move(file)) {}
  [[nodiscard]] const std::string& file() const { return file_; }

 private:
  std::string file_;
};

/// Ends a read; its text begins with the name of the file at fault, or its path where `what` does.
class FileFault : public std::runtime_error {
 public:
  FileFault(const std::string& file, const std::string& what);
};

/// Ends a read without a message: an empty line where text is expected.
class EmptyLine : public std::runtime_error {
 public:
  EmptyLine() : std::runtime_error("empty line") {}
};

/// What `read` reads from a file that another one names: what is wrong is not to pass for a fault of that
/// one. A Refusal keeps its text and gets the file, any other failure becomes a FileFault.
template <class Read>
auto read_named_file(const std::filesystem::path& file, const Read& read) {
  const std::string name = file.filename().string();
  try {
    return read();
  } catch (const Refusal& refusal) {
    throw Refusal(refusal.what(), name);
  } catch (const EmptyLine&) {
    throw FileFault(name, "an empty line where text is expected");
  } catch (const std::exception& failure) {
    throw FileFault(name, failure.what());
  }
}

/// The lines of one file. One with NUL bytes is damaged, and refused with std::runtime_error: they come as
/// "?", and in a mesh that is the code of a free cell.
class TextInput {
 public:
  explicit TextInput(const std::string& path) : lines_(path) {}

  /// The next line; throws at the end of the file.
  std::string_view line();
  /// The next line; throws EmptyLine if there is nothing on it.
  std::string_view filled_line();
  /// @return false at the end of the file
  bool next(std::string_view& line);

  [[nodiscard]] std::int64_t line_number() const { return lines_.line_number(); }

 private:
  LineReader lines_;
};

/// Adds `count` numbers to `values`, from as many lines as needed; empty lines are skipped, and what follows
/// the last number on its line is dropped. An item that isn't a number counts as 0.
/// @return 0; -1 if the file ends first
[[nodiscard]] int read_value_list(TextInput& input, std::int64_t count, std::vector<double>& values);

/// The same where a wrong number would pass for a right one: throws std::runtime_error, with the line, for an
/// item that is no finite number.
[[nodiscard]] int read_number_list(TextInput& input, std::int64_t count, std::vector<double>& values);

/// The number that a text begins with as an integer, 0 if there is none. Throws if it isn't a 32-bit integer,
/// or if a letter or digit follows it at once.
int integer_value(std::string_view text);
/// The same for a number that has already been read.
int integer_of(double value);

/// Both of these where 0 would pass for what stands there: they throw if the text begins with no finite
/// number.
double strict_number(std::string_view text);
int strict_integer(std::string_view text);

/// What follows the first ":", trimmed; the whole trimmed line if it has none.
std::string_view behind_colon(std::string_view line);

/// The rest of a line from column `column` (from 1) on, trimmed.
std::string_view from_column(std::string_view line, std::size_t column);

}  // namespace Module_occam
