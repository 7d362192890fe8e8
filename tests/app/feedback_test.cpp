// What the main view says of what it did or refused, and what stays on show meanwhile: station, plan, marks.
#include <QApplication>
#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QScrollBar>
#include <QTest>

#include "app/panels/picture_plan_group.h"
#include "display/chosen_points.h"
#include "display/plan_view.h"
#include "platform/graph/frequency_axis.h"
#include "platform/widgets/entry_mark.h"
#include "platform/widgets/heading_label.h"
#include "reduction/data_sets/data_sets.h"
#include "tests/app/main_view_fixture.h"
#include "tests/support/pointer.h"

namespace averaged = Module_averaged_data;

class FeedbackTest : public QObject, private MainViewFixture {
  Q_OBJECT

 private:
  QString told() const { return control<QLabel>("Label_work")->accessibleName(); }
  QString status() const { return control<QLabel>("Status_site_map_1")->text(); }
  bool in_plan() const { return control<QWidget>("Picture_site_map")->isVisible(); }
  void type(QLineEdit* box, const char* text) const {
    box->setFocus();
    box->selectAll();
    QTest::keyClicks(box, text);
  }
  /// A rectangle with Shift around two points of a series.
  void mark(const QString& graph_name, int series, int first, int last) const {
    auto* const graph = control<VexGraphControl>(graph_name);
    const auto from = graph->point_position(series, first);
    const auto to = graph->point_position(series, last);
    QVERIFY(from && to);
    const QRect band = QRectF(*from, *to).normalized().adjusted(-3, -3, 3, 3).toRect();
    drag_with_shift(*graph, band.topLeft(), band.bottomRight());
  }

 private Q_SLOTS:
  void init() { open_made_survey(); }
  void cleanup() {
    Module_display_data::forget_chosen_points();
    graph::FrequencyAxis::instance().show_periods(false);
    close_survey();
  }

  void a_static_factor_that_is_none_is_marked_and_named() {
    auto* const box = control<QLineEdit>("Text_static");
    const QString tip = box->toolTip();
    for (const char* const text : {"abc", "0", "-2", ""}) {
      type(box, "3");
      type(box, text);
      if (QString(text).isEmpty()) {
        QTest::keyClick(box, Qt::Key_Backspace);
      }
      QVERIFY2(is_marked(*box), text);
      QVERIFY2(box->toolTip().contains(QString("\"%1\" is not a number above 0").arg(text)), text);
      QTest::keyClick(box, Qt::Key_Return);
      QCoreApplication::processEvents();
      QVERIFY2(box->hasFocus(), "to be corrected");
      QVERIFY2(told().contains("is not a number above 0; the factor is still 1.00"), qPrintable(told()));
      QCOMPARE(stored_factor(), 1.0F);
    }
    QTest::keyClick(box, Qt::Key_Escape);
    QCOMPARE(box->text(), QString("1.00"));
    QVERIFY(!is_marked(*box));
    QCOMPARE(box->toolTip(), tip);

    type(box, "x");
    QTest::keyClick(box, Qt::Key_Tab);
    QVERIFY2(is_marked(*box), "the text stays to be seen");
    control<QScrollBar>("HScroll_repeat")->setValue(2);
    QVERIFY(!is_marked(*box));
    QCOMPARE(box->text(), QString("1.00"));
    control<QScrollBar>("HScroll_repeat")->setValue(1);
    type(box, "1.5");
    QTest::keyClick(box, Qt::Key_Return);
    QCoreApplication::processEvents();
    QCOMPARE(stored_factor(), 1.5F);
    QVERIFY(control<QScrollBar>("HScroll_repeat")->hasFocus());
  }

  void a_command_names_the_text_that_it_can_not_take() {
    auto* const frequency = control<QLineEdit>("Text_frequency");
    for (const char* const text : {"", "abc", "-4"}) {
      frequency->setText(text);
      press("Command_clear_frequencies_0");
      QVERIFY2(is_marked(*frequency) && frequency->hasFocus(), text);
      QVERIFY2(told().contains("Frequency: "), qPrintable(told()));
    }
    frequency->setText("4");
    QVERIFY(!is_marked(*frequency));
    press("Command_clear_frequencies_3");
    QVERIFY2(told().contains("Nothing to change"), qPrintable(told()));
    auto* const count = control<QLineEdit>("Text_outliers");
    const QString tip = count->toolTip();
    for (const char* const text : {"0", "x", ""}) {
      count->setText(text);
      QVERIFY2(is_marked(*count), text);
      press("Command_outliers_2");
      QVERIFY2(told().contains("is not a number from 1 on"), qPrintable(told()));
    }
    QCOMPARE(Module_Brenlox::undo_count(), 0U);
    count->setText("1");
    QCOMPARE(count->toolTip(), tip);
    press("Command_outliers_2");
    QVERIFY(Module_Brenlox::undo_count() > 0U);
    QCOMPARE(interface_->take_messages(), std::vector<std::string>{});
  }

