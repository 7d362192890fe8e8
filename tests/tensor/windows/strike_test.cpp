// The strike window, worked as a user does.
#include <QApplication>
#include <QCheckBox>
#include <QClipboard>
#include <QComboBox>
#include <QFileInfo>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPixmap>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>

#include "database/sites.h"
#include "tensor/windows/Form_strike.h"
#include "tensor/windows/rose_picture.h"
#include "tensor/windows/shown_line.h"
#include "tensor/windows/strike_table.h"
#include "tests/reduction/made_readings.h"
#include "tests/support/drawn_texts.h"
#include "tests/support/window_fixture.h"
#include "tests/tensor/made_tensors.h"

class StrikeTest : public QObject, private WindowFixture {
  Q_OBJECT

 private:
  /// Stores the merged curves of a station over ground of strike 25, without what is masked.
  static void store_station(double station, const std::vector<double>& frequencies, bool diagonals = true) {
    using numerics::impedance::apparent_earth;
    const auto made = made::station(station, frequencies, {25.0, 0.0});
    for (std::size_t element = 0; element < numerics::impedance::element_count; ++element) {
      const bool diagonal = element == 0 || element == 3;
      if (diagonal && !diagonals) {
        continue;
      }
      std::vector<made::Point> points;
      for (const auto& point : made.points) {
        const auto earth = apparent_earth(point.tensor.z[element], {}, point.frequency);
        points.push_back({static_cast<float>(point.frequency), static_cast<float>(earth.resistivity.value),
                          static_cast<float>(earth.phase.value)});
      }
      Module_database::ReadingKey key = made::key(0.0F, station);
      key.data_type = Module_tensor::curve_types[element];
      made::store(key, 0, made::reading(points), 2, -1);
    }
    session().station_line.emplace_back("200E");
    session().station_value.push_back(station);
    session().station_count = static_cast<int>(session().station_value.size());
  }
  void make_line() {
    make_survey();
    for (const double station : {100.0, 200.0, 1000.0}) {
      store_station(station, {0.1F, 1.0, 10.0, 100.0});
    }
    show_station(100.0, 1);
  }
  static void show_station(double station, int index) {
    session().current_line = "200E";
    session().current_reference_type = 0;
    session().current_dipole = 50.0F;
    session().current_station = station;
    session().current_station_index = index;
  }
  void open_window() {
    shown_ = std::make_unique<ShownLine>();
    window_ = std::make_unique<Form_strike>(*shown_);
    window_->show();
    QVERIFY(QTest::qWaitForWindowExposed(window_.get()));
  }
  template <class Widget>
  Widget& control(const char* name) const {
    return *window_->findChild<Widget*>(name);
  }
  [[nodiscard]] QString text(const char* name) const { return control<QLabel>(name).text(); }
  [[nodiscard]] QTableWidget& table() const { return control<QTableWidget>("Grid_stations"); }
  void click(const char* name) const { QTest::mouseClick(&control<QPushButton>(name), Qt::LeftButton); }
  void type(const char* name, const QString& typed) const {
    auto& edit = control<QLineEdit>(name);
    edit.selectAll();
    QTest::keyClicks(&edit, typed);
    QTest::keyClick(&edit, Qt::Key_Return);
  }

  std::unique_ptr<ShownLine> shown_;
  std::unique_ptr<Form_strike> window_;

 private Q_SLOTS:
  void init() { make_folder(); }
  void cleanup() {
    window_.reset();
    shown_.reset();
    remove_folder();
  }

  void hands_on_either_solution() {
    make_line();
    open_window();
    QVERIFY2(text("Label_strike").startsWith("Strike N25E, 25.0"), qPrintable(text("Label_strike")));
    QVERIFY(text("Label_strike").contains("N65W, -65.0"));
    QVERIFY(text("Label_sentences").contains("12 of 12 points"));
    QVERIFY(text("Label_sentences").contains("direction of the line isn't known"));
    QSignalSpy chosen(shown_.get(), &ShownLine::strike_chosen);
    click("Command_use_strike");
    click("Command_use_other");
    QCOMPARE(chosen.count(), 2);
    QVERIFY(std::abs(chosen[0][0].toDouble() - 25.0) < 0.01);
    QVERIFY(std::abs(chosen[1][0].toDouble() + 65.0) < 0.01);
    QVERIFY(text("Label_status").contains("-65.0"));
  }

