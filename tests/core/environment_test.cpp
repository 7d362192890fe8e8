#include "core/environment.h"

#include <filesystem>
#include <limits>

#include <gtest/gtest.h>

#include "core/session_state.h"
#include "tests/support/temporary_folder.h"

TEST(Initialise_environment, Fills_the_record_once) {
  const TemporaryFolder folder;
  reset_session_state();
  UTIL::SystemFacts system;
  system.user_name = "surveyor";
  system.local_application_data = folder.path("data");
  system.decimal_point = ',';
  UTIL::initialise_environment(system, {32, 1, 508.0F, 1920, 96});
  system.user_name = "somebody else";
  UTIL::initialise_environment(system);
  const Environment environment = session().environment;
  EXPECT_EQ(environment.user_name, "surveyor");
  EXPECT_EQ(environment.application_data_directory, folder.path("data/Vexapp"));
  EXPECT_TRUE(std::filesystem::is_directory(folder.path("data/Vexapp")));
  EXPECT_FLOAT_EQ(environment.dots_per_inch, 96.0F);
  EXPECT_EQ(environment.single_epsilon, std::numeric_limits<float>::epsilon());
  EXPECT_EQ(environment.delimiters, "\x1B \t,;'");
  EXPECT_EQ(environment.decimal_point, ',');
  EXPECT_EQ(environment.thousands_point, '.');
  reset_session_state();
}

TEST(Initialise_environment, Begins_the_debug_log_with_each_step) {
  const TemporaryFolder folder;
  reset_session_state();
  session().debug_level = 1;
  UTIL::SystemFacts system;
  system.user_name = "surveyor";
  system.computer_name = "truck";
  system.program_directory = "/opt";
  system.local_application_data = folder.path("data");
  UTIL::initialise_environment(system);
  const std::string log = file_contents(folder.path("data/Vexapp/Brenlox_debug.log"));
  EXPECT_EQ(
      log.substr(log.find('\n') + 1),
      "1 : Set UnhandledExceptionFilter\n2 : create fso\n3 : user name: surveyor\n4 : computer name: truck\n"
      "5 : WindowsDir: \n6 : WindowsSysDir: \n7 : WindowsTempDir: \n8 : App.Dir: /opt\n");
  reset_session_state();
}

TEST(Initialise_environment, Has_no_dots_per_inch_without_a_display) {
  reset_session_state();
  UTIL::initialise_environment({});
  EXPECT_EQ(session().environment.dots_per_inch, 0.0F);
  EXPECT_EQ(session().environment.thousands_point, ',');
  reset_session_state();
}

TEST(Fault_name, Knows_the_codes_and_shows_the_others) {
  EXPECT_EQ(UTIL::fault_name(0xC0000005U), "Access Violation");
  EXPECT_EQ(UTIL::fault_name(0xC000008EU), "Divide By Zero");
  EXPECT_EQ(UTIL::fault_name(0xC0000094U), "Integer Divide By Zero");
  EXPECT_EQ(UTIL::fault_name(0xC000013AU), "Control-C Exit");
  EXPECT_EQ(UTIL::fault_name(0xC0001ABCU), "Unknown (&HC0001ABC)");
  EXPECT_EQ(UTIL::fault_name(7), "Unknown (&H00000007)");
}
