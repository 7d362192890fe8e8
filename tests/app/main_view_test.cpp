// The panels of the main window on a synthetic survey: stations are stepped through, points and repeats
// switched, outliers clipped, and all of it undone and redone, by the named controls.
#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QHelpEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QScrollBar>
#include <QTableWidget>
#include <QTest>
#include <QTimer>
#include <QToolTip>
#include <cmath>

#include "display/plan_view.h"
#include "platform/widgets/entry_mark.h"
#include "reduction/data_sets/data_sets.h"
#include "tests/app/main_view_fixture.h"
#include "tests/support/named_site.h"

namespace {

namespace averaged = Module_averaged_data;

float resistivity(const averaged::StoredReading& reading, std::size_t point) {
  return reading.curve.value(Module_database::field_resistivity, point);
}

const averaged::StoredReading& average() { return averaged::data_sets().repeats.slots.at(0).reading; }
const averaged::StoredReading& merged() { return averaged::data_sets().station.slots.at(0).reading; }

}  // namespace

class MainViewTest : public QObject, private MainViewFixture {
  Q_OBJECT

 private Q_SLOTS:
  void init() { open_made_survey(); }
  void cleanup() { close_survey(); }

  void stations_are_stepped_through_by_bar_and_keys() {
    const auto* const shown = control<QLineEdit>("Text_sample_station");
    QCOMPARE(shown->text(), QString("100"));
    control<QScrollBar>("HScroll_repeat")->setValue(2);
    QCOMPARE(shown->text(), QString("200"));
    const std::vector<int> before = draws();
    QTest::keyClick(window_.get(), Qt::Key_Right);
    QCOMPARE(shown->text(), QString("300"));
    QCOMPARE(difference(before, draws()), (std::vector<int>{0, 0, 1, 1, 1, 1}));
    QTest::keyClick(window_.get(), Qt::Key_Right);  // the last one
    QCOMPARE(shown->text(), QString("300"));
    QTest::keyClick(window_.get(), Qt::Key_Left);
    QCOMPARE(session().current_station, 200.0);
    QCOMPARE(control<QLabel>("Label_raw")->text(), QString("Average/raw for 200"));
  }

  void a_named_site_stands_beside_its_station() {
    auto* site = control<QLineEdit>("Text_site_name");
    QVERIFY(!site->isVisible());  // as long as no site has a name
    QCOMPARE(window_->grab().size(), QSize(1280, 800));
    QCOMPARE(Module_database::close_database(), 0);
    window_.reset();
    QCOMPARE(Module_database::open_database(), 0);
    const std::string longest = "Ünterer Hof, Station am Bach, dritte Aufstellung im trockenen Se";
    name_site("200E", 100.0, "ET001");
    name_site("200E", 300.0, longest);
    show_survey();
    site = control<QLineEdit>("Text_site_name");
    QVERIFY(site->isVisible());
    QCOMPARE(site->text(), QString("ET001"));
    QCOMPARE(control<QLabel>("Label_raw")->text(), QString("Average/raw for 100 (ET001)"));
    QCOMPARE(control<QLabel>("Label_station")->text(), QString("Merge/averages for 100 (ET001)"));
    auto* const plan = control<QWidget>("Picture_site_map");
    press("Command_show_plan");
    const auto at = Module_display_data::to_picture(Module_display_data::station_place(3), plan->height());
    QHelpEvent help(QEvent::ToolTip, QPointF(at.x, at.y).toPoint(), plan->mapToGlobal(QPoint(2, 2)));
    QApplication::sendEvent(plan, &help);
    QCOMPARE(QToolTip::text(), QString::fromStdString("Line 200E, station 300 (" + longest + ")"));
    const int width = site->width();
    QTest::keyClick(window_.get(), Qt::Key_Right);
    QCOMPARE(site->text(), QString());
    QTest::keyClick(window_.get(), Qt::Key_Right);
    QVERIFY(site->text().startsWith("Ünterer") && site->text().endsWith(QString::fromUtf8("\u2026")));
    QVERIFY(site->toolTip().contains(QString::fromStdString(longest)));
    QCOMPARE(site->width(), width);
  }

