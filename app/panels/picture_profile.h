// picture_profile.h: the panel of the line: resistivity and phase along its stations, a curve a frequency.
#pragma once
#include <QWidget>
#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "display/line_axis.h"
#include "display/windows/graph_pair.h"

class NoticeBar;
class ProfileLegend;

class ProfilePanel : public QWidget {
  Q_OBJECT

 public:
  explicit ProfilePanel(QWidget* parent = nullptr);

  /// Draws the profile data set on an axis, with the current station marked.
  void display_profile(const Module_display_data::LineAxis& axis);
  /// Draws what is shown with the current station marked.
  void mark_station(const Module_display_data::LineAxis& axis);
  /// The column of the profile data set that a point of the graphs stands for.
  [[nodiscard]] std::size_t column_of(int point) const;
  /// Says something of the line above the graphs; nothing takes away what was said.
  void show_notice(const std::optional<Module_display_data::LineNotice>& notice);
  /// The same of curves that are missing or rest on nothing in use, beside what is told of the line; empty:
  /// nothing.
  void tell_support(const std::string& text);
  void clear();
  /// No frequency stands out any more.
  void forget_choice();
  void reset_zoom() { graphs_->reset_zoom(); }
  [[nodiscard]] GraphPairWidget& graphs() { return *graphs_; }

 Q_SIGNALS:
  /// The notice's button was pressed.
  void distances_wanted();
  /// Another curve is to stand out, or labels are to come or go: the profile is to be drawn again.
  void look_changed();

 private:
  void show_notices();

  NoticeBar* notice_;
  std::optional<Module_display_data::LineNotice> of_line_;
  std::string of_support_;
  GraphPairWidget* graphs_;
  ProfileLegend* legend_;
  std::vector<std::size_t> order_;  // of the columns along the axis
};
