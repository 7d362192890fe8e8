#include "projections/windows/vex_projection.h"

#include <QComboBox>
#include <QCompleter>
#include <QFormLayout>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QRegularExpression>
#include <algorithm>
#include <cmath>
#include <exception>
#include <optional>

#include "core/number_text.h"
#include "numerics/geodesy/geographic_angle.h"
#include "projections/coord_system.h"

using namespace numerics::geodesy;

namespace {

constexpr unsigned bit(Projection projection) { return 1U << static_cast<unsigned>(projection); }
constexpr unsigned in_zones = bit(projection_australian_map_grid) | bit(projection_utm);
constexpr unsigned in_conics =
    bit(projection_lambert_conformal) | bit(projection_albers) | bit(projection_equidistant_conic);
constexpr double usual_zone_width = 6.0;
constexpr std::int32_t wgs_84 = 4326;

QString text_of(const std::string& text) { return QString::fromStdString(text); }

// In the last column of a form nothing may be wider than what a number needs.
constexpr int number_characters = 24;

bool counts_in(std::int32_t projection, unsigned projections) {
  return projection >= 0 && projection <= projection_epsg_3857 && ((projections >> projection) & 1U) != 0;
}

void set_readable(QLineEdit* edit, bool readable) {
  QPalette palette;
  if (!readable) {
    palette.setColor(QPalette::Text, QColor(190, 0, 0));
    palette.setColor(QPalette::Base, QColor(255, 235, 235));
  }
  edit->setPalette(palette);
}

/// Chooses a code in a list of named ones; a code without a name gets an entry of its own.
void select_code(QComboBox* combo, int named, std::int32_t code, const QString& words_for_others) {
  while (combo->count() > named) {
    combo->removeItem(named);
  }
  if (combo->findData(code) < 0) {
    combo->addItem(QString("%1 (%2)").arg(code).arg(words_for_others), code);
  }
  combo->setCurrentIndex(combo->findData(code));
}

QString datum_text(std::int32_t number) {
  try {
    const std::optional<Datum> datum = find_datum(number);
    return QString("%1 (%2)").arg(datum ? text_of(datum->name) : QString("Unknown")).arg(number);
  } catch (const std::exception&) {
    return QString::number(number);
  }
}

/// The number of a text such as "GDA94 (4283)" or "4283".
std::optional<std::int32_t> datum_number(const QString& text) {
  static const QRegularExpression number(R"((?:^|\()\s*(-?\d{1,10})\s*\)?\s*$)");
  const QRegularExpressionMatch match = number.match(text);
  bool fits = false;
  const int value = match.captured(1).toInt(&fits);
  return match.hasMatch() && fits ? std::optional<std::int32_t>(value) : std::nullopt;
}

QLabel* note_label(const char* name, QWidget* parent) {
  auto* const label = new QLabel(parent);
  label->setObjectName(name);
  label->setWordWrap(true);
  label->setTextInteractionFlags(Qt::TextSelectableByMouse);
  return label;
}

}  // namespace

VexProjection::VexProjection(QWidget* parent) : QWidget(parent) {
  auto* const columns = new QHBoxLayout(this);
  columns->setContentsMargins(0, 0, 0, 0);
  // A form layout loses its last row when a row with a label of several lines is shown and hidden.
  form_ = new QGridLayout;
  form_->setColumnStretch(1, 1);
  columns->addLayout(form_, 3);
  make_form();
  make_test_point();
  columns->addWidget(test_point_, 2, Qt::AlignTop);
  show_values(Values{});
}

