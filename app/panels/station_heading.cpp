#include "app/panels/station_heading.h"

#include "core/absent_value.h"
#include "core/number_text.h"
#include "core/session_state.h"
#include "display/site_names.h"
#include "platform/widgets/heading_label.h"
#include "platform/widgets/panel_controls.h"

using namespace Module_display_data;

void show_station_heading(HeadingLabel& heading, const std::string& text) {
  if (is_absent(session().current_station)) {
    heading.set_texts({}, {});
    heading.setToolTip({});
    return;
  }
  const std::int32_t index = session().current_station_index;
  const std::string number = format_number(session().current_station, "0");
  heading.set_texts(qt_text(text), {qt_text(with_short_site_name("Station " + number, index)),
                                    qt_text(with_short_site_name(number, index)), qt_text(number)});
  heading.setToolTip(plain_tool_tip(qt_text(site_name(index))));  // of which the heading shows the beginning
}

void show_curve_heading(HeadingLabel& heading, const std::string& text) {
  heading.setText(qt_text(text));
  heading.setVisible(!text.empty());
}
