// The window that creates an inversion, worked as a user does.
#include "occam/windows/Form_occam.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QElapsedTimer>
#include <QLabel>
#include <QLineEdit>
#include <QPixmap>
#include <QProcess>
#include <QPushButton>
#include <QTest>

#include "core/session_state.h"
#include "database/reading_facts.h"
#include "database/sites.h"
#include "platform/files/file_lock.h"
#include "platform/settings_store/settings_store.h"
#include "platform/widgets/entry_mark.h"
#include "platform/widgets/folder_tree.h"
#include "tests/reduction/made_readings.h"
#include "tests/support/recording_interface.h"
#include "tests/support/temporary_folder.h"

using Messages = std::vector<std::string>;
namespace fs = std::filesystem;

class FormOccamTest : public QObject {
  Q_OBJECT

 private:
  template <class Widget = QLineEdit>
  Widget* control(const char* name) const {
    return window_->findChild<Widget*>(name);
  }
  void open_window(Module_occam::StationSteps steps = {}) {
    window_ = std::make_unique<Form_occam>(rhoplus_, std::move(steps));
    window_->show();
    QVERIFY(QTest::qWaitForWindowExposed(window_.get()));
    control<QCheckBox>("Check_use_rhoplus_error")->setChecked(false);
  }
  void type(const char* name, const QString& text) const {
    control(name)->setFocus();
    control(name)->selectAll();
    QTest::keyClicks(control(name), text.isEmpty() ? " " : text);
  }
  void click(const char* name) const { QTest::mouseClick(control<QPushButton>(name), Qt::LeftButton); }
  [[nodiscard]] fs::path run(const char* name) const { return folder_->folder() / "run" / name; }

  std::unique_ptr<TemporaryFolder> folder_;
  std::unique_ptr<RecordingInterface> interface_;
  Module_output::RhoplusSettings rhoplus_;
  std::unique_ptr<Form_occam> window_;
  fs::path started_in_ = fs::current_path();

 private Q_SLOTS:
  void init() {
    folder_ = std::make_unique<TemporaryFolder>();
    interface_ = std::make_unique<RecordingInterface>();
    rhoplus_ = {};
    install_settings_store(std::make_unique<MemorySettingsStore>());
    reset_session_state();
    Module_database::reset_module();
    SessionState& state = session();
    state.database_file = folder_->path("survey.mdb");
    QCOMPARE(Module_database::create_database(), 0);
    QCOMPARE(Module_database::open_database(), 0);
    for (int station = 1; station <= 4; ++station) {
      const double place = 100.0 * station;
      made::store(made::key(0.0F, place), 0, made::reading({{1, 100, 45}, {10, 100, 45}}), 2, -1);
      state.station_line.emplace_back("200E");
      state.station_value.push_back(place);
    }
    state.current_line = "200E";
    state.current_reference_type = 0;
    state.current_data_type = "ExHy";
    state.current_dipole = 50.0F;
  }
  void cleanup() {
    window_.reset();
    interface_.reset();  // before the next one is installed
    Module_database::reset_module();
    fs::current_path(started_in_);
  }

  void shows_the_line_the_defaults_and_what_they_give() {
    open_window();
    QCOMPARE(window_->windowTitle(), QString("Create Occam Inversion for line: 200E"));
    QCOMPARE(control("Text_data_file")->text(), QString("occamdat"));
    QCOMPARE(control("Text_Layers_decade")->text(), QString("8"));
    QCOMPARE(fs::path(control<FolderTree>("DirList")->folder().toStdString()), folder_->folder());
    QCOMPARE(control("Text_occam_directory")->text(), QString("occam_200E_ExHy"));
    auto* const summary = control<QLabel>("Label_summary");
    QVERIFY2(summary->text().startsWith("4 stations, mesh of 26 by 29 cells, "), qPrintable(summary->text()));
    type("Text_block_width", "50");
    QVERIFY2(summary->text().startsWith("4 stations, mesh of 32 by 29 cells, "), qPrintable(summary->text()));
    type("Text_block_width", "0.5");
    QVERIFY2(summary->text().contains("more than 511"), qPrintable(summary->text()));
    type("Text_first_station", "150");
    type("Text_block_width", "50");
    QVERIFY2(summary->text().startsWith("3 stations, mesh of 28 by 29 cells, "), qPrintable(summary->text()));
    type("Text_last_station", "399");
    QCOMPARE(summary->text(), QString("Stations that remain: 2; an inversion needs at least 3"));
    type("Text_last_station", "149");
    QCOMPARE(summary->text(), QString("The start station is greater than the end station"));
    type("Text_last_station", "x");
    QVERIFY(is_marked(*control("Text_last_station")));
    click("Command_create_inversion");
    QCOMPARE(interface_->take_messages(), Messages{"The end station is not valid"});
    type("Text_last_station", "");
    QVERIFY(!is_marked(*control("Text_last_station")));
    control<QCheckBox>("Check_rotate_to_strike")->setChecked(true);
    type("Text_rotate_to_strike", "1000");
    QVERIFY(is_marked(*control("Text_rotate_to_strike")));
    control<QCheckBox>("Check_rotate_to_strike")->setChecked(false);
    QVERIFY(!is_marked(*control("Text_rotate_to_strike")));
    const QString tip = control("Text_block_width")->toolTip();
    type("Text_block_width", "wide");
    QCOMPARE(summary->text(), QString("The block width is invalid"));
    click("Command_create_inversion");
    QCOMPARE(interface_->take_messages(), Messages{"The block width is invalid"});
    QVERIFY(control("Text_block_width")->hasFocus());
    QCOMPARE(control("Text_block_width")->selectedText(), QString("wide"));
    QTest::keyClicks(control("Text_block_width"), "50");
    QVERIFY(!is_marked(*control("Text_block_width")));
    QCOMPARE(control("Text_block_width")->toolTip(), tip);
  }

