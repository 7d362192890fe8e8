#include "projections/windows/Form_define_projection.h"

#include <QMenuBar>
#include <QSignalBlocker>
#include <utility>

#include "core/user_interface.h"
#include "platform/widgets/panel_controls.h"
#include "platform/widgets/typed_text.h"
#include "projections/projection_choice.h"
#include "projections/survey_projection.h"
#include "ui_Form_define_projection.h"

using namespace Module_projections;

namespace {

numerics::geodesy::CoordinateSystemValues values_to_start_with() {
  numerics::geodesy::CoordinateSystemValues values;
  values.projection = numerics::geodesy::projection_utm;
  values.datum = numerics::geodesy::common_datums().front();
  values.zone_width = 6.0;
  return values;
}

}  // namespace

bool Form_define_projection::define_projection(
    QWidget* parent, const std::optional<numerics::geodesy::GeographicPlace>& site) {
  const std::string name = user_interface().ask_text(
      "Enter a name for this projection", "Enter a projection name", name_part(current_coord_system().name));
  return !name_part(name).empty() && Form_define_projection(name, parent, site).exec() == QDialog::Accepted;
}

Form_define_projection::Form_define_projection(std::string asked_name, QWidget* parent,
                                               const std::optional<numerics::geodesy::GeographicPlace>& site)
    : QDialog(parent),
      ui_(std::make_unique<Ui::Form_define_projection>()),
      asked_name_(std::move(asked_name)) {
  ui_->setupUi(this);
  make_menu();
  connect_controls();
  load_user_definitions(coord_systems_);
  display_projection_system();
  if (site) {
    ui_->vxProjection->offer_test_point(*site);
  }
  resize_to_fit(*this, {fontMetrics().averageCharWidth() * 130, fontMetrics().height() * 34});
}

Form_define_projection::~Form_define_projection() = default;

void Form_define_projection::make_menu() {
  auto* const bar = new QMenuBar(this);
  QMenu* const file = bar->addMenu("&File");
  file->setObjectName("menu_file");
  const auto add = [&](const char* name, const char* text, auto action) {
    QAction* const item = file->addAction(text);
    item->setObjectName(name);
    connect(item, &QAction::triggered, this, [this, action] {
      take_typed_text();
      action(coord_systems_);
      fill_list(find_definition(coord_systems_, ui_->vxProjection->values()));
    });
  };
  add("menu_read", "&Read Definitions...", read_definition_file);
  add("menu_save", "&Save Definitions...", save_definition_file);
  file->addSeparator();
  add("menu_clear_list", "&Clear List...", confirm_clear_definitions);
  layout()->setMenuBar(bar);
}

void Form_define_projection::connect_controls() {
  connect(ui_->Combo_coordsys, &QComboBox::currentIndexChanged, this,
          &Form_define_projection::definition_chosen);
  connect(ui_->vxProjection, &VexProjection::values_changed, this, &Form_define_projection::show_name);
  connect(ui_->Command_modify_projections_0, &QPushButton::clicked, this, [this] { modify(save_current); });
  connect(ui_->Command_modify_projections_1, &QPushButton::clicked, this, [this] { modify(save_new); });
  connect(ui_->Command_modify_projections_2, &QPushButton::clicked, this,
          [this] { fill_list(delete_current(coord_systems_, index())); });
  connect(ui_->Command_done, &QPushButton::clicked, this, &Form_define_projection::use_shown);
  connect(ui_->Command_cancel, &QPushButton::clicked, this, &QDialog::reject);
}

void Form_define_projection::display_projection_system() {
  const CoordSystem& current = current_coord_system();
  const int asked = find_definition(coord_systems_, asked_name_);
  if (asked > 0 && name_part(asked_name_) != name_part(current.name)) {
    fill_list(asked);
    definition_chosen();
    return;
  }
  // The survey's own values are shown, also where the user's list has others under that name.
  ui_->vxProjection->show_values(current.name.empty() ? values_to_start_with() : current.values());
  fill_list(find_definition(coord_systems_, current.name));
}

void Form_define_projection::fill_list(int index) {
  const QSignalBlocker filling(ui_->Combo_coordsys);
  ui_->Combo_coordsys->clear();
  for (const CoordSystem& definition : coord_systems_) {
    ui_->Combo_coordsys->addItem(QString::fromStdString(definition.name));
  }
  ui_->Combo_coordsys->setPlaceholderText(coord_systems_.empty() ? "None defined yet" : "Not in the list");
  ui_->Combo_coordsys->setCurrentIndex(index - 1);
  show_name();
}

int Form_define_projection::index() const { return ui_->Combo_coordsys->currentIndex() + 1; }

void Form_define_projection::definition_chosen() {
  if (index() > 0) {
    ui_->vxProjection->show_values(coord_systems_[static_cast<std::size_t>(index()) - 1]);
  }
  show_name();
}

void Form_define_projection::show_name() {
  const std::string name = name_for(coord_systems_, ui_->vxProjection->values(), index(), asked_name_);
  ui_->lblLabels_1->setText(name.empty() ? "Done asks for a name and gives this projection to the survey."
                                         : "Done gives this projection to the survey as \"" +
                                               QString::fromStdString(name_part(name)) + "\".");
}

template <class Action>
void Form_define_projection::modify(Action action) {
  if (const QString fault = ui_->vxProjection->fault(); !fault.isEmpty()) {
    user_interface().show_message(fault.toStdString());
    return;
  }
  fill_list(action(coord_systems_, index(), ui_->vxProjection->values()));
}

void Form_define_projection::use_shown() {
  if (const QString fault = ui_->vxProjection->fault(); !fault.isEmpty()) {
    user_interface().show_message(fault.toStdString());
    return;
  }
  CoordSystem shown;
  shown.set_values(ui_->vxProjection->values());
  shown.name = name_for(coord_systems_, shown, index(), asked_name_);
  if (shown.name.empty()) {
    shown.name =
        user_interface().ask_text("Enter the name to use for the new projection", "Projection Name", "");
    if (shown.name.empty()) {
      return;
    }
  }
  if (use_projection(coord_systems_, shown) == 0) {
    accept();
  }
}
