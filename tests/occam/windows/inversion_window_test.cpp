// The inversion of a run directory, worked in its window as a user does.
#include <QAbstractButton>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QProgressBar>
#include <QPushButton>
#include <QScrollBar>
#include <QSpinBox>
#include <QStatusBar>
#include <QTest>
#include <QTimer>

#include "core/finished_work.h"
#include "core/scope_guard.h"
#include "occam/windows/picture_model.h"
#include "occam/windows/results_windows.h"
#include "platform/files/file_lock.h"
#include "tests/occam/windows/small_run.h"
#include "tests/support/read_only_folder.h"
#include "tests/support/recording_interface.h"

using namespace Module_occam;
namespace fs = std::filesystem;
using Messages = std::vector<std::string>;

class InversionWindowTest : public QObject {
  Q_OBJECT

 private:
  /// An inversion that goes on until it is stopped.
  inline static const made::SmallRun endless{"500", "0.001", 0.001, 400};

  void open(const made::SmallRun& run = {}) {
    static_cast<void>(made::write_small_run(*folder_, "run/", run));
    windows_->open_to_run(folder_->folder() / "run");
    window_ = window_of("run");
    QVERIFY(window_ != nullptr);
    QVERIFY(QTest::qWaitForWindowExposed(window_));
  }
  static Form_occam_inversion* window_of(const std::string& folder) {
    for (QWidget* const widget : QApplication::topLevelWidgets()) {
      auto* const window = qobject_cast<Form_occam_inversion*>(widget);
      if (window != nullptr && window->isVisible() && window->folder().filename() == folder) {
        return window;
      }
    }
    return nullptr;
  }
  template <class Widget>
  Widget* control(const char* name) const {
    auto* const found = window_->findChild<Widget*>(name);
    if (found == nullptr) {
      qFatal("no control %s", name);
    }
    return found;
  }
  void click(const char* name) const { QTest::mouseClick(control<QPushButton>(name), Qt::LeftButton); }
  QString text(const char* name) const { return control<QLineEdit>(name)->text(); }
  QString ending() const { return control<QLabel>("Label_run_ending")->text(); }
  [[nodiscard]] fs::path file(const char* name) const { return folder_->folder() / "run" / name; }
  void run_to_the_end() const {
    click("Command_run");
    QTRY_VERIFY_WITH_TIMEOUT(!window_->running(), 30000);
  }
  /// Presses the button whose text begins so in the question that comes up.
  void answer(const char* button) const {
    auto* const look = new QTimer(window_);
    connect(look, &QTimer::timeout, look, [look, button] {
      auto* const box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
      if (box == nullptr) {
        return;
      }
      look->deleteLater();
      for (QAbstractButton* const choice : box->buttons()) {
        if (choice->text().remove('&').startsWith(button)) {
          choice->click();
          return;
        }
      }
      box->reject();
      QFAIL("no such button");
    });
    look->start(10);
  }

  std::unique_ptr<TemporaryFolder> folder_;
  std::unique_ptr<RecordingInterface> interface_;
  std::unique_ptr<ResultsWindows> windows_;
  Form_occam_inversion* window_ = nullptr;

 private Q_SLOTS:
  void init() {
    folder_ = std::make_unique<TemporaryFolder>();
    fs::create_directory(folder_->folder() / "run");
    interface_ = std::make_unique<RecordingInterface>();
    windows_ = std::make_unique<ResultsWindows>();
  }
  void cleanup() {
    windows_.reset();
    interface_.reset();
    folder_.reset();
  }