  void undo_and_edits_leave_the_plan_up() {
    control<QCheckBox>("Check_use_merged_1")->click();
    press("Command_show_plan");
    QVERIFY(in_plan());
    const auto* const combo = control<QWidget>("Combo_coords");
    control<QWidget>("Combo_coords")->setFocus();
    QTest::keyClick(window_.get(), Qt::Key_Z, Qt::ControlModifier);
    QVERIFY(control<QCheckBox>("Check_use_merged_1")->isChecked());
    QVERIFY(in_plan());
    QTest::keyClick(window_.get(), Qt::Key_Y, Qt::ControlModifier);
    QVERIFY(!control<QCheckBox>("Check_use_merged_1")->isChecked());
    QVERIFY(in_plan() && combo->hasFocus());
    mark("vxgraph_Profile_0", 2, 1, 1);
    QTest::keyClick(window_.get(), Qt::Key_Delete);
    QVERIFY(in_plan());
    press("Command_show_raw_data");
    QVERIFY2(!in_plan(), "and it goes when it is told to");
  }

  void enter_presses_the_button_that_has_the_focus() {
    for (const char* const name : {"Command_show_plan", "Command_show_raw_data", "Command_show_plan"}) {
      const bool was_in_plan = in_plan();
      control<QPushButton>(name)->setFocus();
      QTest::keyClick(control<QPushButton>(name), Qt::Key_Return);
      QVERIFY2(in_plan() != was_in_plan, name);
    }
  }

  void a_rectangle_of_the_profile_is_undone_without_going_anywhere() {
    const auto& columns = averaged::data_sets().profile.columns;
    const std::int32_t second = columns.at(1).ID;
    const std::int32_t third = columns.at(2).ID;
    struct Case {
      int first;
      int last;
      bool goes_on;  // to another station before the undo
    };
    for (const Case& c : {Case{1, 2, false}, Case{1, 1, false}, Case{1, 2, true}}) {
      control<QScrollBar>("HScroll_repeat")->setValue(1);
      mark("vxgraph_Profile_0", 2, c.first, c.last);
      QTest::keyClick(window_.get(), Qt::Key_Delete);
      QCOMPARE(session().current_station, 100.0);
      QCOMPARE(stored_mask(second, 2), 0);
      QCOMPARE(stored_mask(third, 2), c.last == 2 ? 0 : 1);
      if (c.goes_on) {
        control<QScrollBar>("HScroll_repeat")->setValue(3);
      }
      const double station = session().current_station;
      QTest::keyClick(window_.get(), Qt::Key_Z, Qt::ControlModifier);
      QCOMPARE(session().current_station, station);
      QCOMPARE(control<QLineEdit>("Text_sample_station")->text(), QString::number(station));
      QCOMPARE(stored_mask(second, 2), 1);
      QCOMPARE(stored_mask(third, 2), 1);
      QCOMPARE(averaged::data_sets().profile.columns.at(1).mask.at(2).at(0), 1);
      QCOMPARE(averaged::data_sets().station.slots.front().reading.curve.counts_at(1, 2), 1);
    }
    QCOMPARE(Module_Brenlox::undo_count(), 0U);
  }

  void delete_in_a_text_box_masks_nothing() {
    const auto ID = averaged::data_sets().station.slots.front().reading.ID;
    mark("vxgraph_Profile_0", 2, 0, 0);
    const std::size_t marked = Module_display_data::chosen_count();  // some curves lie close together
    QVERIFY(marked > 0);
    for (const char* const name : {"Text_sample_station", "Text_frequency", "Text_file"}) {
      auto* const box = control<QLineEdit>(name);
      box->setFocus();
      for (const Qt::KeyboardModifier modifier : {Qt::NoModifier, Qt::ShiftModifier}) {
        QTest::keyClick(box, Qt::Key_Delete, modifier);
        QVERIFY2(stored_mask(ID, 2) == 1, name);
        QVERIFY2(Module_display_data::chosen_count() == marked, name);
      }
    }
    QTest::keyClick(control<QScrollBar>("HScroll_repeat"), Qt::Key_Delete);
    QCOMPARE(stored_mask(ID, 2), 0);
  }

  void escape_leaves_a_typed_factor_before_what_is_marked() {
    mark("vxgraph_Profile_0", 2, 0, 0);
    const std::size_t marked = Module_display_data::chosen_count();
    auto* const box = control<QLineEdit>("Text_static");
    type(box, "3");
    QTest::keyClick(box, Qt::Key_Escape);
    QCOMPARE(stored_factor(), 1.0F);
    QCOMPARE(box->text(), QString("1.00"));
    QCOMPARE(Module_display_data::chosen_count(), marked);
    QTest::keyClick(box, Qt::Key_Escape);
    QCOMPARE(Module_display_data::chosen_count(), 0U);
    QCOMPARE(stored_factor(), 1.0F);
  }

