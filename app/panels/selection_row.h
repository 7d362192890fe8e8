// selection_row.h: the controls above the graphs: what is selected, and read-outs of the point clicked last.
#pragma once
#include <QWidget>
#include <string>

#include "display/graph_clicks.h"
#include "display/line_axis.h"
#include "display/selection.h"

class QCheckBox;
class QComboBox;
class QHBoxLayout;
class QLineEdit;
class QScrollBar;

class SelectionRow : public QWidget {
  Q_OBJECT

 public:
  explicit SelectionRow(QWidget* parent = nullptr);

  /// Shows the lists of a survey with the session's selection.
  void fill(const Module_display_data::SelectionLists& lists);
  /// Shows the session's selection and the range of its line.
  void show_station();
  /// Frequency, event and file of a clicked point.
  void show_read_out(const Module_display_data::PointClick& click);
  /// Those three as they are shown.
  [[nodiscard]] Module_display_data::PointClick read_out() const;
  /// Hz, of the point clicked last; may have been typed over.
  [[nodiscard]] std::string frequency_text() const;
  /// Marks the frequency, which a command can't take, until there is another one.
  void refuse_frequency(const QString& fault);
  [[nodiscard]] bool fixed_scale() const;
  /// Whether the profile goes by distances.
  void show_by_distance(bool by_distance);
  /// To the station before (-1) or after (1) in the line, if there is one.
  void step_station(int step);
  /// To the bar that steps through the stations.
  void focus_stations();

 Q_SIGNALS:
  void chosen(const Module_display_data::Redisplay& redisplay);
  void positions_chosen(Module_display_data::PositionSource source);

 private:
  QHBoxLayout* make_selection();
  QHBoxLayout* make_read_outs();
  void add_tool_tips();
  void connect_controls();
  void go_to_place(int place_in_line);
  void show_site_name();

  QComboBox* Combo_line_;
  QLineEdit* Text_sample_station_;
  QLineEdit* Text_site_name_;  // only where sites have names
  QScrollBar* HScroll_repeat_;
  QComboBox* Combo_reference_type_;
  QComboBox* Combo_data_type_;
  QComboBox* Combo_dipole_;
  QLineEdit* Text_frequency_;
  QLineEdit* Text_event_;
  QLineEdit* Text_file_;
  QCheckBox* Check_hide_masked_data_;
  QCheckBox* Check_fixed_scale_;
  QCheckBox* Check_by_distance_;
};
