// What damage of any kind does to a file of transfer functions, whatever its format.
#include <cmath>
#include <string>

#include <gtest/gtest.h>

#include "core/text_fields.h"
#include "formats/transfer_function/sound_numbers.h"
#include "tests/formats/transfer_function/made_sites.h"

using namespace formats::transfer_function;

namespace {

bool is_number_or_absent(double number) { return std::isnan(number) || std::abs(number) <= 1e30; }

bool is_error_or_absent(double error) { return std::isnan(error) || (error > 0.0 && error <= 1e30); }

/// What readers build upon, and that a file which gave nothing says why.
void expect_sound(const SitesRead& read) {
  EXPECT_TRUE(read.points() > 0 || !read.report.failure.empty());
  for (const TransferFunction& function : read.functions) {
    for (const Point& point : function.points) {
      EXPECT_TRUE(is_frequency(point.frequency));
      for (const Value& value : point.values) {
        EXPECT_TRUE(is_number_or_absent(value.value.real()) && is_number_or_absent(value.value.imag()));
        EXPECT_TRUE(is_number_or_absent(value.resistivity) && is_number_or_absent(value.phase));
        EXPECT_TRUE(is_error_or_absent(value.variance) && is_error_or_absent(value.resistivity_error) &&
                    is_error_or_absent(value.phase_error));
      }
    }
  }
}

std::string utf16(const std::string& text, bool low_first) {
  std::string bytes = low_first ? "\xFF\xFE" : "\xFE\xFF";
  for (const char c : text) {
    bytes += low_first ? std::string{c, '\0'} : std::string{'\0', c};
  }
  return bytes;
}

/// The text with the word that begins at `place` replaced.
std::string with_word(const std::string& text, std::size_t place, const std::string& word) {
  const std::size_t end = text.find_first_of(" ,\n<\"", place);
  return text.substr(0, place) + word + text.substr(std::min(end, text.size()));
}

/// Where numbers begin.
std::vector<std::size_t> number_places(const std::string& text) {
  std::vector<std::size_t> places;
  for (std::size_t i = 1; i < text.size(); ++i) {
    const bool begins = std::string(" ,\n>\"=").find(text[i - 1]) != std::string::npos;
    if (begins && std::string("0123456789-.").find(text[i]) != std::string::npos) {
      places.push_back(i);
    }
  }
  return places;
}

}  // namespace

TEST(Damaged_files, Whole_ones_are_read_without_a_remark) {
  for (const SiteFormat& format : site_formats()) {
    SCOPED_TRACE(format.name);
    const SitesRead read = format.read(format.text);
    expect_sound(read);
    EXPECT_EQ(read.report.failure, "");
    EXPECT_FALSE(read.report.has_remarks());
    EXPECT_GE(read.values(), 6U);
  }
}

TEST(Damaged_files, Cut_anywhere_they_give_what_is_whole_and_say_so) {
  for (const SiteFormat& format : site_formats()) {
    SCOPED_TRACE(format.name);
    const std::size_t whole = format.read(format.text).values();
    for (std::size_t length = 0; length < format.text.size(); ++length) {
      SCOPED_TRACE(length);
      const SitesRead read = format.read(format.text.substr(0, length));
      expect_sound(read);
      EXPECT_LE(read.values(), whole);
      if (format.counts_its_parts && read.values() < whole) {
        EXPECT_TRUE(read.report.has_remarks());
      }
    }
  }
}

TEST(Damaged_files, Line_ends_and_encodings_change_nothing) {
  for (const SiteFormat& format : site_formats()) {
    SCOPED_TRACE(format.name);
    const std::size_t whole = format.read(format.text).values();
    std::string with_cr;
    for (const char c : format.text) {
      with_cr += c == '\n' ? "\r\n" : std::string(1, c);
    }
    for (const std::string& bytes :
         {with_cr, "\xEF\xBB\xBF" + format.text, utf16(format.text, true), utf16(format.text, false)}) {
      const SitesRead read = format.read(bytes);
      EXPECT_EQ(read.values(), whole);
      EXPECT_FALSE(read.report.has_remarks());
    }
  }
}

TEST(Damaged_files, Odd_numbers_are_absent_or_told) {
  for (const SiteFormat& format : site_formats()) {
    SCOPED_TRACE(format.name);
    const std::size_t whole = format.read(format.text).values();
    for (const std::size_t place : number_places(format.text)) {
      for (const char* const word :
           {"1e999", "-1e999", "nan", "-0", "1e32", "1,5", "***", "", "2000000000"}) {
        const std::string text = with_word(format.text, place, word);
        SCOPED_TRACE(text.substr(place > 20 ? place - 20 : 0, 40));
        const SitesRead read = format.read(text);
        expect_sound(read);
        EXPECT_LE(read.values(), whole + 1);
      }
    }
  }
}

TEST(Damaged_files, Other_bytes_end_in_a_reason) {
  std::string binary;
  for (int i = 0; i < 5000; ++i) {
    binary += static_cast<char>((i * i + i / 7) % 256);
  }
  for (const SiteFormat& format : site_formats()) {
    SCOPED_TRACE(format.name);
    for (const std::string& bytes :
         {std::string(), std::string(1, '\0'), std::string("\xFF\xFE"), binary, std::string(300, '\n')}) {
      const SitesRead read = format.read(bytes);
      expect_sound(read);
      EXPECT_NE(read.report.failure, "");
    }
    // NUL bytes as of a failing disk, and another code page, at every tenth place.
    for (std::size_t place = 0; place < format.text.size(); place += 10) {
      for (const char damage : {'\0', '\xE9'}) {
        std::string text = format.text;
        text[place] = damage;
        expect_sound(format.read(text));
      }
    }
  }
}

TEST(Damaged_files, A_megabyte_in_one_line_is_borne) {
  constexpr std::size_t megabyte = 1'000'000;
  std::string numbers;
  while (numbers.size() < megabyte) {
    numbers += "1.5 -2,";
  }
  for (const SiteFormat& format : site_formats()) {
    SCOPED_TRACE(format.name);
    for (const std::string& line : {std::string(megabyte, 'x'), std::string(megabyte, '&'), numbers}) {
      expect_sound(format.read(line));
      // Between the lines of a whole file.
      for (std::size_t place = format.text.find('\n'); place != std::string::npos;
           place = format.text.find('\n', place + 250)) {
        expect_sound(format.read(format.text.substr(0, place + 1) + line + format.text.substr(place)));
      }
    }
  }
}
