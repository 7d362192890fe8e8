// The import dialog, worked as a person does: by clicks and keys on its controls.
#include <QApplication>
#include <QCheckBox>
#include <QClipboard>
#include <QComboBox>
#include <QDropEvent>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMimeData>
#include <QProgressBar>
#include <QPushButton>
#include <QRadioButton>
#include <QRegularExpression>
#include <QTest>
#include <QTimer>
#include <QTreeWidget>
#include <memory>

#include "database/survey_database.h"
#include "import/windows/Form_import_report.h"
#include "platform/widgets/typed_text.h"
#include "tests/formats/zonge/made_zonge_raw.h"
#include "tests/import/windows/import_window_fixture.h"

using Module_data_file::ImportReport;
using Messages = std::vector<std::string>;

class FormImportTest : public QObject, private ImportWindowFixture {
  Q_OBJECT

 private Q_SLOTS:
  void init() { begin(); }
  void cleanup() { end(); }

  void three_stations_come_in_with_columns_from_their_names() {
    make_three_stations();
    go_to_import_page();
    QCOMPARE(listed(), 3);
    QCOMPARE(text("Text_current_directory"), QString::fromStdString(folder_->path("field")));
    choose("Combo_data_type", 1);
    choose("Combo_data_reduced", 0);
    decode_from_names();
    click("Check_use_SECTID_as_station");
    QCOMPARE(text("Text_sample_line"), QString("200E"));
    QCOMPARE(text("Text_sample_event"), QString("0"));
    QCOMPARE(text("Text_sample_rate"), QString("256"));
    QCOMPARE(text("Text_sample_station"), QString("1"));
    QCOMPARE(text("Text_sample_date"), QString("22-Oct-2019"));
    QVERIFY(!control("Command_previous_sample")->isEnabled());
    click("Command_next_sample");
    click("Command_next_sample");
    QCOMPARE(text("Text_sample_station"), QString("10"));
    QVERIFY(!control("Command_next_sample")->isEnabled());
    click("Command_previous_sample");
    QCOMPARE(text("Text_sample_station"), QString("2"));

    click("Command_import_data_0");
    QCOMPARE(interface_->take_messages(), Messages{"Data scan complete"});
    QCOMPARE(rows_in("FileTable"), 0);
    QVERIFY(window_->isVisible());

    click("Command_import_data_1");
    QCOMPARE(interface_->take_messages(),
             Messages{"Data import complete. 3 of 3 files gave 12 readings at 3 stations; 0 remarks"});
    QVERIFY(!window_->isVisible());
    QCOMPARE(text("Text_import_file"), QString("L200E_E0_R0256_10.edi"));
    QCOMPARE(rows_in("FileTable"), 3);
    QCOMPARE(rows_in("StationsTable"), 3);
    QCOMPARE(rows_in("ReadingsDataTable WHERE FileID > 0 AND LineNumber = '200E' AND SampleRate = 256 AND "
                     "ReferenceType = 1 AND ReductionType = 0"),
             12);
    QVERIFY(rows_in("ReadingsDataTable WHERE ReductionType = 2") > 0);
    QVERIFY(!(*interface_)->busy);

    go_to_import_page();  // columns are proposed for each list of files; the earlier ones come back at a
                          // press
    QCOMPARE(cell(2, start), QString("0"));
    click("Command_as_last_time");
    QCOMPARE(cell(2, start), QString("11"));
    QVERIFY(control<QRadioButton>("Check_use_SECTID_as_station")->isChecked());
    QCOMPARE(text("Text_sample_line"), QString("200E"));
  }

