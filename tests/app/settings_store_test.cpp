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
