// What is shown is what is edited: after another dipole length has been chosen, and after work that goes
// through the stations of a line for itself. A line with readings of two dipole lengths.
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QScrollBar>
#include <QTimer>
#include <QWheelEvent>
#include <cstring>
#include <utility>

#include "display/selection.h"
#include "platform/settings_store/settings_store.h"
#include "reduction/averages.h"
#include "reduction/data_sets/data_sets.h"
#include "rhoplus/windows/Form_rhoplus_inversion.h"
#include "screenshots/window_pictures.h"
#include "tests/app/main_view_fixture.h"

namespace {

namespace averaged = Module_averaged_data;

constexpr float shown_dipole = 50.0F;
constexpr float other_dipole = 75.0F;

template <class Value>
std::string bytes(const std::vector<Value>& values) {
  std::string text(values.size() * sizeof(Value), '\0');
  if (!values.empty()) {
    std::memcpy(text.data(), values.data(), text.size());
  }
  return text;
}

std::string text_of(const Module_database::ReadingKey& key) {
  return key.line + ' ' + std::to_string(key.station) + ' ' + std::to_string(key.reference_type) + ' ' +
         std::to_string(key.scan_rate) + ' ' + key.data_type + ' ' + std::to_string(key.dipole) + '\n';
}

std::string text_of(const averaged::StoredReading& reading) {
  return std::to_string(reading.ID) + ' ' + std::to_string(reading.UseReading) +
         std::to_string(reading.UseResistivity) + std::to_string(reading.UsePhase) + ' ' +
         std::to_string(reading.ResOffset) + bytes(reading.curve.frequencies) + bytes(reading.curve.data) +
         bytes(reading.curve.mask) + '\n';
}

/// The three data sets, value for value.
std::string whole_data_sets() {
  const averaged::DataSets& data = averaged::data_sets();
  std::string text = text_of(data.profile.key) + bytes(data.profile.frequencies);
  for (const averaged::ProfileColumn& column : data.profile.columns) {
    text += std::to_string(column.ID) + ' ' + std::to_string(column.ResOffset) + bytes(column.resistivity) +
            bytes(column.phase) + bytes(column.mask);
  }
  text += text_of(data.station.key) + bytes(data.station.scan_rates);
  for (const averaged::StationSlot& slot : data.station.slots) {
    text += std::to_string(static_cast<int>(slot.kind)) + ' ' + std::to_string(slot.station_index) +
            bytes(slot.list_position) + text_of(slot.reading);
  }
  text += text_of(data.repeats.key);
  for (const averaged::RepeatSlot& slot : data.repeats.slots) {
    text += bytes(slot.list_position) + text_of(slot.reading);
  }
  return text;
}

std::int32_t merged_ID(float dipole, double station) {
  const dao::Recordset rows = Module_database::open_survey().database.open_recordset(
      "SELECT ID FROM ReadingsDataTable WHERE ReductionType = 2 AND DipoleLength = " +
      std::to_string(dipole) + " AND Station = " + std::to_string(station));
  return rows.get_long("ID");
}

void store_other_dipole() {
  for (const double station : {100.0, 200.0, 300.0}) {
    made::ReadingKey key = made::key(64.0F, station);
    key.dipole = other_dipole;
    made::store(key, 1, made::repeat_of(station, 9, false));
  }
  QCOMPARE(averaged::recalculate_merged(), 0);
}

}  // namespace

class ShownReadingsTest : public QObject, private MainViewFixture {
  Q_OBJECT

 private:
  Form_rhoplus_inversion* results() const { return window_->findChild<Form_rhoplus_inversion*>(); }
  void choose_other_dipole() const { control<QComboBox>("Combo_dipole")->setCurrentText("75"); }
  static float stored_factor(std::int32_t ID) { return made::row(ID).get_single("ResOffset"); }
  static bool uses_resistivity(std::int32_t ID) { return made::row(ID).get_bit("UseResistivity"); }
  void type_static(const char* text) const {
    auto* const box = control<QLineEdit>("Text_static");
    box->setFocus();
    box->selectAll();
    QTest::keyClicks(box, text);
    QTest::keyClick(box, Qt::Key_Return);
  }
  QList<QImage> graph_pictures() const {
    QList<QImage> pictures;
    for (const char* const pair : {"vxgraph_Profile", "vxgraph_station", "vxgraph_raw_data"}) {
      for (const int index : {0, 1}) {
        pictures.append(control<VexGraphControl>(QString("%1_%2").arg(pair).arg(index))->grab().toImage());
      }
    }
    return pictures;
  }
  void zoom(const char* name) const {
    auto* const graph = control<VexGraphControl>(name);
    const QPointF at = graph->plot_area().center();
    QWheelEvent event(at, graph->mapToGlobal(at), QPoint(), QPoint(0, 120), Qt::NoButton, Qt::NoModifier,
                      Qt::NoScrollPhase, false);
    QApplication::sendEvent(graph, &event);
  }