void VexProjection::make_form() {
  make_system_rows();
  make_zone_rows();
  add_number("Text_origin_longitude", "Central &meridian (degrees)", &Values::origin_longitude, true,
             in_conics);
  add_number("Text_origin_latitude", "Central &latitude (degrees)", &Values::origin_latitude, true,
             in_conics);
  add_number("Text_standard_parallel_1", "Standard latitude &1 (degrees)", &Values::standard_parallel_1, true,
             in_conics);
  add_number("Text_standard_parallel_2", "Standard latitude &2 (degrees)", &Values::standard_parallel_2, true,
             in_conics);
  add_number("Text_scale_factor", "S&cale factor", &Values::scale_factor, false,
             in_zones | bit(projection_lambert_conformal));
  add_number("Text_false_easting", "False &easting (m)", &Values::false_easting, false, in_zones | in_conics);
  add_number("Text_false_northing", "False &northing (m)", &Values::false_northing, false,
             in_zones | in_conics);
  no_values_ = note_label("Label_no_values", this);
  form_->addWidget(no_values_, form_->rowCount(), 0, 1, 2);
  form_->setRowStretch(form_->rowCount(), 1);
}

void VexProjection::make_system_rows() {
  projection_ = new QComboBox(this);
  projection_->setObjectName("Combo_projection");
  for (std::int32_t code = projection_geographic; code <= projection_epsg_3857; ++code) {
    const QString name = projection_name(code);
    projection_->addItem(code == projection_geographic ? name + " (longitude and latitude)" : name, code);
  }
  projection_->setToolTip("The kind of projection; it decides which values count");
  add_row("P&rojection", projection_);

  datum_ = new QComboBox(this);
  datum_->setObjectName("Combo_datum");
  datum_->setEditable(true);
  datum_->setInsertPolicy(QComboBox::NoInsert);
  datum_->completer()->setFilterMode(Qt::MatchContains);
  datum_->completer()->setCompletionMode(QCompleter::PopupCompletion);
  datum_->setToolTip("Choose a datum, or type the EPSG number of its geographic coordinate system");
  for (const std::int32_t number : common_datums()) {
    datum_->addItem(datum_text(number), number);
  }
  add_row("Dat&um", datum_);
  datum_note_ = note_label("Label_datum", this);
  datum_note_->setAlignment(Qt::AlignTop | Qt::AlignLeft);
  datum_note_->setMinimumHeight(2 * fontMetrics().lineSpacing());  // nothing moves when the note gets longer
  add_row(QString(), datum_note_);

  connect(projection_, &QComboBox::currentIndexChanged, this, &VexProjection::projection_chosen);
  connect(datum_, &QComboBox::editTextChanged, this, &VexProjection::datum_edited);
  connect(datum_->lineEdit(), &QLineEdit::editingFinished, this, &VexProjection::show_datum);
}

void VexProjection::make_zone_rows() {
  hemisphere_ = new QComboBox(this);
  hemisphere_->setObjectName("Combo_hemisphere");
  for (const std::int32_t code : {hemisphere_from_latitude, hemisphere_north, hemisphere_south}) {
    hemisphere_->addItem(hemisphere_name(code), code);
  }
  hemisphere_->setToolTip(
      "The half of the globe that the survey is in; the southern one counts from 10000000 m");
  add_row("&Hemisphere", hemisphere_);

  zone_number_ = new QLineEdit(this);
  zone_number_->setObjectName("Text_zone_number");
  zone_number_->setToolTip(
      "Counts from 1 at 180 W eastwards. 0: each place in the zone of its longitude; a survey across the "
      "border of two "
      "zones needs a number.");
  add_row("&Zone number", zone_number_);
  add_number("Text_zone_width", "Zone w&idth (degrees)", &Values::zone_width, true, in_zones);
  connect(hemisphere_, &QComboBox::currentIndexChanged, this, [this](int index) {
    if (!updating_ && index >= 0) {
      values_.hemisphere = hemisphere_->itemData(index).toInt();
      edited();
    }
  });
  connect(zone_number_, &QLineEdit::textEdited, this, &VexProjection::zone_edited);
}

void VexProjection::add_row(const QString& title, QWidget* field) {
  auto* const label = new QLabel(title, this);
  label->setBuddy(field);
  const int row = form_->rowCount();
  form_->addWidget(label, row, 0);
  form_->addWidget(field, row, 1);
  labels_.insert(field, label);
  // Fields stay where they are when a projection hides the longest label.
  form_->setColumnMinimumWidth(0, std::max(form_->columnMinimumWidth(0), label->sizeHint().width()));
}

