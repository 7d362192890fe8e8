#include "app/panels/picture_plan_group.h"

#include <QComboBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>
#include <QScrollBar>
#include <QStackedLayout>
#include <QVBoxLayout>
#include <algorithm>

#include "app/panels/picture_raw_data.h"
#include "app/panels/picture_site_map.h"
#include "app/panels/plan_axes.h"
#include "app/panels/plan_colours.h"
#include "core/number_text.h"
#include "core/scope_guard.h"
#include "core/session_state.h"
#include "core/trap_errors.h"
#include "display/chosen_points.h"
#include "display/plan_view.h"
#include "platform/widgets/horizontal_bar.h"
#include "platform/widgets/panel_controls.h"
#include "projections/windows/Form_define_projection.h"

using namespace Module_display_data;

namespace {

constexpr int map_coordinates = 1;

/// A bar that goes back to its middle after each move.
QScrollBar* make_spring(QScrollBar* bar, const QString& name, const QString& spoken_name) {
  bar->setObjectName(name);
  bar->setRange(-10, 10);
  bar->setPageStep(5);
  bar->setTracking(false);  // a drag moves once, when the bar is let go
  bar->setToolTip("Moves the plan");
  bar->setAccessibleName(spoken_name);
  bar->setFocusPolicy(Qt::StrongFocus);
  return bar;
}

}  // namespace

PlanPanel::PlanPanel(QWidget* parent)
    : QWidget(parent),
      Picture_raw_data_(named(new RawPanel, "Picture_raw_data")),
      Picture_site_map_(named(new SiteMap, "Picture_site_map")),
      axes_(new PlanAxes(Picture_site_map_)),
      colours_(new PlanColours(this)),
      HScroll_x_centre_(make_spring(new HorizontalBar, "HScroll_x_centre", "Plan to the left or right")),
      VScroll_y_centre_(make_spring(new QScrollBar(Qt::Vertical), "VScroll_y_centre", "Plan up or down")),
      VScroll_scale_(named(new QScrollBar(Qt::Vertical), "VScroll_scale")),
      Combo_coords_(make_list("Combo_coords")),
      Command_show_raw_data_(named(new QPushButton("Show Ra&w Data"), "Command_show_raw_data")),
      Label_graticule_(named(new QLabel("<a href=\"projection\">No graticule</a>"), "Label_graticule")),
      stack_(new QStackedLayout) {
  Combo_coords_->addItems({"Local", "Map"});
  VScroll_scale_->setRange(-5, 20);
  VScroll_scale_->setPageStep(1);
  VScroll_scale_->setInvertedAppearance(true);  // up is nearer, as with the wheel and the keys
  VScroll_scale_->setInvertedControls(false);
  VScroll_scale_->setToolTip("Zoom");
  VScroll_scale_->setAccessibleName("Zoom of the plan");
  VScroll_scale_->setFocusPolicy(Qt::StrongFocus);
  Combo_coords_->setToolTip("Coordinates of the survey's own grid, or of the map");
  Command_show_raw_data_->setToolTip("Back to the repeats of the station");
  stack_->addWidget(make_plan());
  stack_->addWidget(Picture_raw_data_);
  auto* const rows = new QVBoxLayout(this);
  rows->setContentsMargins(0, 0, 0, 0);
  rows->setSpacing(2);
  rows->addLayout(stack_, 1);
  rows->addWidget(make_status());
  connect_controls();
}

QWidget* PlanPanel::make_plan() {
  auto* const plan = named(new QWidget, "Picture_plan");
  auto* const controls = new QHBoxLayout;
  add_labelled(*controls, "Coor&dinates", Combo_coords_);
  add_labelled(*controls, "Colo&urs", colours_->quantities());
  controls->addWidget(colours_->frequencies());
  controls->addWidget(Label_graticule_);
  controls->addStretch();
  controls->addWidget(Command_show_raw_data_);
  auto* const grid = new QGridLayout(plan);
  grid->setContentsMargins(0, 2, 0, 0);
  grid->setSpacing(2);
  grid->addLayout(controls, 0, 0, 1, 3);
  grid->addWidget(axes_, 1, 0);
  grid->addWidget(VScroll_y_centre_, 1, 1);
  grid->addLayout(make_zoom(), 1, 2);
  grid->addWidget(HScroll_x_centre_, 2, 0);
  return plan;
}

