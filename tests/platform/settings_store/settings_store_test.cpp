#include "platform/settings_store/settings_store.h"

#include <gtest/gtest.h>

TEST(Settings_store, Keeps_a_text_for_each_application_section_and_key) {
  MemorySettingsStore store;
  store.set_value("Brenlox", "Rhoplus", "Floor", "5");
  store.set_value("Brenlox", "Rhoplus", "Root", "");
  store.set_value("Brenlox", "Rhoplus", "Floor", "7.5");
  EXPECT_EQ(store.value("Brenlox", "Rhoplus", "Floor", "1"), "7.5");
  EXPECT_EQ(store.value("Brenlox", "Rhoplus", "Root", "run"), "");  // emptied by the user, not missing
  EXPECT_EQ(store.value("Brenlox", "Occam", "Floor", "1"), "1");
  EXPECT_EQ(store.value("Other", "Rhoplus", "Floor", "1"), "1");
}

TEST(Settings_store, Lists_and_removes_the_keys_of_one_section) {
  MemorySettingsStore store;
  store.set_value("Brenlox", "Projection", "GDA94 / MGA 55", "1");
  store.set_value("Brenlox", "Projection", "UTM", "2");
  store.set_value("Brenlox", "Projections", "other", "3");
  store.set_value("Brenlo", "Projection", "other", "4");
  store.remove("Brenlox", "Projection", "never there");
  EXPECT_EQ(store.keys("Brenlox", "Projection"), (std::vector<std::string>{"GDA94 / MGA 55", "UTM"}));
  store.remove("Brenlox", "Projection", "UTM");
  EXPECT_EQ(store.keys("Brenlox", "Projection"), std::vector<std::string>{"GDA94 / MGA 55"});
  EXPECT_EQ(store.value("Brenlox", "Projection", "UTM", "none"), "none");
}
