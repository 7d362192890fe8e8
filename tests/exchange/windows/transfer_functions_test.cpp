// The window of transfer functions, worked as a user does.
#include <QAbstractItemModelTester>
#include <QApplication>
#include <QCheckBox>
#include <QClipboard>
#include <QComboBox>
#include <QDesktopServices>
#include <QFileDialog>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QProgressBar>
#include <QPushButton>
#include <QTableView>
#include <QTest>
#include <QTimer>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "exchange/windows/Form_transfer_functions.h"
#include "exchange/windows/export_plan_model.h"
#include "exchange/windows/export_table.h"
#include "exchange/windows/told_export.h"
#include "numerics/impedance/tensor.h"
#include "platform/settings_store/settings_store.h"
#include "platform/widgets/typed_text.h"
#include "tests/reduction/made_readings.h"
#include "tests/support/window_fixture.h"
#include "tests/tensor/made_tensors.h"

using Module_exchange::ExportEntries;
using Module_exchange::ExportFormat;
namespace fs = std::filesystem;

namespace {

/// Takes what would be shown in a program of the desktop.
class UrlTaker : public QObject {
  Q_OBJECT

 public:
  UrlTaker() { QDesktopServices::setUrlHandler("file", this, "take"); }
  ~UrlTaker() override { QDesktopServices::unsetUrlHandler("file"); }
  Q_SLOT void take(const QUrl& url) { taken.append(url); }

  QList<QUrl> taken;
};

std::string text_of(const fs::path& file) {
  std::ostringstream text;
  text << std::ifstream(file).rdbuf();
  return text.str();
}

std::size_t files_in(const fs::path& folder) {
  return fs::is_directory(folder) ? static_cast<std::size_t>(std::distance(fs::directory_iterator(folder),
                                                                           fs::directory_iterator()))
                                  : 0;
}

Module_exchange::ExportRow planned(const std::string& file, const std::string& line, double station,
                                   int frequencies) {
  Module_exchange::ExportRow row;
  row.file = file;
  row.line = line;
  row.stations = {station};
  row.frequencies = frequencies;
  if (file.empty()) {
    row.remarks = {"Station 300: there is no merged curve", "Its readings are masked"};
  }
  return row;
}

}  // namespace

class TransferFunctionsTest : public QObject, private WindowFixture {
  Q_OBJECT

 private:
  static void store_station(const std::string& line, double station, float dipole = 50.0F,
                            std::int32_t reference_type = 0) {
    const auto made = made::station(station, {0.1, 1.0, 10.0}, {25.0, 0.0});
    for (std::size_t element = 0; element < numerics::impedance::element_count; ++element) {
      std::vector<made::Point> points;
      for (const auto& point : made.points) {
        const auto earth = numerics::impedance::apparent_earth(point.tensor.z[element], {}, point.frequency);
        points.push_back({static_cast<float>(point.frequency), static_cast<float>(earth.resistivity.value),
                          static_cast<float>(earth.phase.value)});
      }
      const Module_database::ReadingKey key{
          line, station, reference_type, 0.0F, std::string(Module_tensor::curve_types[element]), dipole};
      made::store(key, 0, made::reading(points), Module_database::reduction_merged, -1);
    }
  }
  /// Line 200E with three stations is the current one, 400E has two.
  void make_lines() {
    make_survey();
    for (const double station : {100.0, 200.0, 1000.0}) {
      store_station("200E", station);
    }
    for (const double station : {100.0, 300.0}) {
      store_station("400E", station);
    }
    select("200E");
  }
  static void select(const char* line) {
    session().current_line = line;
    session().current_reference_type = 0;
    session().current_dipole = 50.0F;
  }
  void open_window() {
    window_.reset();
    window_ = std::make_unique<Form_transfer_functions>(entries_, rhoplus_);
    window_->resize(1200, 700);  // more than the platform's screen
    window_->show();
    QVERIFY(QTest::qWaitForWindowExposed(window_.get()));
    settle();
  }
  void settle() const {
    const auto* const timer = window_->findChild<QTimer*>();
    QTRY_VERIFY(!timer->isActive() && !control<QPushButton>("Command_stop_export").isVisible());
  }
  template <class Widget>
  Widget& control(const char* name) const {
    return *window_->findChild<Widget*>(name);
  }
  [[nodiscard]] QString label(const char* name) const { return control<QLabel>(name).text(); }
  [[nodiscard]] QAbstractItemModel& rows() const { return *control<QTableView>("Table_export_plan").model(); }
  [[nodiscard]] QString cell(int row, int column) const {
    return rows().index(row, column).data().toString();
  }
  [[nodiscard]] bool may_write() const { return control<QPushButton>("Command_write").isEnabled(); }
  void click(const char* name) const { QTest::mouseClick(&control<QPushButton>(name), Qt::LeftButton); }
  void choose_format(ExportFormat format) const {
    control<QComboBox>("Combo_export_format").setCurrentIndex(static_cast<int>(format));
    settle();
  }
  void type(const char* name, const QString& typed) const {
    auto& box = control<QLineEdit>(name);
    box.setFocus();
    box.selectAll();
    typed.isEmpty() ? QTest::keyClick(&box, Qt::Key_Delete) : QTest::keyClicks(&box, typed);
    settle();
  }
  [[nodiscard]] std::string out() const { return folder_->path("out"); }
  void type_out() const { type("Text_export_folder", QString::fromStdString(out())); }
  /// Acts once, while stations are looked at or files written.
  void within_the_work(std::function<void()> act) const {
    auto* const look = new QTimer(window_.get());
    connect(look, &QTimer::timeout, look, [this, look, act = std::move(act)] {
      if (control<QPushButton>("Command_stop_export").isEnabled() &&
          control<QPushButton>("Command_stop_export").isVisible()) {
        look->stop();
        look->deleteLater();
        act();
      }
    });
    look->start(0);
  }