  void floors_say_what_they_are_floors_of() {
    open_window();
    const auto units = [&] { return control<QLabel>("Label_floor_units")->text(); };
    QCOMPARE(units(), QString("Floors: % of log10 resistivity, % of phase"));
    control<QCheckBox>("Check_use_standard_error")->setChecked(false);
    QCOMPARE(units(), QString("Floors: decades of resistivity, % of phase"));
    control<QCheckBox>("Check_use_rhoplus_error")->setChecked(true);
    QCOMPARE(units(), QString("Floors: % of resistivity, % of phase"));
    control<QComboBox>("Combo_errors")->setCurrentIndex(1);
    QCOMPARE(units(), QString("Floors: % of resistivity, degrees of phase"));
    type("Text_phase_error_floor", "x");  // the tip of a marked box follows when it can be used again
    control<QComboBox>("Combo_errors")->setCurrentIndex(0);
    QVERIFY(is_marked(*control("Text_phase_error_floor")));
    type("Text_phase_error_floor", "5");
    QVERIFY(control("Text_phase_error_floor")->toolTip().contains("2.25 degrees at 45"));
  }

  void positions_are_proposed_and_explained() {
    open_window();
    const auto* const positions = control<QComboBox>("Combo_positions");
    QVERIFY(!positions->isEnabled());
    QCOMPARE(positions->toolTip(),
             QString("The sites of line 200E have no places, so there are no distances along it"));
    QVERIFY(control<QLabel>("Label_positions_hint")->text().isEmpty());
    for (int station = 1; station <= 4; ++station) {
      Module_database::Site site;
      site.line = "200E";
      site.station = 100.0 * station;
      site.latitude = -25.0 + station / 60.0;
      site.longitude = 141.0;
      std::ignore = Module_database::keep_site(site);
    }
    open_window();
    auto* const offered = control<QComboBox>("Combo_positions");
    QCOMPARE(offered->currentText(), QString("Station numbers"));
    QCOMPARE(control<QLabel>("Label_positions_hint")->text(),
             QString("The stations of line 200E are 100 m apart by their numbers, its sites 1.8 km"));
    type("Text_block_width", "1000");
    auto* const summary = control<QLabel>("Label_summary");
    QVERIFY2(summary->text().startsWith("4 stations, mesh of 26 by 29 cells, "), qPrintable(summary->text()));
    offered->setCurrentIndex(1);
    QVERIFY(control<QLabel>("Label_positions_hint")->text().isEmpty());
    QVERIFY2(summary->text().startsWith("4 stations, mesh of 32 by 29 cells, "), qPrintable(summary->text()));
    type("Text_occam_directory", "run");
    click("Command_create_inversion");
    interface_->take_messages();
    QVERIFY(file_contents(run("occamdat").string()).find("station_200.0") != std::string::npos);
    QVERIFY(file_contents(run("occamdat").string()).find("\r\n      1845.") != std::string::npos);
    window_ = std::make_unique<Form_occam>(rhoplus_, Module_occam::StationSteps{}, nullptr,
                                           Module_occam::PositionSource::distances);
    QCOMPARE(control<QComboBox>("Combo_positions")->currentIndex(), 1);
  }