  void what_is_typed_in_an_open_cell_is_imported() {
    make_three_stations();
    const TypedTextFirst typed_text_first;
    go_to_import_page();
    choose("Combo_data_type", 1);
    choose("Combo_data_reduced", 0);
    decode_from_names();
    click_cell(0, use_file_name);  // lines aren't taken from the names
    click("Check_use_SECTID_as_station");
    const auto type_and_press = [this](const char* line, Qt::Key mnemonic) {
      click_cell(0, specify);
      auto* const editor = control<QLineEdit>("Text_edit");
      QVERIFY(editor != nullptr && editor->hasFocus());
      editor->selectAll();
      QTest::keyClicks(editor, line);
      QTest::keyClick(window_.get(), mnemonic, Qt::AltModifier);
    };
    type_and_press("250E", Qt::Key_N);  // the next sample
    QTRY_COMPARE(text("Text_sample_station"), QString("2"));
    QCOMPARE(text("Text_sample_line"), QString("250E"));
    type_and_press("300E", Qt::Key_C);
    QTRY_VERIFY(!(*interface_)->messages.empty());
    QCOMPARE(interface_->take_messages(), Messages{"Data scan complete"});
    QCOMPARE(text("Text_sample_line"), QString("300E"));
    type_and_press("77E", Qt::Key_I);
    QTRY_VERIFY(!(*interface_)->messages.empty());
    QCOMPARE(interface_->take_messages(),
             Messages{"Data import complete. 3 of 3 files gave 12 readings at 3 stations; 0 remarks"});
    QCOMPARE(rows_in("StationsTable WHERE SurveyLine = '77E'"), 3);
    QCOMPARE(rows_in("StationsTable"), 3);
  }

  void the_list_takes_marked_shown_and_double_clicked_files() {
    make_three_stations();
    (void)folder_->write("field/below/deep.edi", made_edi());
    (void)folder_->write("field/notes.txt", "");
    open_dialog();
    auto* const shown = control<QListWidget>("File_binary");
    QCOMPARE(shown->count(), 3);
    QCOMPARE(shown->item(2)->text(), QString("L200E_E0_R0256_10.edi"));
    QTest::mouseClick(shown->viewport(), Qt::LeftButton, {}, shown->visualItemRect(shown->item(1)).center());
    click("Command_add_selected");
    QCOMPARE(listed(), 1);
    QCOMPARE(list_text(0, 0), QString("L200E_E0_R0256_2.edi"));
    QCOMPARE(list_text(0, 1), QString::fromStdString(folder_->path("field")));
    const QPoint first = shown->visualItemRect(shown->item(0)).center();
    QTest::mouseClick(shown->viewport(), Qt::LeftButton, {}, first);
    QTest::mouseDClick(shown->viewport(), Qt::LeftButton, {}, first);
    QCOMPARE(listed(), 2);
    click("Command_add_all");
    QCOMPARE(listed(), 4);

    auto* const list = control<QTreeWidget>("ListView_binary");
    QTest::mouseClick(list->viewport(), Qt::LeftButton, {},
                      list->visualItemRect(list->topLevelItem(0)).center());
    click("Command_clear_selected");
    QCOMPARE(listed(), 3);
    click("Command_clear_list");
    QCOMPARE(listed(), 0);

    auto* const extension = control<QLineEdit>("Text_file_extension");
    extension->clear();
    click("Command_add_all");
    QCOMPARE(listed(), 4);  // field files, whatever their names end in; the notes are none
    click("Command_clear_list");
    extension->selectAll();
    QTest::keyClicks(extension, "txt");
    QCOMPARE(shown->count(), 1);
    auto* const typed = control<QLineEdit>("Text_folder");
    typed->setText(QString::fromStdString(folder_->path("field/below")));
    QTest::keyClick(typed, Qt::Key_Return);
    QCOMPARE(shown->count(), 0);

    QTest::keyClick(window_.get(), Qt::Key_Escape);
    QCOMPARE(settings_store().value("Marrowgate", "Brenlox", "ImportFileExtension", ""), std::string("txt"));
  }

  void files_and_folders_are_dropped_into_the_list() {
    make_three_stations();
    (void)folder_->write("field/below/deep.edi", made_edi());
    const std::string notes = folder_->write("field/notes.txt", "no field file\n");
    open_dialog();
    QMimeData dragged;
    dragged.setUrls({QUrl::fromLocalFile(QString::fromStdString(folder_->path("field"))),
                     QUrl::fromLocalFile(QString::fromStdString(notes))});
    auto* const list = control("Frame_select_files");
    QDragEnterEvent enter({5, 5}, Qt::CopyAction, &dragged, Qt::LeftButton, {});
    QApplication::sendEvent(list, &enter);
    QVERIFY(enter.isAccepted());
    QDropEvent dropped({5, 5}, Qt::CopyAction, &dragged, Qt::LeftButton, {});
    QApplication::sendEvent(list, &dropped);
    QCOMPARE(listed(), 5);  // a file that is dropped itself is taken whatever it is
    QCOMPARE(list_text(3, 0), QString("deep.edi"));
  }

