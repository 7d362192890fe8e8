// The main window, worked as a user does: by its menus, keys and mouse.
#include "app/Form_main.h"

#include <QAction>
#include <QApplication>
#include <QKeySequence>
#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QPushButton>
#include <QSet>
#include <QSplitterHandle>
#include <QTest>
#include <QTimer>
#include <filesystem>
#include <memory>

#include "app/recent_surveys.h"
#include "core/session_state.h"
#include "core/undo_stack.h"
#include "database/survey_database.h"
#include "platform/widgets/vex_splitter.h"
#include "tests/reduction/made_readings.h"
#include "tests/support/window_fixture.h"

namespace {

constexpr const char* needs_survey[] = {"menu_edit", "menu_database", "menu_output", "menu_view_data"};
constexpr const char* items_that_need_survey[] = {"menu_database_file_2", "menu_saveas", "menu_thresholds"};

}  // namespace

class FormMainTest : public QObject, private WindowFixture {
  Q_OBJECT

 private:
  QAction* item(const QString& name) const {
    auto* const action = window_->findChild<QAction*>(name);
    return action != nullptr ? action : window_->findChild<QMenu*>(name)->menuAction();
  }
  template <class Widget = QWidget>
  Widget* control(const QString& name) const {
    return window_->findChild<Widget*>(name);
  }
  void start() {
    window_.reset();
    window_ = std::make_unique<Form_main>();
    window_->show();
    QVERIFY(QTest::qWaitForWindowExposed(window_.get()));
  }
  std::string make_survey(const char* name, bool with_readings) const {
    session().database_file = folder_->path(name);
    if (Module_database::create_database() != 0 || Module_database::open_database() != 0) {
      return {};
    }
    if (with_readings) {
      dao::Recordset& files = Module_database::open_survey().files;
      files.add_new();
      files.set_text("SurveyFile", "a.edi");
      files.set_long("ReferenceType", 0);
      files.update();
      for (const float frequency : {1.0F, 4.0F}) {
        made::store(made::key(), 0, made::reading({{frequency, 10.0F, 45.0F}}));
      }
      made::store(made::key(256.0F, 200.0), 0, made::reading({{1.0F, 10.0F, 45.0F}}));
    }
    return Module_database::close_database() == 0 ? session().database_file : std::string();
  }
  void open_by_key(const std::string& path) {
    (*interface_)->path_answers.push_back(path);
    QTest::keyClick(window_.get(), Qt::Key_O, Qt::ControlModifier);
  }
  void expect_menus(bool open) const {
    for (const char* const name : needs_survey) {
      QVERIFY2(item(name)->isVisible() == open, name);
    }
    for (const char* const name : items_that_need_survey) {
      QVERIFY2(item(name)->isVisible() == open, name);
    }
    QCOMPARE(control("Frame_display")->isVisible(), open);
    QCOMPARE(control("Picture_open")->isVisible(), !open);
  }

  std::unique_ptr<Form_main> window_;

 private Q_SLOTS:
  void init() {
    make_folder();
    std::filesystem::current_path(folder_->folder());  // the preferences are kept here
  }
  void cleanup() {
    window_.reset();
    remove_folder();
  }

  void starts_without_a_survey() {
    start();
    expect_menus(false);
    QCOMPARE(window_->windowTitle(), QString("BLX DATABASE"));
    QCOMPARE(control<QLabel>("Label_version")->text(), QString("Brenlox Version 1.00 February, 2012"));
    QVERIFY(!item("sep1")->isVisible());
    for (int index = 0; index < 6; ++index) {
      QVERIFY(!item(QString("menu_file_list_%1").arg(index))->isVisible());
    }
    QVERIFY(!item("menu_undo")->isEnabled());
    QVERIFY(item("menu_database_file_0")->isVisible() && item("menu_database_file_0")->isEnabled());
    QVERIFY(item("menu_import")->isVisible() && item("menu_import")->isEnabled());
  }

  void opens_by_key_and_closes_by_menu() {
    const std::string path = make_survey("a&b.mdb", true);
    start();
    open_by_key(path);
    expect_menus(true);
    QCOMPARE(window_->windowTitle(), QString::fromStdString("BLX DATABASE " + path));
    QVERIFY(item("sep1")->isVisible());
    QCOMPARE(item("menu_file_list_0")->text(), QString::fromStdString("&1 " + folder_->path("a&&b.mdb")));
    item("menu_database_file_2")->trigger();
    expect_menus(false);
    QCOMPARE(window_->windowTitle(), QString("BLX DATABASE"));
    item("menu_file_list_0")->trigger();
    expect_menus(true);
    QCOMPARE(interface_->take_messages(), std::vector<std::string>{});
  }

