// Taking readings out and renaming in the main window: menus, dialogs, and what is shown afterwards.
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QTabWidget>
#include <QTimer>
#include <QTreeView>

#include "tests/app/main_view_fixture.h"

class SurveyEditsTest : public QObject, private MainViewFixture {
  Q_OBJECT

 private:
  /// Chooses a menu item and works in the dialog that it brings up.
  void in_dialog(const QString& menu_item, const std::function<void(QWidget&)>& work) {
    bool worked = false;
    QTimer::singleShot(0, window_.get(), [&] {
      QWidget* const dialog = QApplication::activeModalWidget();
      QVERIFY(dialog != nullptr);
      work(*dialog);
      worked = true;
      if (dialog->isVisible()) {
        dialog->close();
      }
    });
    menu(menu_item);
    QVERIFY2(worked, (*interface_)->messages.empty() ? "no dialog" : (*interface_)->messages.back().c_str());
  }
  static void press_in(const QWidget& dialog, const char* name) {
    QTest::mouseClick(dialog.findChild<QPushButton*>(name), Qt::LeftButton);
  }
  static QString text_of(const QWidget& dialog, const char* label) {
    return dialog.findChild<QLabel*>(label)->text();
  }
  QString told() const { return control<QLabel>("Label_work")->accessibleName(); }
  QStringList stations_shown() const {
    QStringList stations;
    for (const double station : session().station_value) {
      stations.append(QString::number(station));
    }
    return stations;
  }

 private Q_SLOTS:
  void init() {
    open_made_survey([] {
      Module_database::find_station(Module_database::StationSearch::create, "200E", 950);
      made::store({"400E", 100.0, 0, 64.0F, "ExHy", 50.0F}, 1, made::repeat_of(100.0, 1, false), 0, 3);
    });
  }
  void cleanup() { close_survey(); }

  void readings_go_and_come_back() {
    QVERIFY(!item("menu_database_undo_removal")->isEnabled());
    in_dialog("menu_database_remove", [&](QWidget& dialog) {
      auto* const button = dialog.findChild<QPushButton*>("Command_remove");
      QVERIFY(!button->isEnabled());
      QCOMPARE(text_of(dialog, "Label_what_goes"), "Nothing is chosen.");
      auto* const files = dialog.findChild<QTreeView*>("List_files");
      QCOMPARE(dialog.focusWidget(), static_cast<QWidget*>(files));
      dialog.findChild<QLineEdit*>("Text_filter")->setText("3.EDI");
      QCOMPARE(files->model()->rowCount(), 1);
      QTest::keyClick(files, Qt::Key_A, Qt::ControlModifier);
      QTest::keyClick(files, Qt::Key_Space);
      QCOMPARE(text_of(dialog, "Label_what_goes"), "1 file, 1 reading, 1 station and 1 line go.");
      dialog.findChild<QLineEdit*>("Text_filter")->setText("no file is called so");
      QCOMPARE(files->model()->rowCount(), 0);
      QTest::keyClick(files, Qt::Key_C, Qt::ControlModifier);  // nothing to copy
      QVERIFY(!files->model()->data({}).isValid());
      dialog.findChild<QLineEdit*>("Text_filter")->clear();
      QCOMPARE(files->model()->rowCount(), 7);
      dialog.findChild<QTabWidget*>("Tab_contents")->setCurrentIndex(1);
      auto* const stations = dialog.findChild<QTreeView*>("List_stations");
      const QModelIndex second = stations->model()->index(1, 0);
      QCOMPARE(stations->model()->index(1, 1).data().toDouble(), 200.0);
      stations->model()->setData(second, Qt::Checked, Qt::CheckStateRole);
      auto* const ghosts = dialog.findChild<QCheckBox*>("Check_ghosts");
      QVERIFY(ghosts->isEnabled() && ghosts->text().contains("1 station without"));
      ghosts->click();
      QCOMPARE(text_of(dialog, "Label_what_goes"), "1 file, 9 readings, 3 stations and 1 line go.");
      QTest::keyClick(stations, Qt::Key_Delete);  // No to the question
      QVERIFY(dialog.isVisible());
      (*interface_)->yes_no_answers = {true};
      QTest::keyClick(stations, Qt::Key_Delete);
      QVERIFY(!dialog.isVisible());
    });
    QCOMPARE((*interface_)->questions.size(), 2U);
    QCOMPARE(stations_shown(), (QStringList{"100", "300"}));
    QCOMPARE(session().current_station, 100.0);
    QCOMPARE(control<QComboBox>("Combo_line")->count(), 1);
    QVERIFY(item("menu_database_undo_removal")->isEnabled());

    QVERIFY(told().contains("Removed from ") &&
            told().contains(": 1 file, 9 readings, 3 stations and 1 line"));
    menu("menu_database_undo_removal");
    QCOMPARE((*interface_)->messages.size(), 1U);
    QVERIFY(told().contains(" put back; the survey is as it was before. Stored in "));
    QCOMPARE(stations_shown(), (QStringList{"100", "200", "300", "950", "100"}));
    QCOMPARE(control<QComboBox>("Combo_line")->count(), 2);
    QVERIFY(!item("menu_database_undo_removal")->isEnabled());
  }

  void everything_may_go() {
    in_dialog("menu_database_remove", [&](QWidget& dialog) {
      dialog.findChild<QTabWidget*>("Tab_contents")->setCurrentIndex(2);
      press_in(dialog, "Command_check_all");
      (*interface_)->yes_no_answers = {true};
      press_in(dialog, "Command_remove");
    });
    QVERIFY(control<QPushButton>("Command_first_import")->isVisible());
    menu("menu_database_undo_removal");
    QVERIFY(!control<QPushButton>("Command_first_import")->isVisible());
    QCOMPARE(session().station_count, 5);
  }

  void the_station_that_is_shown_stays_when_it_is_renamed() {
    in_dialog("menu_database_rename", [&](QWidget& dialog) {
      auto* const name = dialog.findChild<QLineEdit*>("Text_name");
      auto* const button = dialog.findChild<QPushButton*>("Command_rename");
      QVERIFY(!button->isEnabled());
      QTest::keyClicks(name, "400");
      QCOMPARE(text_of(dialog, "Label_fault"), "The survey has a line 400E already");
      QVERIFY(!button->isEnabled());
      QTest::keyClick(name, Qt::Key_Backspace);
      QTest::keyClick(name, Qt::Key_Backspace);
      QTest::keyClicks(name, "5n");
      QVERIFY(text_of(dialog, "Label_change").startsWith("Line 200E becomes 45N, with 4 stations"));
      QTest::keyClick(name, Qt::Key_Return);
      QVERIFY(!dialog.isVisible());
    });
    QCOMPARE(session().current_line, std::string("45N"));
    QCOMPARE(session().current_station, 100.0);
    QCOMPARE(control<QComboBox>("Combo_line")->currentText(), "45N");
    QVERIFY(told().contains("Line 200E is line 45N now, stored in "));

    in_dialog("menu_database_rename", [&](QWidget& dialog) {
      dialog.findChild<QComboBox*>("Combo_station")->setCurrentIndex(1);
      QTest::keyClicks(dialog.findChild<QLineEdit*>("Text_name"), "150");
      press_in(dialog, "Command_rename");
    });
    QCOMPARE(session().current_station, 150.0);
    QVERIFY(told().contains("Station 100 of line 45N is station 150 now"));
    QCOMPARE(session().current_line, std::string("45N"));
  }
};

QTEST_MAIN(SurveyEditsTest)
#include "survey_edits_test.moc"
