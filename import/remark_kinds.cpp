#include "import/remark_kinds.h"

#include <algorithm>
#include <array>

namespace Module_data_file {

namespace {

constexpr std::string_view ellipsis = "\u2026";
constexpr std::string_view marks_before = "(";
constexpr std::string_view marks_behind = ",;:.)";

/// One of something and several of it are one kind.
constexpr std::array<std::pair<std::string_view, std::string_view>, 6> plurals{{{"is", "are"},
                                                                                {"block", "blocks"},
                                                                                {"byte", "bytes"},
                                                                                {"frequency", "frequencies"},
                                                                                {"section", "sections"},
                                                                                {"value", "values"}}};

bool is_blank(char c) { return c == ' ' || c == '\t' || c == '\n'; }

/// Whether a quoted text begins here: not in "isn't".
bool opens_quote(std::string_view text, std::size_t at) {
  constexpr std::string_view before = " (=";
  return text[at] == '\'' && (at == 0 || before.find(text[at - 1]) != std::string_view::npos);
}

/// Whether a quoted text ends here: what is quoted may hold the mark itself.
bool closes_quote(std::string_view text, std::size_t at) {
  return text[at] == '\'' && (at + 1 == text.size() || is_blank(text[at + 1]) ||
                              marks_behind.find(text[at + 1]) != std::string_view::npos);
}

/// The end of the word that begins at a place. A quoted text is in one word, whatever blanks it has.
std::size_t end_of_word(std::string_view text, std::size_t at) {
  bool quoted = false;
  for (; at < text.size() && (quoted || !is_blank(text[at])); ++at) {
    if (quoted) {
      quoted = !closes_quote(text, at);
    } else {
      quoted = opens_quote(text, at);
    }
  }
  return at;
}

std::vector<std::string_view> words_of(std::string_view text) {
  std::vector<std::string_view> words;
  std::size_t at = 0;
  while (at < text.size()) {
    if (is_blank(text[at])) {
      ++at;
      continue;
    }
    const std::size_t end = end_of_word(text, at);
    words.push_back(text.substr(at, end - at));
    at = end;
  }
  return words;
}

/// A word between the marks of its sentence.
struct Word {
  std::string_view before;
  std::string_view core;
  std::string_view behind;
};

Word taken_apart(std::string_view word) {
  const std::size_t begin = std::min(word.find_first_not_of(marks_before), word.size());
  const std::size_t last = word.find_last_not_of(marks_behind);
  const std::size_t end = last == std::string_view::npos ? begin : std::max(last + 1, begin);
  return {word.substr(0, begin), word.substr(begin, end - begin), word.substr(end)};
}

bool is_part_of_file(std::string_view core) {
  return core.starts_with('>') || core.find('\'') != std::string_view::npos ||
         core.find_first_of("0123456789") != std::string_view::npos || core == "absent";
}

std::string_view in_plural(std::string_view core) {
  const auto found = std::ranges::find(plurals, core, &std::pair<std::string_view, std::string_view>::first);
  return found == plurals.end() ? core : found->second;
}

std::string joined(const std::vector<std::string>& words) {
  std::string text;
  for (const std::string& word : words) {
    text += (text.empty() ? "" : " ") + word;
  }
  return text;
}

std::string with_core(const Word& word, std::string_view core) {
  return std::string(word.before).append(core).append(word.behind);
}

}  // namespace

std::string remark_kind(std::string_view remark) {
  std::vector<std::string> words;
  for (const std::string_view text : words_of(remark)) {
    const Word word = taken_apart(text);
    words.push_back(with_core(word, is_part_of_file(word.core) ? ellipsis : in_plural(word.core)));
  }
  return joined(words);
}

void CommonText::add(std::string_view remark) {
  const std::vector<std::string_view> words = words_of(remark);
  if (words_.empty()) {
    words_.assign(words.begin(), words.end());
    differs_.assign(words.size(), false);
    return;
  }
  for (std::size_t index = 0; index < std::min(words.size(), words_.size()); ++index) {
    const std::string_view core = taken_apart(words[index]).core;
    const Word first = taken_apart(words_[index]);
    if (core == first.core) {
      continue;
    }
    if (in_plural(core) == in_plural(first.core)) {
      words_[index] = with_core(first, std::string(in_plural(core)));
    } else {
      differs_[index] = true;
    }
  }
}

std::string CommonText::text() const {
  std::vector<std::string> words;
  for (std::size_t index = 0; index < words_.size(); ++index) {
    words.push_back(differs_[index] ? with_core(taken_apart(words_[index]), ellipsis) : words_[index]);
  }
  return joined(words);
}

std::string CommonText::differing(std::string_view remark) const {
  std::vector<std::string> parts;
  const std::vector<std::string_view> words = words_of(remark);
  for (std::size_t index = 0; index < std::min(words.size(), words_.size()); ++index) {
    if (differs_[index]) {
      parts.emplace_back(taken_apart(words[index]).core);
    }
  }
  return joined(parts);
}

}  // namespace Module_data_file