  ExportEntries entries_;
  Module_output::RhoplusSettings rhoplus_;
  std::unique_ptr<Form_transfer_functions> window_;
  std::unique_ptr<SettingsStore> earlier_settings_;

 private Q_SLOTS:
  void init() {
    make_folder();
    earlier_settings_ = install_settings_store(std::make_unique<MemorySettingsStore>());
    entries_ = {};
  }
  void cleanup() {
    window_.reset();
    install_settings_store(std::move(earlier_settings_));
    remove_folder();
  }

  void shows_the_files_of_the_chosen_lines() {
    make_lines();
    open_window();
    QCOMPARE(rows().rowCount(), 3);
    QCOMPARE(cell(0, 0), QString("200E_100.edi"));
    QCOMPARE(cell(2, 2), QString("1000"));
    QVERIFY2(label("Label_export_summary").startsWith("3 files"), qPrintable(label("Label_export_summary")));
    QVERIFY(!control<QComboBox>("Combo_export_dipole").isVisible());  // the survey has one
    click("Command_all_lines");
    settle();
    QCOMPARE(rows().rowCount(), 5);
    choose_format(ExportFormat::emtf_xml);
    QCOMPARE(cell(4, 0), QString("400E_300.xml"));
    click("Command_no_line");
    settle();
    QCOMPARE(rows().rowCount(), 0);
    QCOMPARE(label("Label_export_summary"), QString("There is no line to write"));
    QVERIFY(!may_write());
  }

  void what_is_typed_wrong_is_told_beside_it() {
    make_lines();
    (void)folder_->write("notes.txt", "rain");
    open_window();
    control<QCheckBox>("Check_export_rotate").click();
    for (const char* const wrong : {"x", "361", ""}) {
      type("Text_export_rotation", wrong);
      const auto& told = control<QLabel>("Label_rotation_fault");
      QVERIFY2(!told.text().isEmpty() && told.sizeHint().width() <= told.width(), wrong);
      QVERIFY2(!may_write() && rows().rowCount() == 0, wrong);
      QCOMPARE(label("Label_export_summary"), told.text());
    }
    type("Text_export_rotation", "-30.5");
    QCOMPARE(label("Label_rotation_fault"), QString());
    QVERIFY(may_write() && rows().rowCount() == 3);
    type("Text_export_folder", "");
    QVERIFY(!label("Label_folder_fault").isEmpty() && !may_write());
    type("Text_export_folder", QString::fromStdString(folder_->path("notes.txt")));
    QCOMPARE(label("Label_folder_fault"), QString("This is a file, not a folder"));
    QVERIFY(!may_write());
    type_out();
    QCOMPARE(label("Label_folder_fault"), QString());
    QVERIFY(may_write());
    QVERIFY(interface_->take_messages().empty());
  }

