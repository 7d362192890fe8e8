// The windows of Rho+ inversion beside the main window, on a synthetic line, by the named controls.
#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScrollBar>
#include <QSignalSpy>
#include <QStatusBar>
#include <QTableWidget>
#include <QTest>
#include <QTimer>
#include <QWindow>
#include <filesystem>
#include <utility>

#include "core/session_state.h"
#include "database/reading_facts.h"
#include "database/survey_database.h"
#include "output/rhoplus_settings.h"
#include "platform/graph/VexGraphControl.h"
#include "platform/windows/qt_user_interface.h"
#include "reduction/averages.h"
#include "reduction/data_sets/data_sets.h"
#include "reduction/edits/masks.h"
#include "rhoplus/windows/Form_line_chi.h"
#include "rhoplus/windows/Form_rhoplus.h"
#include "rhoplus/windows/Form_rhoplus_inversion.h"
#include "tests/app/line_survey_fixture.h"
#include "tests/support/pointer.h"

using Module_output::rhoplus_settings;

class RhoplusWindowsTest : public QObject, private LineSurveyFixture {
  Q_OBJECT

 private:
  /// A control of the results window.
  template <class Widget>
  Widget* result(const QString& name) const {
    return results()->findChild<Widget*>(name);
  }
  Form_rhoplus_inversion* results() const { return window_->findChild<Form_rhoplus_inversion*>(); }
  QAction* result_action(const QString& name) const { return results()->findChild<QAction*>(name); }
  void invert() const { press("Command_invert"); }
  QString chi() const { return result<QLineEdit>("Text_rhoplus_achieved_chi")->text(); }
  /// What the status bar of the results window says first.
  QString status() const {
    for (const QLabel* const label : result<QStatusBar>("Status_inversion")->findChildren<QLabel*>()) {
      if (!label->text().isEmpty()) {
        return label->text();
      }
    }
    return {};
  }
  void click_cell(int row, int column) const {
    auto* const grid = result<QTableWidget>("Grid_inversion_data");
    QTest::mouseClick(grid->viewport(), Qt::LeftButton, {},
                      grid->visualItemRect(grid->item(row, column)).center());
  }

  /// Gives the merged curves of the line errors of files and takes their deviations of repeats away.
  static void let_only_files_have_errors() {
    dao::Recordset rows = Module_database::open_survey().database.open_recordset(
        "SELECT * FROM ReadingsDataTable WHERE ReductionType = 2");
    for (; !rows.eof(); rows.move_next()) {
      Module_database::StoredReading merged = Module_database::read_reading(rows);
      for (std::size_t point = 0; point < merged.curve.count(); ++point) {
        merged.curve.value(Module_database::field_resistivity_deviation, point) = 0.0F;
        merged.curve.value(Module_database::field_phase_deviation, point) = 0.0F;
        merged.curve.error_at(Module_database::field_resistivity, point) = 100.0F;
        merged.curve.error_at(Module_database::field_phase, point) = 45.0F;
      }
      rows.edit();
      Module_database::write_curve(rows, merged.curve);
      rows.update();
      Module_database::write_facts(merged.ID, merged.curve, merged.axes);
    }
  }
  /// Works in the modal window that an action brings up.
  template <class Action, class Work>
  void in_dialog(Action action, Work work) const {
    QTimer::singleShot(0, window_.get(), [work] {
      QWidget* const dialog = QApplication::activeModalWidget();
      QVERIFY(dialog != nullptr);
      work(*dialog, *dialog->findChild<QComboBox*>("Combo_use_file_errors"),
           *dialog->findChild<QLabel*>("Label_file_errors_hint"));
      dialog->close();
    });
    action();
  }

 private Q_SLOTS:
  void init() { open_line_survey(); }
  void cleanup() { close_line_survey(); }

