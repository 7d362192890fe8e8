#include "platform/windows/progress_in_window.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QObject>
#include <string>
#include <utility>

namespace {

constexpr qint64 events_milliseconds = 40;  // about once a frame; more often costs time and shows nothing

class WindowInterface final : public UserInterface {
 public:
  WindowInterface(QProgressBar& bar, QLabel& what, QAbstractButton& stop)
      : bar_(bar), what_(what), stop_(stop) {
    stop_.setEnabled(true);
    clicks_ = QObject::connect(&stop_, &QAbstractButton::clicked, &bar_, [this] {
      stop_requested_ = true;
      stop_.setEnabled(false);
      what_.setText("Stopping...");
    });
  }
  WindowInterface(const WindowInterface&) = delete;
  WindowInterface& operator=(const WindowInterface&) = delete;
  ~WindowInterface() override {
    QObject::disconnect(clicks_);
    stop_.setEnabled(false);
  }

  std::unique_ptr<UserInterface> earlier;

  void show_message(const std::string& text) override { earlier->show_message(text); }
  bool ask_yes_no(const std::string& question) override { return earlier->ask_yes_no(question); }
  std::string select_file_to_open(const FileDialogRequest& request) override {
    return earlier->select_file_to_open(request);
  }
  std::string select_file_to_create(const FileDialogRequest& request) override {
    return earlier->select_file_to_create(request);
  }
  std::string ask_text(const std::string& prompt, const std::string& title,
                       const std::string& suggestion) override {
    return earlier->ask_text(prompt, title, suggestion);
  }
  void set_busy_pointer(bool busy) override { earlier->set_busy_pointer(busy); }

  void process_events() override {
    if (!events_time_.isValid() || events_time_.elapsed() >= events_milliseconds) {
      QCoreApplication::processEvents(QEventLoop::AllEvents);
      events_time_.start();
    }
  }
  void show_progress(std::string_view what, int percent) override {
    // After a stop "Stopping..." stays until another step begins, which has to end all the same.
    if (!stop_requested_ || what != shown_) {
      what_.setText(QString::fromUtf8(what.data(), static_cast<qsizetype>(what.size())));
    }
    shown_ = what;
    // Under the message of what was done an empty bar says the opposite, and there is nothing to stop.
    bar_.setVisible(percent >= 0);
    stop_.setVisible(percent >= 0);
    bar_.setValue(percent < 0 ? 0 : percent);
    process_events();
  }
  bool stop_requested() override {
    process_events();
    return stop_requested_;
  }

 private:
  QProgressBar& bar_;
  QLabel& what_;
  QAbstractButton& stop_;
  QMetaObject::Connection clicks_;
  QElapsedTimer events_time_;  // since the events ran last
  std::string shown_;
  bool stop_requested_ = false;
};

}  // namespace

void hide_until_work(std::initializer_list<QWidget*> parts) {
  for (QWidget* const part : parts) {
    QSizePolicy policy = part->sizePolicy();
    policy.setRetainSizeWhenHidden(true);
    part->setSizePolicy(policy);
    part->hide();
  }
}

ProgressInWindow::ProgressInWindow(QProgressBar& bar, QLabel& what, QAbstractButton& stop) {
  auto interface = std::make_unique<WindowInterface>(bar, what, stop);
  earlier_ = &interface->earlier;
  *earlier_ = install_user_interface(std::move(interface));
}

ProgressInWindow::~ProgressInWindow() { install_user_interface(std::move(*earlier_)); }