  void band_and_method_change_what_is_shown() {
    make_line();
    open_window();
    type("Text_band_from", "20");
    type("Text_band_to", "0.5");
    QCOMPARE(text("Label_periods"), QString("(0.05 - 2 s)"));
    QVERIFY(text("Label_sentences").contains("6 of 6 points"));
    type("Text_band_to", "x");
    QVERIFY(text("Label_periods").contains("number above 0"));
    QVERIFY(!control<QPushButton>("Command_use_strike").isEnabled());
    click("Command_whole_band");
    QVERIFY(text("Label_sentences").contains("12 of 12 points"));
    control<QComboBox>("Combo_strike_method").setCurrentIndex(3);
    QCOMPARE(text("Label_strike"), QString("No tipper in this band"));
    QVERIFY(!control<QPushButton>("Command_use_other").isEnabled());
  }

  void stations_sort_by_number_and_lead_to_the_main_window() {
    make_line();
    open_window();
    QCOMPARE(table().rowCount(), 3);
    QCOMPARE(table().item(2, 0)->text(), QString("1000"));
    table().sortItems(0, Qt::DescendingOrder);
    QCOMPARE(table().item(0, 0)->text(), QString("1000"));
    QCOMPARE(table().item(1, 0)->text(), QString("200"));
    QVERIFY(table().item(2, 0)->font().bold());
    QSignalSpy chosen(window_->findChild<StrikeTable*>(), &StrikeTable::station_chosen);
    const QPoint at = table().visualItemRect(table().item(1, 0)).center();
    QTest::mouseClick(table().viewport(), Qt::LeftButton, {}, at);
    QTest::mouseDClick(table().viewport(), Qt::LeftButton, {}, at);
    QCOMPARE(chosen.count(), 1);
    QCOMPARE(chosen[0][0].toDouble(), 200.0);
    click("Command_copy_table");
    const QStringList lines = QApplication::clipboard()->text().split('\n');
    QCOMPARE(lines.size(), 4);
    QVERIFY(lines[1].startsWith("1000\t25.0\t-65.0\t0.0\t4\t0\t0.0\t"));
  }

  void a_cell_of_the_dimensions_leads_to_its_frequency() {
    make_line();
    open_window();
    auto& picture = control<DimensionPicture>("Picture_dimensions");
    picture.grab();
    QSignalSpy chosen(&picture, &DimensionPicture::chosen);
    QSignalSpy hovered(&picture, &DimensionPicture::hovered);
    // Cells fill the plot: four of a decade each from the top, 100 Hz first.
    const auto places = picture.places();
    for (const double down : {0.125, 0.875}) {
      const QPointF at(places.plot.left() + 0.5 * places.column,
                       places.plot.top() + down * places.plot.height());
      QTest::mouseMove(&picture, at.toPoint());
      QTest::mouseClick(&picture, Qt::LeftButton, {}, at.toPoint());
    }
    QCOMPARE(chosen.count(), 2);
    QCOMPARE(chosen[0][0].toDouble(), 100.0);
    QCOMPARE(chosen[0][1].toDouble(), 100.0);
    QVERIFY(std::abs(chosen[1][1].toDouble() - 0.1) < 1e-6);
    QVERIFY(hovered.back()[0].toString().contains("2-D"));
  }

  void the_sign_of_ey_can_be_set() {
    make_line();
    open_window();
    QVERIFY(table().item(1, 7)->text().contains("by rule"));
    table().selectRow(1);
    QSignalSpy edited(shown_.get(), &ShownLine::edited);
    control<QPushButton>("Command_ey_sign").menu()->actions().at(2)->trigger();
    QCOMPARE(edited.count(), 1);
    QCOMPARE(Module_database::find_site("200E", 200.0)->EySign, Module_database::ey_sign_turned);
    QTRY_COMPARE(table().item(1, 7)->text(), QString("turned, set"));
    control<QPushButton>("Command_ey_sign").menu()->actions().at(0)->trigger();
    QTRY_VERIFY(table().item(1, 7)->text().contains("as measured, by"));
  }

