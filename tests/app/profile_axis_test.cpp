// The profile by station numbers and by distances, as the main window shows it and speaks of it.
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QToolButton>

#include "database/sites.h"
#include "tests/app/main_view_fixture.h"

namespace {

constexpr double minute = 1.0 / 60.0;  // of latitude

void store_site(const std::string& line, double station, double latitude, double longitude) {
  Module_database::Site site;
  site.line = line;
  site.station = station;
  site.latitude = latitude;
  site.longitude = longitude;
  std::ignore = Module_database::keep_site(site);
}

/// Line 200E runs north, its third station lying between the others; 300E is an area; 400E has no
/// places; 500E was measured with another dipole.
void store_lines() {
  for (const char* const line : {"300E", "400E"}) {
    for (const double station : {100.0, 200.0, 300.0}) {
      made::ReadingKey key = made::key(0.0F, station);
      key.line = line;
      made::store(key, 0, made::repeat_of(station, 1, false), 2, -1);
    }
  }
  made::ReadingKey other_dipole = made::key(0.0F);
  other_dipole.line = "500E";
  other_dipole.dipole = 5000.0F;
  made::store(other_dipole, 0, made::repeat_of(100.0, 1, false), 2, -1);
  store_site("200E", 100.0, -25.0, 141.0);
  store_site("200E", 200.0, -25.0 + 4.0 * minute, 141.0);
  store_site("200E", 300.0, -25.0 + minute, 141.0);
  store_site("300E", 100.0, -25.0, 141.0);
  store_site("300E", 200.0, -26.0, 141.0);
  store_site("300E", 300.0, -25.5, 142.0);
}

bool is_blue(const QColor& colour) { return colour.blue() > colour.red() + 60; }

}  // namespace

class ProfileAxisTest : public QObject, private MainViewFixture {
  Q_OBJECT

 private:
  QString notice() const {
    return control<QWidget>("Notice_profile")->isVisible() ? control<QLabel>("Label_notice")->text()
                                                           : QString();
  }
  QLineEdit* station() const { return control<QLineEdit>("Text_sample_station"); }
  VexGraphControl* profile() const { return control<VexGraphControl>("vxgraph_Profile_0"); }
  bool blue_line_at(int point) const {
    const auto at = profile()->point_position(0, point);
    const QImage picture = profile()->grab().toImage();
    const int x = qRound(at.value_or(QPointF()).x());
    const int y = profile()->plot_area().bottom() - 4;  // below the curves
    return is_blue(picture.pixelColor(x, y)) || is_blue(picture.pixelColor(x - 1, y)) ||
           is_blue(picture.pixelColor(x + 1, y));
  }

 private Q_SLOTS:
  void init() { open_made_survey(store_lines); }
  void cleanup() { close_survey(); }

  void the_bar_shows_distances_at_a_click() {
    QCOMPARE(notice(),
             QString("The stations of line 200E are 100 m apart by their numbers, its sites 3.7 km"));
    QCOMPARE(profile()->xaxismax(), 350.0F);
    QVERIFY(!control<QCheckBox>("Check_by_distance")->isChecked());
    press("Command_notice");
    QVERIFY(notice().isEmpty());
    QVERIFY(control<QCheckBox>("Check_by_distance")->isChecked());
    QVERIFY(profile()->xaxismax() > 7000.0F);
    QVERIFY(blue_line_at(0));
    click_point("vxgraph_Profile_0", 0, 1);  // points go along the line
    QCOMPARE(station()->text(), QString("300"));
    QVERIFY(blue_line_at(1));
    QTest::keyClick(window_.get(), Qt::Key_Left);
    QCOMPARE(station()->text(), QString("200"));
    QVERIFY(blue_line_at(2) && !blue_line_at(1));
    control<QCheckBox>("Check_by_distance")->click();
    QCOMPARE(profile()->xaxismax(), 350.0F);
    QVERIFY(blue_line_at(1));
  }