  void an_empty_list_stays_on_the_first_page() {
    open_dialog();
    click("Command_process_files");
    QVERIFY(control("Frame_select_files")->isVisible());
    QVERIFY(!control("Frame_import_data")->isVisible());
    QCOMPARE(interface_->take_messages(), Messages{});
  }

  void enter_and_delete_belong_to_the_list_that_has_the_focus() {
    make_three_stations();
    (void)folder_->write("field/below/deep.edi", made_edi());
    open_dialog();
    auto* const shown = control<QListWidget>("File_binary");
    shown->setFocus();
    shown->setCurrentRow(1);
    QTest::keyClick(shown, Qt::Key_Return);
    QCOMPARE(listed(), 1);
    auto* const folder = control<QLineEdit>("Text_folder");
    folder->setFocus();
    folder->setText(QString::fromStdString(folder_->path("field/below")));
    QTest::keyClick(folder, Qt::Key_Return);
    QCOMPARE(shown->count(), 1);
    QVERIFY(control("Frame_select_files")->isVisible());
    auto* const list = control<QTreeWidget>("ListView_binary");
    list->setFocus();
    list->selectAll();
    QTest::keyClick(list, Qt::Key_Delete);
    QCOMPARE(listed(), 0);
  }

  void ey_is_turned_where_needed_or_in_every_file() {
    (void)add_file("a.edi", {.blocks = ">RHOYX //3\n1 2 3\n>PHSYX //3\n-120 -130 -140\n"});
    (void)add_file("b.edi", {.blocks = ">RHOYX //3\n1 2 3\n>PHSYX //3\n-20 -30 -40\n"});
    QStringList turned;
    QTimer waiting;
    connect(&waiting, &QTimer::timeout, this, [&] {
      if (auto* const report = qobject_cast<Form_import_report*>(QApplication::activeModalWidget())) {
        const auto* const files = report->findChild<QTreeWidget*>("Tree_report");
        QCOMPARE(files->headerItem()->text(4), QString("Ey turned"));
        turned.append(files->topLevelItem(0)->text(4) + files->topLevelItem(1)->text(4));
        report->accept();
      }
    });
    waiting.start(1);
    go_to_import_page();
    QVERIFY(control<QCheckBox>("Check_turn_ey_phase")->isChecked());  // the first file needs it
    click("Command_import_data_1");
    go_to_import_page();
    click("Check_turn_ey_always");
    click("Command_import_data_1");
    QCOMPARE(turned, QStringList({"10", "11"}));
  }

  void different_sites_on_one_station_are_asked_about() {
    (void)add_file("a.edi", {.sectid = "Z2HX7"});
    (void)add_file("b.edi", {.sectid = "ET7"});
    go_to_import_page();
    type_cell(0, specify, "200");
    type_cell(2, specify, "256");
    click("Check_use_SECTID_as_station");
    click("Check_sectid_digits");
    click("Command_import_data_1");  // the answer is No
    QCOMPARE((*interface_)->questions.size(), std::size_t{1});
    QVERIFY((*interface_)->questions.front().find("Z2HX7 (a.edi), ET7 (b.edi)") != std::string::npos);
    QVERIFY((*interface_)->questions.front().ends_with("Take them as repeats of one station?"));
    QCOMPARE(interface_->take_messages(), Messages{});
    QVERIFY(window_->isVisible());
    QVERIFY(control("Command_import_data_1")->isEnabled());
    QCOMPARE(rows_in("FileTable"), 0);
    (*interface_)->yes_no_answers = {true};
    QString seen;
    QTimer waiting;
    connect(&waiting, &QTimer::timeout, this, [&] {
      if (auto* const report = qobject_cast<Form_import_report*>(QApplication::activeModalWidget())) {
        waiting.stop();
        seen = report->findChild<QTreeWidget*>("Tree_report")->topLevelItem(1)->child(0)->text(0);
        report->accept();
      }
    });
    waiting.start(1);
    click("Command_import_data_1");
    QCOMPARE(seen, QString("ET7 comes to station 7 of line 200E, as does Z2HX7 (a.edi)"));
    QCOMPARE(rows_in("ReadingsDataTable WHERE FileID > 0 AND Station = 7"), 8);
    QVERIFY(!window_->isVisible());
  }

