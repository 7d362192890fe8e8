// graph_pair.h: the two graphs of a panel, resistivity above phase, with a common x axis.
#pragma once
#include <QWidget>
#include <array>
#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "display/chosen_points.h"
#include "display/pane_plot.h"
#include "platform/graph/VexGraphControl.h"
#include "platform/graph/pdf_pages.h"
#include "reduction/edits/masks.h"

/// Hands a plot to a graph, which shows it with its next draw_graph.
void hand_over(VexGraphControl& graph, Module_display_data::PanePlot plot);

class GraphPairWidget : public QWidget {
  Q_OBJECT

 public:
  using Component = Module_averaged_data::Component;
  using PointText = std::function<std::string(std::size_t series, std::size_t point, Component)>;

  enum class XAxis { frequency, position };

  /// @param name of the control array; its members are name_0, resistivity, and name_1, phase
  GraphPairWidget(const QString& name, XAxis x_axis, QWidget* parent = nullptr);

  /// Of an axis of positions.
  void set_x_title(const QString& title) { graphs_[1]->set_x_title(title); }
  void clear();
  /// Takes a plot over and draws each graph once, with a blue line at a marked place of the x axis.
  void show_plot(Module_display_data::GraphPair plot, std::optional<double> marked_x = {});
  /// Texts over the curves, resistivity before phase; seen from the next drawing until others are set.
  void set_labels(std::array<std::vector<graph::PlotLabel>, 2> labels) { labels_ = std::move(labels); }
  /// Moves the blue line over the curves, which are not drawn again.
  void mark_x(std::optional<double> x);
  void reset_zoom();
  /// What is in view of both graphs, to be shown again later, and from the next drawing.
  using Views = std::array<VexGraphControl::View, 2>;
  [[nodiscard]] Views views() const;
  void set_views(const Views& views);
  /// Whether Shift and a drag mark points; see points_enclosed.
  void set_marking(bool marking);
  void set_point_text(const PointText& text);
  /// Draws both graphs in a part of a page.
  void place_on(graph::PdfPages& pages, const QRectF& part);
  QSize sizeHint() const override { return {360, 400}; }
  QSize minimumSizeHint() const override;

 Q_SIGNALS:
  void point_selected(Module_averaged_data::Component component, int series, int point);
  /// A rectangle was drawn around these, of one of the graphs; may be none.
  void points_enclosed(Module_averaged_data::Component component,
                       const std::vector<Module_display_data::PlotPlace>& places);
  void pointer_moved(Module_averaged_data::Component component, bool off_graph, double x, double y);

 protected:
  void resizeEvent(QResizeEvent* event) override;

 private:
  void put_mark(std::optional<double> x);
  void show_error_bars(bool shown);

  std::array<VexGraphControl*, 2> graphs_{};
  std::array<std::vector<graph::PlotLabel>, 2> labels_;
};
