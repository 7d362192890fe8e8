// main_view_fixture.h: the main window on a synthetic survey of three stations, operated by its named
// controls.
#pragma once
#include <QAction>
#include <QPushButton>
#include <QTableWidget>
#include <QTest>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "app/Form_main.h"
#include "core/session_state.h"
#include "core/undo_stack.h"
#include "database/survey_database.h"
#include "display/plan_view.h"
#include "platform/graph/VexGraphControl.h"
#include "reduction/data_sets/data_sets.h"
#include "tests/reduction/made_line.h"
#include "tests/support/window_fixture.h"

class MainViewFixture : protected WindowFixture {
 protected:
  /// @param store_more  stores further readings before the window shows the survey
  void open_made_survey(const std::function<void()>& store_more = [] {}) {
    make_folder();
    std::filesystem::current_path(folder_->folder());
    make_survey();
    made::store_line(3);
    store_more();
    for (int file = 1; file <= 7; ++file) {  // the readings refer to file 7
      dao::Recordset& files = Module_database::open_survey().files;
      files.add_new();
      files.set_text("SurveyFile", std::to_string(file) + ".edi");
      files.set_long("ReferenceType", 0);
      files.update();
    }
    show_survey();
  }
  /// Closes the survey and opens it in the main window.
  void show_survey() {
    QCOMPARE(Module_database::close_database(), 0);
    window_ = std::make_unique<Form_main>();
    window_->resize(1280, 800);
    window_->show();
    QVERIFY(QTest::qWaitForWindowExposed(window_.get()));
    window_->open_survey(QString::fromStdString(folder_->path("survey.mdb")));
    QCoreApplication::processEvents();
    QCOMPARE(session().current_station_index, 1);
  }
  void close_survey() {
    window_.reset();
    remove_folder();
  }

  template <class Widget>
  Widget* control(const QString& name) const {
    return window_->findChild<Widget*>(name);
  }
  QAction* item(const QString& name) const { return window_->findChild<QAction*>(name); }
  void menu(const QString& name) const { item(name)->trigger(); }
  void press(const QString& name) const { QTest::mouseClick(control<QPushButton>(name), Qt::LeftButton); }

  void click_point(const QString& graph_name, int series, int point) const {
    auto* const graph = control<VexGraphControl>(graph_name);
    const auto at = graph->point_position(series, point);
    QVERIFY(at.has_value());
    QTest::mouseClick(graph, Qt::LeftButton, {}, at->toPoint());
  }
  QPoint cell_centre(int row, int column) const {
    const auto* const grid = control<QTableWidget>("Grid_repeats");
    return grid->visualItemRect(grid->item(row, column)).center();
  }
  void click_cell(int row, int column) const {
    QTest::mouseClick(control<QTableWidget>("Grid_repeats")->viewport(), Qt::LeftButton, {},
                      cell_centre(row, column));
  }

  /// How often each of the graphs has been drawn: profile, station, raw; resistivity before phase.
  std::vector<int> draws() const {
    std::vector<int> counts;
    for (const char* const pair : {"vxgraph_Profile", "vxgraph_station", "vxgraph_raw_data"}) {
      for (const int index : {0, 1}) {
        counts.push_back(control<VexGraphControl>(QString("%1_%2").arg(pair).arg(index))->draw_count());
      }
    }
    return counts;
  }
  static std::vector<int> difference(const std::vector<int>& before, const std::vector<int>& after) {
    std::vector<int> drawn;
    for (std::size_t i = 0; i < before.size(); ++i) {
      drawn.push_back(after[i] - before[i]);
    }
    return drawn;
  }

  static float stored_factor() {
    return made::row(Module_averaged_data::data_sets().profile.columns.at(0).ID).get_single("ResOffset");
  }
  /// Where the plan shows a station, from 1.
  QPoint dot(int station_index) const {
    const auto at = Module_display_data::to_picture(Module_display_data::station_place(station_index),
                                                    control<QWidget>("Picture_site_map")->height());
    return QPointF(at.x, at.y).toPoint();
  }

  static std::int32_t stored_mask(std::int32_t ID, std::size_t point) {
    const dao::Recordset row = made::row(ID);
    return Module_database::read_reading(row).curve.counts_at(1, point);
  }

  std::unique_ptr<Form_main> window_;
};