QVBoxLayout* PlanPanel::make_zoom() {
  auto* const zoom = new QVBoxLayout;
  zoom->setSpacing(0);
  zoom->addWidget(new QLabel("+"), 0, Qt::AlignHCenter);
  zoom->addWidget(VScroll_scale_, 1, Qt::AlignHCenter);
  zoom->addWidget(new QLabel("\u2212"), 0, Qt::AlignHCenter);
  return zoom;
}

QWidget* PlanPanel::make_status() {
  auto* const status = named(new QWidget, "Status_site_map");
  auto* const row = new QHBoxLayout(status);
  row->setContentsMargins(0, 0, 0, 0);
  for (std::size_t index = 0; index < Status_site_map_.size(); ++index) {
    auto* const part = named(new QLabel, QString("Status_site_map_%1").arg(index + 1));
    part->setFrameStyle(QFrame::StyledPanel | QFrame::Sunken);
    part->setMinimumWidth(110);
    Status_site_map_[index] = part;
    row->addWidget(part, 1);
  }
  return status;
}

void PlanPanel::connect_controls() {
  connect(Picture_raw_data_, &RawPanel::plan_wanted, this, [this] { show_raw_data(false); });
  connect(Command_show_raw_data_, &QPushButton::clicked, this, [this] { show_raw_data(true); });
  connect(Combo_coords_, &QComboBox::currentIndexChanged, this, [this](int index) {
    if (!session().updating_controls && choose_coordinates(index)) {
      draw_plan();
    }
  });
  Label_graticule_->setTextInteractionFlags(Qt::LinksAccessibleByMouse | Qt::LinksAccessibleByKeyboard);
  Label_graticule_->hide();
  connect(Label_graticule_, &QLabel::linkActivated, this, &PlanPanel::define_projection);
  connect(colours_, &PlanColours::changed, this, &PlanPanel::draw_plan);
  connect(VScroll_scale_, &QScrollBar::valueChanged, this, [this] {
    if (!session().updating_controls) {
      draw_plan();
    }
  });
  connect(HScroll_x_centre_, &QScrollBar::valueChanged, this,
          [this](int value) { pan(*HScroll_x_centre_, pan_plan_x, value); });
  connect(VScroll_y_centre_, &QScrollBar::valueChanged, this,
          [this](int value) { pan(*VScroll_y_centre_, pan_plan_y, value); });
  connect(Picture_site_map_, &SiteMap::resized, this, &PlanPanel::draw_plan);
  connect(Picture_site_map_, &SiteMap::station_picked, this, &PlanPanel::station_picked);
  connect(Picture_site_map_, &SiteMap::zoom_wanted, this, &PlanPanel::zoom_about);
  connect(Picture_site_map_, &SiteMap::dragged, this, [this](QPointF from, QPointF to) {
    drag_plan({from.x(), from.y()}, {to.x(), to.y()});
    draw_plan();
  });
  connect(Picture_site_map_, &SiteMap::pointer_moved, this,
          [this](const QString& station, double x, double y) {
            const QString marked = qt_text(chosen_text());  // stays in view as long as it matters
            show_status(marked.isEmpty() ? station : marked, qt_text(format_number(x, "0.0")),
                        qt_text(format_number(y, "0.0")));
          });
  connect(Picture_site_map_, &SiteMap::pointer_left, this,
          [this] { show_status(qt_text(chosen_text()), {}, {}); });
}

void PlanPanel::pan(QScrollBar& bar, void (*pan_plan)(int), int value) {
  if (session().updating_controls || value == 0) {
    return;
  }
  pan_plan(value);
  draw_plan();
  const ScopedValue updating(session().updating_controls, true);
  bar.setValue(0);
}

