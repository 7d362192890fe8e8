#include "app/survey_display.h"

#include <algorithm>

#include "app/panel_controls.h"
#include "app/picture_plan_group.h"
#include "app/picture_profile.h"
#include "app/picture_raw_data.h"
#include "app/picture_station.h"
#include "app/picture_stats.h"
#include "app/selection_row.h"
#include "core/number_text.h"
#include "core/scope_guard.h"
#include "core/session_state.h"
#include "core/user_interface.h"

using namespace Module_display_data;
namespace averaged = Module_averaged_data;

SurveyDisplay::SurveyDisplay(const Panels& panels, QObject* parent)
    : QObject(parent), panels_(panels), raw_(panels.plan->raw_data()) {
  connect_panels();
  connect_graphs();
}

void SurveyDisplay::connect_panels() {
  connect(panels_.selection, &SelectionRow::chosen, this, &SurveyDisplay::apply);
  connect(panels_.station, &StationPanel::chosen, this, &SurveyDisplay::apply);
  connect(&raw_, &RawPanel::chosen, this, &SurveyDisplay::apply);
  connect(panels_.station, &StationPanel::edited, this, &SurveyDisplay::redraw);
  connect(&raw_, &RawPanel::edited, this, &SurveyDisplay::redraw);
  connect(panels_.plan, &PlanPanel::station_picked, this,
          [this](int station_index) { display_station(station_index); });
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
            const PointClick click = click_station_point(component, place(series), place(point),
                                                         panels_.selection->frequency_text());
            show_click(click);
            panels_.station->show_series(click.series_label);
          });
  connect(&panels_.profile->graphs(), &GraphPairWidget::point_selected, this,
          [this, place](Component component, int series, int point) {
            const PointClick click = click_profile_point(component, place(series), place(point),
                                                         panels_.selection->frequency_text());
            show_click(click);
            panels_.plan->show_status(qt_text(click.status_text));
          });
  const auto follow_pointer = [this](const char* x_format) {
    return [this, x_format](Component component, bool off, double x, double y) {
      panels_.plan->show_status(component == Component::resistivity ? "Resistivity" : "Phase",
                                off ? QString() : qt_text(format_number(x, x_format)),
                                off ? QString() : qt_text(format_number(y, "0.00")));
    };
  };
  connect(&raw_.graphs(), &GraphPairWidget::pointer_moved, this, follow_pointer("0.0000"));
  connect(&panels_.station->graphs(), &GraphPairWidget::pointer_moved, this, follow_pointer("0.0000"));
  connect(&panels_.profile->graphs(), &GraphPairWidget::pointer_moved, this, follow_pointer("0.0"));
}

void SurveyDisplay::display_site_map() {
  if (session().station_count == 0) {
    SelectionLists lists;
    const bool filled = fill_selection_lists(lists) == 0;
    panels_.selection->fill(lists);
    panels_.plan->show_coordinates();
    if (!filled || session().station_count == 0) {
      clear();
      return;
    }
  }
  if (session().current_station_index < 1) {
    display_station(first_station_of_current_line());
  } else {
    panels_.plan->draw_plan();
  }
}

void SurveyDisplay::reload() {
  const std::string line = session().current_line;
  const double station = session().current_station;
  session().station_count = 0;
  display_site_map();
  for (std::size_t i = 0; i < session().station_value.size(); ++i) {
    if (session().station_line[i] == line && session().station_value[i] == station) {
      display_station(static_cast<int>(i) + 1);
    }
  }
}

void SurveyDisplay::redraw() {
  Redisplay all;
  all.draw_profile = true;
  all.draw_station = true;
  all.draw_raw = true;
  draw(all);
}

void SurveyDisplay::clear() {
  panels_.profile->clear();
  panels_.station->clear();
  raw_.clear();
  panels_.plan->show_raw_data(false);
  panels_.plan->draw_plan();
}

void SurveyDisplay::display_station(int station_index, bool draw_profile) {
  const BusyPointer busy;
  const ScopedValue updating(session().updating_controls, true);
  const std::string earlier_line = session().current_line;
  Redisplay redisplay = Module_display_data::display_station(station_index, panels_.station->neighbours());
  if (session().current_line != earlier_line) {
    panels_.profile->reset_zoom();
  }
  redisplay.draw_profile |= draw_profile;
  if (redisplay.mark_station) {
    panels_.station->reset_zoom();
    raw_.reset_zoom();
  }
  draw(redisplay);
  panels_.plan->draw_plan();
}

void SurveyDisplay::apply(const Redisplay& redisplay) {
  if (redisplay.station_to_display > 0) {
    display_station(redisplay.station_to_display);
  } else {
    draw(redisplay);
  }
}

void SurveyDisplay::draw(const Redisplay& redisplay) {
  const bool fixed_scale = panels_.selection->fixed_scale();
  if (redisplay.show_line || redisplay.mark_station) {
    panels_.selection->show_station();
  }
  if (redisplay.draw_profile) {
    panels_.profile->display_profile();
  } else if (redisplay.mark_station) {
    panels_.profile->mark_station();
  }
  if (redisplay.mark_station || redisplay.draw_station) {
    panels_.station->show_merged_switches();
  }
  if (redisplay.draw_station) {
    panels_.station->display_station_data(fixed_scale);
  }
  if (redisplay.draw_raw) {
    panels_.plan->show_raw_data(raw_.display_raw_data(fixed_scale));
  }
}

void SurveyDisplay::show_click(const PointClick& click) {
  if (click.station_to_display > 0) {
    display_station(click.station_to_display);
  }
  if (!click.frequency_text.empty()) {
    panels_.selection->show_read_out(click);
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
