#include "core/text_fields.h"

#include <vector>

#include <gtest/gtest.h>

TEST(Pad_field, Fills_at_the_left_and_cuts_at_the_right) {
  EXPECT_EQ(pad_field("12.5", 8), "    12.5");
  EXPECT_EQ(pad_field("1234567890", 4), "1234");
  EXPECT_EQ(pad_field("", 2), "  ");
  EXPECT_EQ(pad_field("abc", 0), "");
  EXPECT_EQ(pad_field("\xC3\xA9\xC3\xA9", 3), " \xC3\xA9\xC3\xA9");
  EXPECT_EQ(pad_field("\xC3\xA9\xC3\xA9", 1), "\xC3\xA9");
}

TEST(Next_token, Walks_a_line_of_values) {
  std::string_view rest = "  1.5,2 '3';\t4  ,, 5 ";
  std::vector<std::string> items;
  for (std::string_view item = next_token(rest); !item.empty(); item = next_token(rest)) {
    items.emplace_back(item);
  }
  EXPECT_EQ(items, (std::vector<std::string>{"1.5", "2", "3", "4", "5"}));
  EXPECT_TRUE(rest.empty());
}

TEST(First_token, Cuts_at_blank_comma_apostrophe_and_semicolon) {
  struct Case {
    const char* line;
    const char* token;
    const char* rest;
  };
  const Case cases[] = {{"  LINE 200E", "LINE", "200E"}, {"ab'cd", "ab", "cd"},  {"a;  b c", "a", "b c"},
                        {"a\tb,c", "a\tb", "c"},         {"alone", "alone", ""}, {"   ", "", ""}};
  for (const Case& c : cases) {
    SCOPED_TRACE(c.line);
    const FirstToken split = first_token(c.line);
    EXPECT_EQ(split.token, c.token);
    EXPECT_EQ(split.rest, c.rest);
  }
}

TEST(Text_fields, Case_and_blanks) {
  EXPECT_EQ(upper_case("Zxx.var \xC3\xA9"), "ZXX.VAR \xC3\xA9");
  EXPECT_TRUE(equal_ignoring_case("ExHy", "EXHY"));
  EXPECT_FALSE(equal_ignoring_case("ExHy", "ExH"));
  EXPECT_EQ(trimmed("\t a b \r\n"), "a b");
  EXPECT_EQ(trimmed(" \r"), "");
}

TEST(Text_from_field_file, Takes_what_is_not_utf8_as_windows_1252) {
  struct Case {
    const char* name;
    const char* bytes;
    const char* text;
  };
  const Case cases[] = {{"ASCII", "plain", "plain"},
                        {"valid", "\xE2\x82\xAC \xC3\xA9", "\xE2\x82\xAC \xC3\xA9"},
                        {"euro and e acute", "\x80 \xE9", "\xE2\x82\xAC \xC3\xA9"},
                        {"cut at the end", "a\xE2\x82", "a\xC3\xA2\xE2\x80\x9A"},
                        {"overlong", "\xC0\xAF", "\xC3\x80\xC2\xAF"},
                        {"surrogate", "\xED\xA0\x80", "\xC3\xAD\xC2\xA0\xE2\x82\xAC"},
                        {"beyond Unicode", "\xF4\x90\x80\x80", "\xC3\xB4\xC2\x90\xE2\x82\xAC\xE2\x82\xAC"}};
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    EXPECT_EQ(text_from_field_file(c.bytes), c.text);
    EXPECT_TRUE(is_valid_utf8(text_from_field_file(c.bytes)));
  }
}
