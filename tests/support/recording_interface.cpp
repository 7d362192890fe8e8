#include "tests/support/recording_interface.h"

#include <utility>

namespace {

class Recorder final : public UserInterface {
 public:
  explicit Recorder(Recorded& recorded) : recorded_(recorded) {}
  void show_message(const std::string& text) override { recorded_.messages.push_back(text); }
  bool ask_yes_no(const std::string& question) override {
    recorded_.questions.push_back(question);
    return take(recorded_.yes_no_answers);
  }
  std::string select_file_to_open(const FileDialogRequest& request) override {
    recorded_.file_dialogs.push_back(request);
    recorded_.file_asked();
    return take(recorded_.path_answers);
  }
  std::string select_file_to_create(const FileDialogRequest& request) override {
    return select_file_to_open(request);
  }
  std::string ask_text(const std::string& prompt, const std::string& /*title*/,
                       const std::string& /*suggestion*/) override {
    recorded_.prompts.push_back(prompt);
    return take(recorded_.text_answers);
  }
  void set_busy_pointer(bool busy) override { recorded_.busy = busy; }
  void process_events() override { recorded_.events(); }
  void show_progress(std::string_view what, int percent) override {
    recorded_.progress.push_back(percent);
    if (recorded_.progress_texts.empty() || recorded_.progress_texts.back() != what) {
      recorded_.progress_texts.emplace_back(what);
    }
  }
  bool stop_requested() override { return recorded_.stop(); }

 private:
  template <class T>
  static T take(std::deque<T>& answers) {
    if (answers.empty()) {
      return T{};
    }
    T answer = std::move(answers.front());
    answers.pop_front();
    return answer;
  }

  Recorded& recorded_;
};

}  // namespace

RecordingInterface::RecordingInterface()
    : earlier_(install_user_interface(std::make_unique<Recorder>(recorded_))) {}

RecordingInterface::~RecordingInterface() { install_user_interface(std::move(earlier_)); }

std::vector<std::string> RecordingInterface::take_messages() { return std::exchange(recorded_.messages, {}); }
