// Form_strike.h: the strike of the line that the main window shows: roses, the best strike with its error and
// its alternative, a table of the stations, and how many dimensions the ground has.
//
// Which of the two strikes it is stays the user's choice; the window says what speaks for either.
#pragma once
#include <QDialog>
#include <optional>
#include <vector>

#include "tensor/strike_summary.h"
#include "tensor/windows/dimension_picture.h"
#include "tensor/windows/rose_picture.h"

class QLabel;
class QPushButton;
class QTimer;
class ShownLine;
class StrikeControls;
class StrikeTable;

class Form_strike : public QDialog {
  Q_OBJECT

 public:
  /// @param shown  outlives the window
  explicit Form_strike(ShownLine& shown, QWidget* parent = nullptr);

 private:
  void lay_out();
  void add_buttons(class QVBoxLayout& rows);
  void connect_controls();
  /// The line is another one, or its data are.
  void reload();
  /// The same line with other choices.
  void refresh();
  void mark_station();
  void show_strike();
  void show_pictures();
  void show_dimensions();
  void hand_on(double strike);
  void set_ey_sign(std::int32_t sign);
  enum class Picture { roses, dimensions };
  void save_picture(Picture picture, const char* ending);
  [[nodiscard]] std::vector<std::string> sentences() const;
  [[nodiscard]] QString note() const;

  ShownLine& shown_;
  std::vector<Module_tensor::StrikeStation> stations_;
  std::optional<double> line_azimuth_;
  std::optional<Module_tensor::StrikeQuestion> question_;
  std::optional<Module_tensor::StrikeSummary> summary_;
  Module_tensor::StrikeSummaries summaries_;
  StrikeControls* controls_;
  RosePicture* roses_;
  DimensionPicture* dimensions_;
  StrikeTable* table_;
  QLabel* strike_;
  QLabel* sentences_;
  QLabel* status_;
  QPushButton* use_;
  QPushButton* use_other_;
  QPushButton* ey_;
  QPushButton* save_;
  QTimer* reload_soon_;
};
