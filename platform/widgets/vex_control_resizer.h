// vex_control_resizer.h: keeps the share of each pane of the managed splitters through a window's resize.
//
// Without it every resize rounds the panes again, and dividers wander. Shares are measured only by
// capture_layout, so any number of resizes between two captures restores the same picture.
#pragma once
#include <QObject>
#include <QSplitter>
#include <vector>

class VexControlResizer : public QObject {
  Q_OBJECT

 public:
  explicit VexControlResizer(QObject* parent = nullptr);

  /// Adds a splitter with the share of each of its panes (above 0, any common scale). Outer splitters are
  /// added before those inside their panes.
  void manage(QSplitter* splitter, const std::vector<double>& shares);

  /// Measures the current shares for later resizes. A splitter that has not been laid out yet keeps
  /// those it has.
  void capture_layout();

  /// Gives each pane its share of the splitter's current length.
  void apply_resize();

 private:
  struct Managed {
    QSplitter* splitter = nullptr;
    std::vector<double> shares;
  };
  std::vector<Managed> managed_;
};
