#include "app/panels/picture_profile.h"

#include <QVBoxLayout>

#include "core/absent_value.h"
#include "core/session_state.h"
#include "display/point_texts.h"
#include "display/profile_plot.h"

namespace {

std::optional<double> current_station() {
  return is_absent(session().current_station) ? std::nullopt : std::optional(session().current_station);
}

}  // namespace

ProfilePanel::ProfilePanel(QWidget* parent)
    : QWidget(parent),
      graphs_(new GraphPairWidget("vxgraph_Profile", graph::AxisType::linear, "Station (m)")) {
  auto* const rows = new QVBoxLayout(this);
  rows->setContentsMargins(0, 0, 0, 0);
  rows->addWidget(graphs_);
  graphs_->set_point_text(Module_display_data::profile_point_text);
}

void ProfilePanel::display_profile() {
  graphs_->show_plot(Module_display_data::profile_plot(), current_station());
}

void ProfilePanel::mark_station() { graphs_->mark_x(current_station()); }