void PlanPanel::zoom_about(int steps, QPointF place) {
  const int present = VScroll_scale_->value();
  const int wanted = std::clamp(present + steps, VScroll_scale_->minimum(), VScroll_scale_->maximum());
  keep_place_through_zoom({place.x(), place.y()}, Picture_site_map_->height(), present, wanted);
  VScroll_scale_->setValue(wanted);
}

void PlanPanel::show_all() {
  fit_plan_window();
  draw_plan();
}

void PlanPanel::keyPressEvent(QKeyEvent* event) {
  const QPointF middle = QRectF(Picture_site_map_->rect()).center();
  const int key = shows_raw_data() ? 0 : event->key();
  if (key == Qt::Key_Plus || key == Qt::Key_Equal) {
    zoom_about(1, middle);
  } else if (key == Qt::Key_Minus) {
    zoom_about(-1, middle);
  } else if (key == Qt::Key_Home) {
    show_all();
  } else {
    QWidget::keyPressEvent(event);
  }
}

void PlanPanel::draw_plan() {
  if (session().station_count > 0 && Picture_site_map_->height() > 0) {
    const ScopedValue updating(session().updating_controls, true);
    VScroll_scale_->setValue(
        resize_plan_window(Picture_site_map_->width(), Picture_site_map_->height(), VScroll_scale_->value()));
  }
  show_contents();
}

void PlanPanel::show_contents() {
  if (shows_raw_data()) {
    return;  // nothing is read for a plan that can't be seen; it is drawn when it comes out
  }
  PlanContents contents{colours_->colouring(), std::nullopt};
  if (session().coord_system == map_coordinates && session().station_count > 0) {
    if (!map_system_) {
      map_system_.emplace();
      static_cast<void>(trap_errors("An error occurred while reading the places of the sites: ", [this] {
        map_system_ = Module_projections::system_of_map_places(session().current_line);
      }));
    }
    contents.system = map_system_->parameters;
  }
  show_why_no_graticule();
  axes_->show_colouring(contents.colouring);
  Picture_site_map_->show_contents(std::move(contents));
}

/// Where the plan of map coordinates has no latitudes and longitudes, a link says why and leads to the
/// projection.
void PlanPanel::show_why_no_graticule() {
  const bool missing =
      session().coord_system == map_coordinates && map_system_ && !map_system_->why_not.empty();
  Label_graticule_->setVisible(missing);
  if (missing) {
    Label_graticule_->setToolTip(plain_tool_tip(
        qt_text(map_system_->why_not) + ". The link shows the projection of the survey, to choose it"));
  }
}

void PlanPanel::define_projection() {
  if (Form_define_projection::define_projection(window())) {
    map_system_.reset();
    Q_EMIT projection_changed();
    draw_plan();
  }
}

void PlanPanel::list_colours(const std::vector<std::string>& data_types) {
  colours_->list(data_types);
  Picture_site_map_->forget_stations();
  map_system_.reset();
}

void PlanPanel::forget_values() {
  colours_->forget_values();
  Picture_site_map_->forget_stations();
  map_system_.reset();
}

void PlanPanel::take_line() {
  colours_->take_line();
  show_contents();
}

void PlanPanel::show_coordinates() {
  const ScopedValue updating(session().updating_controls, true);
  Combo_coords_->setCurrentIndex(session().coord_system);
}

void PlanPanel::show_raw_data(bool shown) {
  const bool comes_out = !shown && shows_raw_data();
  stack_->setCurrentIndex(shown ? 1 : 0);
  if (comes_out) {
    draw_plan();
  }
}

bool PlanPanel::shows_raw_data() const { return stack_->currentIndex() == 1; }

void PlanPanel::show_status(const QString& what, const QString& x, const QString& y) {
  show_status(what);
  Status_site_map_[1]->setText(x);
  Status_site_map_[2]->setText(y);
}

void PlanPanel::show_status(const QString& what) {
  const int part = Status_site_map_[0]->parentWidget()->width() / static_cast<int>(Status_site_map_.size());
  const bool fits = fontMetrics().horizontalAdvance(what) < part;
  for (const std::size_t other : {1U, 2U}) {
    Status_site_map_.at(other)->setVisible(fits);  // a sentence takes the room of all three
  }
  Status_site_map_[0]->setText(what);
}
