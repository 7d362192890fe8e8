// shown_line.h: the tensors of the line that the main window shows, for all windows that draw them.
//
// They are loaded when a window first asks for them, and again when another line, reference type or dipole is
// chosen or readings change. Station indices are those of the session, from 1.
#pragma once
#include <QObject>
#include <QString>
#include <cstdint>
#include <optional>

#include "display/line_axis.h"
#include "tensor/line_tensors.h"

class ShownLine : public QObject {
  Q_OBJECT

 public:
  explicit ShownLine(QObject* parent = nullptr) : QObject(parent) {}

  /// Empty without a survey.
  const Module_tensor::LineTensors& line();
  /// Where the line's stations are: by number, or by distance as the main window has it.
  Module_display_data::LineAxis& axis();
  /// The station that the main window shows, as in line().stations; none if the line doesn't have it.
  std::optional<std::size_t> station_index();
  /// The same as the ID of its row, of whatever line.
  [[nodiscard]] static std::optional<std::int32_t> station_id();

  /// The main window shows another line or kind of curves, or perhaps another station.
  void follow_selection();
  /// What is shown of the main window's station has changed, by an edit or by other frequencies.
  void follow_edit();
  /// The survey was changed or closed: everything is loaded again when it is asked for.
  void forget();
  void set_positions(Module_display_data::PositionSource source);

  /// A window wants a station displayed in the main window, with the frequency (Hz; 0: none) as the clicked
  /// one, and a data type, if the click was at a curve of it.
  void choose(double station, double frequency, const QString& data_type = {});
  /// The same of a station of any line, by the ID of its row.
  void choose_site(std::int32_t StationID, double frequency, const QString& data_type = {});
  /// A window has edited readings, of one station or of any: the main window shows it, and they are read
  /// again.
  void announce_edit(std::optional<double> station);
  /// Other points are to be ringed in the main window's graphs than before (display/marked_points.h).
  void announce_marks();
  /// A window has found a strike that is to be used where tensors are turned, degrees from north.
  void use_strike(double strike);

 Q_SIGNALS:
  void survey_changed();   // what was kept of other lines is out of date; line_changed follows
  void line_changed();     // other stations, or other data of any of them
  void station_changed();  // another one is shown
  void station_chosen(int station_index, double frequency, const QString& data_type);
  void edited();
  void marks_changed();
  void strike_chosen(double strike);

 private:
  [[nodiscard]] static std::optional<Module_tensor::LineChoice> selected();
  void read_again(std::optional<double> station);
  void drop_line();

  Module_tensor::LineTensors line_;
  Module_display_data::LineAxis axis_;
  Module_display_data::PositionSource positions_ = Module_display_data::PositionSource::station_numbers;
  bool loaded_ = false;
  bool announcing_ = false;
};