  void stop_ends_the_run_and_keeps_what_is_stored() {
    for (int i = 0; i < 200; ++i) {
      (void)add_file("s" + std::to_string(i) + ".edi");
    }
    go_to_import_page();
    type_cell(0, specify, "200");
    type_cell(2, specify, "256");
    bool was_working = false;
    auto* const stop = control<QPushButton>("Command_stop_import");
    connect(control<QProgressBar>("ProgressBar_import"), &QProgressBar::valueChanged, this, [&](int percent) {
      if (percent >= 10 && !was_working) {
        was_working = stop->isVisible() && !control("Command_import_data_1")->isEnabled();
        Q_EMIT control<QPushButton>("Command_import_data_1")->clicked();  // its key was pressed before
        QTest::mouseClick(stop, Qt::LeftButton);
      }
    });
    (*interface_)->progress.clear();  // of the opening
    click("Command_import_data_1");
    QVERIFY(was_working);
    QCOMPARE(interface_->take_messages(),
             Messages{"The import was stopped. The files read by then are stored."});
    QVERIFY(window_->isVisible());
    QVERIFY(control("Command_import_data_1")->isEnabled());
    const int files = rows_in("FileTable");
    QVERIFY2(files >= 15 && files < 30, qPrintable(QString::number(files)));
    QVERIFY(rows_in("ReadingsDataTable WHERE ReductionType = 1") > 0);
    QCOMPARE((*interface_)->progress, std::vector<int>{});  // no dialog over the window
  }

  void a_bad_file_is_told_in_the_report() {
    (void)add_file("good.edi");
    (void)folder_->write("field/bad.edi", "no field file\n");
    go_to_import_page();
    type_cell(0, specify, "200");
    type_cell(2, specify, "256");
    const std::string saved = folder_->path("report.json");
    const std::string imported = folder_->path("field/good.edi");
    const std::string good = file_contents(imported);
    (*interface_)->path_answers = {saved, imported};
    (*interface_)->yes_no_answers = {true};
    std::vector<std::string> told_of_saving;
    QStringList seen;
    QTimer waiting;
    connect(&waiting, &QTimer::timeout, this, [&] {
      auto* const report = qobject_cast<Form_import_report*>(QApplication::activeModalWidget());
      if (report == nullptr) {
        return;
      }
      waiting.stop();
      auto* const files = report->findChild<QTreeWidget*>("Tree_report");
      for (int row = 0; row < files->topLevelItemCount(); ++row) {
        seen.append(files->topLevelItem(row)->text(0) + " " + files->topLevelItem(row)->text(2));
        for (int remark = 0; remark < files->topLevelItem(row)->childCount(); ++remark) {
          seen.append(files->topLevelItem(row)->child(remark)->text(0).left(16));
        }
      }
      QTest::mouseClick(report->findChild<QPushButton*>("Command_copy"), Qt::LeftButton);
      std::vector<std::string>& messages = (*interface_)->messages;
      const auto earlier = static_cast<std::ptrdiff_t>(messages.size());
      QTest::mouseClick(report->findChild<QPushButton*>("Command_save_report"), Qt::LeftButton);
      QTest::mouseClick(report->findChild<QPushButton*>("Command_save_report"), Qt::LeftButton);
      told_of_saving.assign(messages.begin() + earlier, messages.end());
      messages.erase(messages.begin() + earlier, messages.end());
      QTest::mouseClick(report->findChild<QPushButton*>("Command_done"), Qt::LeftButton);
    });
    waiting.start(1);
    click("Command_import_data_1");
    QCOMPARE(seen, QStringList({"bad.edi 0", "the file is of n", "good.edi 4"}));
    QVERIFY(QApplication::clipboard()->text().startsWith("1 of 2 files gave 4 readings\n"));
    QCOMPARE(told_of_saving,
             (std::vector<std::string>{"The report is written to " + saved,
                                       "An error occurred while saving the import report: " + imported +
                                           " is one of the input files and is not written over"}));
    QCOMPARE(file_contents(imported), good);
    const QJsonObject written =
        QJsonDocument::fromJson(QByteArray::fromStdString(file_contents(saved))).object();
    QCOMPARE(written["stopped"], QJsonValue(false));
    const QJsonArray files = written["files"].toArray();
    QCOMPARE(files.size(), qsizetype{2});
    QVERIFY(files[0].toObject()["file"].toString().endsWith("/bad.edi"));
    QVERIFY(files[0].toObject()["failure"].toString().startsWith("the file is of no known kind: not EDI"));
    QVERIFY(files[1].toObject()["file"].toString().endsWith("/good.edi"));
    QCOMPARE(files[1].toObject()["readings"], QJsonValue(4));
    QCOMPARE(files[1].toObject()["failure"], QJsonValue(""));
    QCOMPARE(interface_->take_messages().back(),
             std::string("Data import complete. 1 of 2 files gave 4 readings at 1 station; 1 remark"));
    QVERIFY(!window_->isVisible());
  }

