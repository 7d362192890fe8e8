// The menu of views and the toolbar: both modes, periods, what is remembered from one start to the next.
#include <QApplication>
#include <QComboBox>
#include <QLabel>
#include <QToolBar>

#include "platform/graph/frequency_axis.h"
#include "reduction/averages.h"
#include "reduction/data_sets/data_sets.h"
#include "tests/app/main_view_fixture.h"

namespace {

namespace averaged = Module_averaged_data;

/// EyHx at the second of three stations.
void store_other_mode() {
  made::ReadingKey key = made::key(64.0F, 200.0);
  key.data_type = "EyHx";
  for (const int event : {1, 2}) {
    made::store(key, event, made::reading({{1.0F, 9.0F, -130.0F}, {4.0F, 8.0F, -140.0F}}));
  }
  QCOMPARE(averaged::recalculate_merged(), 0);
}

}  // namespace

class ViewMenuTest : public QObject, private MainViewFixture {
  Q_OBJECT

 private:
  /// The program started again, with the survey.
  void start_again() {
    window_->close();
    window_.reset();
    QCOMPARE(Module_database::close_database(), 0);
    window_ = std::make_unique<Form_main>();
    window_->resize(1280, 800);
    window_->show();
    QVERIFY(QTest::qWaitForWindowExposed(window_.get()));
    window_->open_survey(QString::fromStdString(folder_->path("survey.mdb")));
    QCoreApplication::processEvents();
  }
  void choose_type(const QString& type) const { control<QComboBox>("Combo_data_type")->setCurrentText(type); }
  void set(const QString& name, bool on) const {
    if (item(name)->isChecked() != on) {
      menu(name);
    }
  }

 private Q_SLOTS:
  void init() { open_made_survey(store_other_mode); }
  void cleanup() {
    set("menu_both_modes", false);
    set("menu_periods", false);
    set("menu_toolbar", true);
    close_survey();
  }

  void a_click_on_the_other_mode_selects_it_in_place_and_the_next_one_masks() {
    choose_type("ExHy");
    menu("Toolbar_next");
    QCOMPARE(session().current_station, 200.0);
    const auto* const legend = control<QLabel>("Label_station_modes");
    QVERIFY(!legend->isVisible());
    menu("menu_both_modes");
    QVERIFY(legend->isVisible());
    const int own = static_cast<int>(averaged::data_sets().station.slots.size());
    QTest::qWait(20);
    click_point("vxgraph_station_1", own, 1);
    QCOMPARE(session().current_data_type, std::string("EyHx"));
    QCOMPARE(session().current_station, 200.0);
    QCOMPARE(control<QComboBox>("Combo_data_type")->currentText(), QString("EyHx"));
    QCOMPARE(control<QLabel>("Label_station_graph")->text(), QString("Merged data, EyHx"));
    const std::int32_t merged = averaged::data_sets().station.slots.front().reading.ID;
    QTest::qWait(QApplication::doubleClickInterval() + 20);
    click_point("vxgraph_station_1", 0, 1);
    QCOMPARE(Module_database::read_reading(made::row(merged)).curve.counts_at(2, 1), 0);
    choose_type("ExHy");
    menu("menu_undo");
    QCOMPARE(Module_database::read_reading(made::row(merged)).curve.counts_at(2, 1), 1);
    QCOMPARE(session().current_data_type, std::string("EyHx"));
  }

  void views_and_place_come_back_at_the_next_start() {
    for (const char* const name : {"menu_both_modes", "menu_periods", "menu_toolbar"}) {
      menu(name);
    }
    menu("Toolbar_next");
    start_again();
    QCOMPARE(session().current_station_index, 2);
    QVERIFY(item("menu_both_modes")->isChecked() && item("menu_periods")->isChecked());
    QVERIFY(graph::FrequencyAxis::instance().shows_periods());
    QVERIFY(!control<QToolBar>("Toolbar_main")->isVisible());
    menu("menu_toolbar");
    QVERIFY(control<QToolBar>("Toolbar_main")->isVisible());
  }

  void periods_rise_to_the_right_in_both_graphs_of_a_station() {
    const auto x = [this](const char* graph, int point) {
      return control<VexGraphControl>(graph)->point_position(0, point)->x();
    };
    choose_type("ExHy");
    QTest::qWait(20);
    for (const char* const graph : {"vxgraph_station_0", "vxgraph_station_1", "vxgraph_raw_data_0"}) {
      QVERIFY(x(graph, 0) < x(graph, 2));
    }
    menu("menu_periods");
    QTest::qWait(20);
    for (const char* const graph : {"vxgraph_station_0", "vxgraph_station_1", "vxgraph_raw_data_0"}) {
      QVERIFY(x(graph, 0) > x(graph, 2));
    }
  }

  void the_toolbar_offers_what_can_be_done() {
    QVERIFY(item("menu_import_MT")->isEnabled() && item("Toolbar_next")->isEnabled());
    menu("Toolbar_next");
    menu("Toolbar_previous");
    QCOMPARE(session().current_station_index, 1);
    menu("menu_database_file_2");
    QVERIFY(!item("menu_import_MT")->isEnabled() && !item("Toolbar_next")->isEnabled());
    QVERIFY(item("menu_database_file_1")->isEnabled());
    for (const QAction* const action : control<QToolBar>("Toolbar_main")->actions()) {
      QVERIFY2(action->isSeparator() || (!action->icon().isNull() && !action->toolTip().isEmpty()),
               qPrintable(action->text()));
    }
  }
};

QTEST_MAIN(ViewMenuTest)
#include "view_menu_test.moc"