  void a_survey_stays_shown_until_the_next_one_is_open() {
    const std::string path = make_survey("survey.mdb", true);
    const std::string gone = make_survey("gone.mdb", true);
    start();
    open_by_key(gone);
    open_by_key(path);
    std::filesystem::remove(gone);
    const QString title = QString::fromStdString("BLX DATABASE " + path);
    const int station = session().current_station_index;
    QVERIFY(station > 0);
    QStringList titles;
    (*interface_)->file_asked = [&] {
      titles.append(window_->windowTitle());
      expect_menus(true);
    };
    open_by_key("");
    (*interface_)->path_answers.emplace_back("");
    item("menu_database_file_0")->trigger();
    QCOMPARE(titles, QStringList({title, title}));
    item("menu_file_list_1")->trigger();
    QCOMPARE(interface_->take_messages(), std::vector<std::string>{"The specified file does not exist"});
    expect_menus(true);
    QCOMPARE(window_->windowTitle(), title);
    QCOMPARE(session().current_station_index, station);
    QVERIFY(session().database_open);
  }

  void edits_come_into_the_file_when_the_user_rests() {
    const std::string path = make_survey("survey.mdb", true);
    start();
    open_by_key(path);
    auto* const rest = window_->findChild<QTimer*>("Timer_idle");
    QVERIFY(rest->isActive() && rest->interval() >= 1000 && rest->interval() <= 10000);
    made::store(made::key(), 1, made::reading({{1.0F, 10.0F, 45.0F}}));
    const auto hand_copy_has_all = [&] {
      const std::string copy = folder_->path("copy.mdb");
      std::filesystem::copy_file(path, copy, std::filesystem::copy_options::overwrite_existing);
      dao::Database database = dao::Database::open(copy, dao::Access::read_only);
      return database.open_recordset("SELECT ID FROM ReadingsDataTable WHERE FileID>0").record_count() == 4;
    };
    QVERIFY(!hand_copy_has_all());
    rest->setInterval(10);
    QTRY_VERIFY(hand_copy_has_all());
  }

  void a_stored_size_beyond_the_screen_is_the_screens() {
    for (const char* const stored : {"3e38", "1e10", "2147483648", "-1e30", "nan"}) {
      (void)folder_->write("Brenlox.prf", std::string("Brenlox user preferences\n\n\nForm Width : ") +
                                              stored + "\nForm Height : " + stored + "\n");
      start();
      const QSize room = window_->screen()->availableGeometry().size();
      QVERIFY2(window_->width() <= room.width() && window_->height() <= room.height(), stored);
      QVERIFY2(window_->width() >= 300 && window_->height() >= 200, stored);
    }
  }

  void an_empty_survey_says_what_to_do() {
    start();
    (*interface_)->path_answers.push_back(folder_->path("new.mdb"));
    QTest::mouseClick(control("Command_new_survey"), Qt::LeftButton);
    expect_menus(true);
    QVERIFY(control("Command_first_import")->isVisible());
    QVERIFY(!control("Splitter_profile")->isVisible());
  }

  void dialogs_open_from_their_items() {
    start();
    open_by_key(make_survey("survey.mdb", true));
    Module_Brenlox::push_undo_static(1, 1.0F);
    QStringList titles;
    QTimer waiting;
    connect(&waiting, &QTimer::timeout, this, [&] {
      if (QWidget* const dialog = QApplication::activeModalWidget(); dialog != nullptr) {
        titles.append(dialog->windowTitle());
        QTest::keyClick(dialog, Qt::Key_Escape);
      }
    });
    waiting.start(1);
    for (const char* const name :
         {"menu_view_table_0", "menu_view_table_1", "menu_view_table_2", "menu_import_MT"}) {
      item(name)->trigger();
    }
    QCOMPARE(titles, QStringList({"Survey Header - survey.mdb", "File Headers - survey.mdb",
                                  "Data Readings - survey.mdb", "Import MT Data"}));
    QVERIFY(item("menu_undo")->isEnabled());  // nothing was imported
    QCOMPARE(interface_->take_messages(), std::vector<std::string>{});
  }

  void items_without_work_are_disabled_and_say_why() {
    start();
    open_by_key(make_survey("survey.mdb", true));
    QStringList names = {"menu_delete_thresholds", "menu_delete_overrides"};
    for (int index = 0; index < 6; ++index) {
      names.append(QString("menu_display_database_by_%1").arg(index));
    }
    for (const QString& name : names) {
      QVERIFY2(!item(name)->isEnabled() && item(name)->toolTip().size() > 40, qPrintable(name));
    }
    for (const char* const name : {"menu_display_database", "menu_delete"}) {
      const QAction* const submenu = control<QMenu>(name)->menuAction();
      QVERIFY(!submenu->isEnabled());
      QCOMPARE(submenu->toolTip(), control<QMenu>(name)->actions().front()->toolTip());
    }
    QVERIFY(control<QMenu>("menu_database")->toolTipsVisible());
  }

  void every_menu_has_a_mnemonic_of_its_own() {
    start();
    open_by_key(make_survey("survey.mdb", true));
    QList<QMenu*> menus = window_->menuBar()->findChildren<QMenu*>();
    QStringList faults;
    const auto look_into = [&faults](const QString& where, const QList<QAction*>& items) {
      QSet<QString> keys;
      for (const QAction* const each : items) {
        if (each->isSeparator() || !each->isVisible()) {
          continue;
        }
        const QString key = QKeySequence::mnemonic(each->text()).toString();
        if (key.isEmpty() || keys.contains(key)) {
          faults << where + ": " + each->text();
        }
        keys.insert(key);
      }
    };
    look_into("the bar", window_->menuBar()->actions());
    for (const QMenu* const menu : menus) {
      look_into(menu->title(), menu->actions());
    }
    QVERIFY2(faults.isEmpty(), qPrintable(faults.join("; ")));
  }

