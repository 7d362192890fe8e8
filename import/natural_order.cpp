#include "import/natural_order.h"

#include <algorithm>

#include "core/text_fields.h"

namespace Module_data_file {

namespace {

constexpr std::string_view digits = "0123456789";

// Takes a run of digits from the start of the text, without its leading zeros.
std::string_view take_digits(std::string_view& text) {
  std::string_view run = text.substr(0, text.find_first_not_of(digits));
  text.remove_prefix(run.size());
  run.remove_prefix(std::min(run.find_first_not_of('0'), run.size()));
  return run;
}

bool begins_with_digit(std::string_view text) {
  return !text.empty() && digits.find(text.front()) != std::string_view::npos;
}

// Below, at or above 0 as `a` comes before, with or after `b`.
int compare_names(std::string_view a, std::string_view b) {
  while (!a.empty() && !b.empty()) {
    if (begins_with_digit(a) && begins_with_digit(b)) {
      const std::string_view number_a = take_digits(a);
      const std::string_view number_b = take_digits(b);
      if (number_a.size() != number_b.size()) {
        return number_a.size() < number_b.size() ? -1 : 1;
      }
      if (const int order = number_a.compare(number_b); order != 0) {
        return order;
      }
    } else {
      if (const int order = upper_case(a.substr(0, 1)).compare(upper_case(b.substr(0, 1))); order != 0) {
        return order;
      }
      a.remove_prefix(1);
      b.remove_prefix(1);
    }
  }
  return static_cast<int>(!a.empty()) - static_cast<int>(!b.empty());
}

}  // namespace

bool comes_before_naturally(std::string_view a, std::string_view b) {
  const std::string_view whole_a = a;
  const std::string_view whole_b = b;
  while (true) {
    const std::size_t end_a = a.find('/');
    const std::size_t end_b = b.find('/');
    if ((end_a == std::string_view::npos) != (end_b == std::string_view::npos)) {
      return end_a == std::string_view::npos;
    }
    if (const int order = compare_names(a.substr(0, end_a), b.substr(0, end_b)); order != 0) {
      return order < 0;
    }
    if (end_a == std::string_view::npos) {
      return whole_a < whole_b;  // "01" and "1", "a" and "A": some order, always the same
    }
    a.remove_prefix(end_a + 1);
    b.remove_prefix(end_b + 1);
  }
}

}  // namespace Module_data_file
