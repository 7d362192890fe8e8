#include "platform/system/find_file_in_path.h"

#include <gtest/gtest.h>

#include "tests/support/temporary_folder.h"

TEST(Find_file_in_path, Takes_the_first_directory_that_holds_the_file) {
  const TemporaryFolder folder;
  const std::string first = folder.write("one/occam", "1");
  const std::string second = folder.write("two/occam", "2");
  const std::string only_second = folder.write("two/rhoplus", "2");
  const std::string path = folder.path("missing") + ":" + folder.path("one") + ":" + folder.path("two");
  EXPECT_EQ(find_file_in_path("occam", path), first);
  EXPECT_EQ(find_file_in_path("rhoplus", path), only_second);
  EXPECT_EQ(find_file_in_path("occa", path), "");
  EXPECT_EQ(find_file_in_path("", path), "");
  EXPECT_EQ(find_file_in_path("one", folder.folder().string()), "");  // a folder is no file
  EXPECT_EQ(find_file_in_path("occam", ""), "");
}
