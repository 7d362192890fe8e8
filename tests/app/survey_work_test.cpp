// A user's work on a survey, from field files to a copy of the edited survey, by the controls of the
// windows.
#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QImage>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScrollBar>
#include <QSet>
#include <QTableWidget>
#include <QTest>
#include <QTimer>
#include <algorithm>
#include <cmath>
#include <filesystem>
#include <memory>
#include <span>

#include "app/Form_main.h"
#include "core/session_state.h"
#include "core/undo_stack.h"
#include "database/survey_database.h"
#include "display/plot_colours.h"
#include "import/import_files.h"
#include "import/import_run.h"
#include "platform/graph/VexGraphControl.h"
#include "platform/settings_store/settings_store.h"
#include "reduction/data_sets/data_sets.h"
#include "screenshots/window_pictures.h"
#include "tests/formats/edi/made_edi.h"
#include "tests/occam/results/made_results.h"
#include "tests/reduction/made_line.h"
#include "tests/support/window_fixture.h"

namespace {

namespace averaged = Module_averaged_data;
using Messages = std::vector<std::string>;

constexpr int repeats = 3;
constexpr const char* slow_frequencies[] = {"16", "8", "4", "2", "1"};        // at 256 Hz
constexpr const char* fast_frequencies[] = {"256", "128", "64", "32", "16"};  // at 4096 Hz
constexpr int bad_repeat = 3;  // its resistivity is far too high
constexpr int bad_point = 2;   // at 4 Hz and at 64 Hz, the third one from both ends

std::string block(const char* tag, const std::vector<double>& values) {
  std::string text = std::string(">") + tag + " //" + std::to_string(values.size()) + "\n";
  for (const double value : values) {
    text += std::to_string(value) + " ";
  }
  return text + "\n";
}

/// One repeat; each station, repeat and frequency has values of its own.
std::string field_file(int station, int repeat, std::span<const char* const> frequencies) {
  MadeSection section{"\"" + std::to_string(station) + "\"", static_cast<int>(frequencies.size()), "", ""};
  std::vector<double> resistivities;
  std::vector<double> phases;
  for (std::size_t i = 0; i < frequencies.size(); ++i) {
    section.frequencies += std::string(frequencies[i]) + " ";
    const bool bad = repeat == bad_repeat && i == bad_point;
    resistivities.push_back((100.0 + station / 10.0 + repeat + static_cast<double>(i)) * (bad ? 8.0 : 1.0));
    phases.push_back(40.0 + repeat + static_cast<double>(i));
  }
  for (const char* const element : {"XY", "YX"}) {
    section.blocks += block((std::string("RHO") + element).c_str(), resistivities);
    section.blocks += block((std::string("PHS") + element).c_str(), phases);
  }
  return made_edi({section});
}

float resistivity(const averaged::StoredReading& reading, float frequency) {
  for (std::size_t i = 0; i < reading.curve.count(); ++i) {
    if (std::abs(reading.curve.frequencies[i] - frequency) < 1e-3F) {
      return reading.curve.value(Module_database::field_resistivity, i);
    }
  }
  return NAN;
}

averaged::StoredReading stored(std::int32_t ID) { return Module_database::read_reading(made::row(ID)); }

}  // namespace

class SurveyWorkTest : public QObject, private WindowFixture {
  Q_OBJECT

 private:
  template <class Widget = QWidget>
  Widget* control(const char* name) const {
    return window_->findChild<Widget*>(name);
  }
  QAction* item(const char* name) const { return window_->findChild<QAction*>(name); }
  QString text(const char* name) const { return control<QLineEdit>(name)->text(); }
  static void click(const QWidget& window, const char* name) {
    const int on_the_mark = 8;  // of a check box, which takes no click beside its text
    auto* const target = window.findChild<QWidget*>(name);
    QTest::mouseClick(target, Qt::LeftButton, {}, {on_the_mark, target->height() / 2});
  }
  void step_by_bar() const {
    const auto* const bar = control<QScrollBar>("HScroll_repeat");
    const int inside_the_arrow = 5;
    QTest::mouseClick(control("HScroll_repeat"), Qt::LeftButton, {},
                      {bar->width() - inside_the_arrow, bar->height() / 2});
  }

