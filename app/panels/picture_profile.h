// picture_profile.h: the panel of the line: resistivity and phase along its stations, a curve a frequency.
#pragma once
#include <QWidget>

#include "display/windows/graph_pair.h"

class ProfilePanel : public QWidget {
  Q_OBJECT

 public:
  explicit ProfilePanel(QWidget* parent = nullptr);

  /// Draws the profile data set with the current station marked.
  void display_profile();
  /// Draws what is shown with the current station marked.
  void mark_station();
  void clear() { graphs_->clear(); }
  void reset_zoom() { graphs_->reset_zoom(); }
  [[nodiscard]] GraphPairWidget& graphs() { return *graphs_; }

 private:
  GraphPairWidget* graphs_;
};