  void the_account_of_a_raw_file_is_one_list_at_the_end() {
    (void)folder_->write("field/day.edi", made_zonge_raw(20));
    go_to_import_page();
    QCOMPARE(control<QLabel>("Label_sample_note")->text().section('\n', 0, 0),
             QString("No stn file was located"));
    (void)folder_->write("field/utm.stn", made_stn(70));
    click("Command_back");
    click("Command_process_files");
    choose("Combo_data_type", 0);
    type_cell(0, specify, "200");
    type_cell(1, specify, "0");
    type_cell(2, specify, "1");
    QVERIFY(!control<QLabel>("Label_sample_note")->text().contains("stn"));
    QCOMPARE(text("Text_sample_date"), QString("12-May-2004"));
    QStringList seen;
    QTimer waiting;
    connect(&waiting, &QTimer::timeout, this, [&] {
      if (auto* const report = qobject_cast<Form_import_report*>(QApplication::activeModalWidget())) {
        waiting.stop();
        const QTreeWidgetItem* const file = report->findChild<QTreeWidget*>("Tree_report")->topLevelItem(0);
        for (int line = 0; line < file->childCount(); ++line) {
          seen.append(file->child(line)->text(0));
        }
        report->accept();
      }
    });
    waiting.start(1);
    click("Command_import_data_1");
    QVERIFY(interface_->take_messages().back().starts_with(
        "Data import complete. 1 of 1 file gave 402 readings at "));
    Module_data_file::ImportChoices choices;
    choices.ReferenceType = choices.ReductionType = 0;
    choices.decode[Module_data_file::decode_line_number].specified = "200E";
    choices.decode[Module_data_file::decode_event].specified = "0";
    choices.decode[Module_data_file::decode_sample_rate].specified = "1";
    ImportReport scanned;
    QCOMPARE(
        run_import(choices, {folder_->path("field/day.edi")}, Module_data_file::ImportMode::scan, scanned),
        0);
    QVERIFY(seen.size() > 150);
    QCOMPARE(seen.size(), static_cast<qsizetype>(scanned.files.at(0).account.size()));
    QCOMPARE(seen.front(), QString("Block : 1 - Synchronisation Header Block"));
    QVERIFY(seen.contains("Block : 9 - System Check Block"));
    QCOMPARE(rows_in("ReadingsDataTable WHERE FileID > 0"), 20 * 5 * 4 + 2);
  }
};

QTEST_MAIN(FormImportTest)
#include "form_import_test.moc"
