#include "core/user_interface.h"

#include <cassert>
#include <utility>

namespace {

class SilentInterface final : public UserInterface {
 public:
  void show_message(const std::string& /*text*/) override {}
  bool ask_yes_no(const std::string& /*question*/) override { return false; }
  std::string select_file_to_open(const FileDialogRequest& /*request*/) override { return {}; }
  std::string select_file_to_create(const FileDialogRequest& /*request*/) override { return {}; }
  void set_busy_pointer(bool /*busy*/) override {}
  void process_events() override {}
  void show_progress(std::string_view /*what*/, int /*percent*/) override {}
  bool stop_requested() override { return false; }
};

std::unique_ptr<UserInterface>& installed_interface() {
  static std::unique_ptr<UserInterface> interface = std::make_unique<SilentInterface>();
  return interface;
}

int busy_depth = 0;

}  // namespace

std::string UserInterface::ask_text(const std::string& /*prompt*/, const std::string& /*title*/,
                                    const std::string& /*suggestion*/) {
  return {};
}

UserInterface& user_interface() { return *installed_interface(); }

std::unique_ptr<UserInterface> install_user_interface(std::unique_ptr<UserInterface> interface) {
  assert(interface != nullptr);
  return std::exchange(installed_interface(), std::move(interface));
}

BusyPointer::BusyPointer() {
  if (busy_depth++ == 0) {
    user_interface().set_busy_pointer(true);
  }
}

BusyPointer::~BusyPointer() {
  if (--busy_depth == 0) {
    user_interface().set_busy_pointer(false);
  }
}
