#include "tests/soak/soak_run.h"

#include <QAbstractButton>
#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QPixmapCache>
#include <QPointer>
#include <QTimer>
#include <algorithm>
#include <cstdio>
#include <fstream>
#include <iterator>
#include <utility>

#include <sqlite3.h>
#include <unistd.h>

#include "core/scope_guard.h"
#include "core/session_state.h"
#include "core/user_interface.h"
#include "platform/windows/progress_dialog.h"
#include "tests/soak/allocated_memory.h"
#include "tests/soak/soak_survey.h"
#include "tests/soak/survey_faults.h"

namespace {

constexpr QSize usual_size(1280, 800);

std::size_t resident_bytes() {
  std::size_t whole = 0;
  std::size_t resident = 0;
  std::ifstream("/proc/self/statm") >> whole >> resident;
  return resident * static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
}

/// A message without what differs from one time to the next.
std::string kind_of(const std::string& message) {
  std::string kind = message.substr(0, 160);
  std::ranges::replace_if(
      kind, [](char letter) { return letter >= '0' && letter <= '9'; }, '#');
  return kind;
}

/// What the platform without a screen says of what it can't do, the fonts of the system of scripts that they
/// lack, and the test library of keys that are typed on while a dialog comes up; none has to do with the
/// windows.
bool is_about_platform(const QString& text) {
  return text.startsWith("This plugin does not support") || text.startsWith("QStandardPaths: ") ||
         text.contains("OpenType support missing for") || text.startsWith("Keyboard event not accepted");
}

}  // namespace

SoakRun* SoakRun::takes_warnings_ = nullptr;

/// Answers at once, as the hand would if it came to the boxes.
class SoakRun::Answers final : public UserInterface {
 public:
  explicit Answers(SoakRun& soak) : soak_(soak) {}
  void show_message(const std::string& text) override {
    soak_.report_("message: " + text);
    ++soak_.messages_[kind_of(text)];
  }
  bool ask_yes_no(const std::string& question) override {
    ++soak_.messages_[kind_of(question)];
    return soak_.hand_->number(2) == 0;
  }
  std::string select_file_to_open(const FileDialogRequest& request) override {
    return in_folder(request,
                     {"survey.mdb", "survey.mdb", "other.mdb", "text.mdb", "empty.mdb", "none.mdb", ""},
                     {"startup", "run/startup", "run/ITER_1", "run/inmodel", "run/mesh", "run/points.xyz",
                      "written.txt", "none.txt", ""});
  }
  std::string select_file_to_create(const FileDialogRequest& request) override {
    return in_folder(request, {"other.mdb", "other.mdb", "third.mdb", "no folder/new.mdb", ""},
                     {"written.txt", "written.png", "written.pdf", "no folder/new.txt", ""});
  }
  std::string ask_text(const std::string& /*prompt*/, const std::string& /*title*/,
                       const std::string& suggestion) override {
    return soak_.hand_->any(std::vector<std::string>{suggestion, "MGA 55", "Ω a'b;c%", ""});
  }
  void set_busy_pointer(bool /*busy*/) override {}
  // The steps go on during the work, in its dialog.
  void process_events() override {
    if (progress_ != nullptr) {
      QCoreApplication::processEvents();
    }
  }
  void show_progress(std::string_view what, int percent) override {
    constexpr int works_with_dialog =
        4;  // one in so many; most work here is too short to get one by its time
    if (percent < 0) {
      delete progress_;
      at_work_ = false;
      return;
    }
    if (!std::exchange(at_work_, true) && soak_.hand_->number(works_with_dialog) == 0) {
      progress_ = new ProgressDialog(QApplication::activeWindow());
      progress_->show();
    }
    if (progress_ != nullptr) {
      progress_->show_progress(QString::fromUtf8(what.data(), static_cast<qsizetype>(what.size())), percent);
    }
    process_events();
  }
  bool stop_requested() override {
    constexpr int patience = 5000;
    process_events();
    return (progress_ != nullptr && progress_->stop_requested()) || soak_.hand_->number(patience) == 0;
  }

 private:
  std::string in_folder(const FileDialogRequest& request, const std::vector<std::string>& surveys,
                        const std::vector<std::string>& other_files) {
    const bool is_survey = request.filter.find("mdb") != std::string::npos;
    const std::string& name = soak_.hand_->any(is_survey ? surveys : other_files);
    return name.empty() ? name : (soak_.folder_.folder() / name).string();
  }

  SoakRun& soak_;
  QPointer<ProgressDialog> progress_;  // of the work under way
  bool at_work_ = false;
};

SoakRun::SoakRun(const SoakChoices& choices, const TemporaryFolder& folder,
                 std::function<void(const std::string&)> report)
    : choices_(choices), folder_(folder), report_(std::move(report)) {
  survey_ = make_soak_survey(folder);
  earlier_interface_ = install_user_interface(std::make_unique<Answers>(*this));
  takes_warnings_ = this;
  qInstallMessageHandler([](QtMsgType /*type*/, const QMessageLogContext& /*where*/, const QString& text) {
    takes_warnings_->count_warning(text);
  });
  window_ = std::make_unique<Form_main>();
  hand_ = std::make_unique<RandomHand>(*window_, choices.seed, [this](const std::string& what) {
    report_("step " + std::to_string(steps_) + ": " + what);
  });
}

SoakRun::~SoakRun() {
  window_.reset();
  qInstallMessageHandler(nullptr);
  install_user_interface(std::move(earlier_interface_));
}