void VexProjection::show_row(QWidget* field, bool visible) {
  labels_.value(field)->setVisible(visible);
  field->setVisible(visible);
}

void VexProjection::add_number(const char* name, const QString& title, double Values::*value, bool is_angle,
                               unsigned projections) {
  auto* const edit = new QLineEdit(this);
  edit->setObjectName(name);
  edit->setMinimumWidth(fontMetrics().averageCharWidth() * number_characters);
  edit->setToolTip(is_angle ? "Decimal degrees, or degrees:minutes:seconds; south and west are negative"
                            : "A number; an empty field counts as the grey one in it");
  add_row(title, edit);
  const std::size_t place = numbers_.size();
  numbers_.push_back({value, is_angle, projections, QString(title).remove('&'), edit, true});
  connect(edit, &QLineEdit::textEdited, this, [this, place] { number_edited(numbers_[place]); });
}

void VexProjection::make_test_point() {
  test_point_ = new QGroupBox("Test point", this);
  results_ = new QFormLayout(test_point_);
  const auto line = [this](const char* name, bool read_only) {
    auto* const edit = new QLineEdit(test_point_);
    edit->setObjectName(name);
    edit->setReadOnly(read_only);
    edit->setMinimumWidth(fontMetrics().averageCharWidth() * number_characters);
    return edit;
  };
  latitude_ = line("Text_test_latitude", false);
  longitude_ = line("Text_test_longitude", false);
  easting_ = line("Text_test_easting", true);
  northing_ = line("Text_test_northing", true);
  for (QLineEdit* const result : {easting_, northing_}) {
    result->setToolTip("Where the test point comes to lie");
  }
  easting_title_ = new QLabel(test_point_);
  northing_title_ = new QLabel(test_point_);
  test_note_ = note_label("Label_test_note", test_point_);
  for (QLineEdit* const edit : {latitude_, longitude_}) {
    edit->setToolTip("Decimal degrees, or degrees:minutes:seconds, on the datum of the system");
    connect(edit, &QLineEdit::textEdited, this, [this] {
      own_test_point_ = true;
      show_test_point();
    });
  }
  results_->addRow("L&atitude", latitude_);
  results_->addRow("Lon&gitude", longitude_);
  results_->addRow(easting_title_, easting_);
  results_->addRow(northing_title_, northing_);
  results_->addRow(test_note_);
  test_note_->setMinimumHeight(4 * fontMetrics().lineSpacing());  // nothing moves when a note appears
  test_note_->setAlignment(Qt::AlignTop | Qt::AlignLeft);
}

void VexProjection::show_values(const Values& values) {
  values_ = values;
  own_test_point_ = false;
  datum_of_grid_ = false;
  fill_controls();
}

QString VexProjection::fault() const {
  if (!datum_readable_ && values_.projection != projection_epsg_3857) {
    return "The datum is not a number";
  }
  if (!zone_number_readable_ && counts_in(values_.projection, in_zones)) {
    return "Zone number: '" + zone_number_->text() + "' is not a whole number";
  }
  for (const NumberField& field : numbers_) {
    if (!field.readable && counts_in(values_.projection, field.projections)) {
      return field.title + ": '" + field.edit->text() + "' is not a number";
    }
  }
  return {};
}

void VexProjection::fill_controls() {
  updating_ = true;
  select_code(projection_, projection_epsg_3857 + 1, values_.projection, "undefined");
  select_code(hemisphere_, hemisphere_south + 1, values_.hemisphere, "no known code: by the latitude");
  zone_number_->setText(QString::number(values_.zone_number));
  zone_number_readable_ = true;
  set_readable(zone_number_, true);
  for (NumberField& field : numbers_) {
    // A 0 that means a usual value is an empty field with that value as its placeholder.
    const double value = values_.*field.value;
    const bool has_usual = field.value == &Values::scale_factor || field.value == &Values::false_easting ||
                           field.value == &Values::false_northing;
    field.edit->setText(value == 0.0 && has_usual ? QString() : text_of(criterion_text(value)));
    field.readable = true;
    set_readable(field.edit, true);
  }
  updating_ = false;
  show_datum();
  show_rows();
  suggest_test_point();
  show_test_point();
}

