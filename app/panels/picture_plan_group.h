// picture_plan_group.h: the right-hand panel: the plan with its bars, the raw data over it, and the position
// under the pointer.
#pragma once
#include <QWidget>
#include <array>
#include <optional>
#include <string>
#include <vector>

#include "projections/site_projection.h"

class PlanAxes;
class PlanColours;
class RawPanel;
class SiteMap;
class QComboBox;
class QKeyEvent;
class QLabel;
class QPushButton;
class QScrollBar;
class QStackedLayout;
class QVBoxLayout;

class PlanPanel : public QWidget {
  Q_OBJECT

 public:
  explicit PlanPanel(QWidget* parent = nullptr);

  /// Draws the plan with the current station marked.
  void draw_plan();
  void show_coordinates();  // of the session
  /// Offers colours of the survey's data types.
  void list_colours(const std::vector<std::string>& data_types);
  /// The readings of any station may have changed, or others are selected.
  void forget_values();
  /// Only the line that is displayed has changed.
  void take_line();
  void show_raw_data(bool shown);
  [[nodiscard]] bool shows_raw_data() const;
  /// The three parts of Status_site_map.
  void show_status(const QString& what, const QString& x, const QString& y);
  void show_status(const QString& what);
  [[nodiscard]] RawPanel& raw_data() { return *Picture_raw_data_; }

 protected:
  void keyPressEvent(QKeyEvent* event) override;

 Q_SIGNALS:
  void station_picked(int station_index);
  /// The survey has another projection.
  void projection_changed();

 private:
  QWidget* make_plan();
  QVBoxLayout* make_zoom();
  QWidget* make_status();
  void connect_controls();
  void zoom_about(int steps, QPointF place);
  void show_contents();
  void show_all();
  void define_projection();
  void show_why_no_graticule();
  void pan(QScrollBar& bar, void (*pan_plan)(int), int value);

  RawPanel* Picture_raw_data_;
  SiteMap* Picture_site_map_;
  PlanAxes* axes_;
  PlanColours* colours_;
  std::optional<Module_projections::MapSystem> map_system_;  // of the map places; none: to be read
  QScrollBar* HScroll_x_centre_;
  QScrollBar* VScroll_y_centre_;
  QScrollBar* VScroll_scale_;
  QComboBox* Combo_coords_;
  QPushButton* Command_show_raw_data_;
  std::array<QLabel*, 3> Status_site_map_{};
  QLabel* Label_graticule_;
  QStackedLayout* stack_;
};
