#include "core/debug_log.h"

#include <filesystem>

#include <gtest/gtest.h>

#include "core/session_state.h"
#include "tests/support/recording_interface.h"
#include "tests/support/temporary_folder.h"

using Module_debug::write_debug;

TEST(Debug_log, Is_silent_until_the_level_is_raised) {
  const TemporaryFolder folder;
  RecordingInterface interface;
  reset_session_state();
  session().environment.application_data_directory = folder.folder().string();
  const std::string log = Module_debug::debug_log_file();

  write_debug(Module_debug::start_log, "");
  write_debug(1, "unseen");
  EXPECT_FALSE(std::filesystem::exists(log));

  session().debug_level = 1;
  static_cast<void>(folder.write("Brenlox_debug.log", "of an earlier run\n"));
  write_debug(Module_debug::start_log, "");
  write_debug(1, "first");
  session().debug_level = 2;
  write_debug(7, "second");
  const std::string text = file_contents(log);
  EXPECT_TRUE(text.starts_with("Debug for Brenlox started at : ")) << text;
  EXPECT_TRUE(text.ends_with("\n1 : first\n2 : second\n")) << text;
  EXPECT_EQ(interface.take_messages(), std::vector<std::string>{"2 : second"});

  session().environment.application_data_directory = folder.path("missing");
  write_debug(1, "no folder to write to");
  reset_session_state();
}