  void a_run_is_followed_to_its_end() {
    Module_Brenlox::FinishedWork finished;
    Module_Brenlox::set_finished_listener([&](const Module_Brenlox::FinishedWork& work) { finished = work; });
    const ScopeGuard deaf([] { Module_Brenlox::set_finished_listener({}); });
    open();
    QCOMPARE(text("Text_run_iterations"), "4");
    QCOMPARE(text("Text_run_target"), "1");
    QVERIFY(!control<QPushButton>("Command_continue")->isEnabled());
    QVERIFY(!control<QPushButton>("Command_stop_run")->isEnabled());
    click("Command_run");
    QVERIFY(window_->running());
    QVERIFY(!control<QPushButton>("Command_run")->isEnabled());
    QVERIFY(!control<QLineEdit>("Text_run_target")->isEnabled());
    int turns = 0;
    while (window_->running()) {
      QTest::qWait(1);  // events are run while the inversion works
      QVERIFY(++turns < 30000);
    }
    QVERIFY(turns > 1);
    const int last = control<QComboBox>("Combo_iteration")->count() - 1;
    QVERIFY(last >= 1 && last <= 4);
    QCOMPARE(text("Text_iterate"), QString::number(last));
    QVERIFY(fs::exists(file("ITER01.iter")));
    QVERIFY2(ending().startsWith("RMS ") || ending().startsWith("Stopped improving"), qPrintable(ending()));
    QCOMPARE(finished.path, (folder_->folder() / "run").string());  // who works elsewhere meanwhile is told
    QVERIFY(finished.text.ends_with("has ended. " + ending().toStdString()));
    QVERIFY(control<QPushButton>("Command_continue")->isEnabled());
    QCOMPARE(control<QProgressBar>("ProgressBar_run")->value(),
             control<QProgressBar>("ProgressBar_run")->minimum() - 1);
    // The bar of the first site leads to its curves.
    auto* const bars = control<QWidget>("Picture_site_misfit");
    QTest::mouseMove(bars, QPoint(bars->width() / 2, bars->height() / 2));
    QTRY_VERIFY(
        control<QStatusBar>("Status_occam")->currentMessage().startsWith("Site 2, station_250.0   RMS "));
    QTest::mouseClick(bars, Qt::LeftButton, {}, QPoint(bars->width() - 20, bars->height() / 2));
    QCOMPARE(control<QScrollBar>("HScroll_station")->value(), 3);
    QVERIFY(control<QScrollBar>("HScroll_station")->isVisible());
    QVERIFY(interface_->take_messages().empty());
  }

  void an_older_iteration_that_was_chosen_stays() {
    open(endless);
    click("Command_run");
    QTRY_VERIFY_WITH_TIMEOUT(control<QComboBox>("Combo_iteration")->count() > 2, 30000);
    control<QComboBox>("Combo_iteration")->setCurrentIndex(1);
    QTRY_VERIFY_WITH_TIMEOUT(control<QComboBox>("Combo_iteration")->count() > 4 || !window_->running(),
                             30000);
    QCOMPARE(text("Text_iterate"), "1");
  }

  void stopped_and_continued() {
    open(endless);
    click("Command_run");
    QTRY_VERIFY_WITH_TIMEOUT(fs::exists(file("ITER01.iter")), 30000);
    click("Command_stop_run");
    QTRY_VERIFY_WITH_TIMEOUT(!window_->running(), 30000);
    QVERIFY2(ending().contains("can be continued"), qPrintable(ending()));
    QVERIFY(control<QLineEdit>("Text_run_target")->isEnabled());
    const int before = control<QComboBox>("Combo_iteration")->count();
    control<QLineEdit>("Text_run_iterations")->setText("1");
    click("Command_continue");
    QTRY_VERIFY_WITH_TIMEOUT(!window_->running(), 30000);
    QCOMPARE(control<QComboBox>("Combo_iteration")->count(), before + 1);
    QVERIFY(!fs::exists(file("earlier_1")));
    QVERIFY(interface_->take_messages().empty());
  }

