// picture_station.h: the panel of the selected station: merged curve, averages, neighbours, and the switches
// of the merged curve.
#pragma once
#include <QWidget>
#include <array>
#include <string>

#include "display/selection.h"
#include "display/windows/graph_pair.h"

class HeadingLabel;
class QCheckBox;
class QComboBox;
class QHBoxLayout;
class QLabel;
class QLineEdit;
class QPushButton;

class StationPanel : public QWidget {
  Q_OBJECT

 public:
  explicit StationPanel(QWidget* parent = nullptr);

  /// Draws the station data set.
  void display_station_data(bool fixed_scale);
  /// Shows the switches and the static factor of the station's merged curve.
  void show_merged_switches();
  void show_series(const std::string& label);
  [[nodiscard]] std::string series() const;
  void clear();
  void reset_zoom() { graphs_->reset_zoom(); }
  [[nodiscard]] GraphPairWidget& graphs() { return *graphs_; }

  /// The neighbours that the controls ask for; corrects a count that isn't a number.
  Module_display_data::NeighbourOptions neighbours();

 Q_SIGNALS:
  void chosen(const Module_display_data::Redisplay& redisplay);
  void edited();
  void static_factor_changed();
  /// What the user has to know of a text that was refused, in one line.
  void told(const QString& text);
  /// A factor was entered in its box with Enter.
  void static_factor_entered();
  void inversion_wanted();

 protected:
  bool eventFilter(QObject* receiver, QEvent* event) override;

 private:
  QHBoxLayout* make_headings();
  QHBoxLayout* make_switches();
  QHBoxLayout* make_neighbours();
  void connect_controls();
  [[nodiscard]] QString static_fault() const;
  [[nodiscard]] bool static_factor_typed() const;
  void leave_static_factor();

  GraphPairWidget* graphs_;
  HeadingLabel* Label_station_;
  HeadingLabel* Label_station_graph_;
  QLabel* Label_station_modes_;
  std::array<QCheckBox*, 3> Check_use_merged_{};
  QLineEdit* Text_static_;
  QString shown_static_;  // as the program has written it
  QCheckBox* Check_multi_station_;
  QCheckBox* Check_multi_all_;
  QLineEdit* Text_multi_count_;
  QComboBox* Combo_multi_side_;
  QPushButton* Command_invert_;
};