  void rotation_takes_the_mode_from_turned_tensors() {
    for (const double station : {100.0, 200.0, 300.0}) {
      for (const char* const type : {"ExHx", "EyHx", "EyHy"}) {
        made::ReadingKey key = made::key(0.0F, station);
        key.data_type = type;
        const float rho = key.data_type == "EyHx" ? 100.0F : 0.01F;
        made::store(key, 0, made::reading({{1, rho, 45}, {10, rho, 45}}), 2, -1);
      }
    }
    window_ = std::make_unique<Form_occam>(rhoplus_, Module_occam::StationSteps{}, nullptr,
                                           Module_occam::PositionSource::station_numbers, 25.04);
    window_->show();
    control<QCheckBox>("Check_use_rhoplus_error")->setChecked(false);
    auto* const rotate = control<QCheckBox>("Check_rotate_to_strike");
    auto* const modes = control<QComboBox>("Combo_modes");
    auto* const summary = control<QLabel>("Label_summary");
    QVERIFY(!rotate->isChecked() && !control("Text_rotate_to_strike")->isEnabled());
    QCOMPARE(control("Text_rotate_to_strike")->text(), QString("25.0"));
    QVERIFY2(summary->text().endsWith(". TM 16 data at 4 stations"), qPrintable(summary->text()));
    rotate->setChecked(true);
    QCOMPARE(modes->currentText(), QString("Current mode (TM)"));
    QVERIFY2(summary->text().endsWith(". TM 12 data at 3 stations"), qPrintable(summary->text()));
    type("Text_rotate_to_strike", "N25E");
    QCOMPARE(summary->text(), QString("The strike to rotate to must be from -180 to 360 degrees"));
    type("Text_rotate_to_strike", "30");
    type("Text_occam_directory", "run");
    click("Command_create_inversion");
    const Messages messages = interface_->take_messages();
    QCOMPARE(messages.size(), std::size_t{1});
    QVERIFY2(
        QString::fromStdString(messages[0])
            .endsWith(". The curves are rotated to a strike of 30 degrees from north, x counting as north at "
                      "3 stations without an azimuth of Hx. Left out for want of a tensor: Station 400: "
                      "there is no ExHx, EyHx, EyHy"),
        messages[0].c_str());
    rotate->setChecked(false);
    QCOMPARE(modes->currentText(), QString("Current data type: ExHy (TM)"));
  }

  void both_modes_bring_relative_errors_and_floors_of_te() {
    for (const double station : {100.0, 200.0, 500.0}) {
      made::ReadingKey key = made::key(0.0F, station);
      key.data_type = "EyHx";
      made::store(key, 0, made::reading({{1, 10, 60}, {10, 10, 60}}), 2, -1);
    }
    open_window();
    auto* const modes = control<QComboBox>("Combo_modes");
    auto* const errors = control<QComboBox>("Combo_errors");
    auto* const folder = control("Text_occam_directory");
    const auto shows_one_mode = [&] {
      return modes->currentText() == "Current data type: ExHy (TM)" && errors->currentText() == "As before" &&
             !control("Text_te_res_error_floor")->isEnabled() &&
             !control("Text_te_phase_error_floor")->isEnabled() &&
             control<QCheckBox>("Check_use_standard_error")->isEnabled() &&
             folder->text() == "occam_200E_ExHy" &&
             control<QLabel>("Label_summary")->text().endsWith(". TM 16 data at 4 stations");
    };
    QVERIFY(shows_one_mode());
    modes->setCurrentIndex(1);
    QCOMPARE(errors->currentText(), QString("Relative"));
    QVERIFY(control("Text_te_res_error_floor")->isEnabled());
    QVERIFY(!control<QCheckBox>("Check_use_standard_error")->isEnabled());
    QVERIFY(control("Text_phase_error_floor")->toolTip().endsWith("degrees"));
    QCOMPARE(folder->text(), QString("occam_200E_TE_TM"));
    const QString counts = control<QLabel>("Label_summary")->text();
    QVERIFY2(counts.endsWith(". TE 12 data at 3 stations, TM 16 data at 4 stations"), qPrintable(counts));
    type("Text_last_station", "100");
    type("Text_last_station", "300");
    QVERIFY(control<QLabel>("Label_summary")
                ->text()
                .endsWith(". TE 8 data at 2 stations, TM 12 data at 3 stations"));
    type("Text_last_station", "");
    modes->setCurrentIndex(0);
    QVERIFY(shows_one_mode());

    modes->setCurrentIndex(1);
    type("Text_te_res_error_floor", "-1");
    click("Command_create_inversion");
    QCOMPARE(interface_->take_messages(), Messages{"The TE res error floor is invalid"});
    type("Text_te_res_error_floor", "10");
    type("Text_occam_directory", "run");
    modes->setCurrentIndex(0);
    modes->setCurrentIndex(1);
    QCOMPARE(folder->text(), QString("run"));  // as typed
    click("Command_create_inversion");
    QVERIFY(interface_->take_messages().front().starts_with("Output complete. Number of data written: 28. "));
    window_.reset();
    open_window();
    QCOMPARE(control<QComboBox>("Combo_modes")->currentIndex(), 1);
    QCOMPARE(control<QComboBox>("Combo_errors")->currentIndex(), 1);
    QCOMPARE(control("Text_te_res_error_floor")->text(), QString("10"));
    QCOMPARE(control("Text_te_phase_error_floor")->text(), QString());
    window_.reset();
    QCOMPARE(Module_database::close_database(), 0);

    // The batch program makes the same run of the same entries.
    QProcess batch;
    batch.start(BRENLOX_BATCH_PROGRAM,
                {"occam", QString::fromStdString(folder_->path("survey.mdb")), "--line", "200E",
                 "--reference", "0", "--dipole", "50", "--modes", "both", "--te-res-floor", "10",
                 "--no-rhoplus", "--directory", QString::fromStdString(folder_->path("by_batch"))});
    QVERIFY(batch.waitForFinished());
    QVERIFY2(batch.exitCode() == 0, batch.readAllStandardError().constData());
    int compared = 0;
    for (const fs::directory_entry& entry : fs::directory_iterator(run(""))) {
      const std::string name = entry.path().filename().string();
      QCOMPARE(file_contents(folder_->path("by_batch/" + name)), file_contents(entry.path().string()));
      ++compared;
    }
    QCOMPARE(compared, 7);
  }

