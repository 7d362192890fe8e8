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

// ASCII text as UTF-16, the low byte first or last.
std::string utf16(std::string_view ascii, bool low_first) {
  std::string bytes;
  for (const char c : ascii) {
    bytes += low_first ? std::string{c, '\0'} : std::string{'\0', c};
  }
  return bytes;
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

TEST(Line_reader, Reads_utf16_with_and_without_a_mark) {
  const TemporaryFolder folder;
  const std::string text = ">HEAD\r\n DATAID=\"A\"\r\n>END\r\n";
  const std::vector<std::string> expected{">HEAD", " DATAID=\"A\"", ">END"};
  EXPECT_EQ(lines_of(folder.write("a.edi", "\xFF\xFE" + utf16(text, true))), expected);
  EXPECT_EQ(lines_of(folder.write("b.edi", "\xFE\xFF" + utf16(text, false))), expected);
  EXPECT_EQ(lines_of(folder.write("c.edi", utf16(text, true))), expected);
  EXPECT_EQ(lines_of(folder.write("d.edi", utf16(text, false))), expected);
  // e acute, an em dash, a clef of two units, half a pair, and half a unit at the end.
  const std::string other("\xFF\xFE\xE9\0\x14\x20\x34\xD8\x1E\xDD\x34\xD8z\0y", 15);
  EXPECT_EQ(lines_of(folder.write("e.edi", other)),
            std::vector<std::string>{"\xC3\xA9\xE2\x80\x94\xF0\x9D\x84\x9E?z?"});
  // Pairs across the ends of chunks of whatever length.
  std::string long_text("\xFF\xFE", 2);
  std::string decoded;
  for (int pair = 0; pair < 50000; ++pair) {
    long_text += pair % 7 == 0 ? std::string("x\0", 2) : std::string("\x34\xD8\x1E\xDD", 4);
    decoded += pair % 7 == 0 ? "x" : "\xF0\x9D\x84\x9E";
  }
  EXPECT_EQ(lines_of(folder.write("f.edi", long_text)), std::vector<std::string>{decoded});
}

TEST(Line_reader, A_nul_byte_spoils_its_own_line_alone) {
  const TemporaryFolder folder;
  const std::string text = ">HEAD\n 1.0 2" + std::string(1, '\0') + " 3.0\n>END\n" + std::string(70000, 'x') +
                           "\ny" + std::string(1, '\0') + "\n";
  const std::string path = folder.write("nul.edi", text);
  LineReader reader(path);
  std::string_view line;
  std::vector<std::string> lines;
  while (reader.next(line)) {
    lines.emplace_back(line);
  }
  ASSERT_EQ(lines.size(), 5U);
  EXPECT_EQ(lines[1], " 1.0 2? 3.0");
  EXPECT_EQ(lines[2], ">END");
  EXPECT_EQ(lines[4], "y?");
  EXPECT_EQ(reader.nul_bytes(), 2);
}

TEST(Line_reader, Names_a_compressed_file_as_such) {
  const TemporaryFolder folder;
  const std::pair<std::string, const char*> kinds[] = {{std::string("\x1F\x8B\x08\0\0", 5), "(gzip)"},
                                                       {std::string("PK\x03\x04\x14\0", 6), "(zip)"},
                                                       {std::string("\xFD\x37zXZ\0", 6), "(xz)"},
                                                       {"BZh91AY&SY", "(bzip2)"},
                                                       {"7z\xBC\xAF\x27\x1C", "(7z)"},
                                                       {std::string("\x28\xB5\x2F\xFD\x24", 5), "(zstd)"},
                                                       {"\x1F\x9D\x90", "(compress)"},
                                                       {std::string("Rar!\x1A\x07\0", 7), "(rar)"}};
  for (const auto& [bytes, kind] : kinds) {
    SCOPED_TRACE(kind);
    const std::string failure = failure_of(folder.write("a.edi", bytes + "rest of it"));
    EXPECT_NE(failure.find(std::string("is a compressed file ") + kind), std::string::npos) << failure;
  }
}
