// The table viewer on survey files.
#include "database/windows/Form_view_table.h"

#include <QApplication>
#include <QClipboard>
#include <QLabel>
#include <QPushButton>
#include <QScrollBar>
#include <QTableView>
#include <QTest>
#include <QToolButton>
#include <memory>

#include "core/session_state.h"
#include "database/survey_database.h"
#include "tests/reduction/made_readings.h"
#include "tests/support/window_fixture.h"

using Module_database::open_survey;
using Module_database::viewed_tables;

class FormViewTableTest : public QObject, private WindowFixture {
  Q_OBJECT

 private:
  void view(std::size_t table) {
    window_ = std::make_unique<Form_view_table>(session().database_file, viewed_tables.at(table));
    window_->show();
    QVERIFY(QTest::qWaitForWindowExposed(window_.get()));
    grid_ = window_->findChild<QTableView*>("Grid_table");
  }
  QString text(int row, const QString& column) const {
    const QAbstractItemModel& model = *grid_->model();
    for (int i = 0; i < model.columnCount(); ++i) {
      if (model.headerData(i, Qt::Horizontal, Qt::DisplayRole).toString() == column) {
        return model.index(row, i).data().toString();
      }
    }
    return "no such column";
  }
  QString label(const char* name) const { return window_->findChild<QLabel*>(name)->text(); }
  void click(const char* name) { QTest::mouseClick(window_->findChild<QWidget*>(name), Qt::LeftButton); }

  std::unique_ptr<Form_view_table> window_;
  QTableView* grid_ = nullptr;

 private Q_SLOTS:
  void init() {
    make_folder();
    make_survey();
  }
  void cleanup() {
    window_.reset();
    remove_folder();
  }

  void shows_readings_beside_the_open_survey() {
    constexpr int frequencies = 60;
    std::vector<made::Point> points;
    points.reserve(frequencies);
    for (int i = 0; i < frequencies; ++i) {
      points.push_back({1.0F + static_cast<float>(i), 10.0F, 45.0F});
    }
    made::store(made::key(0.1F, -12.5), 3, made::reading(points));
    view(2);
    QCOMPARE(window_->windowTitle(), QString("Data Readings - survey.mdb"));
    QCOMPARE(label("Label_row_count"), QString("1 row"));
    QCOMPARE(text(0, "LineNumber"), QString("200E"));
    QCOMPARE(text(0, "Station"), QString("-12.5"));
    QCOMPARE(text(0, "SampleRate"), QString("0.1"));
    QCOMPARE(text(0, "UsePhase"), QString("True"));
    QCOMPARE(text(0, "FreqBinary"), QString("240 bytes"));
    QCOMPARE(text(0, "DataBinary"), QString("4800 bytes"));
    QCOMPARE(text(0, "MaskBinary"), QString("480 bytes"));

    made::store(made::key(), 0, made::reading({{1.0F, 10.0F, 45.0F}}));  // the program's own handle goes on
    QCOMPARE(text(0, "EventNumber"), QString("3"));
    click("Command_done");
    QVERIFY(!window_->isVisible());
  }

  void shows_dates_and_nulls_of_file_headers() {
    dao::Recordset& files = open_survey().files;
    files.add_new();
    files.set_text("SurveyFile", "Fj\xC3\xA4ll.edi");
    files.set_date("DateCollected", 43760.75);
    files.set_date("DateAnalysed", 1e300);
    files.update();
    files.add_new();
    files.set_date("DateCollected", 2958465.0);
    files.set_date("DateAnalysed", 2958466.0);
    files.update();
    view(1);
    QCOMPARE(text(0, "SurveyFile"), QString::fromUtf8("Fj\xC3\xA4ll.edi"));
    QCOMPARE(text(0, "DateCollected"), QString("22-Oct-2019"));
    QCOMPARE(text(0, "DateAnalysed"), QString("1E+300"));
    QCOMPARE(text(0, "Filter"), QString());
    QCOMPARE(text(1, "DateCollected"), QString("31-Dec-9999"));
    QCOMPARE(text(1, "DateAnalysed"), QString("2958466"));  // no date, but damage
  }

  void an_empty_table_shows_its_columns() {
    view(0);
    QCOMPARE(label("Label_row_count"), QString("0 rows"));
    QCOMPARE(label("Label_record"), QString("No records"));
    QCOMPARE(grid_->model()->headerData(0, Qt::Horizontal, Qt::DisplayRole).toString(), QString("ID"));
    QVERIFY(!window_->findChild<QToolButton*>("Command_next")->isEnabled());
  }

  void a_large_table_is_read_where_it_is_seen() {
    constexpr int rows = 20000;
    {
      dao::Transaction transaction(open_survey().database);
      dao::Recordset& readings = open_survey().readings;
      const dao::Bytes data(4800);
      for (int i = 0; i < rows; ++i) {
        readings.add_new();
        readings.set_long("EventNumber", i);
        readings.set_binary("DataBinary", data);
        readings.update();
      }
      transaction.commit();
    }
    view(2);
    QCOMPARE(label("Label_row_count"), QString("20000 rows"));
    const auto* const model = qobject_cast<TableModel*>(grid_->model());
    QVERIFY2(model->rows_read() < 200, qPrintable(QString::number(model->rows_read())));
    const std::size_t at_first = model->rows_read();
    grid_->viewport()->repaint();
    QCOMPARE(model->rows_read(), at_first);

    click("Command_last");
    QCOMPARE(label("Label_record"), QString("Record 20000 of 20000"));
    QTest::qWait(10);
    QCOMPARE(text(rows - 1, "EventNumber"), QString::number(rows - 1));
    QVERIFY2(model->rows_read() < 400, qPrintable(QString::number(model->rows_read())));
    click("Command_previous");
    QCOMPARE(label("Label_record"), QString("Record 19999 of 20000"));
  }

  void chosen_cells_go_to_the_clipboard() {
    made::store(made::key(), 1, made::reading({{1.0F, 10.0F, 45.0F}}));
    made::store(made::key(), 2, made::reading({{1.0F, 10.0F, 45.0F}}));
    view(2);
    const QAbstractItemModel& model = *grid_->model();
    grid_->selectionModel()->select(QItemSelection(model.index(0, 4), model.index(1, 6)),
                                    QItemSelectionModel::ClearAndSelect);
    QTest::keyClick(grid_, Qt::Key_C, Qt::ControlModifier);
    QCOMPARE(QApplication::clipboard()->text(), QString("200E\t100\t1\n200E\t100\t2"));
  }

  void a_file_that_is_no_survey_is_an_error() {
    QVERIFY_EXCEPTION_THROWN(Form_view_table(folder_->write("a.mdb", "no survey"), viewed_tables[0]),
                             dao::Error);
  }
};

QTEST_MAIN(FormViewTableTest)
#include "form_view_table_test.moc"
