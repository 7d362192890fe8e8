// Habits of the hand in the main window: keys, double clicks, drags, the wheel, leaving a text box; and that
// each graph is drawn just once for each of them.
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QScrollBar>
#include <QTimer>
#include <algorithm>
#include <cmath>
#include <functional>
#include <iterator>
#include <string>

#include "app/panels/picture_site_map.h"
#include "display/plan_view.h"
#include "reduction/data_sets/data_sets.h"
#include "tests/app/main_view_fixture.h"
#include "tests/support/pointer.h"

namespace {

namespace averaged = Module_averaged_data;
using Module_Brenlox::undo_count;

/// The second click of a double click.
void press_again(QWidget& widget, QPoint at) {
  QMouseEvent second(QEvent::MouseButtonDblClick, at, widget.mapToGlobal(at), Qt::LeftButton, Qt::LeftButton,
                     Qt::NoModifier);
  QApplication::sendEvent(&widget, &second);
  QTest::mouseRelease(&widget, Qt::LeftButton, {}, at);
}

/// Counts how often a widget is disabled.
class Disabled : public QObject {
 public:
  using QObject::QObject;
  int times = 0;

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override {
    times += event->type() == QEvent::EnabledChange && !static_cast<QWidget*>(watched)->isEnabled() ? 1 : 0;
    return false;
  }
};

QChar mnemonic(const QString& caption) {
  const qsizetype at = QString(caption).replace("&&", "  ").indexOf('&');
  return at < 0 ? QChar() : caption[at + 1].toLower();
}

}  // namespace

class MainViewHabitsTest : public QObject, private MainViewFixture {
  Q_OBJECT

 private Q_SLOTS:
  void init() { open_made_survey(); }
  void cleanup() { close_survey(); }

  void marked_points_are_masked_with_one_key_and_come_back_with_one_undo() {
    auto* const graph = control<VexGraphControl>("vxgraph_station_0");
    const auto ID = averaged::data_sets().station.slots.front().reading.ID;
    const QPoint around(9, 9);
    const QPoint at = graph->point_position(0, 2)->toPoint();
    drag_with_shift(*graph, at - around, at + around);
    QVERIFY(item("menu_mask_marked")->isEnabled());
    QVERIFY(control<QLabel>("Status_site_map_1")->text().contains("marked: Delete masks"));
    QTest::keyClick(window_.get(), Qt::Key_Delete);
    QCOMPARE(stored_mask(ID, 2), 0);
    QVERIFY(!item("menu_mask_marked")->isEnabled());
    QTest::keyClick(window_.get(), Qt::Key_Z, Qt::ControlModifier);
    QCOMPARE(stored_mask(ID, 2), 1);
    QCOMPARE(undo_count(), 0U);

    drag_with_shift(*graph, at - around, at + around);
    QTest::keyClick(window_.get(), Qt::Key_Escape);
    QVERIFY(!item("menu_mask_marked")->isEnabled());
    QTest::keyClick(window_.get(), Qt::Key_Delete);
    QCOMPARE(stored_mask(ID, 2), 1);

    drag_with_shift(*graph, at - around, at + around);
    QTest::keyClick(window_.get(), Qt::Key_Right);  // the average isn't seen any more; the profile stays
    QCOMPARE(averaged::data_sets().station.key.station, 200.0);
    QVERIFY(control<QLabel>("Status_site_map_1")->text().startsWith("1 point marked"));
    QTest::keyClick(window_.get(), Qt::Key_Delete);
    QCOMPARE(stored_mask(ID, 2), 0);
    QCOMPARE(Module_Brenlox::top_undo().size(), 1U);
  }