  void only_what_a_format_has_a_use_for_can_be_set() {
    make_lines();
    entries_.rotate = true;
    entries_.rotation = "wrong";
    entries_.rhoplus = true;
    open_window();
    QVERIFY(!may_write());
    choose_format(ExportFormat::geojson);
    QCOMPARE(label("Label_rotation_fault"), QString());  // nothing is rotated
    const auto& rotate = control<QCheckBox>("Check_export_rotate");
    const auto& fits = control<QCheckBox>("Check_export_rhoplus");
    QVERIFY(!rotate.isEnabled() && !rotate.isChecked() && !fits.isChecked());
    QVERIFY(control<QLineEdit>("Text_plot_link").isEnabled());
    choose_format(ExportFormat::csv);
    QVERIFY(rotate.isEnabled() && rotate.isChecked() && fits.isChecked());  // what was chosen is kept
    QVERIFY(!control<QLineEdit>("Text_plot_link").isEnabled());
    QVERIFY(!may_write());
    control<QComboBox>("Combo_export_reduction").setCurrentIndex(2);
    settle();
    QVERIFY(!rotate.isEnabled() && !rotate.isChecked());
    QVERIFY(may_write());
    const auto choices = choices_of({}, entries_, rhoplus_);
    QCOMPARE(choices.reduction, Module_database::reduction_raw);
    QVERIFY(choices.rhoplus && !choices.rotation);
    choose_format(ExportFormat::edi);
    QVERIFY(!control<QComboBox>("Combo_export_reduction").isEnabled());
    QCOMPARE(control<QComboBox>("Combo_export_reduction").currentText(), QString("Merged"));
    QCOMPARE(choices_of({}, entries_, rhoplus_).reduction, Module_database::reduction_merged);
  }

  void lines_offer_the_curves_that_they_have() {
    make_lines();
    store_station("400E", 500.0, 25.0F);
    store_station("600E", 100.0, 25.0F);
    store_station("800E", 100.0, 50.0F, 1);
    open_window();
    const auto& lines = control<QListWidget>("List_export_lines");
    QCOMPARE(lines.count(), 4);
    QVERIFY(lines.item(0)->checkState() == Qt::Checked && lines.item(1)->checkState() == Qt::Unchecked);
    QCOMPARE(lines.item(2)->text(), QString("600E (dipole 25 m)"));
    QVERIFY(!(lines.item(3)->flags() & Qt::ItemIsEnabled));
    click("Command_all_lines");
    settle();
    QCOMPARE(rows().rowCount(), 6);  // 400E by its dipole of 50 m, 800E left out
    auto& dipole = control<QComboBox>("Combo_export_dipole");
    QCOMPARE(dipole.currentText(), QString("50"));
    dipole.setCurrentIndex(0);
    settle();
    QCOMPARE(lines.item(0)->text(), QString("200E (dipole 50 m)"));
    QCOMPARE(rows().rowCount(), 5);
    control<QComboBox>("Combo_export_reference").setCurrentIndex(1);
    settle();
    QCOMPARE(rows().rowCount(), 1);
    QCOMPARE(cell(0, 1), QString("800E"));
  }

  void writes_and_leads_to_the_folder() {
    make_lines();
    UrlTaker urls;
    open_window();
    QVERIFY(!control<QPushButton>("Command_open_folder").isEnabled());
    type_out();
    QCOMPARE(label("Label_folder_hint"), QString("Will be made"));
    click("Command_write");
    settle();
    const auto messages = interface_->take_messages();
    QCOMPARE(messages.size(), std::size_t{1});
    QVERIFY2(messages[0].starts_with("3 files written"), messages[0].c_str());
    QCOMPARE(files_in(out()), std::size_t{3});
    QVERIFY(fs::is_regular_file(out() + "/200E_1000.edi"));
    QVERIFY(window_->isVisible() && may_write());
    QCOMPARE(label("Label_folder_hint"), QString());
    click("Command_open_folder");
    QCOMPARE(urls.taken, QList<QUrl>{QUrl::fromLocalFile(QString::fromStdString(out()))});
    click("Command_write");  // nothing is replaced, and there is nothing new to open
    QVERIFY(!control<QPushButton>("Command_open_folder").isEnabled());

    entries_ = {};  // as when the program starts the next time
    open_window();
    QCOMPARE(control<QLineEdit>("Text_export_folder").text(), QString::fromStdString(out()));
  }