  void headings_of_many_decades_are_whole() {
    const auto stations = Module_tensor::strike_stations(
        {made::station(1.0, {0.00098, 0.005, 0.05, 0.5, 5, 50, 500, 5000, 20480}, {})});
    Module_tensor::RoseFigure figure;
    figure.summary = Module_tensor::strike_summary(stations, {});
    QCOMPARE(figure.summary->decades.size(), std::size_t{9});
    DrawnTexts device;
    QPainter painter(&device);
    Module_tensor::paint_roses(painter, QRectF(0, 0, 1200, 400), figure);
    painter.end();
    QVERIFY2(device.texts().contains("0.00098 - 0.001"), qPrintable(device.texts().join("|")));
    QVERIFY2(device.texts().filter(QChar(0x2026)).isEmpty(), qPrintable(device.texts().join("|")));
  }

  void pictures_are_saved() {
    make_line();
    open_window();
    auto actions = control<QPushButton>("Command_save_picture").menu()->actions();
    QCOMPARE(actions.size(), 4);
    for (int i = 0; i < 4; ++i) {
      const std::string path = folder_->path("picture" + std::to_string(i) + (i % 2 == 0 ? ".png" : ".pdf"));
      (*interface_)->path_answers.push_back(path);
      actions[i]->trigger();
      QVERIFY2(QFileInfo(QString::fromStdString(path)).size() > 1000, path.c_str());
    }
    QVERIFY(!QPixmap(QString::fromStdString(folder_->path("picture0.png"))).isNull());
    QCOMPARE(interface_->take_messages().size(), std::size_t{0});
  }

  void leaves_out_what_is_switched_off() {
    make_line();
    session().frequencies = {{0.1F, 1.0F, 10.0F, 100.0F}, {1, 1, 0, 1}};
    open_window();
    QVERIFY2(text("Label_sentences").contains("9 of 9 points"), qPrintable(text("Label_sentences")));
    session().frequencies.enabled = {1, 1, 1, 1};
    shown_->follow_edit();
    QTRY_VERIFY(text("Label_sentences").contains("12 of 12 points"));
  }

  void says_what_is_missing() {
    struct Case {
      const char* name;
      std::vector<double> stations;
      std::vector<double> frequencies;
      bool diagonals;
      const char* strike;
    };
    const Case cases[] = {
        {"no survey", {}, {}, true, "There is no line to show"},
        {"no diagonals", {100.0, 200.0}, {1.0, 10.0}, false, "No station of the line has all four elements"},
        {"one station", {100.0}, {1.0, 10.0}, true, "a single station: no error"},
        {"one frequency", {100.0, 200.0}, {1.0}, true, "Strike N25E, 25.0"}};
    for (const Case& c : cases) {
      make_folder();
      make_survey();
      for (const double station : c.stations) {
        store_station(station, c.frequencies, c.diagonals);
      }
      if (!c.stations.empty()) {
        show_station(100.0, 1);
      }
      open_window();
      QVERIFY2(text("Label_strike").contains(c.strike), qPrintable(c.name + (": " + text("Label_strike"))));
      QCOMPARE(table().rowCount(), static_cast<int>(c.stations.size()));
      QVERIFY(!window_->grab().isNull());
      window_.reset();
      shown_.reset();
      remove_folder();
    }
  }

  void follows_the_main_window() {
    make_line();
    open_window();
    show_station(1000.0, 3);
    shown_->follow_selection();
    QVERIFY(table().item(2, 0)->font().bold());
    session().current_line = "300E";
    shown_->follow_selection();
    QTRY_COMPARE(table().rowCount(), 0);
  }
};

QTEST_MAIN(StrikeTest)
#include "strike_test.moc"
