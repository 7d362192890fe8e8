#include "tensor/windows/map_controls.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDoubleSpinBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLocale>
#include <QPushButton>
#include <QSignalBlocker>
#include <QSpinBox>
#include <QVBoxLayout>
#include <algorithm>
#include <array>

#include "platform/widgets/panel_controls.h"

using namespace Module_tensor;
using numerics::impedance::ArrowConvention;

namespace {

constexpr double percent = 100.0;

template <class Names>
QComboBox* list_of(const QString& name, const Names& names, const QString& tip) {
  auto* const list = make_list(name);
  for (const std::string_view item : names) {
    list->addItem(QString::fromUtf8(item.data(), static_cast<qsizetype>(item.size())));
  }
  list->setToolTip(tip);
  return list;
}

QCheckBox* make_check(const QString& name, const QString& text, const QString& tip, bool checked = true) {
  auto* const check = named(new QCheckBox(text), name);
  check->setChecked(checked);
  check->setToolTip(tip);
  return check;
}

QSpinBox* make_size(const QString& name, const QString& tip) {
  auto* const size = named(new QSpinBox, name);
  size->setRange(20, 500);
  size->setSingleStep(20);
  size->setValue(static_cast<int>(percent));
  size->setSuffix(" %");
  size->setLocale(QLocale::c());
  size->setToolTip(tip);
  return size;
}

QDoubleSpinBox* make_limit(const QString& name, const QString& tip) {
  constexpr double largest = 180.0;  // degrees
  auto* const limit = named(new QDoubleSpinBox, name);
  limit->setRange(-largest, largest);
  limit->setLocale(QLocale::c());
  limit->setToolTip(tip);
  return limit;
}

}  // namespace

MapControls::MapControls(QWidget* parent)
    : QWidget(parent),
      Combo_map_lines_(list_of("Combo_map_lines",
                               std::array<std::string_view, 2>{"This line", "All lines of the survey"},
                               "Whose stations the map shows; the other lines are read once")),
      Check_map_names_(
          make_check("Check_map_names", "Station &names", "Names beside the stations, where they have room")),
      Command_map_fit_(named(new QPushButton("Show &all"), "Command_map_fit")),
      Check_map_ellipses_(
          make_check("Check_map_ellipses", "&Ellipses of the phase tensor",
                     "An ellipse at each station: its long axis points along or across the strike")),
      Combo_map_fill_(list_of("Combo_map_fill", ellipse_fill_names, "What the colour of an ellipse says")),
      Combo_map_colours_(list_of("Combo_map_colours", scale_palette_names, "Colours of the ellipses")),
      Check_map_invert_(make_check("Check_map_invert", "In&vert", "Colours in the opposite order", false)),
      Spin_map_lower_(make_limit("Spin_map_lower", "Value of the first colour")),
      Spin_map_upper_(make_limit("Spin_map_upper", "Value of the last colour")),
      Spin_map_ellipse_size_(
          make_size("Spin_map_ellipse_size", "Size of the ellipses; 100 % fits the spacing of the stations")),
      Check_map_real_(
          make_check("Check_map_real", "&Real induction arrows", "Arrows of the real part of the tipper")),
      Check_map_imaginary_(make_check("Check_map_imaginary", "&Imaginary induction arrows",
                                      "Arrows of the imaginary part of the tipper")),
      Combo_map_convention_(
          list_of("Combo_map_convention",
                  std::array<std::string_view, 2>{"To conductors (Parkinson)", "Away from them (Wiese)"},
                  "Which way the real arrows point")),
      Check_map_reverse_(make_check("Check_map_reverse", "Imaginary ones re&versed",
                                    "Some programs reverse the imaginary arrows together with the real ones",
                                    false)),
      Spin_map_arrow_size_(
          make_size("Spin_map_arrow_size", "Length of the arrows; the legend shows one of known length")),
      Command_map_save_(named(new QPushButton("&Save Picture..."), "Command_map_save")),
      Command_done_(named(new QPushButton("&Done"), "Command_done")) {
  setObjectName("Panel_map");
  auto* const column = new QVBoxLayout(this);
  column->setContentsMargins(0, 0, 0, 0);
  column->addWidget(make_sites());
  column->addWidget(make_ellipses());
  column->addWidget(make_arrows());
  column->addStretch(1);
  column->addWidget(Command_map_save_);
  column->addWidget(Command_done_);
  Command_map_fit_->setToolTip("Shows all stations again (double-click on the map, or Home)");
  Command_map_save_->setToolTip("Writes the map as it is shown, as PNG or as PDF");
  Command_done_->setToolTip("Closes this window");
  for (QPushButton* const button : {Command_map_fit_, Command_map_save_, Command_done_}) {
    button->setAutoDefault(false);
  }
  show_usual_scale();
  connect_controls();
}

QGroupBox* MapControls::make_sites() {
  auto* const box = new QGroupBox("Stations");
  auto* const rows = new QVBoxLayout(box);
  rows->addWidget(Combo_map_lines_);
  rows->addWidget(Check_map_names_);
  rows->addWidget(Command_map_fit_);
  Combo_map_lines_->setAccessibleName("Lines");
  return box;
}

QGroupBox* MapControls::make_ellipses() {
  auto* const box = new QGroupBox("Phase tensor");
  auto* const rows = new QFormLayout(box);
  auto* const limits = new QHBoxLayout;
  limits->addWidget(Spin_map_lower_, 1);
  limits->addWidget(Spin_map_upper_, 1);
  Spin_map_upper_->setAccessibleName("To");
  rows->addRow(Check_map_ellipses_);
  rows->addRow("&Fill:", Combo_map_fill_);
  rows->addRow("&Colours:", Combo_map_colours_);
  rows->addRow("", Check_map_invert_);
  auto* const limits_label = new QLabel("Fro&m, to:");  // a layout is no buddy
  limits_label->setBuddy(Spin_map_lower_);
  rows->addRow(limits_label, limits);
  Spin_map_lower_->setAccessibleName("From");
  rows->addRow("Si&ze:", Spin_map_ellipse_size_);
  return box;
}

