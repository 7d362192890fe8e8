#include "platform/system/system_facts.h"

#include <csignal>
#include <cstdlib>
#include <filesystem>

#include <gtest/gtest.h>

#include "platform/system/fault_handler.h"

TEST(System_facts, Know_the_program_and_the_user_directories) {
  setenv("XDG_CONFIG_HOME", "/made/config", 1);
  setenv("XDG_DATA_HOME", "relative", 1);
  setenv("HOME", "/made/home", 1);
  const UTIL::SystemFacts facts = collect_system_facts();
  EXPECT_EQ(facts.windows_directory, "/made/config/brenlox");
  EXPECT_EQ(facts.local_application_data, "/made/home/.local/share");
  EXPECT_TRUE(std::filesystem::is_directory(facts.program_directory));
  EXPECT_TRUE(std::filesystem::is_directory(facts.temporary_directory));
  EXPECT_FALSE(facts.computer_name.empty());
  unsetenv("XDG_CONFIG_HOME");
  unsetenv("XDG_DATA_HOME");
}

TEST(System_facts, Give_the_debug_level_that_a_variable_asks_for) {
  const std::pair<const char*, int> cases[] = {{"1", 1}, {"2", 2}, {"99", 2}, {"-1", 0}, {"yes", 0}, {"", 0}};
  for (const auto& [text, level] : cases) {
    SCOPED_TRACE(text);
    setenv("BRENLOX_DEBUG_LEVEL", text, 1);
    EXPECT_EQ(wanted_debug_level(), level);
  }
  unsetenv("BRENLOX_DEBUG_LEVEL");
  EXPECT_EQ(wanted_debug_level(), 0);
}

TEST(Fault_handler, Names_the_fault_and_ends_the_process_by_it) {
  testing::GTEST_FLAG(death_test_style) = "threadsafe";
  struct Case {
    int signal;
    const char* words;
  };
  for (const Case& c : {Case{SIGSEGV, "MyExceptionFilter: Access Violation"},
                        Case{SIGILL, "MyExceptionFilter: Illegal Instruction"},
                        Case{SIGFPE, "MyExceptionFilter: Invalid Operation"}}) {
    EXPECT_EXIT(
        {
          install_fault_handler();
          static_cast<void>(std::raise(c.signal));
        },
        testing::KilledBySignal(c.signal), c.words);
  }
}