void VexProjection::show_rows() {
  const std::int32_t projection = values_.projection;
  const bool zones = counts_in(projection, in_zones);
  const bool datum = projection != projection_epsg_3857;
  show_row(datum_, datum);
  show_row(datum_note_, datum);
  show_row(hemisphere_, projection == projection_utm);
  show_row(zone_number_, zones);
  for (const NumberField& field : numbers_) {
    show_row(field.edit, counts_in(projection, field.projections));
  }
  const bool southern =
      projection == projection_australian_map_grid || values_.hemisphere == hemisphere_south;
  const bool northern = !southern && values_.hemisphere == hemisphere_north;
  for (const NumberField& field : numbers_) {
    if (field.value == &Values::scale_factor) {
      field.edit->setPlaceholderText(zones ? "0.9996" : "1");
    } else if (field.value == &Values::false_easting) {
      field.edit->setPlaceholderText(zones ? "500000" : "0");
    } else if (field.value == &Values::false_northing) {
      field.edit->setPlaceholderText(!zones || northern ? "0"
                                     : southern         ? "10000000"
                                                        : "0, in the south 10000000");
    }
  }
  no_values_->setVisible(projection == projection_geographic || projection == projection_epsg_3857);
  no_values_->setText(
      projection == projection_epsg_3857
          ? "The Mercator projection of map services, on the sphere of WGS 84. It has no other values."
          : "Longitude and latitude stay as they are, in degrees.");
}

void VexProjection::show_datum() {
  updating_ = true;
  const int listed = datum_->findData(values_.datum);
  datum_->setCurrentIndex(listed);
  datum_->setEditText(datum_text(values_.datum));
  datum_readable_ = true;
  set_readable(datum_->lineEdit(), true);
  updating_ = false;
  show_datum_note();
}

void VexProjection::show_datum_note() {
  QString note;
  try {
    const std::optional<Datum> datum = find_datum(values_.datum);
    if (datum) {
      note = "Ellipsoid " + text_of(datum->ellipsoid);
    } else {
      const std::optional<Datum> taken = find_datum(substitute_datum(values_.projection));
      note = "No datum is known by this number. It is kept";
      note += datum_is_replaced(values_) && taken
                  ? "; the ellipsoid taken is " + text_of(taken->ellipsoid) + "."
                  : ".";
    }
  } catch (const std::exception& failure) {
    note = QString("No datum can be looked up: ") + failure.what();
  }
  datum_note_->setText(note);
}

// Choosing a projection sets the values that a user would fill in anyway.
void VexProjection::projection_chosen() {
  if (updating_ || projection_->currentIndex() < 0) {
    return;
  }
  values_.projection = projection_->currentData().toInt();
  if (counts_in(values_.projection, in_zones) && !(values_.zone_width > 0.0)) {
    values_.zone_width = usual_zone_width;
  }
  const bool australian = values_.projection == projection_australian_map_grid;
  if (values_.datum == 0 || (australian && values_.datum == wgs_84)) {
    values_.datum = substitute_datum(values_.projection);
    datum_of_grid_ = australian;
  } else if (datum_of_grid_ && !australian) {  // back to what it was, for a user who only looked
    values_.datum =
        values_.datum == substitute_datum(projection_australian_map_grid) ? wgs_84 : values_.datum;
    datum_of_grid_ = false;
  }
  fill_controls();
  Q_EMIT values_changed();
}

void VexProjection::datum_edited() {
  if (updating_) {
    return;
  }
  const std::optional<std::int32_t> number = datum_number(datum_->currentText());
  datum_readable_ = number.has_value();
  set_readable(datum_->lineEdit(), datum_readable_);
  if (number) {
    values_.datum = *number;
    datum_of_grid_ = false;
    show_datum_note();
  }
  edited();
}