  void each_graph_is_drawn_once_or_not_at_all() {
    struct Case {
      const char* name;
      std::function<void()> act;
      std::vector<int> drawn;
    };
    const std::vector<int> all(6, 1);
    const std::vector<int> nothing(6, 0);
    const std::vector<int> new_station{0, 0, 1, 1, 1, 1};  // in the profile only the line at it moves
    const auto type = [this](const char* name, const char* text) {
      auto* const box = control<QLineEdit>(name);
      box->setFocus();
      box->selectAll();
      QTest::keyClicks(box, text);
      QTest::keyClick(box, Qt::Key_Return);
    };
    const Case cases[] = {
        {"a mask", [&] { click_point("vxgraph_raw_data_0", 4, 1); }, all},
        {"a switch of a repeat", [&] { click_cell(0, 3); }, all},
        {"a switch of the average", [&] { control<QCheckBox>("Check_use_average_1")->click(); }, all},
        {"a switch of the merged curve", [&] { control<QCheckBox>("Check_use_merged_2")->click(); }, all},
        {"undo", [&] { menu("menu_undo"); }, all},
        {"redo", [&] { menu("menu_redo"); }, all},
        {"a command without effect", [&] { press("Command_clear_frequencies_7"); }, nothing},
        {"static factor", [&] { type("Text_static", "1.5"); }, {1, 1, 1, 1, 0, 0}},
        {"fixed scale", [&] { control<QCheckBox>("Check_fixed_scale")->click(); }, {0, 0, 1, 1, 1, 1}},
        {"hide masked", [&] { control<QCheckBox>("Check_hide_masked_data")->click(); }, all},
        {"scan rate", [&] { control<QComboBox>("Combo_scan_rate")->setCurrentIndex(1); }, {0, 0, 0, 0, 1, 1}},
        {"neighbours", [&] { control<QCheckBox>("Check_multi_station")->click(); }, new_station},
        {"their number", [&] { type("Text_multi_count", "1"); }, new_station},
        {"a step", [&] { control<QScrollBar>("HScroll_repeat")->setValue(3); }, new_station},
        {"a point of the profile elsewhere", [&] { click_point("vxgraph_Profile_0", 0, 1); }, new_station},
        {"the same line", [&] { control<QComboBox>("Combo_line")->setCurrentIndex(0); }, nothing},
        {"recalculation", [&] { menu("menu_Recalculate_merged"); }, all},
        {"the plan", [&] { press("Command_show_plan"); }, nothing},
    };
    for (const Case& c : cases) {
      const std::vector<int> before = draws();
      c.act();
      QCoreApplication::processEvents();
      QVERIFY2(difference(before, draws()) == c.drawn, c.name);
    }
  }

  void recalculation_keeps_the_selection() {
    control<QScrollBar>("HScroll_repeat")->setValue(2);
    control<QComboBox>("Combo_scan_rate")->setCurrentIndex(1);
    menu("menu_Recalculate_merged");
    QCOMPARE(session().current_station, 200.0);
    QCOMPARE(control<QScrollBar>("HScroll_repeat")->value(), 2);
    QCOMPARE(control<QComboBox>("Combo_scan_rate")->currentText(), QString("256"));
    QCOMPARE(averaged::data_sets().repeats.key.scan_rate, 256.0F);
  }

  void recalculation_keeps_undo_zoom_and_read_outs() {
    click_point("vxgraph_raw_data_0", 4, 1);
    auto* const graph = control<VexGraphControl>("vxgraph_station_0");
    turn_wheel(*graph, graph->plot_area().center(), 120);
    QVERIFY(graph->zoomed());
    const graph::AxisRange view = graph->x_range();
    const double centre = session().plan_window.plan_x_centre += 10.0;
    const std::string edited = made::whole_readings_table();
    menu("menu_Recalculate_merged");
    QCOMPARE(graph->x_range(), view);
    QCOMPARE(session().plan_window.plan_x_centre, centre);
    QCOMPARE(control<QLineEdit>("Text_frequency")->text(), QString("2.0000"));
    QCOMPARE(control<QLineEdit>("Text_event")->text(), QString("4"));
    QCOMPARE(control<QLineEdit>("Text_file")->text(), QString("7.edi"));
    QVERIFY(made::whole_readings_table() == edited);
    QCOMPARE(undo_count(), std::size_t{1});
    menu("menu_undo");
    QCOMPARE(stored_mask(averaged::data_sets().repeats.slots.at(4).reading.ID, 1), 1);
  }

