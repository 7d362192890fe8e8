#include "app/panels/profile_legend.h"

#include <QCheckBox>
#include <QListWidget>
#include <QPainter>
#include <QSignalBlocker>
#include <QVBoxLayout>

#include "core/absent_value.h"
#include "core/session_state.h"
#include "platform/graph/graph_content.h"
#include "platform/widgets/panel_controls.h"
#include "reduction/data_sets/data_sets.h"

namespace {

/// A piece of a curve on the white of the chart, whatever the desktop's own colours.
QIcon curve_icon(const QColor& colour) {
  constexpr int side = 14;
  QPixmap picture(side, side);
  picture.fill(Qt::white);
  QPainter painter(&picture);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(QPen(colour, 2.0));
  painter.drawLine(QPointF(0.0, side / 2.0), QPointF(side, side / 2.0));
  painter.setPen(Qt::NoPen);
  painter.setBrush(colour);
  constexpr double radius = 3.0;
  painter.drawEllipse(QPointF(side / 2.0, side / 2.0), radius, radius);
  return picture;
}

std::vector<float> frequencies_in_use() {
  std::vector<float> frequencies = Module_averaged_data::data_sets().profile.frequencies;
  for (std::size_t i = 0; i < frequencies.size(); ++i) {
    if (!session().frequencies.is_enabled(static_cast<std::int32_t>(i))) {
      frequencies[i] = no_data;
    }
  }
  return frequencies;
}

/// Four digits tell a frequency; more would not fit.
QString frequency_text(float frequency) {
  constexpr float whole = 1000.0F;
  constexpr int digits = 4;
  return frequency < whole ? QString::number(double{frequency}, 'g', digits)
                           : QString::number(double{frequency}, 'f', 0);
}

}  // namespace

ProfileLegend::ProfileLegend(QWidget* parent)
    : QWidget(parent),
      List_frequencies_(named(new QListWidget, "List_profile_frequencies")),
      Check_labels_(named(new QCheckBox("Labels"), "Check_profile_labels")) {
  constexpr int width = 92;
  setFixedWidth(width);
  List_frequencies_->setAccessibleName("Frequencies of the profile");
  List_frequencies_->setToolTip(
      "Colours of the frequencies (Hz); one that is clicked stands out, until it is clicked again");
  List_frequencies_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  List_frequencies_->setMinimumHeight(1);
  Check_labels_->setToolTip(
      "Writes the values of the frequency that stands out at its points, or else the curves' frequencies");
  auto* const rows = new QVBoxLayout(this);
  rows->setContentsMargins(0, 0, 0, 0);
  rows->setSpacing(1);
  rows->addWidget(List_frequencies_, 1);
  rows->addWidget(Check_labels_);
  connect(List_frequencies_, &QListWidget::itemSelectionChanged, this, &ProfileLegend::changed);
  connect(List_frequencies_, &QListWidget::itemPressed, this,
          [this, last = -1](QListWidgetItem* item) mutable {
            const int row = List_frequencies_->row(item);
            if (row == last && item->isSelected()) {
              List_frequencies_->clearSelection();
              last = -1;
            } else {
              last = row;
            }
          });
  connect(Check_labels_, &QCheckBox::toggled, this, &ProfileLegend::changed);
}

void ProfileLegend::list_frequencies() {
  std::vector<float> frequencies = frequencies_in_use();
  if (frequencies == listed_) {
    return;
  }
  const QSignalBlocker quiet(List_frequencies_);
  const float kept = chosen() ? listed_[*chosen()] : no_data;
  listed_ = std::move(frequencies);
  List_frequencies_->clear();
  for (std::size_t i = listed_.size(); i-- > 0;) {
    if (!is_absent(double{listed_[i]})) {
      auto* const item = new QListWidgetItem(
          curve_icon(graph::palette_style_colour(graph::palette_style(static_cast<int>(i) + 1))),
          frequency_text(listed_[i]), List_frequencies_);
      item->setData(Qt::UserRole, static_cast<int>(i));
      if (listed_[i] == kept) {
        List_frequencies_->setCurrentItem(item);
      }
    }
  }
}

std::optional<std::size_t> ProfileLegend::chosen() const {
  const QList<QListWidgetItem*> selected = List_frequencies_->selectedItems();
  return selected.isEmpty() ? std::nullopt
                            : std::optional(selected.front()->data(Qt::UserRole).toULongLong());
}

bool ProfileLegend::labels_wanted() const { return Check_labels_->isChecked(); }
