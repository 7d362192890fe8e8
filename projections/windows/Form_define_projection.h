// Form_define_projection.h: chooses or defines the coordinate system of the open survey.
#pragma once
#include <QDialog>
#include <memory>
#include <optional>
#include <string>

#include "numerics/geodesy/coordinate_transforms.h"
#include "projections/definition_list.h"

namespace Ui {
class Form_define_projection;
}

class Form_define_projection : public QDialog {
  Q_OBJECT

 public:
  /// Asks for the name of the projection and shows the dialog.
  /// @param site  of the files that the projection is for: the test point to begin with
  /// @return true if the survey has a projection chosen here
  static bool define_projection(QWidget* parent,
                                const std::optional<numerics::geodesy::GeographicPlace>& site = {});

  /// @param asked_name  for values that no definition of the list has; may be empty
  explicit Form_define_projection(std::string asked_name, QWidget* parent = nullptr,
                                  const std::optional<numerics::geodesy::GeographicPlace>& site = {});
  ~Form_define_projection() override;

  /// Fills the list and shows the definition of the name asked for, else the survey's projection.
  void display_projection_system();

 private:
  void make_menu();
  void connect_controls();
  void fill_list(int index);
  [[nodiscard]] int index() const;
  void definition_chosen();
  void show_name();
  template <class Action>
  void modify(Action action);
  void use_shown();

  std::unique_ptr<Ui::Form_define_projection> ui_;
  std::string asked_name_;
  Module_projections::CoordSystems coord_systems_;  // the user's own
};
