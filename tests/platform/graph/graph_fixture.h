// graph_fixture.h: a chart on the screen.
#pragma once
#include <QTest>
#include <memory>

#include "platform/graph/VexGraphControl.h"

class GraphFixture {
 protected:
  /// Frequency and resistivity on logarithmic axes. Series 1 masks its second point and lacks its third; its
  /// last point lies on that of series 0.
  static void fill(VexGraphControl& control) {
    constexpr double none = graph::null_value;
    control.clear_graph();
    control.set_graph_data({{{{1.0, 10.0, 100.0, 1000.0}, {10.0, 20.0, 40.0, 80.0}, {1.0, 1.0, 50.0, none}},
                             {{1.0, 10.0, 100.0, 1000.0}, {200.0, 300.0, none, 80.0}, {}}}});
    control.set_graph_styles({{1, 1, 1, 1}, {1, 2, 1, 1}});
  }

  void show_control() {
    control_ = std::make_unique<VexGraphControl>();
    control_->resize(500, 350);
    control_->set_xaxistype(graph::AxisType::logarithmic);
    control_->set_yaxistype(graph::AxisType::logarithmic);
    control_->set_xaxismin(0.5F);
    control_->set_xaxismax(2000.0F);
    control_->set_yaxismin(5.0F);
    control_->set_yaxismax(500.0F);
    fill(*control_);
    control_->show();
    QVERIFY(QTest::qWaitForWindowExposed(control_.get()));
    control_->draw_graph();
  }
  [[nodiscard]] QPoint place(int series, int point) const {
    return control_->point_position(series, point)->toPoint();
  }

  std::unique_ptr<VexGraphControl> control_;
};
