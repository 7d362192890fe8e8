// tensor_windows_benchmark.cpp: pseudo-sections in a second, from a line's curves and tensors to the finished
// picture, offscreen. The bound is a rectangle of its own colour for each point, filled in a white picture.
#include <QImage>
#include <cmath>

#include <benchmark/benchmark.h>

#include "benchmarks/beside_bound.h"
#include "benchmarks/offscreen.h"
#include "tensor/windows/pseudo_section_painter.h"

namespace {

using namespace Module_tensor;

struct Line {
  LineTensors line;
  Frequencies frequencies;
  std::vector<StationPhaseTensors> phase_tensors;
};

Module_database::StoredReading made_curve(const Frequencies& frequencies, std::size_t station, float phase) {
  Module_database::StoredReading merged;
  merged.ID = 1;
  merged.curve.assign(frequencies.count());
  merged.curve.frequencies = frequencies.list;
  for (std::size_t i = 0; i < frequencies.count(); ++i) {
    const double wave =
        std::sin(0.05 * static_cast<double>(station)) + std::cos(0.2 * static_cast<double>(i));
    merged.curve.value(Module_database::field_resistivity, i) =
        static_cast<float>(std::pow(10.0, 2.0 + wave));
    merged.curve.value(Module_database::field_phase, i) = phase + static_cast<float>(10.0 * wave);
    merged.curve.counts_at(Module_database::field_resistivity, i) = 1;
    merged.curve.counts_at(Module_database::field_phase, i) = 1;
  }
  return merged;
}

Line made_line(std::size_t stations, std::size_t frequencies) {
  Line made;
  for (std::size_t i = 0; i < frequencies; ++i) {
    made.frequencies.list.push_back(static_cast<float>(std::pow(10.0, -3.0 + 0.12 * static_cast<double>(i))));
  }
  made.frequencies.enabled.assign(frequencies, 1);
  for (std::size_t station = 0; station < stations; ++station) {
    StationCurves curves;
    curves.station = 50.0 * static_cast<double>(station);
    curves.merged[static_cast<std::size_t>(CurveType::ExHy)] = made_curve(made.frequencies, station, 45.0F);
    curves.merged[static_cast<std::size_t>(CurveType::EyHx)] = made_curve(made.frequencies, station, -135.0F);
    StationTensor tensors;
    tensors.station = curves.station;
    for (const float frequency : made.frequencies.list) {
      const double turn = 0.02 * static_cast<double>(station) + 0.3 * std::log(frequency);
      TensorPoint point;
      point.frequency = frequency;
      point.tensor.z = {{{std::sin(turn), 1.0}, {10.0, 8.0 + std::cos(turn)}, {-9.0, -11.0}, {0.5, -1.0}}};
      point.tensor.covariance.fill({0.01, 0.01, 0.0});
      tensors.points.push_back(point);
    }
    made.line.curves.stations.push_back(std::move(curves));
    made.line.stations.push_back(std::move(tensors));
  }
  made.phase_tensors = phase_tensors_of(made.line);
  return made;
}

void draw_section(benchmark::State& state) {
  constexpr std::size_t stations = 400;
  constexpr std::size_t frequencies = 60;
  constexpr QSize size(1200, 700);
  const Line made = made_line(stations, frequencies);
  const auto quantity = static_cast<SectionQuantity>(state.range(0));
  state.SetLabel(std::string(facts_of(quantity).word));
  QImage image(size, QImage::Format_RGB32);
  const auto draw = [&] {
    const SectionSource source{&made.line, &made.frequencies, made.phase_tensors, {}};
    PseudoSectionPicture picture;
    picture.section =
        make_pseudo_section(source, quantity, [](double station) { return std::optional(station); });
    picture.scale = usual_scale(facts_of(quantity).scale);
    picture.contours = state.range(1) != 0;
    show_whole(picture);
    QPainter painter(&image);
    paint_pseudo_section(painter, size, picture, PseudoSectionView());
  };
  run_beside_bound(state, draw, [&] {
    QPainter painter(&image);
    painter.fillRect(image.rect(), Qt::white);
    QRgb shade = 0;
    for (std::size_t i = 0; i < stations * frequencies; ++i) {
      const auto column = static_cast<int>(i / frequencies);
      const auto row = static_cast<int>(i % frequencies);
      painter.fillRect(66 + column * 5 / 2, 58 + row * 10, 3, 10, QColor::fromRgb(shade += 97));
    }
  });
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(stations * frequencies));
}

BENCHMARK(draw_section)
    ->ArgNames({"quantity", "contours"})
    ->ArgsProduct({benchmark::CreateDenseRange(0, 14, 1), {0}})
    ->Args({0, 1})
    ->Args({12, 1})
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);

}  // namespace

int main(int argc, char** argv) { return run_offscreen(argc, argv); }
