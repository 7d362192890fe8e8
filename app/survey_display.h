// survey_display.h: connects the panels of the main view: what is chosen in one is drawn in all.
//
// A graph is drawn once for each choice or edit.
#pragma once
#include <QObject>
#include <string>

#include "display/graph_clicks.h"
#include "display/line_axis.h"
#include "display/selection.h"
#include "display/windows/graph_pair.h"
#include "reduction/edits/undo.h"

class PlanPanel;
class ProfilePanel;
class RawPanel;
class StationPanel;
class SelectionRow;

class SurveyDisplay : public QObject {
  Q_OBJECT

 public:
  struct Panels {
    SelectionRow* selection = nullptr;
    ProfilePanel* profile = nullptr;
    StationPanel* station = nullptr;
    PlanPanel* plan = nullptr;
  };

  SurveyDisplay(const Panels& panels, QObject* parent);

  /// Draws the plan. A survey that has just been opened gets its lists read and its first station displayed.
  void display_site_map();
  /// The survey was changed by something else than the panels: reads it again and shows the same station.
  void reload();
  /// The readings were computed again: loads those of the same station. Zoom and read-outs stay.
  void reload_readings();
  /// Draws all graphs after a change of what is shown of the data.
  void redraw();
  /// Whether the graphs of a station show the other mode, too.
  void show_both_modes(bool both);
  void clear();
  void undo();
  void redo();
  /// Draws the graphs after a change of which points are marked.
  void redraw_marks();
  /// Shows a station of the survey, from 1.
  void display_station(int station_index, bool draw_profile = false);
  /// The same from another window, where a point was chosen with it.
  /// @param frequency  Hz; above 0 it becomes that of the point clicked last, which commands act from
  /// @param data_type  is shown from now on; empty: the one that is
  void display_at(int station_index, double frequency, const std::string& data_type);
  /// What stood out of the survey that was shown means nothing in the next one.
  void leave_survey();
  /// What the profile takes the positions of the stations from.
  [[nodiscard]] Module_display_data::PositionSource positions() const { return axis_.source(); }

  /// Data sets, selection, zoom and read-outs, for work that displays stations for itself.
  struct Kept {
    Module_display_data::DisplayedStation station;
    GraphPairWidget::Views profile_views;
    GraphPairWidget::Views station_views;
    GraphPairWidget::Views raw_views;
    Module_display_data::PointClick read_out;
    std::string station_series;
    std::string raw_series;
    bool point_clicked = false;
    bool shows_raw_data = false;
  };
  [[nodiscard]] Kept keep() const;
  /// Shows everything as it was kept.
  void put_back(const Kept& kept);

 Q_SIGNALS:
  void station_displayed();
  /// The line, component, reference type or dipole length has changed.
  void selection_changed();
  /// What is shown of the current station has changed.
  void data_changed();
  /// Readings of any station may have changed: by an import, a removal, undo.
  void survey_changed();
  /// Other points are marked, or none any more, or masked ones are hidden or shown.
  void marks_changed();
  /// Stations are at their numbers, or at their distances along the line.
  void positions_changed();
  /// What the user has to know, in one line.
  void told(const QString& text);

 private:
  /// What the graphs were drawn for last.
  struct Shown {
    std::string line;
    double station = 0.0;
    double scan_rate = 0.0;              // Hz
    Module_database::ReadingKey curves;  // of the station
  };

  [[nodiscard]] bool in_plan() const;
  void connect_panels();
  void connect_graphs();
  void connect_marking();
  void apply(const Module_display_data::Redisplay& redisplay);
  void draw(const Module_display_data::Redisplay& redisplay);
  void show_survey(const Module_display_data::SelectionLists& lists, bool read);
  static Shown shown_now();
  void follow_what_changed();
  void follow_marks();
  void follow_support();
  void follow_line();
  void show_map_places();
  void choose_positions(Module_display_data::PositionSource source);
  [[nodiscard]] std::string clicked_frequency() const;
  void show_click(const Module_display_data::PointClick& click);
  void show_undone(const Module_averaged_data::UndoResult& result);

  Panels panels_;
  RawPanel& raw_;
  Shown shown_;
  Module_display_data::LineAxis axis_;
  std::string support_told_;    // what was said last of curves that are missing or rest on nothing in use
  std::size_t marks_told_ = 0;  // how many points were marked when it was said last
  bool masked_hidden_ = false;  // when the graphs were drawn last
  bool plan_stays_ = false;     // who looks at the plan goes on, though the repeats under it are drawn
  bool point_clicked_ = false;  // at this station; until then the frequency is only there for the commands
};
