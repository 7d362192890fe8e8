// The second page of the import dialog: what is proposed, what is chosen, and the table of what would be
// stored.
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QHelpEvent>
#include <QLabel>
#include <QLineEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QRadioButton>
#include <QRegularExpression>
#include <QTableView>
#include <QTest>
#include <QTimer>
#include <QToolTip>
#include <memory>

#include "database/survey_database.h"
#include "import/proposals/plan_table.h"
#include "import/windows/import_decode_grid.h"
#include "platform/widgets/hint_label.h"
#include "tests/formats/zonge/made_zonge_raw.h"
#include "tests/import/windows/import_window_fixture.h"

using Messages = std::vector<std::string>;
using Module_data_file::PlanColumn;

class ImportPageTest : public QObject, private ImportWindowFixture {
  Q_OBJECT

 private:
  QModelIndex index(int row, PlanColumn column) const {
    return control<QTableView>("Table_import_plan")->model()->index(row, static_cast<int>(column));
  }
  QStringList shown_column(PlanColumn column) const {
    QStringList texts;
    for (int row = 0; row < control<QTableView>("Table_import_plan")->model()->rowCount(); ++row) {
      texts.append(index(row, column).data().toString());
    }
    return texts;
  }
  bool is_checked(int row, PlanColumn column) const {
    return index(row, column).data(Qt::CheckStateRole).toInt() == Qt::Checked;
  }
  QString status() const { return control<QLabel>("Label_plan_status")->text(); }
  /// Types into a cell as F2 opens it.
  void type_into(int row, PlanColumn column, const QString& typed,
                 QItemSelectionModel::SelectionFlags flags = QItemSelectionModel::ClearAndSelect) const {
    auto* const table = control<QTableView>("Table_import_plan");
    table->setFocus();
    table->selectionModel()->setCurrentIndex(index(row, column), flags);
    QTest::keyClick(table, Qt::Key_F2);
    auto* const editor = table->viewport()->findChild<QLineEdit*>();
    QVERIFY(editor != nullptr);
    editor->selectAll();
    QTest::keyClicks(editor, typed);
    QTest::keyClick(editor, Qt::Key_Return);
    QTRY_VERIFY(table->viewport()->findChild<QLineEdit*>() == nullptr);  // it is deleted by an event
  }
  void click_box(int row, PlanColumn column) const {
    auto* const table = control<QTableView>("Table_import_plan");
    table->scrollTo(index(row, column));
    const QRect cell = table->visualRect(index(row, column));
    const int on_the_mark = 10;
    QTest::mouseClick(table->viewport(), Qt::LeftButton, {}, {cell.left() + on_the_mark, cell.center().y()});
  }

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
    QCOMPARE(focus_order(),
             QStringList({"Combo_data_type", "Combo_data_reduced", "Grid_import_decode",
                          "Option_linedirection_0", "Text_start_station", "Text_station_step",
                          "Check_use_SECTID_as_station", "Check_convert_geographic_coordinates",
                          "Command_define_projection", "Check_compute_from_impedance", "Check_turn_ey_phase",
                          "Check_turn_ey_always", "Table_import_plan", "Command_next_sample", "Command_back",
                          "Command_import_data_0", "Command_import_data_1", "Command_cancel_import"}));
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
    (void)folder_->write("field/raw.edi", made_zonge_raw(1));  // events of raw files are to be chosen
    go_to_import_page();
    const auto expect_fault = [this](const char* fault) {
      click("Command_import_data_1");
      QCOMPARE(interface_->take_messages(), Messages{fault});
      QVERIFY(control("Frame_import_data")->isVisible());
    };
    type_cell(0, specify, "");
    expect_fault("The specified value for Line Number is invalid");
    type_cell(0, specify, "-200");
    QVERIFY(shown_column(PlanColumn::line).contains("200W"));
    click("Option_linedirection_1");
    QVERIFY(shown_column(PlanColumn::line).contains("200S"));

    click_cell(1, use_file_name);
    type_cell(1, start, "8");
    expect_fault("The column width for Event is invalid");
    type_cell(1, width, "-1");
    QCOMPARE(cell(1, width), QString("0"));
    type_cell(1, width, "two");
    QCOMPARE(cell(1, width), QString("0"));
    type_cell(1, width, "2.5");
    QCOMPARE(cell(1, width), QString("3"));

    click_cell(1, use_file_name);
    type_cell(1, specify, "-1");
    expect_fault("The specified event value is invalid");
    type_cell(1, specify, "3");
    type_cell(2, specify, "0");
    expect_fault("The Sample Rate cannot be zero for non-merged data");
    QCOMPARE(control<QLabel>("Label_plan_status")->text(),
             QString("The Sample Rate cannot be zero for non-merged data"));
    type_cell(2, specify, "0.1");

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

