#include "app/survey_display.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "app/panels/picture_plan_group.h"
#include "app/panels/picture_profile.h"
#include "app/panels/picture_raw_data.h"
#include "app/panels/picture_station.h"
#include "app/panels/picture_stats.h"
#include "app/panels/selection_row.h"
#include "app/view_settings.h"
#include "core/number_text.h"
#include "core/scope_guard.h"
#include "core/session_state.h"
#include "core/user_interface.h"
#include "database/stations.h"
#include "display/both_modes.h"
#include "display/chosen_points.h"
#include "display/plan_view.h"
#include "display/profile_plot.h"
#include "platform/graph/frequency_axis.h"
#include "platform/widgets/panel_controls.h"
#include "reduction/data_sets/data_sets.h"

using namespace Module_display_data;
namespace averaged = Module_averaged_data;

SurveyDisplay::SurveyDisplay(const Panels& panels, QObject* parent)
    : QObject(parent), panels_(panels), raw_(panels.plan->raw_data()) {
  connect_panels();
  connect_graphs();
  connect_marking();
}

void SurveyDisplay::connect_panels() {
  connect(panels_.selection, &SelectionRow::chosen, this, &SurveyDisplay::apply);
  connect(panels_.selection, &SelectionRow::positions_chosen, this, &SurveyDisplay::choose_positions);
  connect(panels_.profile, &ProfilePanel::distances_wanted, this,
          [this] { choose_positions(PositionSource::distances); });
  connect(panels_.profile, &ProfilePanel::look_changed, this, [this] {
    Redisplay profile;
    profile.draw_profile = true;
    draw(profile);
  });
  connect(panels_.station, &StationPanel::chosen, this, &SurveyDisplay::apply);
  connect(&raw_, &RawPanel::chosen, this, &SurveyDisplay::apply);
  connect(panels_.station, &StationPanel::edited, this, &SurveyDisplay::redraw);
  connect(panels_.station, &StationPanel::static_factor_changed, this, [this] {
    Redisplay with_factor;  // raw graphs show what was measured
    with_factor.draw_profile = true;
    with_factor.draw_station = true;
    draw(with_factor);
    Q_EMIT data_changed();
  });
  connect(panels_.station, &StationPanel::told, this, &SurveyDisplay::told);
  // Later: the box tells its text when Enter has been handled.
  connect(panels_.station, &StationPanel::static_factor_entered, panels_.selection,
          &SelectionRow::focus_stations, Qt::QueuedConnection);
  connect(&raw_, &RawPanel::edited, this, &SurveyDisplay::redraw);
  connect(panels_.plan, &PlanPanel::station_picked, this, [this](int station_index) {
    const ScopedValue stays(plan_stays_, true);  // the next click may be of another station
    display_station(station_index);
  });
  connect(panels_.plan, &PlanPanel::projection_changed, this, [this] {
    if (axis_.by_distance()) {
      choose_positions(PositionSource::distances);
    }
  });
  connect(this, &SurveyDisplay::survey_changed, panels_.plan, &PlanPanel::forget_values);
  connect(this, &SurveyDisplay::selection_changed, panels_.plan, &PlanPanel::forget_values);
  connect(this, &SurveyDisplay::data_changed, panels_.plan, &PlanPanel::take_line);
  connect(&raw_.stats(), &StatsPanel::told, this, &SurveyDisplay::told);
  connect(&raw_.stats(), &StatsPanel::frequency_refused, this, [this](const QString& fault) {
    panels_.selection->refuse_frequency(fault);
    Q_EMIT told(fault);
  });
  raw_.stats().set_frequency_source([this] { return panels_.selection->frequency_text(); });
}

