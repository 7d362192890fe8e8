// The main window as a person feels it: from a click on a point of a repeat to the finished picture of all
// three graph pairs, and a step to the next station and back, on a line of 100 stations with 60 frequencies
// and 12 repeats at the station that is edited; alone and beside 20 further lines. Offscreen, wall-clock
// time. The bound is the same rows read and written with bare SQLite and the same lines and points painted
// bare. Counters: those of beside_bound.h; rows (readings in the survey); database_ms (the same work without
// a window); drawing_ms (drawing and painting all graphs once more); draws (of all six graphs together, for
// each click or step).
#include <QScrollBar>
#include <QTest>
#include <chrono>
#include <filesystem>
#include <functional>
#include <memory>
#include <stdexcept>

#include <benchmark/benchmark.h>

#include "app/Form_main.h"
#include "app/survey_display.h"
#include "benchmarks/bare_picture.h"
#include "benchmarks/beside_bound.h"
#include "benchmarks/line_survey.h"
#include "benchmarks/offscreen.h"
#include "core/session_state.h"
#include "core/undo_stack.h"
#include "display/profile_plot.h"
#include "display/raw_plot.h"
#include "display/selection.h"
#include "display/station_plot.h"
#include "platform/graph/VexGraphControl.h"
#include "reduction/edits/masks.h"
#include "tests/support/recording_interface.h"
#include "tests/support/temporary_folder.h"

namespace {

using line_survey::edited_station;
using Milliseconds = std::chrono::duration<double, std::milli>;

constexpr int clicked_series = 3;
constexpr int clicked_point = 7;

/// A window on one survey.
class Window {
 public:
  explicit Window(int other_lines) {
    const std::filesystem::path started_in = std::filesystem::current_path();
    std::filesystem::current_path(folder_.folder());  // the preferences are kept here
    const std::string path = folder_.path("survey.mdb");
    line_survey::make(path, other_lines);
    rows = line_survey::row_count();
    line_survey::require(Module_database::close_database());
    form_ = std::make_unique<Form_main>();
    form_->resize(1280, 800);
    form_->show();
    form_->open_survey(QString::fromStdString(path));
    QCoreApplication::processEvents();
    bar().setValue(edited_station);
    QCoreApplication::processEvents();
    bare = std::make_unique<line_survey::BareWork>(path);
    take_pictures();
    std::filesystem::current_path(started_in);
  }
  ~Window() {
    bare.reset();
    form_.reset();
    Module_Brenlox::clear_undo();
    Module_database::reset_module();
  }
  Window(const Window&) = delete;
  Window& operator=(const Window&) = delete;

  QScrollBar& bar() const { return *form_->findChild<QScrollBar*>("HScroll_repeat"); }

  void click_point() const {
    auto* const graph = form_->findChild<VexGraphControl*>("vxgraph_raw_data_1");
    const auto at = graph->point_position(clicked_series, clicked_point);
    if (!at) {
      throw std::runtime_error("there is no point to click on");
    }
    QTest::mouseClick(graph, Qt::LeftButton, {}, at->toPoint());
  }

  void redraw() const { form_->findChild<SurveyDisplay*>()->redraw(); }

  int draws() const {
    int count = 0;
    for (const VexGraphControl* const graph : form_->findChildren<VexGraphControl*>()) {
      count += graph->draw_count();
    }
    return count;
  }

  void draw_bare() const {
    for (const auto& picture : pictures_) {
      picture->draw();
    }
  }

  int rows = 0;
  std::unique_ptr<line_survey::BareWork> bare;

 private:
  void take_pictures() {
    using namespace Module_display_data;
    const QSize size = form_->findChild<VexGraphControl*>("vxgraph_raw_data_1")->size();
    for (const GraphPair& pair : {profile_plot(), station_plot(false), raw_plot(false)}) {
      pictures_.push_back(std::make_unique<BarePicture>(pair.resistivity.table, size));
      pictures_.push_back(std::make_unique<BarePicture>(pair.phase.table, size));
    }
  }

  std::vector<std::unique_ptr<BarePicture>> pictures_;
  TemporaryFolder folder_;
  RecordingInterface interface_;
  std::unique_ptr<Form_main> form_;
};

struct OpenWindow {
  std::unique_ptr<Window> window;
  int other_lines = -1;
};

OpenWindow& open_window() {
  static OpenWindow open;
  return open;
}

Window& window(int other_lines) {
  OpenWindow& open = open_window();
  if (open.other_lines != other_lines) {
    open.window.reset();
    open.window = std::make_unique<Window>(other_lines);
    open.other_lines = other_lines;
  }
  return *open.window;
}

/// Milliseconds that work takes, to the end of what it left to the event loop.
double time_of(const std::function<void()>& work) {
  const auto start = std::chrono::steady_clock::now();
  work();
  QCoreApplication::processEvents();
  return Milliseconds(std::chrono::steady_clock::now() - start).count();
}

/// @param whole what the user does
/// @param bare the least that has to be done with the survey
/// @param without_window the same work on the survey alone, so many times; it leaves the same station
/// selected
void run(benchmark::State& state, const std::function<void(const Window&)>& whole,
         void (line_survey::BareWork::*bare)(), const std::function<void()>& without_window, int times = 1) {
  const Window& view = window(static_cast<int>(state.range(0)));
  double database = 0.0;
  double drawing = 0.0;
  int draws = 0;
  BesideBound measure(state, wall_seconds);
  for (auto _ : state) {
    const int before = view.draws();
    measure.work([&] {
      whole(view);
      QCoreApplication::processEvents();  // what is left to the event loop: painting
    });
    measure.bound([&] {
      (*view.bare.*bare)();
      view.draw_bare();
    });
    draws += view.draws() - before;
    database += time_of(without_window) / times;
    drawing += time_of([&] { view.redraw(); });
  }
  const auto mean = benchmark::Counter::kAvgIterations;
  state.counters["rows"] = view.rows;
  state.counters["database_ms"] = benchmark::Counter(database, mean);
  state.counters["drawing_ms"] = benchmark::Counter(drawing, mean);
  state.counters["draws"] = benchmark::Counter(draws, mean);
}

void mask_click(benchmark::State& state) {
  run(
      state, [](const Window& view) { view.click_point(); }, &line_survey::BareWork::edit,
      [] {
        if (Module_averaged_data::toggle_repeat_point(clicked_series, clicked_point,
                                                      Module_averaged_data::Component::phase) !=
            Module_averaged_data::Edit::changed) {
          throw std::runtime_error("nothing was masked");
        }
      });
  Module_Brenlox::clear_undo();
}

void station_step(benchmark::State& state) {
  const auto other = [](int station) {
    return station == edited_station ? edited_station + 1 : edited_station;
  };
  run(
      state, [&](const Window& view) { view.bar().setValue(other(view.bar().value())); },
      &line_survey::BareWork::step,
      [&] {
        const int from = session().current_station_index;
        benchmark::DoNotOptimize(Module_display_data::display_station(other(from), {}));
        benchmark::DoNotOptimize(Module_display_data::display_station(from, {}));
      },
      2);
}

[[maybe_unused]] const bool registered =
    line_survey::register_benchmarks({{"mask_click", mask_click}, {"station_step", station_step}});

}  // namespace

int main(int argc, char** argv) {
  return run_offscreen(argc, argv, [] { open_window() = {}; });
}