  void the_section_fades_and_shows_errors_and_changes() {
    open({"2", "0.001", 0.001});
    run_to_the_end();
    const auto section = [this] { return control<QWidget>("Picture_model")->grab().toImage(); };
    const QImage plain = section();
    auto* const fade = control<QCheckBox>("Check_fade");
    fade->setChecked(true);
    QTRY_VERIFY_WITH_TIMEOUT(section() != plain, 30000);
    const QImage faded = section();
    fade->setChecked(false);
    QCOMPARE(section(), plain);
    fade->setChecked(true);  // it is known by now
    QCOMPARE(section(), faded);
    fade->setChecked(false);
    // What is given up begins anew when it is wanted again.
    control<QComboBox>("Combo_iteration")->setCurrentIndex(1);
    const QImage first = section();
    fade->setChecked(true);
    fade->setChecked(false);
    fade->setChecked(true);
    QTRY_VERIFY_WITH_TIMEOUT(section() != first, 30000);
    fade->setChecked(false);

    auto* const shows = control<QComboBox>("Combo_section_shows");
    auto* const picture = control<QWidget>("Picture_model");
    const auto text = [&] {
      QTest::mouseMove(picture, QPoint(5, 5));
      QTest::mouseMove(picture, QPoint(picture->width() / 2, picture->height() / 2));
      return control<QStatusBar>("Status_occam")->currentMessage();
    };
    shows->setCurrentIndex(1);
    QTRY_VERIFY_WITH_TIMEOUT(text().contains("Standard error (about) 0."), 10000);
    shows->setCurrentIndex(2);
    QTRY_VERIFY(text().contains("Change since iteration 0 "));
    control<QSpinBox>("Spin_base_iteration")->setValue(1);  // the one on show
    QTRY_VERIFY2(text().contains("Change since iteration 1 0.00 decades"), qPrintable(text()));
    QCOMPARE(control<QLineEdit>("Text_max_res_model")->text(), "0.000");
    shows->setCurrentIndex(0);
    QTRY_VERIFY(text().contains("Resistivity "));
    QVERIFY(interface_->take_messages().empty());
    control<QComboBox>("Combo_iteration")->setCurrentIndex(0);
    fade->setChecked(true);
    const QPointer<Form_occam_inversion> window(window_);
    window_->close();  // in the middle of the work, which is nothing to ask about
    QTRY_VERIFY_WITH_TIMEOUT(!window, 30000);
    QVERIFY((*interface_)->questions.empty());
  }

  void earlier_iterations_are_asked_about() {
    open({"2", "0.001", 0.001});
    run_to_the_end();
    QVERIFY(fs::exists(file("ITER02.iter")));
    control<QLineEdit>("Text_run_iterations")->setText("1");
    answer("Cancel");
    run_to_the_end();
    QVERIFY(!fs::exists(file("earlier_1")));
    QCOMPARE(control<QComboBox>("Combo_iteration")->count(), 3);
    answer("Continue");
    run_to_the_end();
    QVERIFY(fs::exists(file("ITER03.iter")));
    answer("Keep them in earlier_1 and start anew");
    run_to_the_end();
    QVERIFY(fs::exists(file("earlier_1/ITER03.iter")));
    QCOMPARE(control<QComboBox>("Combo_iteration")->count(), 2);
    QCOMPARE(text("Text_iterate"), "1");
  }

  void closing_asks_and_stops() {
    open(endless);
    click("Command_run");
    QTRY_VERIFY_WITH_TIMEOUT(fs::exists(file("ITER00.iter")), 30000);
    QTest::keyClick(window_, Qt::Key_Escape);
    QCOMPARE((*interface_)->questions.size(), 1U);
    QVERIFY(window_->running());
    QVERIFY(window_->isVisible());
    (*interface_)->yes_no_answers = {true};
    const QPointer<Form_occam_inversion> window(window_);
    window_->close();
    {
      QDialog question(window_);  // opened while the window waits for the inversion's end
      question.setModal(true);
      question.show();
      QTRY_VERIFY_WITH_TIMEOUT(!window->running(), 30000);
      QTest::qWait(300);
      QVERIFY(window && window->isVisible());
    }
    QTRY_VERIFY_WITH_TIMEOUT(!window, 30000);
    QVERIFY(!fs::exists(file("inversion.lock")));
    // The program: a window that is idle closes at once, one at work after the question.
    open(endless);
    const QPointer<Form_occam_inversion> second(window_);
    answer("Continue");
    click("Command_run");
    QTRY_VERIFY_WITH_TIMEOUT(window_->running() && QApplication::activeModalWidget() == nullptr, 30000);
    QTest::qWait(100);
    bool closed = false;
    connect(windows_.get(), &ResultsWindows::all_closed, windows_.get(), [&closed] { closed = true; });
    QVERIFY(!windows_->close_all());  // the answer is no
    QVERIFY(window_->running() && window_->isVisible());
    (*interface_)->yes_no_answers = {true};
    QVERIFY(!windows_->close_all());
    QTRY_VERIFY_WITH_TIMEOUT(closed, 30000);
    QVERIFY(windows_->close_all());
  }

