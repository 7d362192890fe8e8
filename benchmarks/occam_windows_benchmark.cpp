// section_benchmark.cpp: sections in a second, from parameters to the finished picture, offscreen. The bound
// is the same rectangles filled in a white picture, and outlined where the mesh is drawn.
#include <QImage>
#include <cmath>

#include <benchmark/benchmark.h>

#include "benchmarks/beside_bound.h"
#include "benchmarks/offscreen.h"
#include "formats/occam/model_blocks.h"
#include "occam/windows/section_painter.h"

namespace {

using namespace Module_occam;

/// A model of single cells: rows of 20 m, columns of 50 m, padding at both sides.
OccamModel made_model(int columns, int rows) {
  OccamMesh mesh;
  mesh.node_widths.assign(static_cast<std::size_t>(columns) + 2, 50.0);
  mesh.node_heights.assign(static_cast<std::size_t>(rows), 20.0);
  mesh.mesh_code.assign(static_cast<std::size_t>(rows), {});
  for (CodeLines& lines : mesh.mesh_code) {
    lines.fill(std::string(mesh.node_widths.size(), free_code));
  }
  const OccamLayer layer{1, std::vector<int>(mesh.node_widths.size(), 1), 0};
  return build_model(std::move(mesh), std::vector<OccamLayer>(static_cast<std::size_t>(rows), layer), 0.0);
}

void redraw(benchmark::State& state) {
  const int columns = static_cast<int>(state.range(0));
  const int rows = static_cast<int>(state.range(1));
  const OccamModel model = made_model(columns, rows);
  std::vector<double> parameters;
  parameters.reserve(static_cast<std::size_t>(model.num_free_params));
  for (int i = 0; i < model.num_free_params; ++i) {
    parameters.push_back(2.0 + std::sin(0.01 * i));
  }
  OccamData sites;
  for (int site = 0; site < columns; site += 6) {
    sites.site_names.push_back("station_" + std::to_string(50 * site) + ".0");
    sites.site_offsets.push_back(50.0F * static_cast<float>(site));
  }
  QImage image(1600, 600, QImage::Format_RGB32);
  SectionPicture picture;
  picture.choices = {1.0, 3.0, 1e6, false};
  picture.palette = graph::image_palette(2, false);
  picture.draw_mesh = state.range(2) != 0;
  const auto draw = [&] {
    picture.geometry = section_geometry(model, parameters, picture.choices, section_part(image.size()));
    QPainter painter(&image);
    painter.fillRect(image.rect(), Qt::white);
    paint_section(painter, picture, sites, SectionZoom());
  };
  draw();
  QList<QRect> rectangles;
  for (const SectionRectangle& block : picture.geometry.rectangles) {
    rectangles.append(QRectF(QPointF(block.left, block.top), QPointF(block.right, block.bottom)).toRect());
  }
  run_beside_bound(state, draw, [&] {
    QPainter painter(&image);
    painter.fillRect(image.rect(), Qt::white);
    QRgb shade = 0;
    for (const QRect& rectangle : rectangles) {
      painter.fillRect(rectangle, QColor::fromRgb(shade += 97));
    }
    if (picture.draw_mesh) {
      painter.setClipRect(image.rect());
      painter.drawRects(rectangles);
    }
  });
  state.SetItemsProcessed(state.iterations() * columns * rows);
}

BENCHMARK(redraw)
    ->ArgNames({"columns", "rows", "mesh"})
    ->Args({75, 25, 0})
    ->Args({150, 50, 0})
    ->Args({300, 100, 0})
    ->Args({300, 100, 1})
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);

}  // namespace

int main(int argc, char** argv) { return run_offscreen(argc, argv); }