  void the_page_comes_filled_and_says_why() {
    (void)add_file("a.edi", {.sectid = "ET1", .blocks = ">ZYXR //3\n1 2 3\n>ZYXI //3\n1 2 3\n"});
    (void)add_file("b.edi", {.sectid = "ET2", .blocks = ">RHOYX //3\n1 2 3\n>PHSYX //3\n-120 -130 -140\n"});
    go_to_import_page();
    QCOMPARE(control<QComboBox>("Combo_data_type")->currentIndex(), 1);  // there are remote channels
    QCOMPARE(control<QComboBox>("Combo_data_reduced")->currentIndex(), 0);
    QCOMPARE(cell(0, specify), QString("100E"));
    QCOMPARE(cell(2, specify), QString("400"));  // four times the highest frequency
    QVERIFY(control<QRadioButton>("Check_sectid_digits")->isChecked());
    for (const char* const why :
         {"reference", "reduction", "line", "event", "rate", "stations", "impedance", "turn_ey"}) {
      QVERIFY2(!control<QLabel>(qPrintable(QString("Label_why_%1").arg(why)))->text().isEmpty(), why);
    }
    click_cell(1, use_file_name);  // sections number themselves
    QCOMPARE(control<ImportDecodeGrid>("Grid_import_decode")->item(1, use_file_name)->checkState(),
             Qt::Unchecked);
    QCOMPARE(shown_column(PlanColumn::station), QStringList({"1", "2"}));
    QVERIFY(is_checked(0, PlanColumn::from_impedance) && is_checked(1, PlanColumn::turn_ey));

    click("Check_compute_from_impedance");
    click("Check_turn_ey_phase");
    QVERIFY(!is_checked(1, PlanColumn::from_impedance));
    QVERIFY(control<QLabel>("Label_why_turn_ey")->text().startsWith("set by hand"));
    // The file whose phases would be masked comes first.
    QCOMPARE(shown_column(PlanColumn::file), QStringList({"b.edi", "a.edi"}));
    QVERIFY(shown_column(PlanColumn::remarks).at(0).startsWith("all YX phases are negative"));
    QVERIFY(shown_column(PlanColumn::remarks).at(1).startsWith("impedances without curves"));
    QCOMPARE(text("Text_sample_station"), QString("1"));  // the row that was selected still is
  }

  void what_is_set_by_hand_lasts_and_the_rest_is_proposed_again() {
    (void)add_file("a.edi", {.sectid = "ET1", .blocks = ">ZYXR //3\n1 2 3\n>ZYXI //3\n1 2 3\n"});
    go_to_import_page();
    QVERIFY(control<QCheckBox>("Check_compute_from_impedance")->isChecked());
    choose("Combo_data_reduced", 1);
    type_cell(0, specify, "700");
    QTest::keyClick(window_.get(), Qt::Key_Escape);
    (void)folder_->write("field/a.edi", made_local_edi());
    go_to_import_page();
    QCOMPARE(control<QComboBox>("Combo_data_reduced")->currentIndex(), 1);
    QCOMPARE(control<QComboBox>("Combo_data_type")->currentIndex(), 0);  // without remote channels
    QVERIFY(!control<QCheckBox>("Check_compute_from_impedance")->isChecked());
    QCOMPARE(cell(0, specify), QString("100E"));
    click("Option_linedirection_1");
    QCOMPARE(cell(0, specify), QString("100N"));
    QCOMPARE(shown_column(PlanColumn::line), QStringList{"100N"});
    type_cell(0, specify, "7");
    click("Option_linedirection_0");
    QCOMPARE(cell(0, specify), QString("7"));                // what was typed stays
    QVERIFY(!control("Command_as_last_time")->isEnabled());  // nothing was imported yet
  }

  void what_is_set_for_a_list_stays_when_a_file_is_taken_out_of_it() {
    make_three_stations();
    go_to_import_page();
    decode_from_names();
    click("Check_use_SECTID_as_station");
    type_into(2, PlanColumn::station, "77");
    click("Command_back");
    auto* const list = control<QTreeWidget>("ListView_binary");
    list->setCurrentItem(list->topLevelItem(0));
    click("Command_clear_selected");
    click("Command_process_files");
    QCOMPARE(shown_column(PlanColumn::line), QStringList({"200E", "200E"}));
    QCOMPARE(shown_column(PlanColumn::rate), QStringList({"256", "256"}));
    QVERIFY(control<QRadioButton>("Check_use_SECTID_as_station")->isChecked());
    QCOMPARE(shown_column(PlanColumn::station), QStringList({"2", "77"}));

    click("Command_back");
    click("Command_clear_list");
    (void)folder_->write("other/a.edi", made_local_edi());
    window_->take_files({folder_->path("other")});
    QTRY_COMPARE(shown_column(PlanColumn::file), QStringList{"a.edi"});
    QCOMPARE(cell(0, specify), QString("100E"));
  }