  void write_document() const {
    (*interface_)->path_answers.push_back(folder_->path("line.pdf"));
    bool with_neighbours = false;  // the pages show each station with its averages
    const auto events = std::exchange((*interface_)->events, [&with_neighbours] {
      with_neighbours = with_neighbours || averaged::data_sets().station.neighbour_count > 0;
    });
    menu("menu_line_document");
    (*interface_)->events = events;
    QVERIFY(!with_neighbours);
    QVERIFY(std::filesystem::exists(folder_->path("line.pdf")));
  }
  void run_all() const {
    press("Command_invert");
    QTest::mouseClick(results()->findChild<QPushButton*>("Command_run_all"), Qt::LeftButton);
    QVERIFY(std::filesystem::exists(folder_->path("NRRef/200E/tmd_300.out")));
    results()->close();
  }
  void stop_run_all() const {
    press("Command_invert");
    auto* const run = results()->findChild<QPushButton*>("Command_run_all");
    QTimer::singleShot(0, run, [run] { QTest::mouseClick(run, Qt::LeftButton); });
    QTest::mouseClick(run, Qt::LeftButton);
    results()->close();
  }
  void create_occam_inversion() const {
    press("Command_invert");
    QTimer::singleShot(0, window_.get(), [] {
      QWidget* const dialog = QApplication::activeModalWidget();
      QTest::mouseClick(dialog->findChild<QPushButton*>("Command_create_inversion"), Qt::LeftButton);
      dialog->close();
    });
    QTest::mouseClick(results()->findChild<QPushButton*>("Command_occam"), Qt::LeftButton);
    results()->close();
  }
  void take_screenshots() const {
    visit_windows(*window_, [](const QString& /*name*/, QWidget& /*shown*/) {});
  }

  std::unique_ptr<SettingsStore> earlier_store_;

 private Q_SLOTS:
  void init() {
    earlier_store_ = install_settings_store(std::make_unique<MemorySettingsStore>());
    open_made_survey(store_other_dipole);
    (*interface_)->events = [] { QCoreApplication::processEvents(); };
    QCOMPARE(session().current_dipole, shown_dipole);
  }
  void cleanup() {
    close_survey();
    install_settings_store(std::move(earlier_store_));
  }

  void until_the_next_station_the_dipole_that_is_shown_is_edited() {
    const std::int32_t shown = merged_ID(shown_dipole, 100.0);
    const std::int32_t other = merged_ID(other_dipole, 100.0);
    QVERIFY(shown != other);
    choose_other_dipole();
    click_point("vxgraph_Profile_0", 1, 0);
    click_point("vxgraph_Profile_0", 1, 0);
    QCOMPARE(stored_mask(shown, 1), 0);
    control<QCheckBox>("Check_use_merged_1")->click();
    type_static("1.5");
    QVERIFY(!uses_resistivity(shown));
    QCOMPARE(stored_factor(shown), 1.5F);
    QCOMPARE(stored_mask(other, 1), 1);
    QVERIFY(uses_resistivity(other));
    QCOMPARE(stored_factor(other), 1.0F);

    // The repeats of another scan rate are those of the curves beside them, too.
    control<QComboBox>("Combo_scan_rate")->setCurrentText("256");
    QCOMPARE(averaged::data_sets().repeats.key.dipole, shown_dipole);
    QCOMPARE(averaged::data_sets().repeats.repeat_count, made::line_repeats);
  }

