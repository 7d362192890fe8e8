// qt_user_interface.h: message boxes, file dialogs, busy pointer and progress on Qt widgets.
#pragma once
#include <QElapsedTimer>
#include <QPointer>

#include "core/user_interface.h"
#include "platform/windows/progress_dialog.h"

class QtUserInterface : public UserInterface {
 public:
  QtUserInterface();
  ~QtUserInterface() override;

  void show_message(const std::string& text) override;
  bool ask_yes_no(const std::string& question) override;
  std::string select_file_to_open(const FileDialogRequest& request) override;
  std::string select_file_to_create(const FileDialogRequest& request) override;
  std::string ask_text(const std::string& prompt, const std::string& title,
                       const std::string& suggestion) override;
  void set_busy_pointer(bool busy) override;

  /// Input for the windows waits until the work is over, unless the progress dialog is up: a menu item
  /// chosen in the middle of an import must not start another one.
  void process_events() override;

  /// The dialog appears only when the work has lasted for a while: short work needs no window.
  void show_progress(std::string_view what, int percent) override;
  bool stop_requested() override;

 private:
  QPointer<ProgressDialog> progress_;  // deleted with the window below it, if that is closed first
  QElapsedTimer work_time_;            // since the first progress of the current work
  QElapsedTimer events_time_;          // since the events ran last
  bool busy_ = false;
};