  void the_second_press_of_a_double_click_masks_nothing() {
    struct Case {
      const char* graph;
      int series;
      int point;
      std::int32_t mask_after;  // a raw point is masked by the first press
    };
    const std::int32_t merged = averaged::data_sets().profile.columns.at(1).ID;
    const std::int32_t repeat = averaged::data_sets().repeats.slots.at(4).reading.ID;
    const Case cases[] = {{"vxgraph_raw_data_0", 4, 1, 0},
                          {"vxgraph_Profile_0", 2, 1, 1},  // to another station
                          {"vxgraph_Profile_0", 3, 1, 1},
                          {"vxgraph_station_0", 0, 2, 1}};
    for (const Case& c : cases) {
      auto* const graph = control<VexGraphControl>(c.graph);
      const QPoint at = graph->point_position(c.series, c.point)->toPoint();
      turn_wheel(*graph, at, 120);
      QTest::qWait(1);
      QTest::mouseClick(graph, Qt::LeftButton, {}, at);
      press_again(*graph, at);
      const bool raw = QString(c.graph).startsWith("vxgraph_raw");
      QVERIFY2(
          stored_mask(raw ? repeat : merged, static_cast<std::size_t>(raw ? c.point : 2)) == c.mask_after,
          c.graph);
      QVERIFY2(stored_mask(merged, 3) == 1, c.graph);
      QVERIFY2(!graph->zoomed(), "it shows everything again");
    }
    QCOMPARE(undo_count(), std::size_t{1});

    auto* const grid = control<QTableWidget>("Grid_repeats");  // clicks in a grid all count
    const auto used = [] { return averaged::data_sets().repeats.slots.at(2).reading.UseResistivity; };
    click_cell(1, 2);
    QVERIFY(!used());
    press_again(*grid->viewport(), cell_centre(1, 2));
    QVERIFY(used());
    QTest::keyClick(grid, Qt::Key_Space);
    QVERIFY(!used());
    QCOMPARE(undo_count(), std::size_t{4});
  }

  void a_step_empties_event_and_file_and_the_next_click_selects_again() {
    const auto text = [this](const char* name) { return control<QLineEdit>(name)->text(); };
    click_point("vxgraph_raw_data_0", 4, 1);
    QCOMPARE(text("Text_event"), QString("4"));
    control<QScrollBar>("HScroll_repeat")->setValue(2);
    QCOMPARE(text("Text_event"), QString());
    QCOMPARE(text("Text_file"), QString());
    QCOMPARE(text("Text_frequency"), QString("2.0000"));  // for the mask buttons
    const std::int32_t merged = averaged::data_sets().station.slots.at(0).reading.ID;
    for (const char* const graph : {"vxgraph_station_0", "vxgraph_Profile_0"}) {
      const bool profile = QString(graph).startsWith("vxgraph_Profile");
      const auto click = [&] { click_point(graph, profile ? 1 : 0, 1); };
      click();
      QVERIFY2(stored_mask(merged, 1) == 1, graph);
      click();
      QVERIFY2(stored_mask(merged, 1) == 0, graph);
      click();
      QVERIFY2(stored_mask(merged, 1) == 1, graph);
      control<QScrollBar>("HScroll_repeat")->setValue(3);
      control<QScrollBar>("HScroll_repeat")->setValue(2);
    }
    QCOMPARE(undo_count(), std::size_t{5});
  }