  void step_back_by_bar() const {
    const int inside_the_arrow = 5;
    QTest::mouseClick(control("HScroll_repeat"), Qt::LeftButton, {},
                      {inside_the_arrow, control("HScroll_repeat")->height() / 2});
  }

  void write_line(const char* folder, const char* line, const std::vector<int>& stations,
                  std::span<const char* const> slow = slow_frequencies) const {
    for (const int station : stations) {
      for (int repeat = 1; repeat <= repeats; ++repeat) {
        const auto name = [&](const char* rate) {
          return std::string(folder) + "/L" + line + "_S" + std::to_string(station) + "_E" +
                 std::to_string(repeat) + "_R" + rate + ".edi";
        };
        (void)folder_->write(name("0256"), field_file(station, repeat, slow));
        (void)folder_->write(name("4096"), field_file(station, repeat, fast_frequencies));
      }
    }
  }

  static void choose(const QWidget& dialog, const char* name, int index) {
    auto* const list = dialog.findChild<QComboBox*>(name);
    list->setFocus();
    QTest::keyClick(list, Qt::Key_Home);
    for (int i = 0; i < index; ++i) {
      QTest::keyClick(list, Qt::Key_Down);
    }
  }
  static void fill_decode_grid(const QWidget& dialog) {
    auto* const grid = dialog.findChild<QTableWidget*>("Grid_import_decode");
    const auto click_cell = [grid](int row, int column) {
      QTest::mouseClick(grid->viewport(), Qt::LeftButton, {},
                        grid->visualRect(grid->model()->index(row, column)).center());
    };
    const int columns[3][2] = {{2, 4}, {13, 1}, {16, 4}};  // as in L200E_S100_E1_R0256.edi
    for (const int row : {0, 2}) {                         // sections number themselves
      if (grid->item(row, 0)->checkState() == Qt::Unchecked) {
        click_cell(row, 0);
      }
      click_cell(row, 1);
      for (const int column : columns[row]) {
        // The window is not the active one off screen, so that the editor doesn't get keys by itself.
        QWidget* const editor = dialog.findChildren<QLineEdit*>("Text_edit").back();
        QTest::keyClicks(editor, QString::number(column));
        QTest::keyClick(editor, Qt::Key_Tab);
      }
      QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
  }

  /// Imports all files of a folder through the dialog. @return the sample fields of the first file, then the
  /// messages
  QString import_folder(const char* folder, int reduction = Module_database::reduction_raw) {
    Module_data_file::keep_import_folder(folder_->path(folder));
    QStringList sample;
    QTimer::singleShot(0, window_.get(), [&sample, reduction] {
      QWidget& dialog = *QApplication::activeModalWidget();
      click(dialog, "Command_find_and_add_files");
      click(dialog, "Command_process_files");
      choose(dialog, "Combo_data_type", 0);
      choose(dialog, "Combo_data_reduced", reduction);
      fill_decode_grid(dialog);
      click(dialog, "Check_use_SECTID_as_station");
      for (const char* const name :
           {"Text_sample_line", "Text_sample_event", "Text_sample_rate", "Text_sample_station"}) {
        sample.append(dialog.findChild<QLineEdit*>(name)->text());
      }
      QTimer replaced;  // a report says which files replaced earlier readings
      connect(&replaced, &QTimer::timeout, &dialog, [] {
        QWidget* const report = QApplication::activeModalWidget();
        if (report != nullptr && report->windowTitle() == "Import Report") {
          report->close();
        }
      });
      replaced.start(1);
      click(dialog, "Command_import_data_1");
      dialog.close();  // stays open only if something was wrong
    });
    item("menu_import_MT")->trigger();
    window_->activateWindow();
    (void)QTest::qWaitForWindowActive(window_.get());  // keys of menus need it
    for (const std::string& message : interface_->take_messages()) {
      sample.append(QString::fromStdString(message).section(". ", 0, 0));  // without what was counted
    }
    return sample.join(", ");
  }

  VexGraphControl& raw_graph() const { return *control<VexGraphControl>("vxgraph_raw_data_0"); }
  /// The colour in the middle of a point, with the pointer elsewhere.
  QColor point_colour(int series, int point) const {
    QTest::mouseMove(control("Label_raw"));
    QCoreApplication::processEvents();
    return raw_graph().grab().toImage().pixelColor(raw_graph().point_position(series, point)->toPoint());
  }
  void click_point(int series, int point) const {
    QTest::mouseClick(&raw_graph(), Qt::LeftButton, {}, raw_graph().point_position(series, point)->toPoint());
  }

  void new_survey() {
    (*interface_)->path_answers.push_back(folder_->path("survey.mdb"));
    click(*window_, "Command_new_survey");
    QVERIFY(session().database_open);
    QVERIFY(control("Command_first_import")->isVisible());
  }

  static QColor bad_repeat_colour() {
    const graph::Colour colour = Module_display_data::repeat_colour(bad_repeat);
    return {colour.red, colour.green, colour.blue};
  }
  void mask_a_point_that_is_far_off() const {
    const std::int32_t repeat_ID = averaged::data_sets().repeats.slots.at(bad_repeat).reading.ID;
    const std::int32_t average_ID = averaged::data_sets().repeats.slots.at(0).reading.ID;
    const std::int32_t merged_ID = averaged::data_sets().station.slots.at(0).reading.ID;
    const float average_before = resistivity(stored(average_ID), 4.0F);
    const float merged_before = resistivity(stored(merged_ID), 4.0F);
    QCOMPARE(point_colour(bad_repeat, bad_point), bad_repeat_colour());
    click_point(bad_repeat, bad_point);
    QCOMPARE(stored(repeat_ID).curve.counts_at(Module_database::field_resistivity, bad_point), 0);
    QCOMPARE(stored(repeat_ID).curve.counts_at(Module_database::field_phase, bad_point), 1);
    QVERIFY(resistivity(stored(average_ID), 4.0F) < average_before / 2.0F);
    QVERIFY(resistivity(stored(merged_ID), 4.0F) < merged_before / 2.0F);
    const QColor masked = point_colour(bad_repeat, bad_point);
    QVERIFY2(masked.hsvSaturation() < 30 && masked.value() < 200, qPrintable(masked.name()));  // a grey cross
    QCOMPARE(text("Text_frequency"), QString("4.0000"));
    QCOMPARE(text("Text_file"), QString("L200E_S200_E3_R0256.edi"));
  }
  /// To the last byte.
  void undo_and_redo_all(const std::string& first, const std::string& edited) const {
    for (int left = 100; left > 0 && item("menu_undo")->isEnabled(); --left) {
      QTest::keyClick(window_.get(), Qt::Key_Z, Qt::ControlModifier);
    }
    QVERIFY(!item("menu_undo")->isEnabled());
    QVERIFY(made::whole_readings_table() == first);
    QCOMPARE(point_colour(bad_repeat, bad_point), bad_repeat_colour());
    while (item("menu_redo")->isEnabled()) {
      QTest::keyClick(window_.get(), Qt::Key_Y, Qt::ControlModifier);
    }
    QVERIFY(made::whole_readings_table() == edited);
  }

  const QString imported = "200E, 0, 256, 100, Data import complete";
  std::unique_ptr<Form_main> window_;

 private Q_SLOTS:
  void init() {
    make_folder();
    install_settings_store(std::make_unique<MemorySettingsStore>());
    std::filesystem::current_path(folder_->folder());
    window_ = std::make_unique<Form_main>();
    window_->resize(1280, 800);
    window_->show();
    QVERIFY(QTest::qWaitForWindowExposed(window_.get()));
    write_line("field", "200E", {100, 200, 300});
  }
  void cleanup() {
    window_.reset();
    remove_folder();
  }

  void from_field_files_to_an_edited_copy() {
    new_survey();
    QCOMPARE(import_folder("field"), imported);
    // No start station was given, and none of the files is at 0.
    QCOMPARE(Module_database::open_survey()
                 .database.open_recordset("SELECT * FROM FileTable WHERE Station = 0")
                 .record_count(),
             0);
    const std::string first = made::whole_readings_table();
    QVERIFY(!control("Command_first_import")->isVisible());
    QCOMPARE(control<QComboBox>("Combo_line")->currentText(), QString("200E"));
    QCOMPARE(control<QScrollBar>("HScroll_repeat")->maximum(), 3);
    QCOMPARE(text("Text_sample_station"), QString("100"));
    step_by_bar();
    step_by_bar();
    QCOMPARE(text("Text_sample_station"), QString("300"));
    QTest::keyClick(window_->focusWidget(), Qt::Key_Left);  // the bar has the focus
    QCOMPARE(text("Text_sample_station"), QString("200"));
    QCOMPARE(control<QLabel>("Label_raw")->text(), QString("Average/raw for 200"));
    QCOMPARE(control<QTableWidget>("Grid_repeats")->rowCount(), repeats);

    mask_a_point_that_is_far_off();

    // Outliers are clipped, and a repeat is switched off in the grid.
    const auto masked_points = [] {
      std::ptrdiff_t count = 0;
      for (const averaged::RepeatSlot& slot : averaged::data_sets().repeats.slots) {
        const auto& mask = stored(slot.reading.ID).curve.mask;
        count += std::count(mask.begin(), mask.end(), 0);
      }
      return count;
    };
    const std::ptrdiff_t masked_before = masked_points();
    click(*window_, "Command_outliers_0");
    QVERIFY(masked_points() > masked_before);
    auto* const grid = control<QTableWidget>("Grid_repeats");
    QTest::mouseClick(grid->viewport(), Qt::LeftButton, {}, grid->visualItemRect(grid->item(0, 1)).center());
    QVERIFY(!stored(averaged::data_sets().repeats.slots.at(1).reading.ID).UseReading);

    const std::string edited = made::whole_readings_table();
    QVERIFY(edited != first);
    undo_and_redo_all(first, edited);

    // The copy takes the edits along, and what is edited in it stays away from the survey left behind.
    (*interface_)->path_answers.push_back(folder_->path("copy.mdb"));
    item("menu_saveas")->trigger();
    QCOMPARE(window_->windowTitle(), QString::fromStdString("BLX DATABASE " + folder_->path("copy.mdb")));
    QCOMPARE(text("Text_sample_station"), QString("200"));  // who saves stays where he is
    QVERIFY(!item("menu_undo")->isEnabled());
    QVERIFY(made::whole_readings_table() == edited);
    click_point(bad_repeat, bad_point);
    const std::string edited_copy = made::whole_readings_table();
    QVERIFY(edited_copy != edited);
    const auto open_by_key = [this](const char* name) {
      (*interface_)->path_answers.push_back(folder_->path(name));
      QTest::keyClick(window_.get(), Qt::Key_O, Qt::ControlModifier);
    };
    open_by_key("survey.mdb");
    QVERIFY(made::whole_readings_table() == edited);
    open_by_key("copy.mdb");
    QVERIFY(made::whole_readings_table() == edited_copy);
    QCOMPARE(interface_->take_messages(), Messages{});
  }

  void a_later_import_joins_lists_frequencies_and_graphs() {
    new_survey();
    QCOMPARE(import_folder("field"), imported);
    QCOMPARE(session().frequencies.count(), 9U);
    step_by_bar();
    click_point(bad_repeat, bad_point);
    QVERIFY(item("menu_undo")->isEnabled());
    const char* const lower[] = {"8", "4", "2", "1", "0.5"};
    write_line("later", "200E", {100, 150}, lower);
    write_line("later", "400E", {100}, lower);
    QCOMPARE(import_folder("later"), imported);
    QVERIFY(!item("menu_undo")->isEnabled());
    QCOMPARE(control<QComboBox>("Combo_line")->count(), 2);
    QCOMPARE(session().frequencies.count(), 10U);
    QCOMPARE(session().frequencies.list.front(), 0.5F);
    QCOMPARE(text("Text_sample_station"), QString("200"));  // where the user was before
    QCOMPARE(control<QScrollBar>("HScroll_repeat")->maximum(), 4);
    QCOMPARE(control<QScrollBar>("HScroll_repeat")->value(), 3);
    QTest::keyClick(window_.get(), Qt::Key_Left);
    QCOMPARE(text("Text_sample_station"), QString("150"));
    QCOMPARE(averaged::data_sets().repeats.slots.size(), std::size_t{repeats + 1});
    QVERIFY(raw_graph().point_position(1, 0).has_value());  // 0.5 Hz
    QTest::keyClick(window_.get(), Qt::Key_Left);
    QCOMPARE(control<QTableWidget>("Grid_repeats")->rowCount(),
             repeats);  // of the same files, imported again
    QCOMPARE(averaged::data_sets().repeats.slots.at(1).reading.curve.frequencies.front(), 0.5F);
    control<QComboBox>("Combo_line")->setCurrentText("400E");
    QCOMPARE(text("Text_sample_station"), QString("100"));
    QCOMPARE(control<QScrollBar>("HScroll_repeat")->maximum(), 1);
  }

  void merged_data_are_recalculated_by_the_menu() {
    new_survey();
    QCOMPARE(import_folder("field"), imported);
    const std::string first = made::whole_readings_table();
    click_point(bad_repeat, bad_point);
    const std::string edited = made::whole_readings_table();
    const std::int32_t merged_ID = averaged::data_sets().station.slots.at(0).reading.ID;
    const auto spoil = [merged_ID] {
      dao::Recordset row = made::row(merged_ID);
      averaged::StoredReading reading = Module_database::read_reading(row);
      reading.curve.value(Module_database::field_resistivity, 0) = 7.0F;
      row.edit();
      Module_database::write_curve(row, reading.curve);
      row.update();
    };
    spoil();
    QVERIFY(made::whole_readings_table() != edited);
    const int draws = raw_graph().draw_count();
    (*interface_)->progress.clear();
    item("menu_Recalculate_merged")->trigger();
    QVERIFY(made::whole_readings_table() == edited);
    QVERIFY(!(*interface_)->progress.empty());
    QVERIFY(raw_graph().draw_count() > draws);
    QVERIFY(!(*interface_)->busy);

    spoil();
    const std::string spoilt = made::whole_readings_table();
    (*interface_)->stop = [] { return true; };
    item("menu_Recalculate_merged")->trigger();
    QVERIFY(made::whole_readings_table() == spoilt);  // stopped before the first station
    QCOMPARE(interface_->take_messages(),
             Messages{"The recalculation was stopped. 3 stations keep their earlier curves."});
  }

  void undo_goes_to_the_component_and_station_that_it_changes() {
    new_survey();
    QCOMPARE(import_folder("field"), imported);
    const std::string first = made::whole_readings_table();
    step_by_bar();
    const QString component = control<QComboBox>("Combo_data_type")->currentText();
    click(*window_, "Command_outliers_0");
    QVERIFY(made::whole_readings_table() != first);
    control<QComboBox>("Combo_data_type")->setCurrentText("ExHy");
    QCOMPARE(session().current_data_type, std::string("ExHy"));
    QCOMPARE(text("Text_sample_station"), QString("200"));
    step_back_by_bar();
    QCOMPARE(text("Text_sample_station"), QString("100"));
    item("menu_undo")->trigger();
    QVERIFY(made::whole_readings_table() == first);
    QVERIFY(!item("menu_undo")->isEnabled());
    QCOMPARE(control<QComboBox>("Combo_data_type")->currentText(), component);
    QCOMPARE(text("Text_sample_station"), QString("200"));
    QCOMPARE(averaged::data_sets().profile.key.data_type, component.toStdString());
    QCOMPARE(averaged::data_sets().repeats.key.data_type, component.toStdString());
  }

  void readings_imported_as_merged_are_curves_like_any_other() {
    for (const int station : {100, 200}) {
      (void)folder_->write("merged/M200E_S" + std::to_string(station) + "_E1_R0256.edi",
                           field_file(station, 1, slow_frequencies));
    }
    new_survey();
    QCOMPARE(import_folder("merged", Module_database::reduction_merged),
             QString(imported).replace(", 256,", ", 0,"));
    const auto& slots = averaged::data_sets().station.slots;
    QCOMPARE(averaged::data_sets().profile.columns.size(), std::size_t{2});
    QCOMPARE(slots.size(), std::size_t{1});
    const std::int32_t ID = slots.front().reading.ID;
    QVERIFY(slots.front().reading.FileID > 0);

    const std::string first = made::whole_readings_table();
    auto* const graph = control<VexGraphControl>("vxgraph_station_0");
    for (int click = 0; click < 2; ++click) {  // the first one selects the frequency
      QVERIFY(graph->point_position(0, 2).has_value());
      QTest::mouseClick(graph, Qt::LeftButton, {}, graph->point_position(0, 2)->toPoint());
    }
    QCOMPARE(stored(ID).curve.mask, (std::vector<std::int32_t>{1, 1, 1, 1, 0, 1, 1, 1, 1, 1}));
    control<QLineEdit>("Text_static")->setText("2");
    QTest::keyClick(control("Text_static"), Qt::Key_Return);
    QCOMPARE(stored(ID).ResOffset, 2.0F);
    const std::string edited = made::whole_readings_table();
    for (int step = 0; step < 2; ++step) {
      item("menu_undo")->trigger();
    }
    QVERIFY(made::whole_readings_table() == first);
    for (int step = 0; step < 2; ++step) {
      item("menu_redo")->trigger();
    }
    QVERIFY(made::whole_readings_table() == edited);

    (*interface_)->path_answers.push_back(folder_->path("out.avg"));
    for (const char* const kind : {"menu_output_data_1", "menu_output_data_0"}) {
      item(kind)->trigger();
      for (const char* const list :
           {"Combo_output_linelist", "Combo_output_datatype", "Combo_output_dipole"}) {
        control<QComboBox>(list)->setCurrentIndex(0);
      }
      control<QLineEdit>("Text_rhoplus_output_directory")->setText("rho");
      click(*window_, "Command_output_data");
    }
    const QString avg = QString::fromStdString(file_contents(folder_->path("out.avg")));
    QCOMPARE(avg.count(" 2       100 "), 4);
    QVERIFY(avg.contains(" 2       100      1.000    1.15000E+2       45.0\r\n"));
    QVERIFY(!avg.contains(" 2       100      4.000"));
    const QString control_file = QString::fromStdString(file_contents(folder_->path("rho/tmd_100.dat")));
    QVERIFY2(control_file.contains("    1.0000      230.00"), qPrintable(control_file));
    click(*window_, "Command_done_output");

    // Repeats of the same stations have a computed curve, beside which the imported one stays.
    (void)interface_->take_messages();
    QCOMPARE(import_folder("field"), imported);
    QVERIFY(slots.front().reading.FileID < 0);
    const auto beside = std::ranges::find(slots, ID, [](const auto& slot) { return slot.reading.ID; });
    QVERIFY(beside != slots.end());
    QVERIFY(beside->kind == averaged::StationSlotKind::other_merged);
    QCOMPARE(stored(ID).ResOffset, 2.0F);
  }

  void every_window_gets_its_picture() {
    new_survey();
    QCOMPARE(import_folder("field"), imported);
    const std::string readings = made::whole_readings_table();
    static_cast<void>(made::write_results(*folder_, "run/"));
    static_cast<void>(folder_->write("run/points.xyz", "-100 0\n105 5\n120 12\n150 3\n260 -4\n"));
    const QDir pictures(QString::fromStdString(folder_->path("pictures")));
    QCOMPARE(save_window_pictures(*window_, pictures.path()), 0);
    QSet<QByteArray> different;
    const QStringList files = pictures.entryList({"*.png"});
    for (const QString& file : files) {
      QVERIFY2(!QImage(pictures.filePath(file)).isNull(), qPrintable(file));
      different.insert(QByteArray::fromStdString(file_contents(pictures.filePath(file).toStdString())));
    }
    QVERIFY2(files.size() >= 24, qPrintable(files.join(' ')));
    QCOMPARE(different.size(), files.size());
    QVERIFY(made::whole_readings_table() == readings);
    QVERIFY(QApplication::activeModalWidget() == nullptr);
    const Messages shown = interface_->take_messages();
    QCOMPARE(shown.size(), 2U);
    QCOMPARE(shown[0], std::string("Data scan complete"));
    QVERIFY(shown[1].starts_with("The mesh limits how exact the response is"));  // that of the small run
  }
};

QTEST_MAIN(SurveyWorkTest)
#include "survey_work_test.moc"
