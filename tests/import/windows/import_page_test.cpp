// The second page of the import dialog: what is proposed, what is chosen, and the table of what would be
// stored.
#include <QApplication>
#include <QCheckBox>
#include <QClipboard>
#include <QComboBox>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QProgressBar>
#include <QPushButton>
#include <QRadioButton>
#include <QRegularExpression>
#include <QTest>
#include <QTimer>
#include <QTreeWidget>
#include <memory>

#include "database/survey_database.h"
#include "import/import_files.h"
#include "import/windows/Form_import_MTData.h"
#include "import/windows/Form_import_report.h"
#include "import/windows/import_decode_grid.h"
#include "platform/settings_store/settings_store.h"
#include "platform/widgets/typed_text.h"
#include "tests/formats/edi/made_edi.h"
#include "tests/formats/zonge/made_zonge_raw.h"
#include "tests/support/window_fixture.h"

using Module_data_file::ImportReport;
using Messages = std::vector<std::string>;

class ImportPageTest : public QObject, private ImportWindowFixture {
  Q_OBJECT

 private Q_SLOTS:
  void init() { begin(); }
  void cleanup() { end(); }

  void keys_go_the_way_of_the_eye() {
    make_three_stations();
    open_dialog();
    QCOMPARE(focus_order(), QStringList({"Drive_binary", "Text_folder", "Dir_binary", "Command_add_all",
                                         "Text_file_extension", "File_binary", "Command_add_selected",
                                         "Command_find_and_add_files", "ListView_binary",
                                         "Command_process_files", "Command_cancel_import"}));
    click("Command_find_and_add_files");
    click("Command_process_files");
    QCOMPARE(
        focus_order(),
        QStringList({"Combo_data_type", "Combo_data_reduced", "Grid_import_decode", "Option_linedirection_0",
                     "Command_next_sample", "Text_start_station", "Text_station_step",
                     "Check_use_SECTID_as_station", "Check_convert_geographic_coordinates",
                     "Command_define_projection", "Check_compute_from_impedance", "Check_turn_ey_phase",
                     "Check_turn_ey_always", "Command_back", "Command_import_data_0", "Command_import_data_1",
                     "Command_cancel_import"}));
    for (const QWidget* const widget : window_->findChildren<QWidget*>(QRegularExpression(
             "^(Command|Combo|Text|Check|Option|Grid|Drive|Dir|File|ListView|ProgressBar)_"))) {
      QVERIFY2(!widget->toolTip().isEmpty(), qPrintable(widget->objectName()));
    }
  }

  void a_cell_is_left_by_a_click_elsewhere_or_a_key() {
    make_three_stations();
    go_to_import_page();
    const auto edit_cell = [this](int row, int column, const char* typed) {
      click_cell(row, column);
      auto* const editor = qobject_cast<QLineEdit*>(QApplication::focusWidget());
      editor->selectAll();
      QTest::keyClicks(editor, typed);
      return editor;
    };
    (void)edit_cell(0, start, "2");
    QTest::mouseClick(control("Label_data_type"), Qt::LeftButton);
    QCOMPARE(cell(0, start), QString("2"));
    QTest::keyClick(edit_cell(0, start, "9"), Qt::Key_Escape);
    QCOMPARE(cell(0, start), QString("2"));
    QVERIFY(window_->isVisible());
    QTest::keyClick(edit_cell(0, width, "4"), Qt::Key_Tab);  // on into the next cell
    QCOMPARE(cell(0, width), QString("4"));
    QTest::keyClick(edit_cell(2, specify, "64"), Qt::Key_Tab);
    QCOMPARE(cell(2, specify), QString("64"));
    QVERIFY(control("Option_linedirection_0")->hasFocus());
    QCOMPARE(text("Text_sample_rate"), QString("64"));
    auto* const grid = control<ImportDecodeGrid>("Grid_import_decode");
    grid->setFocus();
    grid->setCurrentCell(0, use_file_name);
    QTest::keyClick(grid, Qt::Key_Space);
    QCOMPARE(text("Text_sample_line"), QString("200E"));
    QTest::keyClick(window_.get(), Qt::Key_Return);  // presses nothing by chance
    QCOMPARE(interface_->take_messages(), Messages{});
    QVERIFY(window_->isVisible());
  }

