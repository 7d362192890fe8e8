// graph_pictures.cpp: pictures of sample charts, to be looked at.
#include <QApplication>
#include <QMouseEvent>
#include <iostream>
#include <string>

#include "graph_samples.h"

namespace {

using graph::AxisType;

void take(QWidget& window, const std::string& path) {
  window.show();
  QApplication::processEvents();
  window.grab().save(QString::fromStdString(path));
}

void take_station(const std::string& folder, QSize size) {
  QWidget window;
  window.resize(size);
  VexGraphControl resistivity(&window);
  VexGraphControl phase(&window);
  resistivity.setGeometry(0, 0, size.width(), size.height() * 3 / 5);
  phase.setGeometry(0, size.height() * 3 / 5, size.width(), size.height() * 2 / 5);
  resistivity.set_xaxistype(AxisType::logarithmic);
  resistivity.set_yaxistype(AxisType::logarithmic);
  resistivity.set_x_labels_shown(false);
  resistivity.set_y_title("Apparent resistivity (ohm-m)");
  phase.set_xaxistype(AxisType::logarithmic);
  phase.set_x_title("Frequency (Hz)");
  phase.set_y_title("Phase (deg)");
  for (VexGraphControl* control : {&resistivity, &phase}) {
    control->set_xaxismin(0.28F);
    control->set_xaxismax(11001.0F);
  }
  resistivity.set_yaxismin(0.0F);
  resistivity.set_yaxismax(1800.0F);
  phase.set_yaxismin(0.0F);
  phase.set_yaxismax(92.0F);
  graph_samples::give(resistivity, graph_samples::repeats(7, 45, false));
  graph_samples::give(phase, graph_samples::repeats(7, 45, true));
  resistivity.draw_graph();
  phase.draw_graph();
  take(window, folder + "/station_" + std::to_string(size.width()) + ".png");
  static_cast<void>(
      resistivity.save_png(folder + "/export_" + std::to_string(size.width()) + ".png", 500, 300, 2.0));
  static_cast<void>(resistivity.save_pdf(folder + "/export_" + std::to_string(size.width()) + ".pdf"));
}

void take_profile(const std::string& folder, QSize size) {
  VexGraphControl control;
  control.resize(size);
  control.set_yaxistype(AxisType::logarithmic);
  control.set_x_title("Station (m)");
  control.set_y_title("Apparent resistivity (ohm-m)");
  control.set_xaxismin(975.0F);
  control.set_xaxismax(2175.0F);
  control.set_yaxismin(20.0F);
  control.set_yaxismax(9000.0F);
  graph_samples::give(control, graph_samples::profile(40, 24));
  control.begin_overlay();
  control.draw_overlay_line(1500.0, control.yaxismin(), 1500.0, control.yaxismax(), {0, 0, 255});
  control.draw_graph();
  take(control, folder + "/profile_" + std::to_string(size.width()) + ".png");
}

void take_narrow_range(const std::string& folder) {
  VexGraphControl control;
  control.resize(420, 260);
  control.set_xaxistype(AxisType::logarithmic);
  control.set_yaxistype(AxisType::logarithmic);
  control.set_x_title("Frequency (Hz)");
  control.set_y_title("Apparent resistivity (ohm-m)");
  control.set_graph_data({{{{1e-5, 1e-3, 2.0, 1e4, 1e6}, {120.0, 180.0, 300.0, 240.0, 420.0}, {}}}});
  control.draw_graph();
  take(control, folder + "/narrow.png");
  for (const int point : {1, 2}) {  // the point under the pointer, then the rectangle of a zoom
    const QPointF at = *control.point_position(0, point);
    const auto send = [&](QEvent::Type type, QPointF place, Qt::MouseButton button) {
      QMouseEvent event(type, place, control.mapToGlobal(place), button, button, Qt::NoModifier);
      QApplication::sendEvent(&control, &event);
    };
    send(QEvent::MouseMove, at, Qt::NoButton);
    if (point == 2) {
      send(QEvent::MouseButtonPress, at, Qt::LeftButton);
      send(QEvent::MouseMove, at + QPointF(80.0, 60.0), Qt::LeftButton);
    }
    take(control, folder + "/pointer_" + std::to_string(point) + ".png");
  }
}

}  // namespace

int main(int argc, char** argv) {
  const QApplication application(argc, argv);
  if (argc < 2) {
    std::cerr << "graph_pictures FOLDER\n";
    return 1;
  }
  const std::string folder = argv[1];
  for (const QSize size : {QSize(340, 280), QSize(620, 460), QSize(960, 700)}) {
    take_station(folder, size);
  }
  for (const QSize size : {QSize(700, 200), QSize(1260, 300)}) {
    take_profile(folder, size);
  }
  take_narrow_range(folder);
  return 0;
}
