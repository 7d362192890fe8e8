// The map of phase tensors and arrows, worked in its window as a user does.
#include <QComboBox>
#include <QImage>
#include <QLabel>
#include <QPushButton>
#include <QSignalSpy>
#include <QSlider>
#include <QTest>
#include <QWheelEvent>
#include <algorithm>
#include <cmath>
#include <complex>
#include <fstream>
#include <numbers>
#include <sstream>

#include "database/sites.h"
#include "display/selection.h"
#include "tensor/windows/Form_tensor_map.h"
#include "tensor/windows/map_names.h"
#include "tensor/windows/map_picture.h"
#include "tensor/windows/map_view.h"
#include "tensor/windows/scale_bar.h"
#include "tests/reduction/made_readings.h"
#include "tests/support/drawn_texts.h"
#include "tests/support/window_fixture.h"

using namespace Module_tensor;

class MapTest : public QObject, private WindowFixture {
  Q_OBJECT

  /// A merged curve of an element that is the same at 1, 10 and 100 Hz, in resistivity and phase, or real and
  /// imaginary part.
  static void store_element(const std::string& line, double station, const char* data_type, float first,
                            float second) {
    made::store({line, station, 0, 0.0F, data_type, 50.0F}, -1,
                made::reading({{1, first, second}, {10, first, second}, {100, first, second}}), 2, -1);
  }
  static void store_site(const std::string& line, double station, double latitude, double longitude) {
    Module_database::Site site;
    site.line = line;
    site.station = station;
    site.name = "S" + std::to_string(static_cast<int>(station));
    site.latitude = latitude;
    site.longitude = longitude;
    static_cast<void>(Module_database::keep_site(site));
  }
  static void store_station(const std::string& line, double station) {
    store_element(line, station, "ExHx", 5.0F, 30.0F);
    store_element(line, station, "ExHy", 100.0F, 35.0F);
    store_element(line, station, "EyHx", 200.0F, -125.0F);
    store_element(line, station, "EyHy", 4.0F, 40.0F);
    store_element(line, station, "HzHx", 0.0F, 0.1F);
    store_element(line, station, "HzHy", -0.2F, 0.0F);
  }
  void show_survey() {
    dao::Recordset& files = Module_database::open_survey().files;
    files.add_new();
    files.set_text("SurveyFile", "a.edi");
    files.set_long("ReferenceType", 0);
    files.update();
    Module_display_data::SelectionLists lists;
    QCOMPARE(Module_display_data::fill_selection_lists(lists), 0);
    QVERIFY(!Module_display_data::display_station(1, {}).failed);
  }
  /// Three stations on line 1E and one on 2E, 10 km apart, in the open.
  void make_lines() {
    for (int i = 1; i <= 3; ++i) {
      store_station("1E", 100.0 * i);
      store_site("1E", 100.0 * i, 60.0, 15.0 + 0.18 * i);
    }
    store_station("2E", 400.0);
    store_site("2E", 400.0, 60.09, 15.18);
    show_survey();
  }
  void open_map() {
    shown_ = std::make_unique<ShownLine>();
    window_ = std::make_unique<Form_tensor_map>(*shown_);
    window_->resize(1100, 700);
    window_->show();
    QVERIFY(QTest::qWaitForWindowExposed(window_.get()));
  }

