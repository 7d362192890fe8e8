#include "core/undo_stack.h"

#include <memory>
#include <vector>

#include <gtest/gtest.h>

#include "core/session_state.h"

using namespace Module_Brenlox;

TEST(Undo_stack, Gives_back_the_kinds_newest_first_and_tells_the_window) {
  clear_undo();
  std::vector<bool> told;
  set_undo_listener([&](bool available) { told.push_back(available); });
  std::vector<std::byte> mask(8, std::byte{1});
  push_undo_flags(5, true, false, true);
  push_undo_mask(6, 1, mask);
  push_undo_static(7, 2.5F);
  mask.front() = std::byte{0};  // the entry is a copy

  ASSERT_EQ(undo_count(), 3U);
  EXPECT_EQ(top_undo().back().id, 7);
  EXPECT_EQ(std::get<UndoStatic>(top_undo().back().earlier).res_offset, 2.5F);
  pop_undo();
  EXPECT_EQ(std::get<UndoMask>(top_undo().back().earlier).mask_bytes,
            std::vector<std::byte>(8, std::byte{1}));
  EXPECT_EQ(std::get<UndoMask>(top_undo().back().earlier).frequency_count, 1);
  pop_undo();
  EXPECT_EQ(top_undo().back().id, 5);
  EXPECT_FALSE(std::get<UndoFlags>(top_undo().back().earlier).use_resistivity);
  EXPECT_TRUE(std::get<UndoFlags>(top_undo().back().earlier).use_phase);
  pop_undo();
  pop_undo();  // nothing left
  EXPECT_EQ(told, (std::vector<bool>{true, true, true, true, true, false, false}));

  for (int i = 0; i < 100; ++i) {
    push_undo_static(i, 1.0F);
  }
  clear_undo();
  EXPECT_EQ(undo_count(), 0U);
  EXPECT_FALSE(told.back());
  set_undo_listener({});
}

TEST(Undo_stack, What_was_undone_can_be_done_again_until_a_new_edit) {
  clear_undo();
  std::vector<bool> told;
  push_undo_static(1, 1.0F);
  push_undo_static(2, 2.0F);
  set_redo_listener([&](bool available) { told.push_back(available); });
  move_to_redo({{2, UndoStatic{20.0F}, 2}});
  move_to_redo({{1, UndoStatic{10.0F}, 1}});
  EXPECT_EQ(undo_count(), 0U);
  ASSERT_EQ(redo_count(), 2U);
  EXPECT_EQ(top_redo().back().id, 1);
  EXPECT_EQ(std::get<UndoStatic>(top_redo().back().earlier).res_offset, 10.0F);
  move_to_undo({{1, UndoStatic{1.0F}, 1}});
  EXPECT_EQ(undo_count(), 1U);
  EXPECT_EQ(top_redo().back().id, 2);
  push_undo_static(3, 3.0F);
  EXPECT_EQ(redo_count(), 0U);
  move_to_redo({{3, UndoStatic{3.0F}, 3}});
  pop_redo();
  move_to_redo({{1, UndoStatic{1.0F}, 1}});
  clear_undo();
  EXPECT_EQ(redo_count(), 0U);
  EXPECT_EQ(told, (std::vector<bool>{true, true, true, false, true, false, true, false}));
  set_redo_listener({});
}

TEST(Undo_stack, Entries_of_one_command_stay_together) {
  clear_undo();
  push_undo_static(1, 1.0F);
  const std::int32_t command = next_undo_command();
  for (const std::int32_t id : {2, 3, 4}) {
    push_undo({id, UndoStatic{1.0F}, command});
  }
  ASSERT_EQ(top_undo().size(), 3U);
  EXPECT_EQ(top_undo().front().id, 2);
  move_to_redo({{4, UndoStatic{}, command}, {3, UndoStatic{}, command}, {2, UndoStatic{}, command}});
  ASSERT_EQ(top_undo().size(), 1U);
  EXPECT_EQ(top_undo().front().id, 1);
  EXPECT_EQ(top_redo().size(), 3U);
  pop_undo();
  EXPECT_TRUE(top_undo().empty());
  pop_redo();
  EXPECT_EQ(redo_count(), 0U);
  push_undo_static(5, 1.0F);
  push_undo_static(5, 2.0F);
  EXPECT_EQ(top_undo().size(), 1U) << "each push of a caller is a command of its own";
  clear_undo();
}

TEST(Undo_stack, Forgets_the_oldest_commands_as_wholes_and_never_the_newest) {
  clear_undo();
  const auto command_of = [](std::int32_t first) {
    std::vector<UndoEntry> entries;
    for (std::int32_t id = first; id < first + 3; ++id) {
      entries.push_back({id, UndoMask{100, std::vector<std::byte>(800)}});
    }
    const auto shared = std::make_shared<UndoReduction>();
    shared->merged.data_bytes.resize(8000);
    for (UndoEntry& entry : entries) {
      entry.reduction = shared;
    }
    return entries;
  };
  for (const std::int32_t first : {10, 20, 30}) {
    push_undo_command(command_of(first));
  }
  const std::size_t of_command = bytes_of(top_undo());
  EXPECT_GT(of_command, 8000U + 3 * 800U) << "what entries share counts once";
  EXPECT_LT(of_command, 2 * 8000U);
  limit_undo(2 * of_command + 100);
  EXPECT_EQ(undo_count(), 6U);
  EXPECT_EQ(session().undo_stack.entries.front().id, 20) << "a command goes as a whole";
  limit_undo(10);
  ASSERT_EQ(undo_count(), 3U);
  EXPECT_EQ(top_undo().front().id, 30);
  move_to_redo(command_of(30));
  limit_undo(10);
  EXPECT_EQ(redo_count(), 3U);
  clear_undo();
}