  void cells_of_the_table_are_changed_and_go_back() {
    make_three_stations();
    go_to_import_page();
    type_into(1, PlanColumn::line, "abc");
    QVERIFY(!status().contains("3 files"));
    QCOMPARE(shown_column(PlanColumn::line), QStringList({"100E", "100E", "100E"}));
    type_into(1, PlanColumn::line, "-300");
    QCOMPARE(shown_column(PlanColumn::line), QStringList({"100E", "300W", "100E"}));
    QVERIFY(index(1, PlanColumn::line).data(Qt::FontRole).value<QFont>().bold());
    type_into(2, PlanColumn::station, "1");  // where the first one is
    QCOMPARE(shown_column(PlanColumn::file).back(), QString("L200E_E0_R0256_2.edi"));
    QVERIFY(status().contains("2 rows with problems"));
    auto* const table = control<QTableView>("Table_import_plan");
    QCOMPARE(table->currentIndex().row(), 1);  // still the same file
    QTest::keyClick(table, Qt::Key_Delete);
    QVERIFY(!status().contains("problem"));
    click("Check_turn_ey_always");  // what was typed stays
    QCOMPARE(shown_column(PlanColumn::line), QStringList({"100E", "300W", "100E"}));
    QVERIFY(is_checked(2, PlanColumn::turn_ey));
    click_box(2, PlanColumn::turn_ey);
    QVERIFY(!is_checked(2, PlanColumn::turn_ey) && is_checked(1, PlanColumn::turn_ey));
    click("Check_turn_ey_always");  // which the report would tell

    table->selectionModel()->select(QItemSelection(index(0, PlanColumn::rate), index(2, PlanColumn::rate)),
                                    QItemSelectionModel::ClearAndSelect);
    type_into(2, PlanColumn::rate, "64", QItemSelectionModel::NoUpdate);
    QCOMPARE(shown_column(PlanColumn::rate), QStringList({"64", "64", "64"}));
    table->sortByColumn(static_cast<int>(PlanColumn::line), Qt::DescendingOrder);
    QCOMPARE(shown_column(PlanColumn::line), QStringList({"300W", "100E", "100E"}));
    click("Command_import_data_1");
    QVERIFY(!window_->isVisible());
    QCOMPARE(rows_in("StationsTable WHERE SurveyLine = '300W'"), 1);
    QCOMPARE(rows_in("StationsTable"), 3);
    QCOMPARE(rows_in("ReadingsDataTable WHERE FileID > 0 AND SampleRate = 64"), 12);
  }

  void a_long_reason_takes_its_lines_before_it_is_cut() {
    HintLabel label;
    label.setProperty("lines", 2);
    const int height = label.minimumSizeHint().height();
    label.resize(label.fontMetrics().horizontalAdvance("one of two lines; two"), height);
    label.show();
    const auto tip = [&label](const QString& text) {
      label.setText(text);
      QToolTip::hideText();
      QHelpEvent asked(QEvent::ToolTip, {}, label.mapToGlobal(QPoint()));
      QApplication::sendEvent(&label, &asked);
      return QToolTip::text();
    };
    QCOMPARE(tip("one of two lines; two of two lines"), QString());  // all of it is to be seen
    const QImage shown = label.grab(QRect(0, height / 2, label.width(), height / 2)).toImage();
    bool is_drawn = false;
    for (int x = 0; x < shown.width(); ++x) {
      is_drawn = is_drawn || shown.pixel(x, shown.height() / 2) != shown.pixel(0, shown.height() - 1);
    }
    QVERIFY(is_drawn);
    const QString three = "one of three lines; two of three lines; three of three lines";
    QCOMPARE(tip(three), three);
    label.setProperty("lines", 1);
    QCOMPARE(label.minimumSizeHint().height(), height / 2);
    QCOMPARE(tip("one of two lines; two of two lines"), QString("one of two lines; two of two lines"));
  }

  void a_scan_that_is_stopped_leaves_what_it_has_seen() {
    constexpr int files = 400;
    for (int i = 0; i < files; ++i) {
      (void)add_file("s" + std::to_string(i) + ".edi", {.sectid = "S" + std::to_string(i)});
    }
    open_dialog();
    click("Command_find_and_add_files");
    int rows_while_scanning = 0;
    bool was_closed = true;
    connect(control<QProgressBar>("ProgressBar_import"), &QProgressBar::valueChanged, this, [&](int percent) {
      if (percent >= 50) {
        rows_while_scanning = control<QTableView>("Table_import_plan")->model()->rowCount();
        was_closed &= !control("Command_import_data_1")->isEnabled();
        QTest::mouseClick(control("Command_stop_import"), Qt::LeftButton);
      }
    });
    click("Command_process_files");
    QVERIFY(was_closed);
    const int seen = control<QTableView>("Table_import_plan")->model()->rowCount();
    QVERIFY2(seen >= files / 2 && seen < files && rows_while_scanning <= seen,
             qPrintable(QString::number(seen)));
    QVERIFY(status().startsWith("Stopped:"));
    control<QProgressBar>("ProgressBar_import")->disconnect(this);
    click("Command_import_data_1");
    QCOMPARE(rows_in("FileTable"), seen);
  }
};

QTEST_MAIN(ImportPageTest)
#include "import_page_test.moc"