void SurveyDisplay::connect_graphs() {
  const auto place = [](int index) { return static_cast<std::size_t>(std::max(index, 0)); };
  connect(&raw_.graphs(), &GraphPairWidget::point_selected, this,
          [this, place](Component component, int series, int point) {
            raw_.stats().choose_outlier_field(component);
            const PointClick click = click_raw_point(component, place(series), place(point));
            show_click(click);
            raw_.show_series(click.series_label);
          });
  connect(&panels_.station->graphs(), &GraphPairWidget::point_selected, this,
          [this, place](Component component, int series, int point) {
            raw_.stats().choose_outlier_field(component);
            const PointClick click =
                click_station_point(component, place(series), place(point), clicked_frequency());
            show_click(click);
            panels_.station->show_series(click.series_label);
          });
  connect(&panels_.profile->graphs(), &GraphPairWidget::point_selected, this,
          [this, place](Component component, int series, int point) {
            const PointClick click = click_profile_point(
                component, place(series), panels_.profile->column_of(point), clicked_frequency());
            show_click(click);
            panels_.plan->show_status(qt_text(click.status_text));
          });
  using XText = QString (*)(double x);
  const auto follow_pointer = [this](XText x_text) {
    return [this, x_text](Component component, bool off, double x, double y) {
      if (off) {
        panels_.plan->show_status(qt_text(chosen_text()), {}, {});
        return;
      }
      const std::string marked = chosen_text();  // stays in view as long as it matters
      panels_.plan->show_status(!marked.empty()                       ? qt_text(marked)
                                : component == Component::resistivity ? "Resistivity"
                                                                      : "Phase",
                                x_text(x), qt_text(format_number(y, "0.00")));
    };
  };
  const XText frequency_text = [](double x) { return graph::FrequencyAxis::instance().text(x); };
  const XText position_text = [](double x) { return qt_text(format_number(x, "0.0")); };
  connect(&raw_.graphs(), &GraphPairWidget::pointer_moved, this, follow_pointer(frequency_text));
  connect(&panels_.station->graphs(), &GraphPairWidget::pointer_moved, this, follow_pointer(frequency_text));
  connect(&panels_.profile->graphs(), &GraphPairWidget::pointer_moved, this, follow_pointer(position_text));
}

void SurveyDisplay::connect_marking() {
  GraphPairWidget& raw = raw_.graphs();
  GraphPairWidget& station = panels_.station->graphs();
  GraphPairWidget& profile = panels_.profile->graphs();
  for (GraphPairWidget* const graphs : {&raw, &station, &profile}) {
    graphs->set_marking(true);
  }
  using Places = std::vector<PlotPlace>;
  connect(&raw, &GraphPairWidget::points_enclosed, this, [this](Component component, const Places& places) {
    choose_raw_points(component, places);
    redraw_marks();
  });
  connect(&station, &GraphPairWidget::points_enclosed, this,
          [this](Component component, const Places& places) {
            choose_station_points(component, places);
            redraw_marks();
          });
  connect(&profile, &GraphPairWidget::points_enclosed, this, [this](Component component, Places places) {
    for (PlotPlace& at : places) {
      at.point = panels_.profile->column_of(static_cast<int>(at.point));
    }
    choose_profile_points(component, places);
    redraw_marks();
  });
}

void SurveyDisplay::display_site_map() {
  if (session().station_count == 0) {
    SelectionLists lists;
    axis_.reset();
    const bool read = fill_selection_lists(lists) == 0;
    lists.station_index = Module_Brenlox::remembered_station();
    show_survey(lists, read);
  } else if (session().current_station_index < 1) {
    display_station(first_station_of_current_line());
  } else {
    panels_.plan->draw_plan();
  }
}

void SurveyDisplay::reload() {
  SelectionLists lists;
  const ScopedValue stays(plan_stays_, session().station_count > 0 && in_plan());
  const bool read = refill_selection_lists(lists) == 0;
  show_survey(lists, read);
}

void SurveyDisplay::leave_survey() {
  panels_.profile->forget_choice();
  raw_.stats().leave_survey();
}

void SurveyDisplay::reload_readings() {
  const Shown before = shown_;
  const std::string station = panels_.station->series();
  const std::string raw = raw_.series();
  const ScopedValue stays(plan_stays_, in_plan());
  Q_EMIT survey_changed();
  Redisplay redisplay = readings_changed();
  redisplay.draw_profile = true;  // its curves may be others now
  apply(redisplay);
  if (averaged::same_station(before.curves, shown_.curves)) {
    panels_.station->show_series(station);
    raw_.show_series(raw);
  }
}

void SurveyDisplay::show_survey(const SelectionLists& lists, bool read) {
  axis_.forget_places();
  Q_EMIT survey_changed();
  panels_.selection->fill(lists);
  panels_.plan->list_colours(lists.data_types);
  panels_.plan->show_coordinates();
  if (read && session().station_count > 0) {
    display_station(lists.station_index);
  } else {
    clear();
  }
}

bool SurveyDisplay::in_plan() const { return !panels_.plan->shows_raw_data(); }

void SurveyDisplay::redraw() {
  const ScopedValue stays(plan_stays_, in_plan());
  Redisplay all;
  all.draw_profile = true;
  all.draw_station = true;
  all.draw_raw = true;
  draw(all);
  Q_EMIT data_changed();
}

