// main_view.h: what the File menu's logic needs of the main window.
//
// The window shows, the logic decides: each call changes only what is seen, and none of them touches the
// session or the survey.
#pragma once
#include <string>

class MainView {
 public:
  MainView() = default;
  MainView(const MainView&) = delete;
  MainView& operator=(const MainView&) = delete;
  virtual ~MainView() = default;

  /// Shows or hides what needs an open survey: its menus and the display.
  virtual void set_database_menus(bool open) = 0;
  virtual void set_caption(const std::string& caption) = 0;

  /// Fills the recent files' menu items from session().recent_files, the first recent_count of them.
  virtual void show_recent_files() = 0;

  /// Loads session().opening_picture; a missing one is passed over without a word.
  virtual void show_opening_picture() = 0;

  /// Draws the survey anew from the database, with its selection.
  virtual void display_site_map() = 0;
};
