// Form_tensor_map.h: the map of phase tensors and induction arrows of a line or survey, a period at a time.
// It follows the main window's line, station and edits.
#pragma once
#include <QDialog>

#include "tensor/survey_tensors.h"
#include "tensor/windows/shown_line.h"

class MapControls;
class MapView;
class QLabel;
class QSlider;
class QStatusBar;

class Form_tensor_map : public QDialog {
  Q_OBJECT

 public:
  /// @param shown  outlives this window
  explicit Form_tensor_map(ShownLine& shown, QWidget* parent = nullptr);

  /// Writes the map as it is shown, by the ending of the path: PNG or PDF.
  /// @return 0, or -1 after a message; an earlier file at the path is then as before
  [[nodiscard]] int save_picture(const std::string& path);

 private:
  void lay_out();
  void connect_controls();
  void follow_line();
  void choose_lines();
  void rebuild();
  void list_periods();
  void choose_period(int index);
  void show_remarks();
  void choose_station(int site_index);
  void ask_and_save();

  ShownLine& shown_;
  Module_tensor::SurveyTensors survey_;
  std::vector<double> frequencies_;  // Hz, from the shortest period on
  double frequency_ = 0.0;           // that was chosen last; stays while the lines change
  MapControls* controls_;
  MapView* view_;
  QSlider* Slider_map_period_;
  QLabel* Label_map_period_;
  QLabel* Label_map_remarks_;
  QStatusBar* Status_map_;
};