  void creates_a_run_in_a_new_folder_and_keeps_the_entries() {
    open_window();
    type("Text_occam_directory", "run");
    QVERIFY(control<QLabel>("Label_run_folder")->text().endsWith("run"));
    type("Text_num_layers", "12");
    click("Command_create_inversion");
    const Messages messages = interface_->take_messages();
    QCOMPARE(messages.size(), std::size_t{1});
    QCOMPARE(messages.front(), "Output complete. Number of data written: 16. The files are in " +
                                   run("").parent_path().string());
    QVERIFY(fs::exists(run("startup")));
    QVERIFY(control("Text_num_layers")->isEnabled());
    click("Command_done");
    QVERIFY(!window_->isVisible());
    open_window();
    QCOMPARE(control("Text_num_layers")->text(), QString("12"));
    QCOMPARE(control("Text_occam_directory")->text(), QString("occam_200E_ExHy"));
  }

  void another_run_of_the_line_gets_a_folder_of_its_own() {
    open_window();
    click("Command_create_inversion");
    interface_->take_messages();
    const std::string first = file_contents(folder_->path("occam_200E_ExHy/startup"));
    type("Text_iterations", "7");
    click("Command_create_inversion");  // in the same folder: the user says No
    QCOMPARE((*interface_)->questions,
             Messages{"Replace the inversion in " + folder_->path("occam_200E_ExHy") +
                      "? It is kept in earlier_1."});
    QCOMPARE(file_contents(folder_->path("occam_200E_ExHy/startup")), first);
    QVERIFY(interface_->take_messages().empty());
    {
      const FileLock running(folder_->path("occam_200E_ExHy/inversion.lock"));
      click("Command_create_inversion");
      QCOMPARE(interface_->take_messages(),
               Messages{"An inversion is running in " + folder_->path("occam_200E_ExHy") +
                        "; stop it first, or choose another folder"});
    }
    (*interface_)->yes_no_answers = {true};
    click("Command_create_inversion");
    QCOMPARE(interface_->take_messages().size(), std::size_t{1});
    QCOMPARE(file_contents(folder_->path("occam_200E_ExHy/earlier_1/startup")), first);

    // The survey of the next one is elsewhere; the folder of the last run plays no part.
    fs::create_directory(folder_->folder() / "other");
    session().database_file = folder_->path("other/survey.mdb");
    open_window();
    QCOMPARE(fs::path(control<FolderTree>("DirList")->folder().toStdString()), folder_->folder() / "other");
    session().database_file = folder_->path("survey.mdb");
    open_window();
    QCOMPARE(control("Text_occam_directory")->text(), QString("occam_200E_ExHy_2"));
  }

