// graph_control_test.cpp: a user's hand on a chart, and what the chart shows for awkward limits.
#include <QSignalSpy>
#include <QTest>
#include <QToolTip>
#include <limits>

#include "core/scope_guard.h"
#include "platform/graph/axis_ticks.h"
#include "platform/graph/frequency_axis.h"
#include "tests/platform/graph/graph_fixture.h"
#include "tests/support/pointer.h"

namespace {

using graph::AxisLimits;
using graph::AxisRange;
using graph::AxisType;

constexpr double none = graph::null_value;

bool near(double a, double b) { return std::abs(a - b) <= 1e-6 * std::max(std::abs(a), std::abs(b)); }

}  // namespace

class GraphControlTest : public QObject, private GraphFixture {
  Q_OBJECT

 private Q_SLOTS:
  void init() { show_control(); }

  void click_finds_the_nearest_drawn_point() {
    struct Case {
      const char* name;
      QPoint at;
      QList<QVariant> expected;
    };
    const Case cases[] = {
        {"on a point", place(0, 1), {0, 1}},
        {"five pixels off", place(0, 1) + QPoint(3, 4), {0, 1}},
        {"ten pixels off", place(0, 1) + QPoint(10, 0), {}},
        {"a masked point", place(1, 1), {1, 1}},
        {"two at one place: the upper", place(0, 3), {1, 3}},
        {"the empty middle", place(0, 1) - QPoint(0, 60), {}},
    };
    for (const Case& c : cases) {
      QSignalSpy selected(control_.get(), &VexGraphControl::point_selected);
      QTest::mouseClick(control_.get(), Qt::LeftButton, {}, c.at);
      QVERIFY2(selected.size() == (c.expected.isEmpty() ? 0 : 1), c.name);
      QVERIFY2(c.expected.isEmpty() || selected.first() == c.expected, c.name);
    }
    QVERIFY(!control_->point_position(1, 2));  // no data: nowhere to click
    control_->set_series_style(0, {graph::Colour{}, 3.0, true});
    control_->draw_graph();
    QSignalSpy selected(control_.get(), &VexGraphControl::point_selected);
    QTest::mouseClick(control_.get(), Qt::LeftButton, {}, place(0, 3));
    QCOMPARE(selected.first(), (QList<QVariant>{0, 3}));  // the wide series now lies on top
  }