void SurveyDisplay::show_both_modes(bool both) {
  ask_for_both_modes(both);
  if (session().database_open && session().current_station_index > 0) {
    Redisplay station;
    station.draw_station = station.draw_raw = true;
    const ScopedValue stays(plan_stays_, in_plan());
    draw(station);
  }
}

void SurveyDisplay::redraw_marks() {
  const ScopedValue stays(plan_stays_, in_plan());
  Redisplay curves;
  curves.draw_profile = curves.draw_station = curves.draw_raw = true;
  draw(curves);
}

/// Says how many points are marked, where that has changed.
void SurveyDisplay::follow_marks() {
  keep_chosen_points_shown();
  const bool other_count = std::exchange(marks_told_, chosen_count()) != chosen_count();
  if (other_count) {
    panels_.plan->show_status(qt_text(chosen_text()));
  }
  if (std::exchange(masked_hidden_, session().hide_masked_data) != session().hide_masked_data ||
      other_count) {
    Q_EMIT marks_changed();
  }
}

/// Says once that the line has no curves of the chosen kind, or which of them rest on nothing that is in use.
void SurveyDisplay::follow_support() {
  std::string text = empty_profile_text();
  if (text.empty()) {
    text = averaged::unsupported_text(averaged::data_sets().unsupported);
  }
  if (text != support_told_) {
    support_told_ = text;
    panels_.profile->tell_support(text);
  }
}

void SurveyDisplay::clear() {
  shown_ = {};
  forget_chosen_points();
  follow_marks();
  panels_.profile->clear();
  panels_.profile->show_notice({});
  panels_.profile->tell_support({});
  support_told_.clear();
  panels_.station->clear();
  raw_.clear();
  panels_.plan->show_raw_data(false);
  panels_.plan->draw_plan();
}

void SurveyDisplay::display_station(int station_index, bool draw_profile) {
  const BusyPointer busy;
  const ScopedValue updating(session().updating_controls, true);
  Redisplay redisplay = Module_display_data::display_station(station_index, panels_.station->neighbours());
  redisplay.draw_profile |= draw_profile;
  if (redisplay.close_rhoplus_results) {
    Q_EMIT selection_changed();
  }
  draw(redisplay);
  panels_.plan->draw_plan();
  Q_EMIT station_displayed();
}

void SurveyDisplay::display_at(int station_index, double frequency, const std::string& data_type) {
  PointClick click;
  click.data_type = data_type;
  click.station_to_display = station_index == session().current_station_index ? -1 : station_index;
  if (frequency > 0.0) {
    click.frequency_text = format_number(frequency, "0.0000");
  }
  show_click(click);
}

void SurveyDisplay::apply(const Redisplay& redisplay) {
  if (redisplay.close_rhoplus_results) {
    Q_EMIT selection_changed();
  }
  if (redisplay.station_to_display > 0) {
    display_station(redisplay.station_to_display, redisplay.draw_profile);
  } else {
    draw(redisplay);
  }
}

void SurveyDisplay::draw(const Redisplay& redisplay) {
  const bool fixed_scale = panels_.selection->fixed_scale();
  follow_what_changed();
  follow_marks();
  follow_line();
  follow_support();
  if (redisplay.show_line || redisplay.mark_station) {
    panels_.selection->show_station();
  }
  if (redisplay.draw_profile) {
    panels_.profile->display_profile(axis_);
  } else if (redisplay.mark_station) {
    panels_.profile->mark_station(axis_);
  }
  if (redisplay.mark_station || redisplay.draw_station) {
    panels_.station->show_merged_switches();
  }
  if (redisplay.draw_station || redisplay.draw_raw) {
    static_cast<void>(load_other_mode());
  }
  if (redisplay.draw_station) {
    panels_.station->display_station_data(fixed_scale);
  }
  if (redisplay.draw_raw) {
    const bool any = raw_.display_raw_data(fixed_scale);
    panels_.plan->show_raw_data(any && !plan_stays_);
  }
}

SurveyDisplay::Shown SurveyDisplay::shown_now() {
  return {session().current_line, session().current_station, session().current_scan_rate,
          averaged::data_sets().station.key};
}

