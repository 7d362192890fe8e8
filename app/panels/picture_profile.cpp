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
#include "platform/graph/frequency_axis.h"
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
  connect(notice_, &NoticeBar::closed, this, [this] {  // what was read doesn't come back with the next one
    of_line_.reset();
    of_support_.clear();
  });
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
  const auto name_of = [](float frequency) {
    return graph::FrequencyAxis::instance().short_text(double{frequency}).toStdString();
  };
  graphs_->set_labels(legend_->labels_wanted() ? std::array{profile_labels(plot.resistivity, chosen, name_of),
                                                            profile_labels(plot.phase, chosen, name_of)}
                                               : std::array<std::vector<graph::PlotLabel>, 2>());
  graphs_->show_plot(std::move(plot), current_x(axis));
}

void ProfilePanel::clear() {
  legend_->list_frequencies();
  graphs_->set_labels({});
  graphs_->clear();
}

void ProfilePanel::forget_choice() { legend_->forget_choice(); }

std::size_t ProfilePanel::column_of(int point) const {
  const auto at = static_cast<std::size_t>(point);
  return at < order_.size() ? order_[at] : at;
}

void ProfilePanel::mark_station(const LineAxis& axis) { graphs_->mark_x(current_x(axis)); }

void ProfilePanel::show_notice(const std::optional<LineNotice>& notice) {
  of_line_ = notice;
  show_notices();
}

void ProfilePanel::tell_support(const std::string& text) {
  of_support_ = text;
  show_notices();
}

void ProfilePanel::show_notices() {
  QStringList texts;
  for (const std::string& text : {of_line_ ? of_line_->text : std::string(), of_support_}) {
    if (!text.empty()) {
      texts.append(qt_text(text));
    }
  }
  if (texts.isEmpty()) {
    notice_->hide();
  } else {
    notice_->show_text(texts.join('\n'),
                       of_line_ && of_line_->offers_distances ? "Show distances" : QString());
  }
  layout()->activate();  // the graphs are drawn once, in the room that they have now
}