  void markers_tell_curves_apart() {
    const auto red_pixels = [this](graph::Marker marker) {
      control_->set_series_style(0, {graph::Colour{255, 0, 0}, 4.0, false, marker});
      control_->draw_graph();
      const QImage image = control_->grab(QRect(place(0, 1) - QPoint(8, 8), QSize(17, 17))).toImage();
      int count = 0;
      for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
          count += image.pixelColor(x, y) == QColor(255, 0, 0) ? 1 : 0;
        }
      }
      return std::pair(count, image);
    };
    const auto [disc, disc_image] = red_pixels(graph::Marker::disc);
    const auto [square, square_image] = red_pixels(graph::Marker::square);
    const auto [dot, dot_image] = red_pixels(graph::Marker::dot);
    QVERIFY(disc > 20 && square > 20);
    QVERIFY(disc_image != square_image);
    QVERIFY2(dot > 0 && 2 * dot < disc, qPrintable(QString("%1 of %2").arg(dot).arg(disc)));
  }

  void other_buttons_and_points_out_of_view_are_never_selected() {
    QSignalSpy selected(control_.get(), &VexGraphControl::point_selected);
    QTest::mouseClick(control_.get(), Qt::MiddleButton, {}, place(0, 1));
    control_->set_yaxismin(30.0F);
    control_->draw_graph();
    QTest::mouseClick(control_.get(), Qt::LeftButton, {}, place(0, 1));
    QCOMPARE(selected.size(), 0);
  }

  void drag_zooms_to_its_rectangle_and_selects_nothing() {
    QSignalSpy selected(control_.get(), &VexGraphControl::point_selected);
    const QRect area = control_->plot_area();
    const QPoint from = place(0, 1);
    QSignalSpy moved(control_.get(), &VexGraphControl::pointer_moved);
    drag(*control_, from, from + QPoint(120, -90));
    QCOMPARE(selected.size(), 0);
    QVERIFY(control_->zoomed());
    const AxisRange shown = control_->x_range();  // in which the pointer has a place of its own
    const double right = double(from.x() + 120 - area.left()) / area.width();
    const double below_pointer = shown.lower * std::pow(shown.upper / shown.lower, right);
    QVERIFY(std::abs(moved.last().at(1).toDouble() / below_pointer - 1.0) < 0.02);
    QVERIFY(std::abs(control_->x_range().lower / 10.0 - 1.0) < 0.05);
    QVERIFY(std::abs(control_->y_range().lower / 20.0 - 1.0) < 0.05);

    control_->reset_zoom();
    control_->draw_graph();
    drag(*control_, area.center(), area.center() + QPoint(90, 2));  // thin: along x only
    QCOMPARE(control_->y_range(), (AxisRange{5.0, 500.0}));
    QVERIFY(control_->x_range().lower > 1.0);

    control_->reset_zoom();
    control_->draw_graph();
    QTest::mousePress(control_.get(), Qt::LeftButton, {}, from);  // out and back again is no click
    move_pointer(*control_, from + QPoint(30, 30), Qt::LeftButton);
    move_pointer(*control_, from, Qt::LeftButton);
    QTest::mouseRelease(control_.get(), Qt::LeftButton, {}, from);
    QCOMPARE(selected.size(), 0);
    QVERIFY(!control_->zoomed());
  }

  void drag_with_shift_reports_what_it_encloses_where_points_can_be_marked() {
    std::vector<graph::PointIndex> enclosed;
    int reports = 0;
    connect(control_.get(), &VexGraphControl::points_enclosed, this,
            [&](const std::vector<graph::PointIndex>& points) {
              enclosed = points;
              ++reports;
            });
    const QPoint around(6, 6);
    control_->set_marking(true);
    drag(*control_, place(0, 1) + around, place(0, 1) - around, Qt::LeftButton, Qt::ShiftModifier);
    QCOMPARE(reports, 1);
    QCOMPARE(enclosed.size(), 1U);
    QCOMPARE(enclosed.front(), (graph::PointIndex{0, 1}));
    const QPoint corner = control_->plot_area().topLeft() - QPoint(5, 5);
    drag(*control_, corner, control_->plot_area().bottomRight() + QPoint(5, 5), Qt::LeftButton,
         Qt::ShiftModifier);
    std::size_t drawn = 0;
    for (int series = 0; series < 2; ++series) {
      for (int point = 0; point < 4; ++point) {
        const auto at = control_->point_position(series, point);
        drawn += at && control_->plot_area().contains(at->toPoint()) ? 1 : 0;
      }
    }
    QCOMPARE(enclosed.size(), drawn);
    QVERIFY(drawn > 3 && !control_->zoomed());
    drag(*control_, place(0, 1), place(0, 1) + QPoint(120, -90));
    QVERIFY(control_->zoomed());
    QCOMPARE(reports, 2);

    control_->reset_zoom();
    control_->draw_graph();
    control_->set_marking(false);
    drag(*control_, place(0, 1), place(0, 1) + QPoint(120, -90), Qt::LeftButton, Qt::ShiftModifier);
    QVERIFY(control_->zoomed());
    QCOMPARE(reports, 2);
  }

  void chart_may_go_in_the_middle_of_a_drag() {
    move_pointer(*control_, place(0, 1));
    QTest::mousePress(control_.get(), Qt::LeftButton, {}, place(0, 1));
    move_pointer(*control_, place(0, 1) + QPoint(50, 50), Qt::LeftButton);
    control_.reset();  // a crash would fail the test
  }

  void second_press_of_a_double_click_resets_the_zoom_and_selects_nothing() {
    QSignalSpy selected(control_.get(), &VexGraphControl::point_selected);
    const auto press_again = [&](QPoint at) {
      QMouseEvent second(QEvent::MouseButtonDblClick, at, control_->mapToGlobal(at), Qt::LeftButton,
                         Qt::LeftButton, Qt::NoModifier);
      QApplication::sendEvent(control_.get(), &second);
    };
    const QPoint beside = control_->plot_area().bottomRight() - QPoint(30, 30);
    int clicks_on_points = 0;
    for (const bool on_point : {true, false}) {
      turn_wheel(*control_, place(0, 1), 120);
      QVERIFY(control_->zoomed());
      QTest::qWait(1);
      const QPoint at = on_point ? place(0, 1) : beside;
      clicks_on_points += on_point ? 1 : 0;
      QTest::mouseClick(control_.get(), Qt::LeftButton, {}, at);
      QCOMPARE(selected.size(), clicks_on_points);
      QVERIFY(control_->zoomed());
      press_again(at);
      QTest::mouseRelease(control_.get(), Qt::LeftButton, {}, at);
      QCOMPARE(selected.size(), clicks_on_points);
      QVERIFY(!control_->zoomed());
      QTest::qWait(1);
    }

    // A drag that begins with the second press is a drag.
    const QPoint at = place(0, 1);
    QTest::mouseClick(control_.get(), Qt::LeftButton, {}, at);
    press_again(at);
    move_pointer(*control_, at + QPoint(40, 40), Qt::LeftButton);
    QTest::mouseRelease(control_.get(), Qt::LeftButton, {}, at + QPoint(40, 40));
    QVERIFY(control_->zoomed());
    QCOMPARE(selected.size(), clicks_on_points + 1);
  }

  void points_beyond_the_limits_are_triangles_at_the_edge_that_take_clicks() {
    control_->set_graph_data({{{{1.0, 10.0, 100.0}, {10.0, 5000.0, 0.1}, {}}}});
    control_->set_graph_styles({{1, 1, 1}});
    control_->draw_graph();
    const QRect area = control_->plot_area();
    QVERIFY(!area.contains(place(0, 1)) && !area.contains(place(0, 2)));
    control_->set_points_beyond_marked(true);
    control_->draw_graph();
    for (const int point : {1, 2}) {
      const QPoint at = place(0, point);
      QVERIFY(area.contains(at));
      QVERIFY(std::abs(at.y() - (point == 1 ? area.top() : area.bottom())) < 10);
      move_pointer(*control_, QPoint(5, 5));  // the pointer enlarges what is under it
      QTest::qWait(1);
      const QImage image = control_->grab().toImage();
      QVERIFY(image.pixelColor(at).saturation() > 100);
      const int towards_edge = point == 1 ? -2 : 2;  // narrower there, so no disc
      const auto width = [&](int y) {
        int count = 0;
        for (int x = at.x() - 8; x <= at.x() + 8; ++x) {
          count += image.pixelColor(x, y).saturation() > 100 ? 1 : 0;
        }
        return count;
      };
      QVERIFY(width(at.y() + towards_edge) < width(at.y() - towards_edge));
      QSignalSpy selected(control_.get(), &VexGraphControl::point_selected);
      QTest::mouseClick(control_.get(), Qt::LeftButton, {}, at);
      QCOMPARE(selected.size(), 1);
      QCOMPARE(selected.first(), (QList<QVariant>{0, point}));
    }
    QVERIFY(std::abs(std::log10(control_->y_range().upper / 500.0)) < 1e-6);  // the limits are as asked

    const QPointF upper = *control_->point_position(0, 1);  // zoomed in it is out of view like any other
    turn_wheel(*control_, QPointF(area.left() - 15, area.center().y()), 120);
    QTest::qWait(1);
    QVERIFY(control_->point_position(0, 1)->y() < upper.y());
    QVERIFY(!area.contains(place(0, 1)));
  }

  void wheel_keeps_the_place_under_the_pointer_and_knows_the_axes() {
    const QPointF at = place(0, 1);
    turn_wheel(*control_, at, 240);
    QVERIFY(control_->x_range().upper < 2000.0 && control_->y_range().upper < 500.0);
    QTest::qWait(1);  // the drawing is left to the event loop
    QVERIFY((*control_->point_position(0, 1) - at).manhattanLength() < 2.0);

    control_->reset_zoom();
    control_->draw_graph();
    const QRect area = control_->plot_area();
    turn_wheel(*control_, QPointF(area.center().x(), area.bottom() + 15), 120);
    QCOMPARE(control_->y_range(), (AxisRange{5.0, 500.0}));
    QVERIFY(control_->zoomed());
    const AxisRange x = control_->x_range();
    turn_wheel(*control_, QPointF(area.left() - 15, area.center().y()), 120);
    QCOMPARE(control_->x_range(), x);
    QVERIFY(control_->y_range().upper < 500.0);
    for (int i = 0; i < 200; ++i) {
      turn_wheel(*control_, area.center(), i < 100 ? 1200 : -1200);  // neither collapses nor runs away
    }
    QVERIFY(control_->x_range().lower > 0.0 && std::isfinite(control_->x_range().upper));
  }

  void a_picture_zooms_inside_its_edges_and_a_chart_beyond_its_home_range() {
    graph::AxisView picture(graph::picture_zoom);  // of 0 to 1
    picture.zoom_about(0.25, 0.5);
    QCOMPARE(picture.shown(), (AxisRange{0.125, 0.625}));
    QCOMPARE(picture.to_view(0.25), 0.25);
    QCOMPARE(picture.from_view(0.25), 0.25);
    picture.drag(0.5, 0.9);  // further than there is anything to see
    QCOMPARE(picture.shown(), (AxisRange{0.0, 0.5}));
    picture.zoom_about(0.25, 1e-6);  // stops at the narrowest view, about the same place
    QVERIFY(std::abs(picture.to_view(0.25) - 0.5) < 1e-9);
    QVERIFY(std::abs(picture.shown().upper - picture.shown().lower - 1.0 / 400.0) < 1e-9);
    picture.zoom_about(0.25, 1e6);
    QCOMPARE(picture.shown(), (AxisRange{0.0, 1.0}));
    QVERIFY(!picture.zoomed());

    graph::AxisView chart;
    chart.zoom_about(0.25, 1e-6);  // too narrow: nothing happens
    QCOMPARE(chart.shown(), (AxisRange{0.0, 1.0}));
    chart.drag(0.0, 5.0);
    QCOMPARE(chart.shown(), (AxisRange{-5.0, -4.0}));
    QVERIFY(chart.zoomed());
  }

  void zoom_outlives_new_data_but_not_another_kind_of_axis_or_place() {
    turn_wheel(*control_, place(0, 1), 240);
    const AxisRange x = control_->x_range();
    fill(*control_);
    control_->set_yaxismax(600.0F);
    control_->draw_graph();
    QCOMPARE(control_->x_range(), x);
    control_->set_xaxistype(AxisType::linear);
    control_->draw_graph();
    QCOMPARE(control_->x_range(), (AxisRange{0.5, 2000.0}));
    control_->set_yaxismin(1e6F);
    control_->set_yaxismax(1e7F);
    control_->draw_graph();
    QVERIFY(!control_->zoomed());
  }

  void charts_share_the_zoom_along_x() {
    VexGraphControl phase;
    phase.set_xaxistype(AxisType::logarithmic);
    phase.set_xaxismin(0.5F);
    phase.set_xaxismax(2000.0F);
    phase.draw_graph();
    control_->share_x_zoom(phase);
    turn_wheel(*control_, place(0, 1), 120);
    QCOMPARE(phase.x_range(), control_->x_range());
    QVERIFY(near(phase.y_range().upper, 1.0));
  }

  void pan_moves_the_view_with_the_pointer() {
    const QPoint from = place(0, 1);
    drag(*control_, from, from + QPoint(40, -30), Qt::MiddleButton);
    QTest::qWait(1);
    QVERIFY((*control_->point_position(0, 1) - QPointF(from + QPoint(40, -30))).manhattanLength() < 3.0);
  }

  void draw_graph_draws_once_and_hovering_not_at_all() {
    const int before = control_->draw_count();
    fill(*control_);
    control_->set_yaxismax(700.0F);
    control_->begin_overlay();
    control_->draw_overlay_line(10.0, 5.0, 10.0, 700.0, {0, 0, 255});
    QCOMPARE(control_->draw_count(), before);
    control_->draw_graph();
    QTest::qWait(20);
    QCOMPARE(control_->draw_count(), before + 1);
    move_pointer(*control_, place(0, 0));
    move_pointer(*control_, place(0, 1));
    QTest::qWait(20);
    QCOMPARE(control_->draw_count(), before + 1);
  }

  void pointer_is_reported_in_data_coordinates() {
    QSignalSpy moved(control_.get(), &VexGraphControl::pointer_moved);
    control_->set_point_text([](int s, int p) { return QStringLiteral("series %1 point %2").arg(s).arg(p); });
    move_pointer(*control_, place(1, 1));
    QVERIFY(!moved.isEmpty());
    QCOMPARE(moved.last().at(0).toBool(), false);
    QVERIFY(std::abs(moved.last().at(1).toDouble() / 10.0 - 1.0) < 0.03);
    QVERIFY(std::abs(moved.last().at(2).toDouble() / 300.0 - 1.0) < 0.03);
    QCOMPARE(QToolTip::text(), QStringLiteral("series 1 point 1"));
    move_pointer(*control_, QPoint(5, 5));
    QCOMPARE(moved.last().at(0).toBool(), true);
    QEvent leave(QEvent::Leave);
    moved.clear();
    QApplication::sendEvent(control_.get(), &leave);
    QCOMPARE(moved.last().at(0).toBool(), true);
  }

  void periods_rise_to_the_right_and_the_view_stays_one_of_frequencies() {
    graph::FrequencyAxis& axis = graph::FrequencyAxis::instance();
    const ScopeGuard back([&] { axis.show_periods(false); });
    control_->set_x_frequency();
    control_->draw_graph();
    const graph::AxisRange home = control_->x_range();
    const int low_frequency = place(0, 0).x();
    const int high_frequency = place(0, 1).x();
    QVERIFY(low_frequency < high_frequency);
    axis.show_periods(true);
    QTest::qWait(20);
    QCOMPARE(control_->x_range(), home);
    QVERIFY(place(0, 0).x() > place(0, 1).x());
    QSignalSpy moved(control_.get(), &VexGraphControl::pointer_moved);
    control_->set_point_text([](int, int) { return QStringLiteral("10 Hz"); });
    move_pointer(*control_, place(1, 1));
    QVERIFY(std::abs(moved.last().at(1).toDouble() * 10.0 - 1.0) < 0.03);
    QCOMPARE(QToolTip::text(), QStringLiteral("10 Hz\nPeriod 0.1 s"));
    const QRect area = control_->plot_area();
    drag(*control_, place(1, 1), area.bottomRight() - QPoint(5, 5), Qt::LeftButton);  // the longer periods
    QVERIFY(control_->zoomed());
    QVERIFY(std::abs(control_->x_range().upper / 10.0 - 1.0) < 0.05);
    QVERIFY(control_->x_range().lower < 1.0);
    control_->reset_zoom();
    axis.show_periods(false);
    control_->draw_graph();
    QTest::qWait(20);
    QCOMPARE(place(0, 0).x(), low_frequency);
  }

  void overlay_reaches_both_edges_whatever_the_limits_become() {
    const auto blue_pixels = [&](int x) {
      const QImage image = control_->grab().toImage();
      const QRect area = control_->plot_area();
      int count = 0;
      for (int y = area.top() + 2; y < area.bottom() - 2; ++y) {
        const QColor colour = image.pixelColor(x, y);
        count += colour.blue() > 200 && colour.red() < 200 ? 1 : 0;
      }
      return count;
    };
    control_->set_graph_data({{{{1.0}, {10.0}, {}}}});
    control_->set_yaxismin(0.0F);  // no number on a logarithmic axis
    control_->begin_overlay();
    control_->draw_overlay_line(100.0, 0.0, 100.0, 500.0, {0, 0, 255}, 2.0);
    control_->draw_graph();
    control_->set_yaxismax(5000.0F);
    control_->draw_graph();
    const double x_share = std::log10(100.0 / 0.5) / std::log10(2000.0 / 0.5);
    const QRect area = control_->plot_area();
    const int x = area.left() + static_cast<int>(std::lround(x_share * area.width()));
    QVERIFY(blue_pixels(x) >= area.height() - 6);
    control_->begin_overlay();
    control_->draw_graph();
    QCOMPARE(blue_pixels(x), 0);
  }

  void a_point_without_data_interrupts_the_line() {
    // A level line across the plot whose middle point is missing: nothing of it may be drawn at the middle.
    const auto coloured = [&](double y) {
      control_->set_graph_data({{{{1.0, 10.0, 20.0, 40.0, 400.0}, {50.0, 50.0, y, 50.0, 50.0}, {}}}});
      control_->draw_graph();
      const QImage image = control_->grab().toImage();
      const QPoint left = place(0, 1);
      const QPoint right = place(0, 3);
      int count = 0;
      for (int x = left.x() + 8; x < right.x() - 8; ++x) {
        for (int dy = -1; dy <= 1; ++dy) {
          count += image.pixelColor(x, left.y() + dy).saturation() > 100 ? 1 : 0;
        }
      }
      return count;
    };
    QVERIFY(coloured(50.0) > 20);
    for (const double gap : {none, -1e30, std::numeric_limits<double>::quiet_NaN(), 0.0, -3.0}) {
      QCOMPARE(coloured(gap), 0);
    }
  }

  void limits_that_no_axis_can_show_give_way() {
    graph::DataExtent data;
    for (const double value : {-4.0, 0.3, 20.0}) {
      data.include(value);
    }
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const double unset = graph::unset_limit;
    struct Case {
      const char* name;
      AxisLimits limits;
      bool with_data;
      AxisRange expected;
    };
    const AxisType log = AxisType::logarithmic;
    const AxisType linear = AxisType::linear;
    const Case cases[] = {
        {"as asked", {5, 50, log, 0}, true, {5, 50}},
        {"zero on log: decade below 0.3", {0, 50, log, 0}, true, {0.1, 50}},
        {"negative on log", {-2, 50, log, 0}, true, {0.1, 50}},
        {"zero on log without data", {0, 50, log, 0}, false, {0.1, 50}},
        {"extents of nothing", {8e31, -1.2e32, log, 0}, false, {0.1, 1000}},
        {"extents of nothing, linear", {9e31, -1.1e32, linear, 0}, false, {0, 1}},
        {"wrong way round", {50, 5, log, 0}, true, {0.1, 24}},
        {"equal, linear", {7, 7, linear, 0}, false, {6, 8}},
        {"unset, linear", {unset, unset, linear, 0}, true, {-5.2, 21.2}},
        {"not a number", {nan, nan, linear, 0}, false, {0, 1}},
        {"a limit below the cut-off", {1e-6, 100, log, 0.001}, true, {1e-6, 100}},
        {"data instead of the cut-off", {0, 100, log, 0.001}, true, {0.1, 100}},
        {"nothing above zero: the cut-off", {0, 100, log, 0.001}, false, {0.001, 100}},
    };
    for (const Case& c : cases) {
      const AxisRange range = graph::resolve_range(c.limits, c.with_data ? data : graph::DataExtent{});
      QVERIFY2(near(range.lower, c.expected.lower) && near(range.upper, c.expected.upper), c.name);
    }
    graph::DataExtent ten;
    ten.include(10.0);  // a point on a decade doesn't lie on the axis
    QVERIFY(near(graph::resolve_range({0, 50, log, 0}, ten).lower, 1.0));
    for (const double minimum : {nan, -1e33, 1e33, 0.0, unset}) {  // and none of them upsets the drawing
      control_->set_yaxismin(static_cast<float>(minimum));
      control_->set_graph_data({{{{none, none}, {none, none}, {none}}}});
      control_->draw_graph();
      QVERIFY(control_->y_range().lower > 0.0 && control_->y_range().lower < control_->y_range().upper);
    }
  }

  void titles_fit_as_soon_as_the_chart_has_another_size() {
    control_->set_y_title("Apparent resistivity (ohm-m)");
    control_->set_x_title("Distance along the line (m)");
    for (const QSize size : {QSize(500, 110), QSize(120, 350), QSize(500, 350)}) {
      control_->resize(size);
      QCoreApplication::processEvents();
      const QImage resized = control_->grab().toImage();
      control_->draw_graph();
      QCoreApplication::processEvents();
      QVERIFY2(resized == control_->grab().toImage(), "as if it had been drawn again");
    }
  }

  void tick_labels_are_readable_and_never_overlap() {
    const auto room = [](double pixels) {
      return graph::TickRoom{pixels, 10.0, 100,
                             [](const QString& label) { return 7.0 * static_cast<double>(label.size()); }};
    };
    const auto labels = [](const graph::AxisTicks& ticks) { return QStringList(ticks.labels).join(u' '); };
    QCOMPARE(labels(graph::logarithmic_ticks({0.008, 2000.0}, room(600))), "0.01 0.1 1 10 100 1000");
    QCOMPARE(labels(graph::logarithmic_ticks({0.0008, 2000.0}, room(250))), "1e-3 1e-2 1e-1 1e0 1e1 1e2 1e3");
    QCOMPARE(labels(graph::logarithmic_ticks({0.008, 2000.0}, room(170))), "0.01 1 100");
    QCOMPARE(labels(graph::logarithmic_ticks({4.0, 4000.0}, room(130))),
             "10 100 1000");  // closer than one alone
    QCOMPARE(labels(graph::logarithmic_ticks({30.0, 600.0}, room(300))), "50 100 200 500");
    QCOMPARE(labels(graph::logarithmic_ticks({510.0, 540.0}, room(200))), "510 515 520 525 530 535 540");
    QCOMPARE(labels(graph::linear_ticks({-5.0, 92.0}, room(200))), "0 20 40 60 80");
    QCOMPARE(labels(graph::linear_ticks({0.0, 0.01}, room(250))), "0.000 0.002 0.004 0.006 0.008 0.010");
    for (int pixels = 20; pixels < 900; pixels += 7) {
      for (const AxisRange& range : {AxisRange{1e-5, 1e6}, AxisRange{1.0, 12000.0}, AxisRange{90.0, 130.0}}) {
        const graph::AxisTicks ticks = graph::logarithmic_ticks(range, room(pixels));
        const double span = std::log10(range.upper / range.lower);
        for (qsizetype i = 1; i < ticks.major.size(); ++i) {
          const double distance = std::log10(ticks.major[i] / ticks.major[i - 1]) / span * pixels;
          QVERIFY(distance > 3.5 * static_cast<double>(ticks.labels[i].size() + ticks.labels[i - 1].size()));
        }
      }
    }
  }
};

QTEST_MAIN(GraphControlTest)
#include "graph_control_test.moc"
