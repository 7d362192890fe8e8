// tensor_map_benchmark.cpp: a map of many sites with ellipses, arrows and names, from the slider's step to
// the finished picture, offscreen. The bound is as many ellipses, arrows and names drawn as such by the
// painter.
#include <QImage>
#include <cmath>
#include <complex>

#include <benchmark/benchmark.h>

#include "benchmarks/beside_bound.h"
#include "benchmarks/offscreen.h"
#include "tensor/windows/map_picture.h"

namespace {

using namespace Module_tensor;
using numerics::impedance::Element;

StationTensor made_station(std::int32_t number) {
  constexpr int frequencies = 60;
  StationTensor station;
  station.StationID = number;
  station.station = 100.0 * number;
  station.name = "MT" + std::to_string(number);
  for (int i = 0; i < frequencies; ++i) {
    const double turn = 0.1 * number + 0.05 * i;
    TensorPoint point;
    point.frequency = std::pow(10.0, -3.0 + 0.1 * i);
    point.tensor[Element::xx] = {0.1 * std::sin(turn), 0.2};
    point.tensor[Element::xy] = std::polar(3.0, 0.8 + 0.3 * std::sin(turn));
    point.tensor[Element::yx] = -std::polar(2.0, 0.6 + 0.3 * std::cos(turn));
    point.tensor[Element::yy] = {-0.2, 0.1 * std::cos(turn)};
    point.tensor.covariance.fill({1e-4, 1e-4, 0.0});
    station.points.push_back(point);
    TipperPoint tipper;
    tipper.frequency = point.frequency;
    tipper.tipper = {
        {0.2 * std::sin(turn), 0.1}, {0.2 * std::cos(turn), -0.1}, {1e-4, 1e-4, 0.0}, {1e-4, 1e-4, 0.0}};
    station.tipper.push_back(tipper);
  }
  return station;
}

/// In rows of twenty.
MapContents made_contents(int sites) {
  constexpr int in_a_row = 20;
  constexpr double spacing = 500.0;  // m
  MapContents contents;
  contents.map.spacing = spacing;
  for (int i = 0; i < sites; ++i) {
    contents.map.sites.push_back(
        {"1E", spacing * (i % in_a_row), spacing * (i / in_a_row), 0.5, made_station(i + 1)});
  }
  contents.heading = "Line 1E";
  return contents;
}

void slide(benchmark::State& state) {
  const int sites = static_cast<int>(state.range(0));
  MapContents contents = made_contents(sites);
  const std::vector<double> frequencies = map_frequencies(contents.map.sites);
  QImage image(1600, 900, QImage::Format_RGB32);
  std::size_t shown = 0;
  const auto draw = [&] {
    contents.show_frequency(frequencies[shown++ % frequencies.size()]);
    QPainter painter(&image);
    painter.fillRect(image.rect(), Qt::white);
    paint_map(painter, image.rect(), contents);
  };
  run_beside_bound(state, draw, [&] {
    QPainter painter(&image);
    painter.fillRect(image.rect(), Qt::white);
    painter.setRenderHint(QPainter::Antialiasing);
    for (int i = 0; i < sites; ++i) {
      const QPointF at(100.0 + 60.0 * (i % 20), 50.0 + 40.0 * (i / 20));
      painter.setBrush(QColor::fromHsv(i % 360, 200, 200));
      painter.drawEllipse(at, 20.0, 12.0);
      painter.drawEllipse(at, 2.0, 2.0);
      painter.drawLine(at, at + QPointF(20.0, 10.0));
      painter.drawLine(at, at + QPointF(-20.0, 10.0));
      painter.drawText(at, "MT" + QString::number(i));
    }
  });
  state.SetItemsProcessed(state.iterations() * sites);
}

BENCHMARK(slide)->ArgName("sites")->Arg(40)->Arg(400)->Arg(4000)->UseManualTime()->Unit(
    benchmark::kMillisecond);

}  // namespace

int main(int argc, char** argv) { return run_offscreen(argc, argv); }