  void a_key_that_changes_nothing_says_so() {
    mark("vxgraph_Profile_0", 2, 0, 0);
    QTest::keyClick(window_.get(), Qt::Key_Delete, Qt::ShiftModifier);
    QVERIFY2(told().contains("Nothing to unmask"), qPrintable(told()));
    QTest::keyClick(window_.get(), Qt::Key_Delete);
    mark("vxgraph_Profile_0", 2, 0, 0);
    QTest::keyClick(window_.get(), Qt::Key_Delete);
    QVERIFY2(told().contains("Nothing to mask"), qPrintable(told()));
    QVERIFY2(Module_display_data::chosen_count() > 0, "and they stay marked");
    QTest::keyClick(window_.get(), Qt::Key_Delete, Qt::ShiftModifier);
    QCOMPARE(stored_mask(averaged::data_sets().station.slots.front().reading.ID, 2), 1);
  }

  void the_status_is_of_what_is_under_the_pointer() {
    auto* const graph = control<VexGraphControl>("vxgraph_raw_data_0");
    move_pointer(*graph, graph->plot_area().center());
    QCOMPARE(status(), QString("Resistivity"));
    press("Command_show_plan");
    QEvent leave(QEvent::Leave);
    QApplication::sendEvent(graph, &leave);
    QCOMPARE(status(), QString());
    auto* const map = control<QWidget>("Picture_site_map");
    move_pointer(*map, dot(2));
    QVERIFY2(status().contains("station 200"), qPrintable(status()));
    QVERIFY(!control<QLabel>("Status_site_map_2")->text().isEmpty());
    move_pointer(*map, QPoint(2, 2));
    QCOMPARE(status(), QString());
  }

  void a_frequency_of_the_legend_is_chosen_and_left_again() {
    auto* const list = control<QListWidget>("List_profile_frequencies");
    const auto click = [list](int row, QPoint moved = {}) {
      const QPoint at = list->visualItemRect(list->item(row)).center();
      drag(*list->viewport(), at, at + moved);
    };
    const auto chosen = [list] {
      return list->selectedItems().isEmpty() ? -1 : list->row(list->selectedItems().front());
    };
    click(1);
    QCOMPARE(chosen(), 1);
    click(1, QPoint(2, 1));  // a hand is never quite still
    QCOMPARE(chosen(), -1);
    click(1);
    click(2);
    QCOMPARE(chosen(), 2);
    QTest::keyClick(list, Qt::Key_Up);
    QCOMPARE(chosen(), 1);
    click(1);
    QCOMPARE(chosen(), -1);
    QTest::keyClick(list, Qt::Key_Space);
    QCOMPARE(chosen(), 1);
    QTest::keyClick(list, Qt::Key_Space);
    QCOMPARE(chosen(), -1);

    // What stands out and what was told are about this survey.
    click(1);
    type(control<QLineEdit>("Text_static"), "x\r");
    QVERIFY(!told().isEmpty());
    QTest::keyClick(control<QLineEdit>("Text_static"), Qt::Key_Escape);
    control<QLineEdit>("Text_outliers")->setText("none");
    QVERIFY(is_marked(*control<QLineEdit>("Text_outliers")));
    menu("menu_database_file_2");
    QCOMPARE(told(), QString());
    window_->open_survey(QString::fromStdString(folder_->path("survey.mdb")));
    QVERIFY(list->count() > 2);
    QCOMPARE(chosen(), -1);
    QCOMPARE(control<QLineEdit>("Text_outliers")->text(), QString("1"));
    QVERIFY(!is_marked(*control<QLineEdit>("Text_outliers")));

    QCOMPARE(list->item(0)->text(), QString("64"));
    item("menu_periods")->setChecked(true);
    QCOMPARE(list->item(0)->text(), QString("0.01563"));
    for (int row = 0; row < list->count(); ++row) {
      QVERIFY(list->fontMetrics().horizontalAdvance(list->item(row)->text()) <
              list->viewport()->width() - 20);
    }
    item("menu_periods")->setChecked(false);
    QCOMPARE(list->item(0)->text(), QString("64"));
  }

  void narrow_headings_still_name_the_station() {
    item("menu_both_modes")->setChecked(true);
    for (const char* const name : {"Label_raw", "Label_station"}) {
      auto* const heading = control<HeadingLabel>(name);
      const QString whole = heading->text();
      QVERIFY(whole.contains("for 100"));
      for (const int width : {400, 120, 70, 30}) {
        heading->resize(width, heading->height());
        QVERIFY2(heading->shown_text().contains("100"), qPrintable(heading->shown_text()));
        QVERIFY(heading->fontMetrics().horizontalAdvance(heading->shown_text()) <= width);
      }
      QCOMPARE(heading->text(), whole);
    }
    item("menu_both_modes")->setChecked(false);
  }
};

QTEST_MAIN(FeedbackTest)
#include "feedback_test.moc"