  void results_follow_the_main_window() {
    invert();
    QVERIFY(results() != nullptr);
    QCOMPARE(results()->windowTitle(), QString("Rhoplus Inversion for Line 200E, Station 100"));
    QVERIFY(!chi().isEmpty());
    QVERIFY(std::filesystem::exists(folder_->path("NRRef/200E/tmd_100.dat")));
    QVERIFY(std::filesystem::exists(folder_->path("NRRef/200E/tmd_100.out")));
    const int draws = result<VexGraphControl>("vxgraph_station_0")->draw_count();
    control<QScrollBar>("HScroll_repeat");
    QTest::keyClick(window_.get(), Qt::Key_Right);
    QCOMPARE(results()->windowTitle(), QString("Rhoplus Inversion for Line 200E, Station 200"));
    QCOMPARE(result<QScrollBar>("HScroll_repeat")->value(), 2);
    QCOMPARE(result<VexGraphControl>("vxgraph_station_0")->draw_count(), draws + 1);

    QTest::keyClick(result<QScrollBar>("HScroll_repeat"), Qt::Key_Right);
    QCOMPARE(session().current_station, 300.0);
    QCOMPARE(results()->windowTitle(), QString("Rhoplus Inversion for Line 200E, Station 300"));
    control<QComboBox>("Combo_dipole")->setCurrentIndex(-1);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QVERIFY(results() == nullptr);
  }

  void a_cell_of_the_grid_masks_the_merged_point() {
    invert();
    const auto& merged = Module_averaged_data::data_sets().station.slots.at(0).reading;
    QCOMPARE(merged.curve.counts_at(1, 1), 1);
    auto* const grid = result<QTableWidget>("Grid_inversion_data");
    const QString inverted = grid->item(1, 3)->text();
    QVERIFY(!inverted.isEmpty());
    click_cell(1, 2);  // a value: nothing
    QCOMPARE(merged.curve.counts_at(1, 1), 1);
    click_cell(1, 1);
    QCOMPARE(merged.curve.counts_at(1, 1), 0);
    click_cell(1, 4);
    QCOMPARE(merged.curve.counts_at(2, 1), 0);
    QVERIFY2(grid->item(1, 3)->text().isEmpty(), "nothing is asked of the model without data");
    window_->findChild<QAction*>("menu_undo")->trigger();
    window_->findChild<QAction*>("menu_undo")->trigger();
    QCOMPARE(grid->item(1, 3)->text(), inverted);
  }

  void without_resistivities_there_is_nothing_to_invert() {
    invert();
    for (int row = 0; row < result<QTableWidget>("Grid_inversion_data")->rowCount(); ++row) {
      click_cell(row, 1);
    }
    QVERIFY(chi().isEmpty());
    QCOMPARE(result<QPlainTextEdit>("Text_rhoplus_out")->toPlainText(), QString("No data to invert"));
    QCOMPARE(result<QPushButton>("Command_rhoplus_log")->text(), QString("Results"));
  }

  void read_outs_stay_where_there_is_nothing_to_invert() {
    invert();
    for (int row = 0; row < result<QTableWidget>("Grid_inversion_data")->rowCount(); ++row) {
      click_cell(row, 1);
    }
    auto* const graph = result<VexGraphControl>("vxgraph_station_1");
    const QPoint at = graph->plot_area().center();
    move_pointer(*graph, at);
    QStringList shown;
    for (const QLabel* const label : result<QStatusBar>("Status_inversion")->findChildren<QLabel*>()) {
      if (label->isVisible() && !label->text().isEmpty()) {
        shown.append(label->text());
      }
    }
    QCOMPARE(shown.size(), 4);
    QCOMPARE(shown.first(), QString("Phase"));
    QVERIFY(shown.contains("No data to invert"));
  }

  void a_station_of_another_line_on_the_plan_closes_the_results() {
    made::ReadingKey key = made::key(64.0F, 400.0);
    key.line = "300E";
    made::store(key, 1, made::repeat_of(400.0, 1, false));
    QCOMPARE(Module_averaged_data::recalculate_merged(), 0);
    show_survey();
    invert();
    QVERIFY(results() != nullptr);
    auto* const plan = control<QWidget>("Picture_plan_group");
    QVERIFY(QMetaObject::invokeMethod(plan, "station_picked", Q_ARG(int, 2)));
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QVERIFY2(results() != nullptr, "the same line");
    QVERIFY(QMetaObject::invokeMethod(plan, "station_picked", Q_ARG(int, 4)));
    QCOMPARE(session().current_line, std::string("300E"));
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QVERIFY(results() == nullptr);
  }