  void wrong_turns_are_told_and_leave_the_page() {
    make_three_stations();
    go_to_import_page();
    const auto expect_fault = [this](const char* fault) {
      click("Command_import_data_1");
      QCOMPARE(interface_->take_messages(), Messages{fault});
      QVERIFY(control("Frame_import_data")->isVisible());
    };
    expect_fault("You have not specified a data type");
    choose("Combo_data_type", 0);
    expect_fault("You have not specified the data reduction");
    choose("Combo_data_reduced", 0);
    expect_fault("The specified value for Line Number is invalid");
    type_cell(0, specify, "-200");
    QCOMPARE(text("Text_sample_line"), QString("200W"));
    click("Option_linedirection_1");
    QCOMPARE(text("Text_sample_line"), QString("200S"));

    click_cell(1, use_file_name);
    type_cell(1, start, "8");
    QCOMPARE(text("Text_sample_event"), QString());
    expect_fault("The column width for Event is invalid");
    type_cell(1, width, "-1");
    QCOMPARE(cell(1, width), QString("0"));
    type_cell(1, width, "two");
    QCOMPARE(cell(1, width), QString("0"));
    type_cell(1, width, "2.5");
    QCOMPARE(cell(1, width), QString("3"));
    QCOMPARE(text("Text_sample_event"), QString("0_R"));

    click_cell(1, use_file_name);
    type_cell(1, specify, "-1");
    expect_fault("The specified event value is invalid");
    type_cell(1, specify, "3");
    type_cell(2, specify, "0");
    expect_fault("The Sample Rate cannot be zero for non-merged data");
    type_cell(2, specify, "0.1");
    QCOMPARE(control<QLabel>("Label_sample_note")->text(), QString());

    auto* const spacing = control<QLineEdit>("Text_station_step");
    spacing->setText("0");
    expect_fault("The station spacing is invalid");
    spacing->setText("33.3");
    control<QLineEdit>("Text_start_station")->setText("here");
    expect_fault("The start station number is invalid");
    control<QLineEdit>("Text_start_station")->clear();
    click("Check_convert_geographic_coordinates");
    expect_fault("The projection has not been defined");
    QCOMPARE(rows_in("FileTable"), 0);
    QVERIFY(!control("Frame_progress")->isVisible());
  }

  void a_projection_defined_from_here_is_the_surveys() {
    (void)add_file("a.edi");
    go_to_import_page();
    click("Command_define_projection");  // no name given
    (*interface_)->text_answers = {"Web"};
    QTimer::singleShot(0, this, [] {
      QWidget* const dialog = QApplication::activeModalWidget();
      dialog->findChild<QComboBox*>("Combo_projection")->setCurrentIndex(6);
      dialog->findChild<QPushButton*>("Command_done")->click();
    });
    click("Command_define_projection");
    QCOMPARE((*interface_)->prompts, Messages(2, "Enter a name for this projection"));
    QCOMPARE(rows_in("[Projection Defintion Table]"), 1);
  }

  void a_file_says_which_addition_it_would_need() {
    (void)add_file("a.edi", {.blocks = ">ZYXR //3\n1 2 3\n>ZYXI //3\n1 2 3\n"});
    (void)add_file("b.edi", {.blocks = ">RHOYX //3\n1 2 3\n>PHSYX //3\n-120 -130 -140\n"});
    go_to_import_page();
    const auto note = [this] { return control<QLabel>("Label_sample_note")->text().section('\n', 0, 0); };
    for (const char* const addition : {"Check_compute_from_impedance", "Check_turn_ey_phase",
                                       "Check_turn_ey_always", "Check_sectid_digits"}) {
      QVERIFY2(!control<QCheckBox>(addition)->isChecked(), addition);
    }
    QCOMPARE(note(), QString("This file has impedances only"));
    click("Check_compute_from_impedance");
    QVERIFY(note() != QString("This file has impedances only"));
    click("Command_next_sample");
    QCOMPARE(note(), QString("All YX phases are negative"));
    for (const char* const box : {"Check_turn_ey_phase", "Check_turn_ey_always"}) {
      click(box);
      QVERIFY(note() != QString("All YX phases are negative"));
      click(box);
    }
  }
};

QTEST_MAIN(ImportPageTest)
#include "import_page_test.moc"
