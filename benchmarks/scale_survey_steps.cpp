// A survey of 10,000 stations (scale_survey.h) in the main window, step by step as a person works, beside one
// of a tenth of its lines: how each step grows with the survey. Offscreen; figures are processor time of the
// process, to the end of what a step leaves to the event loop. `ratio` is to the same step in the smaller
// survey; the work of a station or a line should have 1, opening the ratio of the sizes.
//
// scale_survey_steps [FOLDER]  makes the surveys in FOLDER and keeps them there for the next run; some 4 GB
#include <QApplication>
#include <QComboBox>
#include <QPushButton>
#include <QScrollBar>
#include <QTest>
#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "app/Form_main.h"
#include "app/panels/picture_site_map.h"
#include "benchmarks/beside_bound.h"
#include "benchmarks/scale_survey.h"
#include "core/undo_stack.h"
#include "display/plan_view.h"
#include "output/zonge.h"
#include "platform/graph/VexGraphControl.h"
#include "reduction/edits/recalculate_station.h"
#include "tests/support/recording_interface.h"
#include "tests/support/temporary_folder.h"

namespace fs = std::filesystem;

namespace {

constexpr int turns = 15;  // of a step that can be repeated; the middle one counts

double megabytes() {
  std::FILE* const statm = std::fopen("/proc/self/statm", "r");
  long total = 0;
  long resident = 0;
  const int read = statm == nullptr ? 0 : std::fscanf(statm, "%ld %ld", &total, &resident);
  if (statm != nullptr) {
    std::fclose(statm);
  }
  constexpr double page = 4096.0 / 1048576.0;
  return read == 2 ? page * static_cast<double>(resident) : 0.0;
}

struct Cost {
  double seconds = 0.0;  // of the processor
  double waiting = 0.0;  // of the clock
  double memory = 0.0;   // MB, of the process afterwards
};

Cost cost_of(const std::function<void()>& step) {
  const double cpu = cpu_seconds();
  const double wall = wall_seconds();
  step();
  QCoreApplication::processEvents();
  return {cpu_seconds() - cpu, wall_seconds() - wall, megabytes()};
}

/// The middle of several turns, by processor time.
Cost middle_cost(const std::function<void(int turn)>& step) {
  std::vector<Cost> costs;
  costs.reserve(turns);
  for (int turn = 0; turn < turns; ++turn) {
    costs.push_back(cost_of([&] { step(turn); }));
  }
  std::ranges::sort(costs, {}, &Cost::seconds);
  return costs[turns / 2];
}

using Costs = std::vector<std::pair<std::string, Cost>>;

class Window {
 public:
  explicit Window(std::string path) : path_(std::move(path)) {
    form_.resize(1280, 800);
    form_.show();
    QCoreApplication::processEvents();
  }

  void open() { form_.open_survey(QString::fromStdString(path_)); }
  void show_plan() {
    form_.findChild<QPushButton*>("Command_show_plan")->click();
    QCoreApplication::processEvents();
  }
  /// As for the first time.
  void draw_plan() {
    plan().forget_stations();
    plan().repaint();
  }
  void click_station(int turn) {
    const auto at =
        Module_display_data::to_picture(Module_display_data::station_place(20 + turn), plan().height());
    QTest::mouseClick(&plan(), Qt::LeftButton, {}, QPointF(at.x, at.y).toPoint());
  }
  void drag_plan(int turn) {
    const QPoint middle = plan().rect().center();
    if (turn == 0) {
      QTest::mousePress(&plan(), Qt::LeftButton, {}, middle);
    }
    QTest::mouseMove(&plan(), middle + QPoint(5 + 3 * turn, 5 + turn));
    if (turn == turns - 1) {
      QTest::mouseRelease(&plan(), Qt::LeftButton, {}, middle);
    }
  }
  void step_station(int turn) { bar("HScroll_repeat").setValue(turn + 1); }
  void click_point() {
    auto* const graph = form_.findChild<VexGraphControl*>("vxgraph_raw_data_1");
    const auto at = graph->point_position(1, 7);
    if (!at) {
      throw std::runtime_error("there is no point to click on");
    }
    QTest::mouseClick(graph, Qt::LeftButton, {}, at->toPoint());
  }
  void change_line(int turn) {
    auto* const lines = form_.findChild<QComboBox*>("Combo_line");
    if (lines == nullptr) {
      throw std::runtime_error("there is no list of lines");
    }
    lines->setCurrentIndex(turn % 2);
  }