/// The zoom ends where another place is shown, and the clicked point isn't one of the curves any more.
void SurveyDisplay::follow_what_changed() {
  Shown now = shown_now();
  if (!averaged::same_station(now.curves, shown_.curves)) {
    PointClick frequency_only;
    frequency_only.frequency_text = panels_.selection->frequency_text();
    panels_.selection->show_read_out(frequency_only);
    point_clicked_ = false;
  }
  const bool other_line = now.line != shown_.line;
  const bool other_station = other_line || now.station != shown_.station;
  if (other_line) {
    panels_.profile->reset_zoom();
  }
  if (other_station) {
    panels_.station->reset_zoom();
  }
  if (other_station || now.scan_rate != shown_.scan_rate) {
    raw_.reset_zoom();
  }
  shown_ = std::move(now);
}

void SurveyDisplay::follow_line() {
  if (axis_.take_line(session().current_line)) {
    panels_.selection->show_by_distance(axis_.by_distance());
    const std::optional<LineNotice> notice = axis_.take_notice();
    panels_.profile->show_notice(notice);
    if (notice && !notice->offers_distances) {
      show_map_places();
    }
  }
}

/// Sites that lie on no line are to be seen where they are, not in the column that their numbers make.
void SurveyDisplay::show_map_places() {
  constexpr std::int32_t map_coordinates = 1;
  const ScopedValue chosen_here(session().updating_controls, false);  // nothing is chosen while they change
  if (std::ranges::all_of(session().station_table, Module_database::has_own_map_place) &&
      choose_coordinates(map_coordinates)) {
    panels_.plan->show_coordinates();
  }
}

void SurveyDisplay::choose_positions(PositionSource source) {
  const std::string refusal = axis_.choose(source);
  panels_.selection->show_by_distance(axis_.by_distance());
  panels_.profile->show_notice(refusal.empty() ? std::nullopt : std::optional(LineNotice{refusal, false}));
  if (refusal.empty()) {
    panels_.profile->reset_zoom();
    Redisplay profile;
    profile.draw_profile = true;
    draw(profile);
  }
  Q_EMIT positions_changed();
}

/// Empty until a point of this station has been clicked.
std::string SurveyDisplay::clicked_frequency() const {
  return point_clicked_ ? panels_.selection->frequency_text() : std::string();
}

SurveyDisplay::Kept SurveyDisplay::keep() const {
  return {DisplayedStation(),
          panels_.profile->graphs().views(),
          panels_.station->graphs().views(),
          raw_.graphs().views(),
          panels_.selection->read_out(),
          panels_.station->series(),
          raw_.series(),
          point_clicked_,
          panels_.plan->shows_raw_data()};
}

void SurveyDisplay::put_back(const Kept& kept) {
  const BusyPointer busy;
  {
    const ScopedValue updating(session().updating_controls, true);
    kept.station.put_back();
    shown_ = shown_now();
    panels_.profile->graphs().set_views(kept.profile_views);
    panels_.station->graphs().set_views(kept.station_views);
    raw_.graphs().set_views(kept.raw_views);
    Redisplay all;
    all.show_line = all.mark_station = all.draw_profile = all.draw_station = all.draw_raw = true;
    draw(all);
    panels_.selection->show_read_out(kept.read_out);
    panels_.station->show_series(kept.station_series);
    raw_.show_series(kept.raw_series);
    point_clicked_ = kept.point_clicked;
    panels_.plan->show_raw_data(kept.shows_raw_data);
    panels_.plan->draw_plan();
  }
  Q_EMIT station_displayed();
}

void SurveyDisplay::show_click(const PointClick& click) {
  if (click.station_to_display > 0) {
    display_station(click.station_to_display);
  }
  if (!click.data_type.empty()) {
    apply(choose_data_type(click.data_type));
  }
  if (!click.frequency_text.empty()) {
    panels_.selection->show_read_out(click);
    point_clicked_ = true;
  }
  if (click.edit == Edit::changed) {
    redraw();
  } else if (click.draw_raw) {
    Redisplay raw;
    raw.draw_raw = true;
    draw(raw);
  }
}

void SurveyDisplay::show_undone(const averaged::UndoResult& result) {
  if (result.edit != Edit::nothing && result.station_index > 0) {
    if (result.other_selection) {
      Q_EMIT selection_changed();
    }
    const ScopedValue stays(plan_stays_, in_plan());
    Q_EMIT survey_changed();
    display_station(result.station_index, true);
  }
}

void SurveyDisplay::undo() {
  const BusyPointer busy;
  show_undone(averaged::undo_last_change());
}

void SurveyDisplay::redo() {
  const BusyPointer busy;
  show_undone(averaged::redo_last_change());
}
