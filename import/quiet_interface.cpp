#include "import/quiet_interface.h"

#include <string>
#include <utility>

#include "core/number_text.h"

namespace Module_data_file {

namespace {

class Quiet final : public UserInterface {
 public:
  std::unique_ptr<UserInterface> earlier;

  void show_message(const std::string& /*text*/) override {}
  bool ask_yes_no(const std::string& /*question*/) override { return false; }
  std::string select_file_to_open(const FileDialogRequest& /*request*/) override { return {}; }
  std::string select_file_to_create(const FileDialogRequest& /*request*/) override { return {}; }
  void set_busy_pointer(bool busy) override { earlier->set_busy_pointer(busy); }
  void process_events() override { earlier->process_events(); }
  void show_progress(std::string_view what, int percent) override {
    if (percent >= 0) {
      earlier->show_progress(std::string(what) + ": " + plain_text(percent) + " %", 0);
    }
  }
  bool stop_requested() override { return earlier->stop_requested(); }
};

}  // namespace

QuietInterface::QuietInterface() {
  auto quiet = std::make_unique<Quiet>();
  earlier_ = &quiet->earlier;
  *earlier_ = install_user_interface(std::move(quiet));
}

QuietInterface::~QuietInterface() { install_user_interface(std::move(*earlier_)); }

}  // namespace Module_data_file