int SoakRun::run() {
  QApplication::setQuitOnLastWindowClosed(false);  // the hand may choose Exit
  window_->resize(usual_size);
  window_->show();
  window_->open_survey(QString::fromStdString(survey_));
  step_soon();
  QApplication::exec();
  report_windows_and_messages();
  return faults_ == 0 ? 0 : 1;
}

void SoakRun::step_soon() { QTimer::singleShot(0, this, &SoakRun::step); }

void SoakRun::step() {
  if (steps_ >= choices_.steps) {
    end_step();
    return;
  }
  step_soon();  // a dialog that this step brings up has an event loop of its own, which goes on from here
  ++steps_;
  const ScopedValue<int> deeper(depth_, depth_ + 1);
  if (!window_->isVisible()) {
    window_->show();
  }
  if (!go_on_the_way()) {
    QWidget& window = hand_->choose_window();
    ++steps_in_window_[window.metaObject()->className()];
    hand_->act(window);
  }
  check_is_due_ |= steps_ % choices_.check_every == 0;
  report_is_due_ |= std::ranges::find(choices_.report_at, steps_) != choices_.report_at.end();
  if (depth_ > 1) {
    return;  // within a dialog or long work
  }
  if (std::exchange(check_is_due_, false)) {
    check_survey();
  }
  if (std::exchange(report_is_due_, false)) {
    report_memory();
  }
  steps_without_stations_ = session().station_count > 0 ? 0 : steps_without_stations_ + 1;
  constexpr int patience = 40;
  if (steps_without_stations_ > patience) {
    window_->open_survey(QString::fromStdString(survey_));
  }
}

bool SoakRun::go_on_the_way() {
  if (choices_.way.empty() || hand_->number(2) == 0) {
    return false;
  }
  QWidget& front = RandomHand::window_in_front(*window_);
  std::vector<QWidget*> windows{&front};
  if (&front == window_.get()) {
    std::ranges::copy(RandomHand::windows_beside(*window_), std::back_inserter(windows));
  }
  std::vector<QObject*> found;
  for (const std::string& name : choices_.way) {
    for (QWidget* const window : windows) {
      auto* const part = window->findChild<QWidget*>(QString::fromStdString(name));
      if (part != nullptr && part->isVisible() && part->isEnabled() && part->window() == window) {
        found.push_back(part);
      } else if (auto* const item = window->findChild<QAction*>(QString::fromStdString(name))) {
        found.push_back(item);
      }
    }
  }
  if (found.empty()) {
    return false;
  }
  ++steps_in_window_[front.metaObject()->className()];
  QObject& next = *hand_->any(found);
  report_("step " + std::to_string(steps_) + ": on to " + next.objectName().toStdString());
  if (auto* const button = qobject_cast<QAbstractButton*>(&next)) {
    button->click();
  } else if (auto* const list = qobject_cast<QComboBox*>(&next)) {
    list->setCurrentIndex(hand_->number(std::max(list->count(), 1)));
  } else if (auto* const item = qobject_cast<QAction*>(&next)) {
    item->trigger();
  }
  return true;
}

void SoakRun::end_step() {
  QWidget& front = RandomHand::window_in_front(*window_);
  if (&front != window_.get()) {
    step_soon();
    front.close();
  } else if (depth_ > 0) {
    step_soon();  // long work is about to end
  } else {
    check_survey();
    QApplication::quit();
  }
}

void SoakRun::check_survey() {
  if (!session().database_open) {
    return;
  }
  ++checks_;
  const std::string fault = fault_of_open_survey();
  if (!fault.empty()) {
    ++faults_;
    std::fprintf(stderr, "after step %d: %s\n", steps_, fault.c_str());
  }
}

void SoakRun::count_warning(const QString& text) {
  if (!is_about_platform(text)) {
    ++faults_;
    std::fprintf(stderr, "step %d: %s\n", steps_, qPrintable(text));
  }
}

void SoakRun::report_memory() {
  constexpr double mebibyte = 1024.0 * 1024.0;
  // The same state each time: pictures take most of the memory, and the history of edits has its share.
  for (QWidget* const window : RandomHand::windows_beside(*window_)) {
    window->close();
  }
  QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  window_->resize(usual_size);
  window_->open_survey(QString::fromStdString(survey_));
  window_->repaint();
  QPixmapCache::clear();  // else it grows for long, up to a limit of its own
  const auto engine = static_cast<double>(sqlite3_memory_used());
  std::printf(
      "after %5d steps: resident %.1f MiB, allocated %.2f MiB and by the engine %.2f MiB, %lld widgets\n",
      steps_, static_cast<double>(resident_bytes()) / mebibyte,
      (static_cast<double>(allocated_bytes()) - engine) / mebibyte, engine / mebibyte,
      static_cast<long long>(QApplication::allWidgets().size()));
  std::fflush(stdout);
  if (choices_.profile) {
    print_memory_profile();
  }
}

void SoakRun::report_windows_and_messages() const {
  std::printf("seed %u: %d steps, %d checks of the survey, %d faults\n", choices_.seed, steps_, checks_,
              faults_);
  for (const auto& [window, steps] : steps_in_window_) {
    std::printf("%7d steps in %s\n", steps, window.c_str());
  }
  for (const auto& [message, times] : messages_) {
    std::printf("%7d x \"%s\"\n", times, message.c_str());
  }
}