  void the_first_page_has_recent_surveys_and_says_which_have_gone() {
    const std::string gone = make_survey("gone.mdb", false);
    const std::string there = make_survey("there.mdb", true);
    start();
    open_by_key(gone);
    open_by_key(there);
    item("menu_database_file_2")->trigger();
    std::filesystem::remove(gone);
    Q_EMIT control<QMenu>("menu_file")->aboutToShow();
    QVERIFY(item("menu_file_list_1")->text().endsWith("gone.mdb (not found)"));
    QVERIFY(control<QPushButton>("Command_recent_1")->text().endsWith("gone.mdb (not found)"));
    QVERIFY(!control<QPushButton>("Command_recent_0")->text().contains("not found"));
    QTest::mouseClick(control<QPushButton>("Command_recent_1"), Qt::LeftButton);
    QCOMPARE(interface_->take_messages(), std::vector<std::string>{"The specified file does not exist"});
    QTest::mouseClick(control<QPushButton>("Command_recent_0"), Qt::LeftButton);
    expect_menus(true);
    QCOMPARE(session().database_file, there);
  }

  void long_paths_keep_their_ends() {
    const QString path("/home/someone/surveys/a long name of a project/2026/second campaign/line_200E.mdb");
    const QString shown = shortened_path(path, 50);
    QCOMPARE(shown.size(), 50);
    QVERIFY(shown.startsWith("/home/someone/") && shown.endsWith("/line_200E.mdb"));
    QCOMPARE(shortened_path("/a/b.mdb", 50), QString("/a/b.mdb"));
    QCOMPARE(shortened_path(QString(200, 'x'), 50).size(), 50);
  }

  void the_first_page_makes_the_sample_survey() {
    start();
    (*interface_)->path_answers.push_back(folder_->path("try.mdb"));
    QTest::mouseClick(control<QPushButton>("Command_sample_survey"), Qt::LeftButton);
    QCOMPARE(interface_->take_messages(), std::vector<std::string>{});
    expect_menus(true);
    QCOMPARE(session().station_count, 24);
    QCOMPARE(session().stations_in_line, 12);
    QVERIFY(std::filesystem::exists(folder_->path("try_field_files/L200E_S0100_E1_R4096.edi")));
    const auto* const line = control<QLabel>("Label_work");
    QVERIFY(line->isVisible() && line->toolTip().contains("try_field_files"));
  }

  void undo_follows_its_stack() {
    start();
    Module_Brenlox::push_undo_static(1, 1.0F);
    QVERIFY(item("menu_undo")->isEnabled());
    Module_Brenlox::clear_undo();
    QVERIFY(!item("menu_undo")->isEnabled());
  }

  void size_is_kept_over_sessions_and_not_taken_from_an_icon() {
    start();
    window_->resize(700, 500);
    QTRY_COMPARE(session().form_width, 700.0F);
    QCOMPARE(session().form_height, 500.0F);
    window_->showMinimized();
    QTest::qWait(20);
    QCOMPARE(session().form_width, 700.0F);
    window_->showNormal();
    QTest::keyClick(window_.get(), Qt::Key_Q, Qt::ControlModifier);
    QVERIFY(!window_->isVisible());
    reset_session_state();
    start();
    QCOMPARE(window_->size(), QSize(700, 500));
  }

  void a_dragged_split_is_the_base_of_later_resizes() {
    start();
    open_by_key(make_survey("survey.mdb", true));
    window_->resize(1280, 800);  // room to drag in
    QCoreApplication::processEvents();
    auto* const splitter = control<VexSplitter>("Splitter_map");
    const auto share = [&] {
      return splitter->sizes()[0] / static_cast<double>(splitter->sizes()[0] + splitter->sizes()[1]);
    };
    QSplitterHandle* const handle = splitter->handle(1);
    const QPoint grip = handle->rect().center();
    const double before = share();
    QTest::mousePress(handle, Qt::LeftButton, {}, grip);
    QTest::mouseMove(handle, grip + QPoint(90, 0));
    QTest::mouseRelease(handle, Qt::LeftButton, {}, grip);
    auto* const timer = window_->findChild<QTimer*>("Timer_resizer");
    QVERIFY(timer->isActive());
    QTRY_VERIFY(!timer->isActive());
    const double dragged = share();
    QVERIFY(dragged > before + 0.03);
    window_->resize(1000, 600);
    QTRY_VERIFY(std::abs(share() - dragged) < 0.01);
    window_->resize(1400, 900);
    QTRY_VERIFY(std::abs(share() - dragged) < 0.01);
  }
};

QTEST_MAIN(FormMainTest)
#include "form_main_test.moc"