 private:
  SiteMap& plan() { return *form_.findChild<SiteMap*>(); }
  QScrollBar& bar(const char* name) { return *form_.findChild<QScrollBar*>(name); }

  std::string path_;
  Form_main form_;
};

void recalculate_line() {
  using namespace Module_averaged_data;
  Module_database::FrequencyLists lists;
  const Frequencies& frequencies = lists.of(0);
  dao::Transaction transaction(Module_database::open_survey().database);
  for (int station = 1; station <= scale_survey::stations_per_line; ++station) {
    for (const float rate : scale_survey::scan_rates) {
      ReducedStation reduced;
      const ReadingKey key{session().current_line,
                           scale_survey::station_spacing * station,
                           0,
                           rate,
                           session().current_data_type,
                           scale_survey::dipole};
      scale_survey::require(reduce_station(ReduceFrom::repeats, key, frequencies, reduced));
    }
  }
  transaction.commit();
}

void export_line(const std::string& path) {
  const Module_database::LineSelection line{session().current_line, 0, session().current_data_type,
                                            scale_survey::dipole};
  int rows = 0;
  scale_survey::require(Module_output::output_zonge(line, path, {}, rows));
}

Costs costs_of(const std::string& survey, const TemporaryFolder& folder) {
  Costs costs;
  const auto note = [&](const char* step, const Cost& cost) { costs.emplace_back(step, cost); };
  RecordingInterface interface;
  auto window = std::make_unique<Window>(survey);
  note("opening", cost_of([&] { window->open(); }));
  window->show_plan();
  note("plan", middle_cost([&](int) { window->draw_plan(); }));
  note("drag of the plan", middle_cost([&](int turn) { window->drag_plan(turn); }));
  note("station clicked in the plan", middle_cost([&](int turn) { window->click_station(turn); }));
  note("station step", middle_cost([&](int turn) { window->step_station(turn); }));
  note("mask click", middle_cost([&](int) { window->click_point(); }));
  note("line change", middle_cost([&](int turn) { window->change_line(turn + 1); }));
  note("recalculation of a line", middle_cost([&](int) { recalculate_line(); }));
  note("export of a line", middle_cost([&](int) { export_line(folder.path("line.avg")); }));
  note("closing", cost_of([&] { scale_survey::require(Module_database::close_database()); }));
  window.reset();
  Module_Brenlox::clear_undo();
  Module_database::reset_module();
  note("opening, unchanged", [&] {
    session().database_file = survey;  // looked at and closed by the turn before
    scale_survey::require(Module_database::open_database());
    scale_survey::require(Module_database::close_database());
    return cost_of([&] { scale_survey::require(Module_database::open_database()); });
  }());
  Module_database::reset_module();
  return costs;
}

Costs measure(const fs::path& surveys, int lines, const TemporaryFolder& folder) {
  const std::string path = (surveys / ("scale_" + std::to_string(lines) + ".mdb")).string();
  if (!fs::exists(path)) {
    RecordingInterface interface;
    const Cost cost = cost_of([&] { scale_survey::make(path, lines); });
    std::printf("made %d lines in %.1f s of the processor\n", lines, cost.seconds);
  }
  std::printf("%d lines: %.0f MB\n", lines, static_cast<double>(fs::file_size(path)) / 1e6);
  return costs_of(path, folder);
}

}  // namespace

int main(int argc, char** argv) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  const QApplication application(argc, argv);
  const TemporaryFolder folder;
  const fs::path surveys = argc > 1 ? fs::absolute(argv[1]) : fs::path(folder.folder());
  fs::create_directories(surveys);
  fs::current_path(folder.folder());  // the preferences are kept here
  const Costs small = measure(surveys, 20, folder);
  const Costs large = measure(surveys, 200, folder);
  std::printf("| step | 1,000 stations (ms) | 10,000 stations (ms) | ratio | clock (ms) | memory (MB) |\n");
  std::printf("|---|---:|---:|---:|---:|---:|\n");
  for (std::size_t i = 0; i < large.size(); ++i) {
    const Cost& few = small[i].second;
    const Cost& many = large[i].second;
    std::printf("| %s | %.1f | %.1f | %.1f | %.1f | %.0f |\n", large[i].first.c_str(), 1e3 * few.seconds,
                1e3 * many.seconds, many.seconds / few.seconds, 1e3 * many.waiting, many.memory);
  }
}