  void what_is_being_typed_counts_before_any_work() {
    const std::int32_t first = averaged::data_sets().profile.columns.at(0).ID;
    struct Case {
      const char* name;
      std::function<void()> begin;
    };
    auto* const bar = control<QScrollBar>("HScroll_repeat");
    const Case cases[] = {
        {"recalculation", [&] { menu("menu_Recalculate_merged"); }},
        {"frequencies",
         [&] {
           QTimer::singleShot(0, window_.get(), [] { QApplication::activeModalWidget()->close(); });
           menu("menu_thresholds");
         }},
        {"redo", [&] { menu("menu_redo"); }},
        {"undo and redo",
         [&] {
           menu("menu_undo");
           menu("menu_redo");
         }},
        {"the wheel over the station bar",
         [&] {
           turn_wheel(*bar, bar->rect().center(), -120);
           QCOMPARE(session().current_station, 200.0);
         }},
        {"a mnemonic", [&] { QTest::keyClick(window_.get(), Qt::Key_P, Qt::AltModifier); }},
    };
    float factor = 2.0F;
    for (const Case& c : cases) {
      window_->activateWindow();  // a dialog may have been up
      QVERIFY(QTest::qWaitForWindowActive(window_.get()));
      bar->setValue(1);
      click_cell(0, 3);  // something to do again
      menu("menu_undo");
      auto* const box = control<QLineEdit>("Text_static");
      box->setFocus();
      box->selectAll();
      factor += 0.25F;
      QTest::keyClicks(box, QString::number(static_cast<double>(factor)));
      c.begin();
      QVERIFY2(made::row(first).get_single("ResOffset") == factor, c.name);
    }
    QCOMPARE(interface_->take_messages(), std::vector<std::string>{});
  }

  void left_and_right_belong_to_the_control_that_uses_them() {
    press("Command_show_plan");
    struct Case {
      const char* control;
      bool steps;
    };
    const Case cases[] = {{"HScroll_x_centre", false}, {"Grid_repeats", false},
                          {"Option_outlier_0", false}, {"Text_frequency", false},
                          {"Check_fixed_scale", true}, {"Combo_coords", true}};
    for (const Case& c : cases) {
      if (QString(c.control) == "Grid_repeats") {
        press("Command_show_raw_data");
        control<QTableWidget>("Grid_repeats")->setCurrentCell(0, 1);
      } else if (QString(c.control) == "Combo_coords") {
        press("Command_show_plan");
      }
      auto* const focused = control<QWidget>(c.control);
      focused->setFocus();
      QVERIFY2(focused->hasFocus(), c.control);
      const double centre = session().plan_window.plan_x_centre;
      const std::int32_t station = session().current_station_index;
      QTest::keyClick(focused, Qt::Key_Right);
      QVERIFY2(session().current_station_index == station + (c.steps ? 1 : 0), c.control);
      QCOMPARE(session().plan_window.plan_x_centre < centre, QString(c.control) == "HScroll_x_centre");
    }
    QCOMPARE(control<QTableWidget>("Grid_repeats")->currentColumn(), 2);

    auto* const up_down = control<QScrollBar>("VScroll_y_centre");
    up_down->setFocus();
    for (const int sign : {-1, 1}) {  // each press moves again
      for (int presses = 0; presses < 2; ++presses) {
        const double centre = session().plan_window.plan_y_centre;
        QTest::keyClick(up_down, sign > 0 ? Qt::Key_Up : Qt::Key_Down);
        QVERIFY(sign * (session().plan_window.plan_y_centre - centre) > 0.0);
        QCOMPARE(up_down->value(), 0);
      }
    }
  }

  void a_static_factor_is_stored_on_leaving_its_box_and_kept_in_passing_by() {
    auto* const box = control<QLineEdit>("Text_static");
    box->setFocus();
    box->selectAll();
    QTest::keyClicks(box, "1.234");
    QTest::mouseClick(control<VexGraphControl>("vxgraph_station_1"), Qt::LeftButton, {}, QPoint(5, 5));
    QVERIFY(!box->hasFocus());
    QCOMPARE(stored_factor(), 1.234F);
    QCOMPARE(box->text(), QString("1.23"));

    box->setFocus();
    QTest::keyClick(box, Qt::Key_Tab);
    QCOMPARE(stored_factor(), 1.234F);
    QCOMPARE(undo_count(), std::size_t{1});

    box->setFocus();
    box->selectAll();
    QTest::keyClicks(box, "0");
    QTest::keyClick(box, Qt::Key_Return);
    QCOMPARE(stored_factor(), 1.234F);
    QCOMPARE(box->text(), QString("0"));
  }

