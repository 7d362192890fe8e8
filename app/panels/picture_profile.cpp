#include "app/panels/picture_profile.h"

#include <QHBoxLayout>
#include <QVBoxLayout>
#include <array>
#include <utility>

#include "app/panels/profile_legend.h"
#include "core/absent_value.h"
#include "core/session_state.h"
#include "display/point_texts.h"
#include "display/profile_plot.h"
#include "platform/widgets/notice_bar.h"
#include "platform/widgets/panel_controls.h"

using namespace Module_display_data;

namespace {

std::optional<double> current_x(const LineAxis& axis) {
  return is_absent(session().current_station) ? std::nullopt : axis.x_of(session().current_station);
}

}  // namespace

ProfilePanel::ProfilePanel(QWidget* parent)
    : QWidget(parent),
      notice_(named(new NoticeBar, "Notice_profile")),
      graphs_(new GraphPairWidget("vxgraph_Profile", GraphPairWidget::XAxis::position)),
      legend_(named(new ProfileLegend, "Legend_profile")) {
  graphs_->set_x_title("Station (m)");
  auto* const rows = new QVBoxLayout(this);
  rows->setContentsMargins(0, 0, 0, 0);
  rows->setSpacing(2);
  rows->addWidget(notice_);
  auto* const columns = new QHBoxLayout;
  columns->setSpacing(2);
  columns->addWidget(graphs_, 1);
  columns->addWidget(legend_);
  rows->addLayout(columns, 1);
  graphs_->set_point_text([this](std::size_t series, std::size_t point, Component component) {
    return profile_point_text(series, column_of(static_cast<int>(point)), component);
  });
  connect(legend_, &ProfileLegend::changed, this, &ProfilePanel::look_changed);
  connect(notice_, &NoticeBar::acted, this, &ProfilePanel::distances_wanted);
}

void ProfilePanel::display_profile(const LineAxis& axis) {
  order_ = profile_order(axis);
  graphs_->set_x_title(axis.title());
  legend_->list_frequencies();
  GraphPair plot = profile_plot(axis);
  const std::optional<std::size_t> chosen = legend_->chosen();
  if (chosen) {
    emphasise(plot, *chosen);
  }
  graphs_->set_labels(legend_->labels_wanted() ? std::array{profile_labels(plot.resistivity, chosen),
                                                            profile_labels(plot.phase, chosen)}
                                               : std::array<std::vector<graph::PlotLabel>, 2>());
  graphs_->show_plot(std::move(plot), current_x(axis));
}

void ProfilePanel::clear() {
  legend_->list_frequencies();
  graphs_->set_labels({});
  graphs_->clear();
}

std::size_t ProfilePanel::column_of(int point) const {
  const auto at = static_cast<std::size_t>(point);
  return at < order_.size() ? order_[at] : at;
}

void ProfilePanel::mark_station(const LineAxis& axis) { graphs_->mark_x(current_x(axis)); }

void ProfilePanel::show_notice(const std::optional<LineNotice>& notice) {
  if (notice) {
    notice_->show_text(qt_text(notice->text), notice->offers_distances ? "Show distances" : QString());
  } else {
    notice_->hide();
  }
  layout()->activate();  // the graphs are drawn once, in the room that they have now
}