  void it_says_it_once_a_line() {
    auto* const lines = control<QComboBox>("Combo_line");
    lines->setCurrentIndex(1);
    QVERIFY2(notice().startsWith("The sites of line 300E lie on no straight line (RMS 45 km of "),
             qPrintable(notice()));
    QVERIFY2(notice().endsWith("and its station numbers are no distances"), qPrintable(notice()));
    QVERIFY(!control<QPushButton>("Command_notice")->isVisible());
    QTest::mouseClick(control<QToolButton>("Command_close_notice"), Qt::LeftButton);
    QVERIFY(notice().isEmpty());
    for (const int line : {2, 0, 1}) {
      lines->setCurrentIndex(line);
      QVERIFY2(notice().isEmpty(), qPrintable(notice()));
    }
  }

  void the_plan_shows_an_area_by_its_map_places() {
    auto* const coordinates = control<QComboBox>("Combo_coords");
    auto* const lines = control<QComboBox>("Combo_line");
    for (StationPlace& place : session().station_table) {
      place.map_x = 500000.0 + place.local_y;
      place.map_y = 7200000.0;
    }
    QCOMPARE(coordinates->currentText(), QString("Local"));
    lines->setCurrentIndex(1);
    QCOMPARE(coordinates->currentText(), QString("Map"));
    coordinates->setCurrentIndex(0);
    lines->setCurrentIndex(0);
    lines->setCurrentIndex(1);
    QCOMPARE(coordinates->currentText(), QString("Local"));  // as it was chosen since
  }

  void a_line_without_curves_of_the_chosen_kind_says_so() {
    auto* const lines = control<QComboBox>("Combo_line");
    lines->setCurrentText("500E");
    QCOMPARE(notice(), "Line 500E has no merged curves of " +
                           control<QComboBox>("Combo_data_type")->currentText() +
                           " with this reference and dipole");
    lines->setCurrentText("400E");
    QVERIFY2(notice().isEmpty(), qPrintable(notice()));
  }

  void two_things_are_told_at_once_and_closed_together() {
    const QString of_line = notice();
    QVERIFY(of_line.contains("apart by their numbers"));
    for (int repeat = 0; repeat < made::line_repeats; ++repeat) {
      auto* const grid = control<QTableWidget>("Grid_repeats");
      QTest::mouseClick(grid->viewport(), Qt::LeftButton, {},
                        grid->visualItemRect(grid->item(repeat, 1)).center());
    }
    const QStringList both = notice().split('\n');
    QCOMPARE(both.size(), 2);
    QCOMPARE(both.first(), of_line);
    QVERIFY2(both.last().startsWith("No reading is in use"), qPrintable(both.last()));
    QVERIFY(control<QPushButton>("Command_notice")->isVisible());
    press("Command_notice");
    QCOMPARE(notice(), both.last());
    QTest::mouseClick(control<QToolButton>("Command_close_notice"), Qt::LeftButton);
    QVERIFY(notice().isEmpty());
    click_cell(0, 1);
    QVERIFY2(notice().isEmpty(), "what was closed doesn't come back");
  }

  void a_line_without_distances_refuses_them_and_others_have_them() {
    auto* const lines = control<QComboBox>("Combo_line");
    auto* const by_distance = control<QCheckBox>("Check_by_distance");
    lines->setCurrentIndex(2);
    by_distance->click();
    QCOMPARE(notice(), QString("The sites of line 400E have no places, so there are no distances along it"));
    QVERIFY(!by_distance->isChecked());
    QCOMPARE(profile()->xaxismax(), 350.0F);
    lines->setCurrentIndex(0);
    QVERIFY(by_distance->isChecked());
    QVERIFY(profile()->xaxismax() > 7000.0F);
    lines->setCurrentIndex(1);
    QVERIFY2(notice().endsWith("so distances along it mean nothing"), qPrintable(notice()));
    QVERIFY(!by_distance->isChecked());
    QCOMPARE(profile()->xaxismax(), 350.0F);
    show_survey();  // a new session with it
    QVERIFY(!control<QCheckBox>("Check_by_distance")->isChecked());
    QVERIFY(notice().contains("apart by their numbers"));
  }
};

QTEST_MAIN(ProfileAxisTest)
#include "profile_axis_test.moc"