  void a_typed_static_factor_is_stored_before_its_survey_is_closed() {
    auto* const box = control<QLineEdit>("Text_static");
    box->setFocus();
    box->selectAll();
    QTest::keyClicks(box, "2.5");
    menu("menu_database_file_2");
    QVERIFY(!session().database_open);
    window_->open_survey(QString::fromStdString(folder_->path("survey.mdb")));
    QCOMPARE(stored_factor(), 2.5F);
    QCOMPARE(interface_->take_messages(), std::vector<std::string>{});
  }

  void undo_key_takes_back_typing_first_and_then_edits() {
    auto* const box = control<QLineEdit>("Text_static");
    box->setFocus();
    box->selectAll();
    QTest::keyClicks(box, "2");
    QTest::keyClick(box, Qt::Key_Return);
    QCOMPARE(stored_factor(), 2.0F);
    QVERIFY(box->hasFocus());
    QTest::keyClick(box, Qt::Key_Z, Qt::ControlModifier);
    QCOMPARE(stored_factor(), 1.0F);
    QTest::keyClick(box, Qt::Key_Y, Qt::ControlModifier);
    QCOMPARE(stored_factor(), 2.0F);
    box->selectAll();
    QTest::keyClicks(box, "7");
    QTest::keyClick(box, Qt::Key_Z, Qt::ControlModifier);
    QCOMPARE(stored_factor(), 2.0F);
    QVERIFY(box->text() != "7");
  }

  void the_station_bar_is_disabled_for_a_step_and_keeps_the_focus() {
    auto* const bar = control<QScrollBar>("HScroll_repeat");
    Disabled disabled;
    bar->installEventFilter(&disabled);
    bar->setFocus();
    QTest::keyClick(bar, Qt::Key_Right);
    QCOMPARE(session().current_station, 200.0);
    QCOMPARE(disabled.times, 1);
    QVERIFY(bar->isEnabled());
    QVERIFY(bar->hasFocus());
    menu("menu_output_data_1");
    QTest::keyClick(window_.get(), Qt::Key_Right);  // the keys are the folder list's now
    QCOMPARE(session().current_station, 200.0);
  }

  // Layers of it are kept from one drawing to the next.
  void the_plan_shows_what_has_changed_as_if_it_were_drawn_anew() {
    press("Command_show_plan");
    auto* const plan = control<SiteMap>("Picture_site_map");
    QImage before = plan->grab().toImage();
    const auto step = [&] { control<QScrollBar>("HScroll_repeat")->setValue(2); };
    const std::function<void()> changes[] = {
        step,
        [&] { QTest::mouseClick(plan, Qt::LeftButton, {}, plan->rect().topLeft() + QPoint(1, 1)); },
        [&] { control<QScrollBar>("VScroll_scale")->setValue(2); },
        [&] { control<QScrollBar>("HScroll_x_centre")->setValue(3); },
        [&] { control<QComboBox>("Combo_plan_colour")->setCurrentIndex(1); },
        [&] { control<QComboBox>("Combo_plan_colour")->setCurrentIndex(2); },
        [&] { window_->resize(1100, 720); }};
    for (std::size_t i = 0; i < std::size(changes); ++i) {
      changes[i]();
      QCoreApplication::processEvents();
      if (!plan->isVisible()) {
        press("Command_show_plan");
      }
      const QImage kept = plan->grab().toImage();
      QVERIFY2(kept != before, std::to_string(i).c_str());
      plan->forget_stations();
      before = plan->grab().toImage();
      QVERIFY2(kept == before, std::to_string(i).c_str());
    }
  }

