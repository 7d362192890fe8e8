#include "core/line_reader.h"

#include <stdexcept>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/support/temporary_folder.h"

namespace {

std::vector<std::string> lines_of(const std::string& path) {
  LineReader reader(path);
  std::vector<std::string> lines;
  std::string_view line;
  while (reader.next(line)) {
    lines.emplace_back(line);
    EXPECT_EQ(reader.line_number(), static_cast<std::int64_t>(lines.size()));
  }
  EXPECT_EQ(reader.bytes_read(), reader.file_size());
  return lines;
}

std::string failure_of(const std::string& path) {
  try {
    lines_of(path);
  } catch (const std::runtime_error& failure) {
    return failure.what();
  }
  return "";
}

}  // namespace

TEST(Line_reader, Takes_every_line_end) {
  const TemporaryFolder folder;
  const std::vector<std::string> expected{"a", "", "b", "c"};
  const std::string with_mark = std::string("\xEF\xBB\xBF") + "a\n\nb\nc\n";
  for (const std::string& text :
       {std::string("a\n\nb\nc"), std::string("a\r\rb\rc\r"), std::string("a\r\n\r\nb\r\nc\r\n"),
        std::string("a\r\n\rb\nc\r"), with_mark}) {
    SCOPED_TRACE(text);
    EXPECT_EQ(lines_of(folder.write("lines.txt", text)), expected);
  }
  EXPECT_TRUE(lines_of(folder.write("empty.txt", "")).empty());
}

TEST(Line_reader, Keeps_lines_whole_across_chunks) {
  const TemporaryFolder folder;
  for (const std::string line_end : {"\n", "\r", "\r\n"}) {
    // Lengths around the chunk size, so that line ends fall on, before and after its last byte.
    for (const std::size_t length : {65533U, 65534U, 65535U, 65536U, 65537U, 200000U}) {
      const std::string first(length, 'x');
      std::string text = first;
      text.append(line_end).append("y").append(line_end);
      const std::vector<std::string> lines = lines_of(folder.write("long.txt", text));
      ASSERT_EQ(lines.size(), 2U) << length;
      EXPECT_EQ(lines[0], first);
      EXPECT_EQ(lines[1], "y");
    }
  }
}

TEST(Line_reader, Says_why_a_file_is_refused) {
  const TemporaryFolder folder;
  EXPECT_NE(failure_of(folder.path("none.edi")).find("none.edi doesn't exist"), std::string::npos);
  EXPECT_NE(failure_of(folder.folder().string()).find("is a folder"), std::string::npos);
  EXPECT_NE(failure_of(folder.write("binary.edi", std::string("\x7f"
                                                              "ELF\0\0",
                                                              6)))
                .find("is not a text file"),
            std::string::npos);
  EXPECT_NE(failure_of(folder.write("endless.edi", std::string(std::size_t{20} << 20U, 'x')))
                .find("longer than 16 MB"),
            std::string::npos);
}