  void the_run_that_was_created_can_be_inverted() {
    open_window();
    auto* const run_button = control<QPushButton>("Command_run_inversion");
    QVERIFY(!run_button->isEnabled());
    click("Command_create_inversion");
    interface_->take_messages();
    QVERIFY(run_button->isEnabled());
    QVERIFY(window_->directory_to_run().empty());
    click("Command_run_inversion");
    QVERIFY(!window_->isVisible());
    QCOMPARE(window_->directory_to_run(), folder_->path("occam_200E_ExHy"));
  }

  void escape_stops_a_run_and_leaves_everything_as_it_was() {
    Module_occam::StationSteps steps;
    steps.show_station = [this](int place) {
      QVERIFY(!control("Text_num_layers")->isEnabled());
      QVERIFY(session().updating_controls);
      if (place == 2) {
        QTest::keyClick(window_.get(), Qt::Key_Escape);
      }
      QVERIFY(place <= 2);
    };
    open_window(steps);
    type("Text_occam_directory", "run");
    click("Command_create_inversion");
    QVERIFY(window_->isVisible());
    QVERIFY(interface_->take_messages().empty());
    QVERIFY(!fs::exists(run("")));
    QVERIFY(control("Text_num_layers")->isEnabled());
    QVERIFY(!session().updating_controls);
    QCOMPARE(control<QLabel>("Label_progress")->text(), QString("Stopped; nothing was written"));
    QTest::keyClick(window_.get(), Qt::Key_Escape);
    QVERIFY(!window_->isVisible());
  }

  void errors_of_files_are_a_choice_that_is_kept_and_hinted_at_once() {
    for (const double station : {100.0, 200.0, 300.0}) {
      made::ReadingKey key = made::key(0.0F, station);
      key.line = "300E";
      made::StoredReading merged = made::reading({{1, 100, 45}});
      merged.curve.value(Module_database::field_resistivity_deviation, 0) = 0.0F;
      merged.curve.value(Module_database::field_phase_deviation, 0) = 0.0F;
      merged.curve.error_at(Module_database::field_resistivity, 0) = 50.0F;
      Module_database::write_facts(made::store(key, 0, merged, 2, -1), merged.curve, {});
    }
    const auto choose = [this](int index) {
      control<QComboBox>("Combo_use_file_errors")->setCurrentIndex(index);
    };
    const auto hint = [this] { return control<QLabel>("Label_file_errors_hint"); };
    open_window();
    QVERIFY(!hint()->isVisible());  // this line's files have none
    session().current_line = "300E";
    open_window();
    QVERIFY(hint()->isVisible());
    QCOMPARE(hint()->text(), QString("The files give errors of their values"));
    type("Text_occam_directory", "run");
    click("Command_create_inversion");
    choose(1);
    QVERIFY(!hint()->isVisible());
    QCOMPARE(Module_output::load_rhoplus_settings().use_file_errors, 1);
    type("Text_occam_directory", "run_2");
    click("Command_create_inversion");
    const auto datum = [this](const char* folder) {
      const std::string data = file_contents(folder_->path(folder) + "/occamdat");
      return data.substr(data.find("     1           1       5"), 51);
    };
    QCOMPARE(datum("run"), std::string("     1           1       5       2.0000      0.1000"));
    QCOMPARE(datum("run_2"), std::string("     1           1       5       2.0000      0.2171"));
    choose(0);
    QVERIFY(hint()->isVisible());
    open_window();
    QVERIFY(!hint()->isVisible());  // once a line
  }

  void fits_a_small_screen() {
    open_window();
    control<QLabel>("Label_file_errors_hint")->setText("The files give errors of their values");
    control<QLabel>("Label_file_errors_hint")->show();
    const QSize least = window_->minimumSizeHint();  // on a screen of 960 by 540 with its frame
    QVERIFY2(least.width() <= 954, qPrintable(QString::number(least.width())));
    QVERIFY2(least.height() <= 510, qPrintable(QString::number(least.height())));
    if (const QString pictures = qEnvironmentVariable("BRENLOX_PICTURES"); !pictures.isEmpty()) {
      QTest::qWait(2000);  // the folder tree fills by and by
      control<QComboBox>("Combo_modes")->setCurrentIndex(1);
      QVERIFY(window_->grab().save(pictures + "/form_occam.png"));
    }
  }
};

QTEST_MAIN(FormOccamTest)
#include "form_occam_test.moc"