  void what_can_not_be_done_is_said() {
    open();
    control<QLineEdit>("Text_run_target")->setText("none");
    click("Command_run");
    QCOMPARE(interface_->take_messages(), Messages{"The target RMS \"none\" is not a number above 0."});
    control<QLineEdit>("Text_run_target")->setText("1");
    control<QCheckBox>("Check_run_static_shift")->setChecked(true);
    control<QLineEdit>("Text_run_static_shift")->setText("0");
    QTest::keyClick(control<QLineEdit>("Text_run_static_shift"), Qt::Key_Return);
    QCOMPARE(interface_->take_messages(),
             Messages{"The error of static shifts \"0\" is not a number above 0."});
    control<QCheckBox>("Check_run_static_shift")->setChecked(false);
    {
      const FileLock lock(file("inversion.lock"));
      run_to_the_end();
      const Messages shown = interface_->take_messages();
      QCOMPARE(shown.size(), 1U);
      QVERIFY2(shown[0].find("Another inversion is running in ") != std::string::npos, shown[0].c_str());
      QCOMPARE(ending().toStdString(), shown[0]);
    }
    QVERIFY(!fs::exists(file("ITER00.iter")));
    static_cast<void>(folder_->write("run/inmodel", "rubbish\n"));
    run_to_the_end();
    const Messages shown = interface_->take_messages();
    QCOMPARE(shown.size(), 1U);
    QVERIFY2(shown[0].find("inmodel: ") != std::string::npos, shown[0].c_str());
  }

  void the_start_model_is_shown_until_there_are_iterations() {
    open();
    QCOMPARE(control<QComboBox>("Combo_iteration")->currentText(), QString("Start model"));
    QVERIFY2(text("Text_min_res_model").endsWith(" / 100.00"), qPrintable(text("Text_min_res_model")));
    QCOMPARE(text("Text_RMS"), QString("NA"));
    run_to_the_end();
    QCOMPARE(control<QComboBox>("Combo_iteration")->itemText(0), QString("0"));
    QVERIFY(text("Text_RMS") != "NA");
  }

  // As after a mesh was masked beside its run.
  void another_start_file_of_the_folder_is_a_run_of_its_own() {
    open({"1", "0.001", 0.001});
    run_to_the_end();
    static_cast<void>(folder_->write("run/hill_model", file_contents(file("inmodel").string())));
    std::string start = file_contents(file("startup").string());
    start.replace(start.find("inmodel"), 7, "hill_model");
    (*interface_)->path_answers.push_back(folder_->write("run/hill_startup", start));
    (*interface_)->yes_no_answers = {true};
    windows_->open_chosen();
    QCOMPARE(
        (*interface_)->questions.back(),
        std::string("No iteration files were found at the specified location for the model hill_model. Open "
                    "it to see its start model and run its inversion?"));
    Form_occam_inversion* const plain = window_;
    plain->hide();
    window_ = window_of("run");
    plain->show();
    QVERIFY(window_ != nullptr && window_ != plain);
    QCOMPARE(window_->windowTitle(), QString("Occam2D Results: run (hill_startup)"));
    QCOMPARE(control<QComboBox>("Combo_iteration")->currentText(), QString("Start model"));
    QVERIFY(!control<QPushButton>("Command_continue")->isEnabled());
    answer("Keep them in earlier_1 and start anew");
    run_to_the_end();
    QVERIFY(fs::exists(file("earlier_1/startup")));
    QCOMPARE(text("Text_iterate"), QString("1"));
    QVERIFY(control<QPushButton>("Command_continue")->isEnabled());
  }

  void each_run_has_one_window() {
    open();
    static_cast<void>(made::write_small_run(*folder_));
    (*interface_)->path_answers.push_back(folder_->path("startup"));
    windows_->open_chosen();  // without iterations: a question, and the answer is no
    QCOMPARE((*interface_)->questions.back(),
             std::string("No iteration files were found at the specified location. Open it to see its start "
                         "model and run its inversion?"));
    QVERIFY(window_of(folder_->folder().filename()) == nullptr);
    (*interface_)->path_answers.push_back(folder_->path("startup"));
    (*interface_)->yes_no_answers = {true};
    windows_->open_chosen();
    auto* const fresh = window_of(folder_->folder().filename());
    QVERIFY(fresh != nullptr);
    const auto* const section = fresh->findChild<const PictureModel*>();
    QVERIFY2(!section->picture().geometry.rectangles.empty(), "the model that it starts with");
    QVERIFY(section->picture().note.isEmpty());
    (*interface_)->path_answers.push_back(folder_->path("run/startup"));
    windows_->open_chosen();
    QCOMPARE(window_of("run"), window_);
    QVERIFY(windows_->close_all());
  }
};

QTEST_MAIN(InversionWindowTest)
#include "inversion_window_test.moc"