  void the_plan_is_dragged_without_picking_and_zoomed_about_the_pointer() {
    press("Command_show_plan");
    auto* const plan = control<QWidget>("Picture_site_map");
    QCoreApplication::processEvents();
    const QPoint from = dot(3);
    for (const Qt::MouseButton button : {Qt::LeftButton, Qt::MiddleButton}) {
      const QPoint before = dot(2);
      QTest::mousePress(plan, button, {}, from);
      move_pointer(*plan, from + QPoint(30, 10), button);
      move_pointer(*plan, from + QPoint(60, 25), button);
      QTest::mouseRelease(plan, button, {}, from + QPoint(60, 25));
      QVERIFY((dot(2) - before - QPoint(60, 25)).manhattanLength() <= 2);
    }
    QCOMPARE(session().current_station_index, 1);

    const QPoint about = dot(2);
    const double extent = session().plan_window.plan_y_extent;
    for (const int angle : {60, 60, 120}) {  // half a notch does nothing yet
      QWheelEvent wheel(about, plan->mapToGlobal(about), QPoint(), QPoint(0, angle), Qt::NoButton,
                        Qt::NoModifier, Qt::NoScrollPhase, false);
      QApplication::sendEvent(plan, &wheel);
    }
    QCOMPARE(control<QScrollBar>("VScroll_scale")->value(), 2);
    QVERIFY(std::abs(extent / session().plan_window.plan_y_extent - 1.585 * 1.585) < 1e-3);
    QVERIFY((dot(2) - about).manhattanLength() <= 2);
  }

  void error_bars_are_switched_for_both_graphs_of_a_pair() {
    auto* const upper = control<VexGraphControl>("vxgraph_station_0");
    const auto* const lower = control<VexGraphControl>("vxgraph_station_1");
    const auto menu = upper->make_context_menu();
    const auto actions = menu->actions();
    const auto bars =
        std::ranges::find_if(actions, [](const QAction* action) { return action->isCheckable(); });
    QVERIFY(bars != actions.end());
    QVERIFY((*bars)->isChecked());
    (*bars)->trigger();
    QVERIFY(!upper->error_bars_shown() && !lower->error_bars_shown());
  }

  void the_tab_key_follows_the_eye() {
    for (const char* const panel : {"Selection_row", "Picture_station", "Picture_raw_data"}) {
      auto* const area = control<QWidget>(panel);
      QList<QWidget*> reached;
      QWidget* const first = window_.get();
      for (QWidget* next = first->nextInFocusChain(); next != first; next = next->nextInFocusChain()) {
        if (area->isAncestorOf(next) && (next->focusPolicy() & Qt::TabFocus) != 0 && next->isVisible()) {
          reached.append(next);
        }
      }
      QVERIFY2(reached.size() > 5, panel);
      for (qsizetype i = 1; i < reached.size(); ++i) {
        const QPoint before = reached[i - 1]->mapTo(area, reached[i - 1]->rect().center());
        const QPoint after = reached[i]->mapTo(area, reached[i]->rect().center());
        constexpr int one_row = 8;  // pixels between the middles of controls in one row
        const bool same_row = std::abs(after.y() - before.y()) <= one_row;
        QVERIFY2(same_row ? after.x() > before.x() : after.y() > before.y(),
                 qPrintable(reached[i - 1]->objectName() + " to " + reached[i]->objectName()));
      }
    }
  }

  void no_two_mnemonics_meet() {
    for (const bool output : {false, true}) {
      if (output) {
        menu("menu_output_data_1");
      }
      QHash<QChar, QString> taken;
      const auto take = [&](const QString& caption) {
        const QChar key = mnemonic(caption);
        if (!key.isNull()) {
          QVERIFY2(!taken.contains(key), qPrintable(caption + " and " + taken.value(key)));
          taken.insert(key, caption);
        }
      };
      for (const QAction* const action : window_->findChild<QMenuBar*>()->actions()) {
        take(action->text());
      }
      for (const QAbstractButton* const button : window_->findChildren<QAbstractButton*>()) {
        take(button->isVisible() ? button->text() : QString());
      }
      for (const QLabel* const label : window_->findChildren<QLabel*>()) {
        take(label->isVisible() && label->buddy() != nullptr ? label->text() : QString());
      }
    }
  }

  void the_window_fits_a_small_screen() {
    QVERIFY(window_->minimumSizeHint().width() <= 1200);
    QVERIFY(window_->minimumSizeHint().height() <= 700);
  }
};

QTEST_MAIN(MainViewHabitsTest)
#include "main_view_habits_test.moc"