  void a_folder_is_chosen_from_those_there_are() {
    make_lines();
    (void)folder_->write("there/notes.txt", "");
    open_window();
    type("Text_export_folder", "there");
    QString began_in;
    QTimer::singleShot(0, window_.get(), [&] {
      auto* const dialog = qobject_cast<QFileDialog*>(QApplication::activeModalWidget());
      began_in = dialog->directory().absolutePath();
      dialog->reject();
    });
    click("Command_choose_export_folder");
    QCOMPARE(began_in, QString::fromStdString(folder_->path("there")));
    QCOMPARE(control<QLineEdit>("Text_export_folder").text(), QString("there"));

    type_out();  // isn't there: the survey's folder is
    QTimer::singleShot(0, window_.get(), [&] {
      auto* const dialog = qobject_cast<QFileDialog*>(QApplication::activeModalWidget());
      began_in = dialog->directory().absolutePath();
      dialog->selectFile(QString::fromStdString(folder_->path("there")));
      static_cast<QDialog*>(dialog)->accept();
    });
    click("Command_choose_export_folder");
    QCOMPARE(began_in, QString::fromStdString(folder_->path("")).chopped(1));
    QCOMPARE(control<QLineEdit>("Text_export_folder").text(), QString::fromStdString(folder_->path("there")));
    settle();
    QVERIFY(may_write());
  }

  void nothing_is_replaced_without_a_yes() {
    make_lines();
    (void)folder_->write("out/200E_200.edi", "an earlier one");
    open_window();
    type_out();
    QTest::keyClick(window_.get(), Qt::Key_W, Qt::AltModifier);
    QTRY_COMPARE((*interface_)->questions.size(), std::size_t{1});
    settle();
    QCOMPARE(text_of(out() + "/200E_200.edi"), std::string("an earlier one"));
    QCOMPARE(files_in(out()), std::size_t{1});
    QVERIFY(interface_->take_messages().empty());
    (*interface_)->yes_no_answers = {true};
    QTest::keyClick(&control<QLineEdit>("Text_export_folder"), Qt::Key_Return);
    QTRY_COMPARE(files_in(out()), std::size_t{3});
    QVERIFY(text_of(out() + "/200E_200.edi") != "an earlier one");
  }

  void escape_stops_the_writing_and_then_closes() {
    make_lines();
    open_window();
    type_out();
    within_the_work([this] {
      QVERIFY(!control<QComboBox>("Combo_export_format").isEnabled());
      QVERIFY(!may_write());
      QDialog question(window_.get());
      question.setModal(true);
      question.show();
      QVERIFY(!control<QProgressBar>("ProgressBar_export").isVisible());
      QVERIFY(!control<QPushButton>("Command_stop_export").isVisible());
      question.close();
      QVERIFY(control<QPushButton>("Command_stop_export").isVisible());
      QTest::keyClick(window_.get(), Qt::Key_Escape);
    });
    click("Command_write");
    QVERIFY(window_->isVisible());
    settle();
    QVERIFY(files_in(out()) < 3);
    QCOMPARE(interface_->take_messages().size(), std::size_t{1});
    QTest::keyClick(window_.get(), Qt::Key_Escape);
    QVERIFY(!window_->isVisible());
  }

  void another_choice_ends_the_look_and_begins_it_again() {
    make_lines();
    open_window();
    within_the_work([this] { click("Command_all_lines"); });
    choose_format(ExportFormat::emtf_xml);
    QCOMPARE(rows().rowCount(), 5);
    type_out();
    within_the_work([this] { click("Command_write"); });
    choose_format(ExportFormat::edi);
    QTRY_COMPARE(files_in(out()), std::size_t{5});
    QCOMPARE(interface_->take_messages().size(), std::size_t{1});
    settle();
    QCOMPARE(cell(0, 0), QString("200E_100.edi"));
    within_the_work([this] { click("Command_stop_export"); });
    choose_format(ExportFormat::emtf_xml);
    QVERIFY2(label("Label_export_summary").startsWith("Stopped"), qPrintable(label("Label_export_summary")));
    QVERIFY(may_write());
    within_the_work([this] { QTest::keyClick(window_.get(), Qt::Key_Escape); });
    choose_format(ExportFormat::edi);
    QVERIFY(!window_->isVisible());
  }

  void choices_stay_but_those_of_a_survey() {
    make_lines();
    open_window();
    choose_format(ExportFormat::csv);
    click("Command_all_lines");
    control<QCheckBox>("Check_export_rotate").click();
    type("Text_export_rotation", "20");
    open_window();
    QCOMPARE(control<QComboBox>("Combo_export_format").currentText(), QString("CSV"));
    QCOMPARE(entries_.lines.size(), std::size_t{2});
    entries_.propose_strike(-35.04);
    QCOMPARE(entries_.rotation, std::string("-35.0"));
    QVERIFY(entries_.rotate);
    entries_.propose_strike(std::nullopt);
    QVERIFY(!entries_.rotate);

    window_.reset();
    QCOMPARE(Module_database::close_database(), 0);
    session().database_file = folder_->path("other.mdb");
    QCOMPARE(Module_database::create_database(), 0);
    QCOMPARE(Module_database::open_database(), 0);
    store_station("400E", 100.0);
    store_station("600E", 100.0);
    select("600E");
    open_window();
    QCOMPARE(entries_.lines, std::vector<std::string>{"600E"});
    QCOMPARE(entries_.format, ExportFormat::csv);
  }

