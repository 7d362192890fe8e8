// picture_raw_data.h: the panel of the repeats of one scan rate: graphs, repeats grid, mask commands.
#pragma once
#include <QWidget>
#include <array>
#include <string>

#include "display/selection.h"
#include "display/windows/graph_pair.h"

class HeadingLabel;
class RepeatsPanel;
class StatsPanel;
class QCheckBox;
class QComboBox;
class QLabel;
class QPushButton;

class RawPanel : public QWidget {
  Q_OBJECT

 public:
  explicit RawPanel(QWidget* parent = nullptr);

  /// Draws the repeat data set. @return false if it is empty, and there is nothing to show
  bool display_raw_data(bool fixed_scale);
  void show_series(const std::string& label);
  [[nodiscard]] std::string series() const;
  void clear() { graphs_->clear(); }
  void reset_zoom() { graphs_->reset_zoom(); }
  [[nodiscard]] GraphPairWidget& graphs() { return *graphs_; }
  [[nodiscard]] StatsPanel& stats() { return *stats_; }

 Q_SIGNALS:
  void chosen(const Module_display_data::Redisplay& redisplay);
  void edited();
  void plan_wanted();

 private:
  QWidget* make_side();
  void connect_controls();
  /// Lists the scan rates of the station data set.
  void show_scan_rates();
  void show_average_switches();

  GraphPairWidget* graphs_;
  HeadingLabel* Label_raw_;
  HeadingLabel* Label_raw_graph_;
  QLabel* Label_raw_modes_;
  QComboBox* Combo_scan_rate_;
  QPushButton* Command_show_plan_;
  std::array<QCheckBox*, 3> Check_use_average_{};
  RepeatsPanel* repeats_;
  StatsPanel* stats_;
};