  void a_clicked_repeat_point_is_masked_and_all_that_follows_from_it() {
    const std::size_t point = 1;
    const std::int32_t ID = averaged::data_sets().repeats.slots.at(4).reading.ID;
    const float average_before = resistivity(average(), point);
    const float merged_before = resistivity(merged(), point);
    const std::vector<int> before = draws();
    click_point("vxgraph_raw_data_0", 4, static_cast<int>(point));
    QCOMPARE(stored_mask(ID, point), 0);
    QVERIFY(resistivity(average(), point) < average_before);  // the repeat was the highest one
    QVERIFY(resistivity(merged(), point) < merged_before);
    const auto drawn = difference(before, draws());
    QVERIFY2(drawn[0] == 1 && drawn[2] == 1 && drawn[5] == 1, "each graph is drawn once");
    QCOMPARE(control<QLineEdit>("Text_frequency")->text(), QString("2.0000"));
    QCOMPARE(control<QLineEdit>("Text_event")->text(), QString("4"));
    QCOMPARE(control<QLineEdit>("Text_file")->text(), QString("7.edi"));
    QCOMPARE(control<QLabel>("Label_raw_graph")->text(), QString("Repeat 4"));
  }

  void the_first_click_on_the_station_selects_the_second_masks() {
    click_point("vxgraph_station_0", 0, 1);
    QCOMPARE(stored_mask(merged().ID, 1), 1);
    QCOMPARE(control<QLabel>("Label_station_graph")->text(), QString("Merged data"));
    click_point("vxgraph_station_0", 0, 1);
    QCOMPARE(stored_mask(merged().ID, 1), 0);
  }

  void a_click_on_the_profile_leads_to_the_station() {
    click_point("vxgraph_Profile_0", 0, 2);
    QCOMPARE(session().current_station, 300.0);
    QVERIFY(!window_->findChild<QAction*>("menu_undo")->isEnabled());
  }

  void everything_is_undone_and_done_again() {
    const std::string first = made::whole_readings_table();
    click_point("vxgraph_raw_data_0", 4, 1);
    click_cell(1, 1);
    QVERIFY(!averaged::data_sets().repeats.slots.at(2).reading.UseReading);
    control<QScrollBar>("HScroll_repeat")->setValue(2);
    control<QLineEdit>("Text_outliers")->setText("1");
    press("Command_outliers_0");
    control<QLineEdit>("Text_frequency")->setText("4.0000");
    press("Command_clear_frequencies_2");
    control<QCheckBox>("Check_use_merged_1")->click();
    auto* const static_factor = control<QLineEdit>("Text_static");
    static_factor->setText("1.5");
    QTest::keyClick(static_factor, Qt::Key_Return);
    const std::string edited = made::whole_readings_table();
    QVERIFY(edited != first);
    const std::size_t edits = Module_Brenlox::undo_count();
    QVERIFY(edits >= 6);
    const auto* const undo = window_->findChild<QAction*>("menu_undo");
    for (std::size_t i = 0; i < edits && undo->isEnabled(); ++i) {
      menu("menu_undo");
    }
    QVERIFY(!undo->isEnabled());
    QVERIFY(made::whole_readings_table() == first);
    QCOMPARE(session().current_station, 100.0);  // the selection has followed the edits
    while (window_->findChild<QAction*>("menu_redo")->isEnabled()) {
      menu("menu_redo");
    }
    QVERIFY(made::whole_readings_table() == edited);
    QCOMPARE(interface_->take_messages(), std::vector<std::string>{});
  }

  void the_plan_comes_out_zooms_and_picks_the_nearest_station() {
    press("Command_show_plan");
    auto* const plan = control<QWidget>("Picture_site_map");
    QVERIFY(plan->isVisible());
    const auto picture_of = [&](int station_index) {
      const auto at =
          Module_display_data::to_picture(Module_display_data::station_place(station_index), plan->height());
      return QPointF(at.x, at.y).toPoint();
    };
    const double extent = session().plan_window.plan_y_extent;
    control<QScrollBar>("VScroll_scale")->setValue(1);
    QVERIFY(std::abs(extent / session().plan_window.plan_y_extent - 1.585) < 1e-3);
    control<QScrollBar>("VScroll_scale")->setValue(0);
    const double centre = session().plan_window.plan_x_centre;
    control<QScrollBar>("HScroll_x_centre")->setValue(1);
    QCOMPARE(control<QScrollBar>("HScroll_x_centre")->value(), 0);
    QVERIFY(session().plan_window.plan_x_centre < centre);
    QTest::mouseClick(plan, Qt::LeftButton, {}, picture_of(3) + QPoint(4, 3));
    QCOMPARE(session().current_station, 300.0);
    QVERIFY(plan->isVisible());
  }