  void points_are_marked_masked_and_brought_back_in_the_window_of_the_fit() {
    invert();
    QVERIFY(QTest::qWaitForWindowActive(results()));
    const auto ID = Module_averaged_data::data_sets().station.slots.front().reading.ID;
    auto* const graph = result<VexGraphControl>("vxgraph_station_0");
    const QPoint at = graph->point_position(0, 2)->toPoint();
    const QPoint around(9, 9);
    const auto mark = [&] { drag_with_shift(*graph, at - around, at + around); };
    mark();
    QVERIFY(result_action("menu_mask_marked")->isEnabled());
    QVERIFY(item("menu_mask_marked")->isEnabled());
    QTest::keyClick(results(), Qt::Key_Delete);
    QCOMPARE(stored_mask(ID, 2), 0);
    mark();  // a masked point can still be seen
    auto* const log = result<QPlainTextEdit>("Text_rhoplus_out");
    auto* const chi_box = result<QLineEdit>("Text_rhoplus_achieved_chi");
    for (QWidget* const box : {static_cast<QWidget*>(log), static_cast<QWidget*>(chi_box)}) {
      QTest::keyClick(box, Qt::Key_Delete, Qt::ShiftModifier);
      QCOMPARE(stored_mask(ID, 2), 0);
    }
    QTest::keyClick(results(), Qt::Key_Delete);
    QVERIFY2(status().startsWith("Nothing to mask"), qPrintable(status()));
    move_pointer(*graph, at + 3 * around);
    QVERIFY2(status().startsWith("1 point marked: "), qPrintable(status()));
    QTest::keyClick(results(), Qt::Key_Delete, Qt::ShiftModifier);
    QCOMPARE(stored_mask(ID, 2), 1);
    mark();
    QTest::keyClick(results(), Qt::Key_Delete);
    QCOMPARE(stored_mask(ID, 2), 0);
    for (const bool hidden : {true, false}) {
      control<QCheckBox>("Check_hide_masked_data")->setChecked(hidden);
      QCOMPARE(graph->point_position(0, 2).has_value(), !hidden);
    }
    QTest::keyClick(results(), Qt::Key_Z, Qt::ControlModifier);
    QCOMPARE(stored_mask(ID, 2), 1);
    QTest::keyClick(results(), Qt::Key_Y, Qt::ControlModifier);
    QCOMPARE(stored_mask(ID, 2), 0);
    QVERIFY(results()->isVisible());
    QCOMPARE(result<QLabel>("Label_run_note")->text(), QString());
    for (std::size_t repeat = 1; repeat <= made::line_repeats; ++repeat) {
      QCOMPARE(Module_averaged_data::set_repeat_use(repeat, Module_averaged_data::UseFlag::reading, false),
               Module_averaged_data::Edit::changed);
    }
    results()->refresh_rhoplus_results();
    QCOMPARE(result<QLabel>("Label_run_note")->text(), QString("Rests on readings that are switched off"));
  }

