// vex_control_resizer.h: keeps the share of each pane of the managed splitters through a window's resize.
//
// Without it every resize rounds the panes anew, and a divider wanders after a few of them. Shares are taken
// only by capture_layout, so any number of resizes between two captures gives back the same picture.
#pragma once
#include <QObject>
#include <QSplitter>
#include <vector>

class VexControlResizer : public QObject {
  Q_OBJECT

 public:
  explicit VexControlResizer(QObject* parent = nullptr);

  /// Puts a splitter under care, with the share of each of its panes (above 0, any common scale). Outer
  /// splitters are given before those that stand in their panes.
  void manage(QSplitter* splitter, const std::vector<double>& shares);

  /// Takes the present shares as the base of later resizes. A splitter that has not been laid out yet keeps
  /// those it has.
  void capture_layout();

  /// Gives each pane its share of the splitter's present length.
  void apply_resize();

 private:
  struct Managed {
    QSplitter* splitter = nullptr;
    std::vector<double> shares;
  };
  std::vector<Managed> managed_;
};