  /// All stations lie in a few pixels, and there is room for hardly a name.
  void the_current_stations_name_is_on_the_plan_whatever_is_around_it() {
    press("Command_show_plan");
    auto* const plan = control<QWidget>("Picture_site_map");
    const auto letters = [plan] {
      const QImage picture = plan->grab().toImage();
      int count = 0;
      for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
          const QColor colour = picture.pixelColor(x, y);
          count += colour.red() > 140 && colour.red() < 165 && colour.green() < 30 && colour.blue() > 140 &&
                           colour.blue() < 165
                       ? 1
                       : 0;
        }
      }
      return count;
    };
    QVERIFY(letters() > 5);
    session().station_table = {};
    constexpr int side = 40;
    constexpr std::size_t count = static_cast<std::size_t>(side) * side;
    session().station_count = side * side;
    session().current_station_index = side * side / 2 + side / 2;
    const std::string line = session().station_line.at(0);
    session().station_line.assign(count, line);
    session().line_of_station.assign(count, 1);
    session().station_value.assign(count, 0.0);
    for (int index = 0; index < side * side; ++index) {
      session().station_value[static_cast<std::size_t>(index)] = index;
      const int row = index / side;
      session().station_table.push_back({10.0 * (index % side), 10.0 * row, 0.0, 0.0, 0.0});
    }
    Module_display_data::fit_plan_window();
    control<QScrollBar>("VScroll_scale")->setValue(1);
    control<QScrollBar>("VScroll_scale")->setValue(0);
    QVERIFY(letters() > 5);
  }

  void a_plan_without_graticule_says_why() {
    press("Command_show_plan");
    auto* const link = control<QLabel>("Label_graticule");
    QVERIFY(!link->isVisible());
    control<QComboBox>("Combo_coords")->setCurrentIndex(1);
    QVERIFY(link->isVisible());
    QVERIFY2(link->toolTip().contains("The survey has no projection"), qPrintable(link->toolTip()));
    control<QComboBox>("Combo_coords")->setCurrentIndex(0);
    QVERIFY(!link->isVisible());
  }

  void keys_zoom_the_plan() {
    press("Command_show_plan");
    auto* const plan = control<QWidget>("Picture_site_map");
    QVERIFY((plan->focusPolicy() & Qt::TabFocus) != 0);
    plan->setFocus();
    const double extent = session().plan_window.plan_y_extent;
    QTest::keyClick(plan, Qt::Key_Plus);
    QCOMPARE(control<QScrollBar>("VScroll_scale")->value(), 1);
    QVERIFY(session().plan_window.plan_y_extent < extent);
    QTest::keyClick(plan, Qt::Key_Home);
    QCOMPARE(session().plan_window.plan_y_extent, extent);
    QTest::keyClick(plan, Qt::Key_Minus);
    QVERIFY(session().plan_window.plan_y_extent > extent);
  }

  /// The next question of a window, which has to come.
  void answer_next_box(QMessageBox::StandardButton answer) {
    QTimer::singleShot(0, window_.get(), [answer] {
      auto* const box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
      QVERIFY2(box != nullptr, "no question was asked");
      box->button(answer)->click();
    });
  }

  void frequencies_are_switched_by_shift_click_and_range_and_saved_when_asked() {
    QTimer::singleShot(0, window_.get(), [this] {
      auto* const dialog = QApplication::activeModalWidget();
      auto* const grid = dialog->findChild<QTableWidget*>("Grid_frequencies");
      const auto click = [grid](int row, Qt::KeyboardModifiers keys) {
        QTest::mouseClick(grid->viewport(), Qt::LeftButton, keys,
                          grid->visualItemRect(grid->item(row, 1)).center());
      };
      const auto count = [dialog] { return dialog->findChild<QLabel*>("Label_count")->text(); };
      click(4, {});
      click(2, Qt::ShiftModifier);
      QCOMPARE(count(), QString("4 of 7 are used"));
      auto* const from = dialog->findChild<QLineEdit*>("Text_from");
      from->setText("x");
      QTest::mouseClick(dialog->findChild<QPushButton*>("Command_leave_range"), Qt::LeftButton);
      QVERIFY(is_marked(*from) && dialog->focusWidget() == from);
      QVERIFY2(count().startsWith("From: 'x'"), qPrintable(count()));
      from->setText("64");
      QVERIFY(!is_marked(*from));
      QCOMPARE(count(), QString("4 of 7 are used"));
      QTest::mouseClick(dialog->findChild<QPushButton*>("Command_leave_range"), Qt::LeftButton);
      QCOMPARE(count(), QString("3 of 7 are used"));
      answer_next_box(QMessageBox::Save);
      QTest::keyClick(dialog, Qt::Key_Escape);
    });
    menu("menu_thresholds");
    QCOMPARE(session().frequencies.enabled, (std::vector<std::int32_t>{1, 1, 0, 0, 0, 1, 0}));
  }

  void a_frequency_switched_off_leaves_the_graphs_once_it_is_saved() {
    const auto in_dialog = [&](bool save) {
      QTimer::singleShot(0, window_.get(), [this, save] {
        auto* const dialog = QApplication::activeModalWidget();
        const bool active = QTest::qWaitFor([dialog] { return QApplication::activeWindow() == dialog; });
        auto* const grid = dialog->findChild<QTableWidget*>("Grid_frequencies");
        QTest::mouseClick(grid->viewport(), Qt::LeftButton, {},
                          grid->visualItemRect(grid->item(1, 1)).center());
        QTest::keyClick(dialog, Qt::Key_Z, Qt::ControlModifier);
        const bool undone = !dialog->findChild<QPushButton*>("Command_save_changes")->isEnabled();
        QTest::keyClick(dialog, Qt::Key_Y, Qt::ControlModifier);
        if (save) {
          QTest::mouseClick(dialog->findChild<QPushButton*>("Command_save_changes"), Qt::LeftButton);
        }
        if (!save) {
          answer_next_box(QMessageBox::Discard);
        }
        QTest::mouseClick(dialog->findChild<QPushButton*>("Command_done"), Qt::LeftButton);
        QVERIFY2(active, save ? "saving" : "leaving");
        QVERIFY2(undone, save ? "saving" : "leaving");
      });
      menu("menu_thresholds");
    };
    const auto shown = [this] {
      return control<VexGraphControl>("vxgraph_raw_data_0")->point_position(1, 1).has_value();
    };
    const std::vector<int> before = draws();
    in_dialog(false);
    QVERIFY(shown());
    QCOMPARE(draws(), before);
    in_dialog(true);
    QVERIFY(!shown());
    QCOMPARE(difference(before, draws()), std::vector<int>(6, 1));
  }

  void the_output_panel_stands_in_place_of_the_graphs() {
    menu("menu_output_data_1");
    QVERIFY(control<QWidget>("Frame_store")->isVisible());
    QVERIFY(!control<QWidget>("Splitter_profile")->isVisible());
    press("Command_done_output");
    QVERIFY(!control<QWidget>("Frame_store")->isVisible());
    QVERIFY(control<QWidget>("Splitter_profile")->isVisible());
  }

  void hidden_points_vanish_from_the_raw_graph_and_stay_on_the_profile() {
    click_point("vxgraph_raw_data_0", 4, 1);
    control<QCheckBox>("Check_hide_masked_data")->click();
    QVERIFY(!control<VexGraphControl>("vxgraph_raw_data_0")->point_position(4, 1).has_value());
    QVERIFY(control<VexGraphControl>("vxgraph_Profile_0")->point_position(1, 0).has_value());
  }
};

QTEST_MAIN(MainViewTest)
#include "main_view_test.moc"
