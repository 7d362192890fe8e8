// user_interface.h: what the logic shows to the user and asks for.
//
// The windows install an implementation on Qt widgets, the batch program one that writes to the console,
// tests one that records. Logic calls user_interface() and never sees which of them answers.
#pragma once
#include <memory>
#include <string>
#include <string_view>

/// One file dialog: texts as the user reads them.
struct FileDialogRequest {
  std::string title;
  std::string filter;             // "Description (*.mdb)|*.mdb|All files (*.*)|*.*"
  std::string default_extension;  // "*.mdb"
  std::string directory;          // where the dialog starts; empty is the working directory
  std::string suggested_name;     // file name offered for saving; may be empty
};

/// Messages, questions, file dialogs and progress, however they are shown.
class UserInterface {
 public:
  UserInterface() = default;
  UserInterface(const UserInterface&) = delete;
  UserInterface& operator=(const UserInterface&) = delete;
  virtual ~UserInterface() = default;

  /// Shows a message until the user has dismissed it.
  virtual void show_message(const std::string& text) = 0;

  /// @return true for Yes
  virtual bool ask_yes_no(const std::string& question) = 0;

  /// @return the chosen path, empty when cancelled
  virtual std::string select_file_to_open(const FileDialogRequest& request) = 0;

  /// The dialog itself asks nothing about a file that exists; the caller does.
  /// @return the chosen path, empty when cancelled
  virtual std::string select_file_to_create(const FileDialogRequest& request) = 0;

  /// Asks for a line of text. An interface without a user gives an empty text.
  /// @return the text without blanks at its ends, empty when cancelled
  virtual std::string ask_text(const std::string& prompt, const std::string& title,
                               const std::string& suggestion);

  /// Shows or removes the busy pointer. Use BusyPointer, which nests.
  virtual void set_busy_pointer(bool busy) = 0;

  /// Lets the window respond during long work.
  virtual void process_events() = 0;

  /// Shows the progress of long work; `percent` 0 to 100, a negative value ends the display.
  virtual void show_progress(std::string_view what, int percent) = 0;

  /// @return true once the user has asked to stop the long work
  virtual bool stop_requested() = 0;
};

/// The installed interface; a silent one that answers No and cancels every dialog until something is
/// installed.
UserInterface& user_interface();

/// Installs `interface` (not null) and returns what was installed before.
std::unique_ptr<UserInterface> install_user_interface(std::unique_ptr<UserInterface> interface);

/// Shows the busy pointer for the life of a scope; scopes nest.
class BusyPointer {
 public:
  BusyPointer();
  BusyPointer(const BusyPointer&) = delete;
  BusyPointer& operator=(const BusyPointer&) = delete;
  ~BusyPointer();
};