void VexProjection::number_edited(NumberField& field) {
  const std::string text = field.edit->text().trimmed().toStdString();
  std::optional<double> value;
  if (text.empty()) {
    value = 0.0;
  } else if (is_numeric(text)) {
    value = numeric_value(text);
  } else if (field.is_angle) {
    const bool is_longitude = field.value == &Values::origin_longitude;
    value = numerics::geodesy::read_geographic_angle(
        text, is_longitude ? GeographicAngle::longitude : GeographicAngle::latitude);
  }
  field.readable = value && std::isfinite(*value);
  set_readable(field.edit, field.readable);
  if (field.readable) {
    values_.*field.value = *value;
  }
  edited();
}

void VexProjection::zone_edited() {
  const QString text = zone_number_->text().trimmed();
  const int number = text.isEmpty() ? 0 : text.toInt(&zone_number_readable_);
  zone_number_readable_ = zone_number_readable_ || text.isEmpty();
  set_readable(zone_number_, zone_number_readable_);
  if (zone_number_readable_) {
    values_.zone_number = number;
  }
  edited();
}

void VexProjection::edited() {
  show_rows();
  suggest_test_point();
  show_test_point();
  Q_EMIT values_changed();
}

// A place in the middle of the system, until the user types one.
void VexProjection::offer_test_point(const GeographicPlace& place) {
  offered_point_ = place;
  suggest_test_point();
  show_test_point();
}

void VexProjection::suggest_test_point() {
  if (own_test_point_) {
    return;
  }
  GeographicPlace place{-30.0, 147.0};
  if (offered_point_) {
    place = *offered_point_;
  } else if (counts_in(values_.projection, in_conics)) {
    place = {values_.origin_latitude, values_.origin_longitude};
  } else if (counts_in(values_.projection, in_zones)) {
    place.latitude =
        values_.projection == projection_utm && values_.hemisphere != hemisphere_south ? 30.0 : -30.0;
    if (values_.zone_number > 0) {
      place.longitude = central_meridian(values_.zone_number, values_.zone_width);
    }
  }
  latitude_->setText(text_of(plain_text(place.latitude)));
  longitude_->setText(text_of(plain_text(place.longitude)));
}

void VexProjection::show_test_point() {
  const bool in_degrees = values_.projection == projection_geographic;
  easting_title_->setText(in_degrees ? "X (longitude)" : "Easting (m)");
  northing_title_->setText(in_degrees ? "Y (latitude)" : "Northing (m)");
  easting_->clear();
  northing_->clear();
  const auto latitude =
      numerics::geodesy::read_geographic_angle(latitude_->text().toStdString(), GeographicAngle::latitude);
  const auto longitude =
      numerics::geodesy::read_geographic_angle(longitude_->text().toStdString(), GeographicAngle::longitude);
  set_readable(latitude_, latitude.has_value() || latitude_->text().isEmpty());
  set_readable(longitude_, longitude.has_value() || longitude_->text().isEmpty());
  QString note = fault();
  if (note.isEmpty()) {
    note = text_of(Module_projections::coordinate_system_fault(values_));
  }
  if (note.isEmpty() && (!latitude || !longitude)) {
    note = "Type a latitude and a longitude, such as -37:57:03.72 and 144:25:29.52";
  }
  if (note.isEmpty()) {
    try {
      const MapPlace map = ll2en(crdprm(values_), {*latitude, *longitude});
      const char* const picture = in_degrees ? "0.00000000" : "0.000";
      easting_->setText(text_of(format_number(map.easting, picture)));
      northing_->setText(text_of(format_number(map.northing, picture)));
      if (map.zone_number > 0) {
        note = QString("Zone %1, central meridian %2")
                   .arg(map.zone_number)
                   .arg(text_of(plain_text(central_meridian(map.zone_number, values_.zone_width))));
      }
    } catch (const std::exception& failure) {
      note = QString("No coordinates: ") + failure.what();
    }
  }
  test_note_->setText(note);
}
