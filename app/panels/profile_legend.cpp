#include "app/panels/profile_legend.h"

#include <QCheckBox>
#include <QListWidget>
#include <QMouseEvent>
#include <QPainter>
#include <QSignalBlocker>
#include <QStyle>
#include <QVBoxLayout>
#include <algorithm>

#include "core/absent_value.h"
#include "core/session_state.h"
#include "platform/graph/frequency_axis.h"
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

/// The signs that the widest text has: "0.0001221".
constexpr int longest_text = 9;

/// A list in which one more click, or Space, takes the choice back.
class FrequencyList final : public QListWidget {
 public:
  using QListWidget::QListWidget;

 protected:
  void mousePressEvent(QMouseEvent* event) override {
    note_pressed(*event);
    QListWidget::mousePressEvent(event);
  }
  void mouseDoubleClickEvent(QMouseEvent* event) override {
    note_pressed(*event);
    QListWidget::mouseDoubleClickEvent(event);
  }
  void mouseReleaseEvent(QMouseEvent* event) override {
    QListWidget::mouseReleaseEvent(event);
    const QListWidgetItem* const item = itemAt(event->position().toPoint());
    if (chosen_when_pressed_ >= 0 && item != nullptr && row(item) == chosen_when_pressed_) {
      clearSelection();
    }
    chosen_when_pressed_ = -1;
  }
  void keyPressEvent(QKeyEvent* event) override {
    if (event->key() == Qt::Key_Space && currentItem() != nullptr) {
      currentItem()->setSelected(!currentItem()->isSelected());
    } else {
      QListWidget::keyPressEvent(event);
    }
  }

 private:
  void note_pressed(const QMouseEvent& event) {
    const QListWidgetItem* const item = itemAt(event.position().toPoint());
    const bool again = event.button() == Qt::LeftButton && item != nullptr && item->isSelected();
    chosen_when_pressed_ = again ? row(item) : -1;
  }

  int chosen_when_pressed_ = -1;
};

}  // namespace

ProfileLegend::ProfileLegend(QWidget* parent)
    : QWidget(parent),
      List_frequencies_(named<QListWidget>(new FrequencyList, "List_profile_frequencies")),
      Check_labels_(named(new QCheckBox("Labels"), "Check_profile_labels")) {
  List_frequencies_->setAccessibleName("Frequencies of the profile");
  List_frequencies_->setToolTip(
      "Colours of the frequencies (Hz) or periods (s); one that is clicked stands out, until it is clicked "
      "again");
  constexpr int icon_and_margins = 30;
  setFixedWidth(std::max(fontMetrics().horizontalAdvance('0') * longest_text + icon_and_margins +
                             style()->pixelMetric(QStyle::PM_ScrollBarExtent) +
                             2 * List_frequencies_->frameWidth(),
                         Check_labels_->sizeHint().width()));
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
  connect(&graph::FrequencyAxis::instance(), &graph::FrequencyAxis::changed, this, [this] {
    for (int row = 0; row < List_frequencies_->count(); ++row) {
      QListWidgetItem& item = *List_frequencies_->item(row);
      item.setText(text_of(item.data(Qt::UserRole).toULongLong()));
    }
    if (labels_wanted()) {
      Q_EMIT changed();
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
          curve_icon(graph::palette_style_colour(graph::palette_style(static_cast<int>(i) + 1))), text_of(i),
          List_frequencies_);
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

void ProfileLegend::forget_choice() {
  const QSignalBlocker quiet(List_frequencies_);
  List_frequencies_->clearSelection();
}

QString ProfileLegend::text_of(std::size_t index) const {
  return graph::FrequencyAxis::instance().short_text(double{listed_[index]});
}

bool ProfileLegend::labels_wanted() const { return Check_labels_->isChecked(); }