  template <class Widget>
  Widget& control(const char* name) const {
    auto* const found = window_->findChild<Widget*>(name);
    if (found == nullptr) {
      qFatal("no control %s", name);
    }
    return *found;
  }
  MapView& view() const { return control<MapView>("Picture_tensor_map"); }
  const MapContents& contents() const { return view().contents(); }
  QPoint place_of(std::size_t index) const {
    const QRectF plot = map_area(view().rect());
    const MapSite& site = contents().map.sites[index];
    const PicturePlace place = to_picture(shown_frame(contents(), view().rect()),
                                          {plot.width(), plot.height()}, site.east, site.north);
    return QPointF(plot.left() + place.x, plot.top() + place.y).toPoint();
  }
  void turn_wheel(QPoint at, int notches) const {
    QWheelEvent event(at, view().mapToGlobal(at), {}, {0, 120 * notches}, Qt::NoButton, Qt::NoModifier,
                      Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(&view(), &event);
  }
  bool has_read_lines() {
    return std::ranges::any_of((*interface_)->progress_texts, [](const std::string& text) {
      return text.starts_with("Reading the tensors");
    });
  }
  static std::string bytes_of(const std::string& path) {
    std::ostringstream text;
    text << std::ifstream(path, std::ios::binary).rdbuf();
    return text.str();
  }

  std::unique_ptr<ShownLine> shown_;
  std::unique_ptr<Form_tensor_map> window_;

 private Q_SLOTS:
  void init() {
    make_folder();
    make_survey();
  }
  void cleanup() {
    window_.reset();
    shown_.reset();
    remove_folder();
  }

  void the_slider_goes_through_all_periods() {
    make_lines();
    open_map();
    auto& slider = control<QSlider>("Slider_map_period");
    auto& label = control<QLabel>("Label_map_period");
    QCOMPARE(slider.maximum(), 2);
    QCOMPARE(contents().frequency, 10.0);
    QTest::keyClick(&slider, Qt::Key_Home);
    QCOMPARE(label.text(), QString("Period 0.01 s (100 Hz)"));
    QTest::keyClick(&slider, Qt::Key_End);
    QCOMPARE(contents().frequency, 1.0);
    QCOMPARE(window_->focusWidget(), &view());  // keys work as soon as the window is there
    QTest::keyClick(&view(), Qt::Key_Left);
    QCOMPARE(label.text(), QString("Period 0.1 s (10 Hz)"));
    QCOMPARE(contents().values.size(), 3U);
    QVERIFY(contents().values[0].phase_tensor.has_value());
    // Tx = 0 + 0.1i, Ty = -0.2: the Parkinson arrow points to the east.
    QVERIFY(std::abs(contents().values[0].real_arrow->east - 0.2) < 1e-6);
    QVERIFY(control<QLabel>("Label_map_remarks")
                .text()
                .startsWith("Of 3 sites 3 have a phase tensor here and 3 a tipper"));
  }

  void a_click_chooses_the_station_and_a_drag_moves_the_plan() {
    make_lines();
    open_map();
    QSignalSpy chosen(shown_.get(), &ShownLine::station_chosen);
    QTest::mouseClick(&view(), Qt::LeftButton, {}, place_of(2));
    QCOMPARE(chosen.size(), 1);
    QCOMPARE(chosen[0][0].toInt(), 3);
    QCOMPARE(chosen[0][1].toDouble(), 10.0);
    QTest::mouseClick(&view(), Qt::LeftButton, {}, place_of(2) + QPoint(0, 80));
    QCOMPARE(chosen.size(), 1);  // nothing is there

    const QPoint before = place_of(1);
    QTest::mousePress(&view(), Qt::LeftButton, {}, before);
    QTest::mouseMove(&view(), before + QPoint(20, 10));
    QTest::mouseMove(&view(), before + QPoint(40, 30));
    QTest::mouseRelease(&view(), Qt::LeftButton, {}, before + QPoint(40, 30));
    QCOMPARE(place_of(1), before + QPoint(40, 30));
    QCOMPARE(chosen.size(), 1);
  }

  void the_wheel_zooms_at_the_pointer_and_a_double_click_fits() {
    make_lines();
    open_map();
    const QPoint first = place_of(0);
    const QPoint last = place_of(2);
    turn_wheel(first, 2);
    QVERIFY((place_of(0) - first).manhattanLength() <= 1);
    QVERIFY(place_of(2).x() - place_of(0).x() > 1.5 * (last.x() - first.x()));
    QTest::mouseDClick(&view(), Qt::LeftButton, {}, QPoint(300, 300));
    QCOMPARE(place_of(2), last);
    turn_wheel(first, -3);
    QVERIFY(place_of(2) != last);
    QTest::mouseClick(&control<QPushButton>("Command_map_fit"), Qt::LeftButton);
    QCOMPARE(place_of(2), last);
  }

  void all_lines_are_read_once_and_follow_the_line_that_is_shown() {
    make_lines();
    open_map();
    auto& lines = control<QComboBox>("Combo_map_lines");
    lines.setCurrentIndex(1);
    QCOMPARE(contents().map.sites.size(), 4U);
    QCOMPARE(contents().map.sites[3].line, std::string("2E"));
    QVERIFY(has_read_lines());
    QSignalSpy chosen(shown_.get(), &ShownLine::station_chosen);
    QTest::mouseClick(&view(), Qt::LeftButton, {}, place_of(3));
    QCOMPARE(chosen.size(), 1);
    QCOMPARE(chosen[0][0].toInt(), 4);
    turn_wheel(place_of(3), 1);
    const QPoint zoomed_to = place_of(3);
    (*interface_)->progress_texts.clear();
    QVERIFY(!Module_display_data::display_station(4, {}).failed);
    shown_->follow_selection();
    QCOMPARE(contents().map.sites.size(), 4U);
    QVERIFY(contents().current == contents().map.sites[3].station.StationID);
    QCOMPARE(place_of(3), zoomed_to);
    QVERIFY(!has_read_lines());
    shown_->forget();
    QVERIFY(has_read_lines());
    lines.setCurrentIndex(0);
    QCOMPARE(contents().map.sites.size(), 1U);
    QCOMPARE(contents().heading, std::string("Line 2E"));
  }

  void reading_all_lines_can_be_stopped() {
    make_lines();
    open_map();
    (*interface_)->stop = [] { return true; };
    control<QComboBox>("Combo_map_lines").setCurrentIndex(1);
    QCOMPARE(contents().map.sites.size(), 3U);
    QVERIFY(interface_->take_messages().empty());
    QVERIFY(control<QLabel>("Label_map_remarks").text().contains("1 of the lines is not shown"));
    QCOMPARE(contents().heading, std::string("Some of the lines"));
    (*interface_)->stop = [] { return false; };
    control<QComboBox>("Combo_map_lines").setCurrentIndex(0);
    QVERIFY(!control<QLabel>("Label_map_remarks").text().contains("not shown"));
    control<QComboBox>("Combo_map_lines").setCurrentIndex(1);
    QCOMPARE(contents().map.sites.size(), 4U);
    QCOMPARE(contents().heading, std::string("All lines"));
  }

  void another_projection_is_another_plan() {
    make_lines();
    open_map();
    turn_wheel(place_of(1), 4);
    QVERIFY(contents().frame.has_value());
    shown_->forget();  // the main window's word after anything in the survey may have changed
    QVERIFY(contents().frame.has_value());
    for (int i = 1; i <= 3; ++i) {  // another zone, elsewhere in it
      store_site("1E", 100.0 * i, 60.0, 43.0 + 0.18 * i);
    }
    shown_->forget();
    QVERIFY(!contents().frame.has_value());
    QVERIFY(map_area(view().rect()).contains(place_of(1)));
  }

  void files_have_what_is_on_show() {
    make_lines();
    open_map();
    const std::string png = folder_->path("map.png");
    QCOMPARE(window_->save_picture(png), 0);
    const QImage image(QString::fromStdString(png));
    QCOMPARE(image.size(), view().size() * 2);
    bool coloured = false;  // an ellipse's fill, near its centre
    for (int x = 5; x < 20; ++x) {
      const QColor colour = image.pixelColor(place_of(0) * 2 + QPoint(x, 3));
      coloured = coloured || std::abs(colour.red() - colour.blue()) > 40;
    }
    QVERIFY(coloured);
    const std::string pdf = folder_->path("map.pdf");
    QCOMPARE(window_->save_picture(pdf), 0);
    const std::string document = bytes_of(pdf);
    QVERIFY(document.starts_with("%PDF"));
    QVERIFY2(document.find("/Subtype /Image") == std::string::npos, "vectors, not a picture");

    QCOMPARE(window_->save_picture(folder_->path("map.bmp")), -1);
    QCOMPARE(interface_->take_messages().size(), 1U);
    QCOMPARE(window_->save_picture(folder_->path("missing/map.pdf")), -1);
    QCOMPARE(interface_->take_messages().size(), 1U);
    QCOMPARE(bytes_of(pdf), document);
  }

  void a_bar_of_logarithms_has_round_numbers_from_end_to_end() {
    const auto texts_of = [](double lower, double upper) {
      DrawnTexts drawn;
      QPainter painter(&drawn);
      draw_scale_bar(painter, QRectF(10.0, 100.0, scale_bar_width, 400.0),
                     {.palette = ScalePalette::sequential, .lower = lower, .upper = upper}, "ohm-m",
                     ScaleNumbers::powers);
      painter.end();
      return drawn.texts();
    };
    QCOMPARE(texts_of(0.0, 2.0), QStringList({"1", "2", "5", "10", "20", "50", "100", "ohm-m"}));
    QCOMPARE(texts_of(0.0, 4.0), QStringList({"1", "10", "100", "1000", "10000", "ohm-m"}));
    QCOMPARE(texts_of(0.4, 0.6).last(), QString("log10 ohm-m"));  // no round number is between them
  }

  void nothing_to_show_says_why() {
    open_map();  // an empty survey
    QVERIFY(contents().map.sites.empty());
    QVERIFY(contents().note.starts_with("Open a survey"));
    QVERIFY(!control<QSlider>("Slider_map_period").isEnabled());
    QTest::mouseClick(&view(), Qt::LeftButton, {}, QPoint(200, 200));
    turn_wheel(QPoint(200, 200), 1);
    QVERIFY(!view().grab().isNull());
    QCOMPARE(window_->save_picture(folder_->path("empty.png")), 0);
  }

  void one_station_or_all_at_one_place_can_be_shown() {
    store_station("1E", 100.0);
    store_station("1E", 200.0);
    store_element("1E", 300.0, "ExHy", 100.0F, 45.0F);  // no tensor
    for (const double station : {100.0, 200.0}) {
      store_site("1E", station, 60.0, 15.0);
    }
    show_survey();
    open_map();
    QCOMPARE(contents().map.sites.size(), 2U);
    QCOMPARE(contents().map.without_place, std::vector<std::string>{"300"});
    QVERIFY(control<QLabel>("Label_map_remarks").text().endsWith("Without a place, and not shown: 300."));
    QCOMPARE(place_of(0), map_area(view().rect()).center().toPoint());
    QVERIFY(site_at(contents(), view().rect(), place_of(0)) == 0U);
  }

  void names_of_an_upright_row_are_beside_their_dots() {
    TakenRooms taken;
    const std::vector<NamedDot> dots{{QPointF(100.0, 50.0), 4.0, "100", true},
                                     {QPointF(100.0, 80.0), 4.0, "200", true}};
    const auto names = placed_names(dots, QFontMetricsF{QFont()}, QRectF(0.0, 0.0, 200.0, 200.0), taken);
    QCOMPARE(names.size(), 2U);
    QVERIFY(names[0].room.left() > 100.0 && names[1].room.left() > 100.0);
  }

  void names_stay_out_of_one_another() {
    const QFontMetricsF metrics{QFont()};
    constexpr int count = 50;
    std::vector<NamedDot> dots;
    dots.reserve(count);
    for (int i = 0; i < count; ++i) {
      dots.push_back({QPointF(100.0 + 7.0 * i, 200.0 + 3.0 * (i % 5)), 4.0, "Site" + QString::number(i)});
    }
    TakenRooms taken;
    const QRectF area(0.0, 0.0, 500.0, 400.0);
    const auto names = placed_names(dots, metrics, area, taken);
    QVERIFY(names.size() > 10 && names.size() < dots.size());
    for (std::size_t i = 0; i < names.size(); ++i) {
      QVERIFY(area.contains(names[i].room));
      for (std::size_t j = 0; j < i; ++j) {
        QVERIFY(!names[i].room.intersects(names[j].room));
      }
    }
  }
};

QTEST_MAIN(MapTest)
#include "map_test.moc"