  void the_next_station_shows_the_new_dipole_everywhere() {
    control<QCheckBox>("Check_use_merged_1")->click();
    type_static("1.5");
    choose_other_dipole();
    control<QScrollBar>("HScroll_repeat")->setValue(2);
    QCOMPARE(averaged::data_sets().profile.key.dipole, other_dipole);
    QCOMPARE(averaged::data_sets().station.key.dipole, other_dipole);
    QCOMPARE(averaged::data_sets().repeats.key.dipole, other_dipole);
    const std::int32_t other = merged_ID(other_dipole, 200.0);
    QCOMPARE(averaged::data_sets().profile.columns.at(1).ID, other);
    type_static("2.5");
    control<QCheckBox>("Check_use_merged_1")->click();
    QCOMPARE(stored_factor(other), 2.5F);
    QVERIFY(!uses_resistivity(other));
    QCOMPARE(stored_factor(merged_ID(shown_dipole, 200.0)), 1.0F);
    QVERIFY(uses_resistivity(merged_ID(shown_dipole, 200.0)));

    control<QScrollBar>("HScroll_repeat")->setValue(1);  // its own switches, not those of the other dipole
    QVERIFY(control<QCheckBox>("Check_use_merged_1")->isChecked());
    QCOMPARE(control<QLineEdit>("Text_static")->text(), QString("1.00"));
  }

  void the_rhoplus_window_edits_what_it_inverted() {
    const std::int32_t shown = merged_ID(shown_dipole, 100.0);
    const std::int32_t other = merged_ID(other_dipole, 100.0);
    choose_other_dipole();
    press("Command_invert");
    auto* const grid = results()->findChild<QTableWidget*>("Grid_inversion_data");
    for (const int column : {1, 4}) {  // resistivity and phase
      QTest::mouseClick(grid->viewport(), Qt::LeftButton, {},
                        grid->visualItemRect(grid->item(1, column)).center());
    }
    QCOMPARE(stored_mask(other, 1), 0);
    QCOMPARE(stored_mask(shown, 1), 1);
    QVERIFY2(grid->item(1, 3)->text().isEmpty(), "inverted again");
    menu("menu_undo");
    menu("menu_undo");
    QCOMPARE(stored_mask(other, 1), 1);
  }

  void work_that_loads_stations_leaves_everything_as_it_was_data() {
    QTest::addColumn<int>("operation");
    QTest::addColumn<bool>("neighbours");
    QTest::addColumn<bool>("dipole_chosen");
    const char* const operations[] = {"line PDF", "Run All", "Run All, stopped", "Occam creation",
                                      "screenshots"};
    for (int operation = 0; operation < 5; ++operation) {
      for (const bool neighbours : {false, true}) {
        QTest::addRow("%s%s", operations[operation], neighbours ? ", neighbours" : "")
            << operation << neighbours << false;
      }
      QTest::addRow("%s, another dipole chosen", operations[operation]) << operation << false << true;
    }
  }
  void work_that_loads_stations_leaves_everything_as_it_was() {
    QFETCH(int, operation);
    QFETCH(bool, neighbours);
    QFETCH(bool, dipole_chosen);
    control<QScrollBar>("HScroll_repeat")->setValue(2);
    control<QComboBox>("Combo_scan_rate")->setCurrentText("256");
    control<QCheckBox>("Check_multi_station")->setChecked(neighbours);
    click_point("vxgraph_station_0", 0, 2);
    for (const char* const graph : {"vxgraph_Profile_0", "vxgraph_station_1", "vxgraph_raw_data_0"}) {
      zoom(graph);
    }
    if (dipole_chosen) {
      choose_other_dipole();
    }
    QCoreApplication::processEvents();
    const std::string before = whole_data_sets();
    const QList<QImage> drawn = graph_pictures();
    switch (operation) {
      case 0:
        write_document();
        break;
      case 1:
        run_all();
        break;
      case 2:
        stop_run_all();
        break;
      case 3:
        create_occam_inversion();
        break;
      default:
        take_screenshots();
    }
    QCoreApplication::processEvents();
    QVERIFY(whole_data_sets() == before);
    QVERIFY(graph_pictures() == drawn);
    QCOMPARE(session().current_station_index, 2);
    QCOMPARE(session().current_station, 200.0);
    QCOMPARE(session().current_scan_rate, 256.0);
    QCOMPARE(control<QScrollBar>("HScroll_repeat")->value(), 2);
    QCOMPARE(control<QLineEdit>("Text_sample_station")->text(), QString("200"));
    QCOMPARE(control<QLineEdit>("Text_frequency")->text(), QString("4.0000"));
    if (neighbours) {  // a neighbour isn't to be masked, least of all an average in its place
      const std::string readings = made::whole_readings_table();
      click_point("vxgraph_station_0", 1, 2);
      click_point("vxgraph_station_0", 1, 2);
      QVERIFY(made::whole_readings_table() == readings);
    }
  }
};

QTEST_MAIN(ShownReadingsTest)
#include "shown_readings_test.moc"
