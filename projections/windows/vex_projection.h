// vex_projection.h: the editor of one map coordinate system.
//
// It shows the values that count for the current projection, names datums and hemispheres, and computes a
// test point with every change. Hidden values stay as they were; a code without a known name is kept.
#pragma once
#include <QHash>
#include <QWidget>
#include <optional>
#include <vector>

#include "numerics/geodesy/coordinate_transforms.h"

class QComboBox;
class QFormLayout;
class QGridLayout;
class QGroupBox;
class QLabel;
class QLineEdit;

class VexProjection : public QWidget {
  Q_OBJECT

 public:
  using Values = numerics::geodesy::CoordinateSystemValues;

  explicit VexProjection(QWidget* parent = nullptr);

  void show_values(const Values& values);

  /// The values as edited. A field that can't be read counts with its last good value; fault() reports it.
  [[nodiscard]] const Values& values() const { return values_; }

  /// The test point to begin with, in place of one that the projection suggests.
  void offer_test_point(const numerics::geodesy::GeographicPlace& place);

  /// What is wrong with the first field that can't be read; empty if all can.
  [[nodiscard]] QString fault() const;

 Q_SIGNALS:
  /// The user has edited something.
  void values_changed();

 private:
  struct NumberField {
    double Values::*value;
    bool is_angle;
    unsigned projections;  // a bit for each projection that it counts in
    QString title;
    QLineEdit* edit;
    bool readable;
  };

  void make_form();
  void make_system_rows();
  void make_zone_rows();
  void make_test_point();
  void add_row(const QString& title, QWidget* field);
  void show_row(QWidget* field, bool visible);
  void add_number(const char* name, const QString& title, double Values::*value, bool is_angle,
                  unsigned projections);
  void fill_controls();
  void show_rows();
  void show_datum();
  void show_datum_note();
  void projection_chosen();
  void datum_edited();
  void number_edited(NumberField& field);
  void zone_edited();
  void edited();
  void suggest_test_point();
  void show_test_point();

  Values values_;
  bool updating_ = false;        // the controls are being filled
  bool datum_of_grid_ = false;   // the datum was set with the Australian Map Grid
  bool own_test_point_ = false;  // the user has typed one
  std::optional<numerics::geodesy::GeographicPlace> offered_point_;
  bool zone_number_readable_ = true;
  bool datum_readable_ = true;
  std::vector<NumberField> numbers_;
  QGridLayout* form_ = nullptr;
  QHash<QWidget*, QLabel*> labels_;  // of the rows
  QFormLayout* results_ = nullptr;
  QComboBox* projection_ = nullptr;
  QComboBox* datum_ = nullptr;
  QLabel* datum_note_ = nullptr;
  QComboBox* hemisphere_ = nullptr;
  QLineEdit* zone_number_ = nullptr;
  QLabel* no_values_ = nullptr;
  QGroupBox* test_point_ = nullptr;
  QLineEdit* latitude_ = nullptr;
  QLineEdit* longitude_ = nullptr;
  QLabel* easting_title_ = nullptr;
  QLabel* northing_title_ = nullptr;
  QLineEdit* easting_ = nullptr;
  QLineEdit* northing_ = nullptr;
  QLabel* test_note_ = nullptr;
};