  void a_survey_without_readings_says_so() {
    make_survey();
    open_window();
    QCOMPARE(control<QListWidget>("List_export_lines").count(), 0);
    QCOMPARE(label("Label_export_summary"), QString("There is no line to write"));
    QTest::keyClick(window_.get(), Qt::Key_Return);
    QVERIFY(interface_->take_messages().empty());
  }

  void equal_remarks_are_told_once() {
    Module_exchange::ExportResult result;
    Module_exchange::ExportChoices choices;
    choices.folder = "/out";
    result.files = {"/out/a.edi"};
    for (int station = 1; station <= 12; ++station) {
      const std::string number = std::to_string(station);
      result.remarks.emplace_back("Station ")
          .append(number)
          .append(" (ET")
          .append(number)
          .append("): there is no ExHx");
    }
    result.remarks.insert(result.remarks.end(), {"Station 3: there is no tipper", "no place", "no place"});
    const std::string all =
        "1 file written to /out\n\n12 stations, 1 (ET1), 2 (ET2), 3 (ET3), 4 (ET4), 5 (ET5) and 7 more: "
        "there is no ExHx\nStation 3: there is no tipper\n"
        "no place (2 times)";
    QCOMPARE(told_export(choices, result), all);
    for (int other = 1; other <= 7; ++other) {
      result.remarks.push_back("another " + std::to_string(other));
    }
    QVERIFY(told_export(choices, result).ends_with("another 5\nand 2 more remarks, see the table"));
  }

  void columns_show_their_contents() {
    ExportPlanModel model;
    ExportTable table(model);
    Module_exchange::ExportPlan plan;
    plan.rows = {planned("A2.edi", "2", 200.0, 9)};
    plan.rows[0].site = "Old Airstrip South, second";
    plan.rows[0].stations.assign(200, 1.0);
    model.show_plan(plan);
    for (int column = 0; column < 7; ++column) {
      const QString text = model.index(0, column).data().toString();
      QVERIFY2(table.columnWidth(column) > table.fontMetrics().horizontalAdvance(text), qPrintable(text));
    }
    table.setColumnWidth(3, 50);  // as a user drags it
    model.show_plan(plan);
    QCOMPARE(table.columnWidth(3), 50);
  }

  void what_gives_no_file_comes_first_until_a_heading_is_clicked() {
    ExportPlanModel model;
    const QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
    ExportTable table(model);
    Module_exchange::ExportPlan plan;
    plan.rows = {planned("A2.edi", "2", 200.0, 9), planned("", "2", 300.0, 0),
                 planned("A10.edi", "10", 1000.0, 30)};
    model.show_plan(plan);
    const auto column = [&](int of) {
      QStringList texts;
      for (int row = 0; row < model.rowCount(); ++row) {
        texts << model.index(row, of).data().toString();
      }
      return texts;
    };
    QCOMPARE(column(2), (QStringList{"300", "200", "1000"}));
    QCOMPARE(model.index(0, 7).data().toString(),
             QString("there is no merged curve; Its readings are masked"));
    QVERIFY(model.index(0, 7).data(Qt::ForegroundRole).isValid());
    QVERIFY(!model.index(1, 0).data(Qt::ForegroundRole).isValid());
    QCOMPARE(plan_summary(plan), std::string("2 files; 1 station gives none"));
    table.sortByColumn(0, Qt::AscendingOrder);
    QCOMPARE(column(0), (QStringList{"", "A2.edi", "A10.edi"}));
    table.selectRow(2);
    table.sortByColumn(2, Qt::DescendingOrder);
    QCOMPARE(column(2), (QStringList{"1000", "300", "200"}));
    table.show();
    table.setFocus();
    QVERIFY(QTest::qWaitForWindowActive(&table));
    QTest::keyClick(&table, Qt::Key_C, Qt::ControlModifier);
    QCOMPARE(QApplication::clipboard()->text(), QString("A10.edi\t10\t1000\t\t\t30\t\t"));
    table.sortByColumn(-1, Qt::AscendingOrder);
    QCOMPARE(column(2), (QStringList{"300", "200", "1000"}));
  }
};

QTEST_MAIN(TransferFunctionsTest)
#include "transfer_functions_test.moc"
