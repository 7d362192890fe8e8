// response_frame.h: the response frame of the results viewer: curves of a station, misfits of all of them,
// profiles along the line. Where a response has tippers or impedances, too, or both modes, two lists choose
// what is shown.
#pragma once
#include <QWidget>

#include "occam/results/response_plots.h"
#include "occam/windows/picture_error.h"
#include "occam/windows/response_graph.h"

class HeadingLabel;
class QComboBox;
class QLabel;
class QScrollBar;
class QTableWidget;
class VexSplitter;

class ResponseFrame : public QWidget {
  Q_OBJECT

 public:
  /// @param response  that is on show; it outlives the frame
  explicit ResponseFrame(const Module_occam::OccamResponse& response, QWidget* parent = nullptr);

  void clear();
  void clear_errors();
  /// Offers the stations and frequencies of the response, which has been read again, and lists its misfits.
  void take_response();
  void display_station(int site_number);
  void display_errors(const graph::Palette& palette);
  void display_profiles();
  [[nodiscard]] VexSplitter* splitter() const { return Splitter_response_; }

 Q_SIGNALS:
  void station_chosen(int site_number);
  void hovered(const QString& text);

 private:
  QWidget* make_choices();
  QWidget* make_station_row();
  QWidget* make_profiles();
  void make_graphs();
  void connect_panes();
  void list_views();
  void list_channels();
  void list_frequencies();
  void list_misfits();
  void choose_view();
  void choose_channel();
  void name_panes();
  [[nodiscard]] const Module_occam::ResponseView& view() const;
  [[nodiscard]] const Module_occam::ResponseChannel& channel() const;

  const Module_occam::OccamResponse& response_;
  Module_occam::MisfitTable misfits_;
  std::vector<Module_occam::ResponseView> views_;
  QWidget* choices_;
  QWidget* view_choice_;
  QWidget* channel_choice_;
  QComboBox* Combo_response_view_;
  QComboBox* Combo_response_mode_;
  HeadingLabel* Label_station_;
  QScrollBar* HScroll_station_;
  QComboBox* Combo_display_mode_;
  QComboBox* Combo_display_oddsevens_;
  Module_occam::ByPane<ResponseGraph*> station_graphs_;
  Module_occam::ByPane<ResponseGraph*> profile_graphs_;
  Module_occam::ByPane<PictureError*> error_pictures_;
  QTableWidget* Grid_misfit_;
  VexSplitter* Splitter_response_;
  int site_number_ = 1;
};