  void closing_a_window_goes_back_to_the_one_before() {
    invert();
    QVERIFY(QTest::qWaitForWindowActive(results()));
    QTest::keyClick(results(), Qt::Key_F1);
    auto* const help = window_->findChild<QDialog*>("Form_tutorial");
    QVERIFY(help != nullptr && QTest::qWaitForWindowActive(help));
    window_->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(window_.get()));
    results()->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(results()));
    help->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(help));
    QTest::keyClick(window_.get(), Qt::Key_Right);  // the station of all windows changes
    QCoreApplication::processEvents();
    QCOMPARE(QApplication::activeWindow(), help);
    QTest::keyClick(help, Qt::Key_Escape);
    QVERIFY(QTest::qWaitFor([this] { return QApplication::activeWindow() == results(); }));
    QTest::keyClick(results(), Qt::Key_Escape);
    QVERIFY(QTest::qWaitFor([this] { return QApplication::activeWindow() == window_.get(); }));
  }

  void the_log_takes_the_place_of_the_grid() {
    invert();
    const auto* const log = result<QPlainTextEdit>("Text_rhoplus_out");
    auto* const button = result<QPushButton>("Command_rhoplus_log");
    QVERIFY(log->isHidden());
    QCOMPARE(button->text(), QString("Results"));
    QTest::mouseClick(button, Qt::LeftButton);
    QVERIFY(log->isVisible());
    QVERIFY(log->toPlainText().size() > 200);
    QCOMPARE(button->text(), QString("Data"));
    QTest::mouseClick(button, Qt::LeftButton);
    QVERIFY(log->isHidden());
    QCOMPARE(button->text(), QString("Results"));
  }

  void run_all_goes_through_the_whole_line_and_lists_chi() {
    invert();
    auto* const run = result<QPushButton>("Command_run_all");
    auto* const bar = result<QScrollBar>("HScroll_repeat");
    bar->setValue(2);
    std::vector<double> inverted;
    const auto going_through = connect(results(), &Form_rhoplus_inversion::station_chosen, this,
                                       [&inverted] { inverted.push_back(session().current_station); });
    const auto* const picture = result<VexGraphControl>("vxgraph_station_0");
    QCoreApplication::processEvents();
    const int draws = picture->draw_count();
    QTest::mouseClick(run, Qt::LeftButton);
    QCOMPARE(inverted, (std::vector<double>{100.0, 200.0, 300.0}));
    QCOMPARE(picture->draw_count(), draws + 4);  // once each, and the station where it began again
    QCOMPARE(session().current_station, 200.0);
    QCOMPARE(results()->windowTitle(), QString("Rhoplus Inversion for Line 200E, Station 200"));
    QVERIFY(!chi().isEmpty());
    QVERIFY(std::filesystem::exists(folder_->path("NRRef/200E/tmd_100.out")));
    QVERIFY(std::filesystem::exists(folder_->path("NRRef/200E/tmd_300.out")));
    QCOMPARE(run->text(), QString("Run All"));
    QVERIFY(bar->isEnabled());
    disconnect(going_through);

    auto* const table = results()->findChild<Form_line_chi*>();
    QVERIFY(table != nullptr && table->isVisible());
    auto* const grid = table->findChild<QTableWidget*>("Grid_chi");
    QCOMPARE(grid->rowCount(), 3);
    QVERIFY2(!grid->horizontalScrollBar()->isVisible(), "all columns are to be seen");
    QCOMPARE(grid->item(grid->currentRow(), 0)->text(), QString("200"));
    QCOMPARE(grid->item(grid->currentRow(), 4)->text(), chi());
    grid->sortByColumn(0, Qt::DescendingOrder);
    QTest::mouseClick(grid->viewport(), Qt::LeftButton, {}, grid->visualItemRect(grid->item(0, 0)).center());
    QCOMPARE(session().current_station, 300.0);
    QCOMPARE(grid->item(0, 4)->text(), chi());
    bar->setValue(1);
    QCOMPARE(grid->item(grid->currentRow(), 0)->text(), QString("100"));
    const std::string path = folder_->path("chi.txt");
    (*interface_)->path_answers = {path};
    QTest::mouseClick(table->findChild<QPushButton*>("Command_save_table"), Qt::LeftButton);
    QVERIFY(file_contents(path).starts_with("Station\tSite\tValues\t"));
    QVERIFY(file_contents(path).find("\n300\t") < file_contents(path).find("\n100\t"));
  }

  void a_stopped_run_lists_what_it_has_reached() {
    invert();
    auto* const run = result<QPushButton>("Command_run_all");
    QTimer::singleShot(0, run, [this, run] {
      QCOMPARE(run->text(), QString("Stop Inverting"));
      QVERIFY(!result<QScrollBar>("HScroll_repeat")->isEnabled());
      QTest::mouseClick(run, Qt::LeftButton);
    });
    QTest::mouseClick(run, Qt::LeftButton);
    QCOMPARE(session().current_station, 100.0);
    QCOMPARE(run->text(), QString("Run All"));
    QVERIFY(!session().updating_controls);
    auto* const table = results()->findChild<Form_line_chi*>();
    QCOMPARE(table->findChild<QTableWidget*>("Grid_chi")->rowCount(), 1);
    QVERIFY(table->findChild<QLabel*>("Label_chi_summary")->text().startsWith("Stopped before the end"));
  }

  void closing_the_main_window_ends_a_run() {
    invert();
    QTimer::singleShot(0, window_.get(), [this] { QVERIFY(window_->close()); });
    QTest::mouseClick(result<QPushButton>("Command_run_all"), Qt::LeftButton);
    QVERIFY(!window_->isVisible());
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QVERIFY(results() == nullptr);
    QVERIFY(!session().updating_controls);
    QVERIFY(std::filesystem::exists(folder_->path("NRRef/200E/tmd_100.out")));
    QVERIFY(!std::filesystem::exists(folder_->path("NRRef/200E/tmd_300.out")));
  }

  void a_click_of_the_mouse_stops_a_run_and_reaches_no_other_window() {
    invert();
    auto recorder = install_user_interface(std::make_unique<QtUserInterface>());
    const auto click = [](const QWidget& part) {  // into the queue, as the mouse does
      QWindow* const window = part.window()->windowHandle();
      const QPoint place = part.mapTo(part.window(), part.rect().center());
      for (const auto& [type, buttons] : {std::pair(QEvent::MouseButtonPress, Qt::LeftButton),
                                          std::pair(QEvent::MouseButtonRelease, Qt::NoButton)}) {
        qt_handleMouseEvent(window, place, window->mapToGlobal(place), buttons, Qt::LeftButton, type, {}, 0);
      }
    };
    auto* const run = result<QPushButton>("Command_run_all");
    QTimer::singleShot(0, run, [&] {
      click(*control<QPushButton>("Command_show_plan"));
      QMessageBox message(window_.get());
      QTimer::singleShot(0, &message, [&message] { QTest::keyClick(&message, Qt::Key_Escape); });
      message.exec();  // comes to an end
      click(*run);
    });
    const QSignalSpy clicks_elsewhere(control<QPushButton>("Command_show_plan"), &QPushButton::clicked);
    QTest::mouseClick(run, Qt::LeftButton);
    QCOMPARE(session().current_station, 100.0);
    QCOMPARE(run->text(), QString("Run All"));
    QCOMPARE(clicks_elsewhere.count(), 0);
    install_user_interface(std::move(recorder));
  }

  void results_that_leave_no_files_say_so_without_a_message() {
    invert();
    const QString with_files = chi();
    QVERIFY(result<QLabel>("Label_run_note")->text().isEmpty());
    results()->close();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    rhoplus_settings().root_name = "no folder/tmd";
    invert();
    QCOMPARE(chi(), with_files);
    QCOMPARE(result<QLabel>("Label_run_note")->text(), QString("No files were left"));
    QVERIFY(result<QPlainTextEdit>("Text_rhoplus_out")->toPlainText().startsWith("No files were left: "));
    QTest::mouseClick(result<QPushButton>("Command_run_all"), Qt::LeftButton);
    QCOMPARE(interface_->take_messages(), std::vector<std::string>{});

    QTimer::singleShot(0, window_.get(), [this] {
      QWidget* const dialog = QApplication::activeModalWidget();
      QVERIFY(dialog != nullptr);
      QTest::mouseClick(dialog->findChild<QPushButton*>("Command_create_inversion"), Qt::LeftButton);
      QCOMPARE(session().current_station, 300.0);
      dialog->close();
    });
    QTest::mouseClick(result<QPushButton>("Command_occam"), Qt::LeftButton);
    const std::vector<std::string> messages = interface_->take_messages();
    QCOMPARE(messages.size(), std::size_t{1});
    QVERIFY2(messages[0].starts_with("Output complete."), messages[0].c_str());
    QCOMPARE(results()->windowTitle(), QString("Rhoplus Inversion for Line 200E, Station 100"));
    rhoplus_settings() = {};
  }

  void closing_the_window_ends_a_run() {
    invert();
    QTimer::singleShot(0, results(), [this] { results()->close(); });
    QTest::mouseClick(result<QPushButton>("Command_run_all"), Qt::LeftButton);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QVERIFY(results() == nullptr);
    QVERIFY(!session().updating_controls);
  }

  void options_hold_at_once_and_are_kept() {
    QTimer::singleShot(0, window_.get(), [] {
      auto* const dialog = qobject_cast<Form_rhoplus*>(QApplication::activeModalWidget());
      QVERIFY(dialog != nullptr);
      auto* const name = dialog->findChild<QLineEdit*>("Text_rhoplus_root_name");
      QCOMPARE(name->text(), QString("tmd"));
      name->setText("run");
      name->clear();
      dialog->findChild<QLineEdit*>("Text_rhoplus_resistivity_scale")->setText("2.5");
      dialog->findChild<QLineEdit*>("Text_rhoplus_res_error_floor")->setText("much");
      dialog->findChild<QComboBox*>("Combo_rhoplus_surface")->setCurrentIndex(0);
      dialog->findChild<QCheckBox*>("Check_rhoplus_apply_static")->click();
      dialog->findChild<QComboBox*>("Combo_use_file_errors")->setCurrentIndex(1);
      QTest::mouseClick(dialog->findChild<QPushButton*>("Command_done"), Qt::LeftButton);
      QVERIFY2(dialog->isVisible(), "two entries can't be used");
      QCOMPARE(dialog->focusWidget(), name);
      const auto* const faults = dialog->findChild<QLabel*>("Label_invalid_entries");
      QCOMPARE(faults->text(), QString("The root name must not be blank\n"
                                       "Resistivity error floor: \"much\" is not a number above 0"));
      name->setText("run");
      QCOMPARE(faults->text(), QString("Resistivity error floor: \"much\" is not a number above 0"));
      QTest::keyClick(dialog, Qt::Key_Escape);
    });
    window_->findChild<QAction*>("menu_rhoplus_options")->trigger();
    QCOMPARE(QString::fromStdString(rhoplus_settings().root_name), QString("run"));
    QCOMPARE(rhoplus_settings().resistivity_scale, 2.5F);
    QCOMPARE(rhoplus_settings().resistivity_error_floor, 4.0F);
    rhoplus_settings() = Module_output::load_rhoplus_settings();
    QCOMPARE(rhoplus_settings().root_name, std::string("run"));
    QCOMPARE(rhoplus_settings().resistivity_scale, 1.0F);
    QCOMPARE(rhoplus_settings().surface, 0);
    QCOMPARE(rhoplus_settings().apply_static, 0);
    QCOMPARE(rhoplus_settings().use_file_errors, 1);
    rhoplus_settings() = {};
  }

  void errors_of_files_are_hinted_at_once_and_one_choice_for_both_inversions() {
    let_only_files_have_errors();
    const auto options = [this] { window_->findChild<QAction*>("menu_rhoplus_options")->trigger(); };
    in_dialog(options, [](QWidget& dialog, QComboBox& choice, QLabel& hint) {
      QCOMPARE(choice.currentText(), QString("Floors as before"));
      QVERIFY(hint.isVisible());
      choice.setCurrentIndex(1);
      QVERIFY(!hint.isVisible());
      choice.setCurrentIndex(0);
      QVERIFY(hint.isVisible());
      if (const QString pictures = qEnvironmentVariable("BRENLOX_PICTURES"); !pictures.isEmpty()) {
        QVERIFY(dialog.grab().save(pictures + "/form_rhoplus.png"));
      }
    });
    in_dialog(options, [](QWidget&, QComboBox&, QLabel& hint) { QVERIFY(!hint.isVisible()); });

    invert();
    const double by_floors = chi().toDouble();
    in_dialog([this] { QTest::mouseClick(result<QPushButton>("Command_occam"), Qt::LeftButton); },
              [](QWidget&, QComboBox& choice, QLabel& hint) {
                QVERIFY(!hint.isVisible());  // said in the other window
                choice.setCurrentIndex(1);
              });
    QVERIFY2(chi().toDouble() < 0.2 * by_floors, qPrintable(chi()));
    in_dialog([this] { result_action("menu_rhoplus_options")->trigger(); },
              [](QWidget&, QComboBox& choice, QLabel&) {
                QCOMPARE(choice.currentText(), QString("Floors and errors of the files"));
                choice.setCurrentIndex(0);
              });
    QCOMPARE(chi().toDouble(), by_floors);
    rhoplus_settings() = {};
  }
};

QTEST_MAIN(RhoplusWindowsTest)
#include "rhoplus_windows_test.moc"