QGroupBox* MapControls::make_arrows() {
  auto* const box = new QGroupBox("Tipper");
  auto* const rows = new QFormLayout(box);
  rows->addRow(Check_map_real_);
  rows->addRow(Combo_map_convention_);
  rows->addRow(Check_map_imaginary_);
  rows->addRow(Check_map_reverse_);
  rows->addRow("Len&gth:", Spin_map_arrow_size_);
  Combo_map_convention_->setAccessibleName("Convention of the real arrows");
  return box;
}

void MapControls::connect_controls() {
  connect(Combo_map_fill_, &QComboBox::currentIndexChanged, this, [this] {
    show_usual_scale();
    Q_EMIT look_changed();
  });
  for (QComboBox* const list : {Combo_map_colours_, Combo_map_convention_}) {
    connect(list, &QComboBox::currentIndexChanged, this, &MapControls::look_changed);
  }
  for (QCheckBox* const check : {Check_map_names_, Check_map_ellipses_, Check_map_invert_, Check_map_real_,
                                 Check_map_imaginary_, Check_map_reverse_}) {
    connect(check, &QCheckBox::toggled, this, [this] {
      enable_parts();
      Q_EMIT look_changed();
    });
  }
  for (QDoubleSpinBox* const limit : {Spin_map_lower_, Spin_map_upper_}) {
    connect(limit, &QDoubleSpinBox::valueChanged, this, &MapControls::look_changed);
  }
  for (QSpinBox* const size : {Spin_map_ellipse_size_, Spin_map_arrow_size_}) {
    connect(size, &QSpinBox::valueChanged, this, &MapControls::look_changed);
  }
  connect(Combo_map_lines_, &QComboBox::currentIndexChanged, this, &MapControls::lines_changed);
  connect(Command_map_fit_, &QPushButton::clicked, this, &MapControls::show_all);
  connect(Command_map_save_, &QPushButton::clicked, this, &MapControls::save_picture);
  connect(Command_done_, &QPushButton::clicked, this, &MapControls::done);
}

void MapControls::enable_parts() {
  for (QWidget* const part :
       std::initializer_list<QWidget*>{Combo_map_fill_, Combo_map_colours_, Check_map_invert_,
                                       Spin_map_lower_, Spin_map_upper_, Spin_map_ellipse_size_}) {
    part->setEnabled(Check_map_ellipses_->isChecked());
  }
  Combo_map_convention_->setEnabled(Check_map_real_->isChecked());
  Check_map_reverse_->setEnabled(Check_map_imaginary_->isChecked());
  Spin_map_arrow_size_->setEnabled(Check_map_real_->isChecked() || Check_map_imaginary_->isChecked());
}

/// Of the quantity that is chosen.
void MapControls::show_usual_scale() {
  const ColourScale scale = usual_scale(static_cast<EllipseFill>(Combo_map_fill_->currentIndex()));
  const QSignalBlocker colours(Combo_map_colours_);
  const QSignalBlocker invert(Check_map_invert_);
  const QSignalBlocker lower(Spin_map_lower_);
  const QSignalBlocker upper(Spin_map_upper_);
  constexpr double fine = 10.0;  // below it tenths count
  const bool is_fine = scale.upper - scale.lower < fine;
  for (QDoubleSpinBox* const limit : {Spin_map_lower_, Spin_map_upper_}) {
    limit->setDecimals(is_fine ? 2 : 1);
    limit->setSingleStep(is_fine ? 0.1 : 1.0);
  }
  Combo_map_colours_->setCurrentIndex(static_cast<int>(scale.palette));
  Check_map_invert_->setChecked(scale.inverted);
  Spin_map_lower_->setValue(scale.lower);
  Spin_map_upper_->setValue(scale.upper);
}

MapLook MapControls::look() const {
  MapLook look;
  look.ellipses = Check_map_ellipses_->isChecked();
  look.fill = static_cast<EllipseFill>(Combo_map_fill_->currentIndex());
  look.scale.palette = static_cast<ScalePalette>(Combo_map_colours_->currentIndex());
  look.scale.inverted = Check_map_invert_->isChecked();
  // Limits the wrong way round, as they are on the way to others, or equal ones.
  const auto [lower, upper] = std::minmax({Spin_map_lower_->value(), Spin_map_upper_->value()});
  constexpr double least_range = 0.01;
  look.scale.lower = lower;
  look.scale.upper = std::max(upper, lower + least_range);
  look.ellipse_size = Spin_map_ellipse_size_->value() / percent;
  look.real_arrows = Check_map_real_->isChecked();
  look.imaginary_arrows = Check_map_imaginary_->isChecked();
  look.arrow_size = Spin_map_arrow_size_->value() / percent;
  look.arrows.convention =
      Combo_map_convention_->currentIndex() == 0 ? ArrowConvention::parkinson : ArrowConvention::wiese;
  look.arrows.reverse_imaginary = Check_map_reverse_->isChecked();
  look.names = Check_map_names_->isChecked();
  return look;
}

bool MapControls::all_lines() const { return Combo_map_lines_->currentIndex() == 1; }

void MapControls::choose_line_alone() {
  const QSignalBlocker blocker(Combo_map_lines_);
  Combo_map_lines_->setCurrentIndex(0);
}
