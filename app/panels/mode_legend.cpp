#include "app/panels/mode_legend.h"

#include <QLabel>

#include "display/both_modes.h"
#include "platform/widgets/panel_controls.h"

namespace {

/// A square on the white of the charts, on which it is seen with every palette of the desktop.
QString entry(const std::string& data_type, bool selected) {
  const graph::Colour colour = Module_display_data::mode_colour(data_type);
  const QString name = qt_text(data_type).toHtmlEscaped();
  return QString(
             "<span style=\"color:rgb(%1,%2,%3); background-color:white\">&nbsp;&#9632;&nbsp;</span>&nbsp;%4")
      .arg(colour.red)
      .arg(colour.green)
      .arg(colour.blue)
      .arg(selected ? "<b>" + name + "</b>" : name);
}

}  // namespace

QLabel* make_mode_legend(const QString& name) {
  QLabel* const legend = named(new QLabel, name);
  legend->setTextFormat(Qt::RichText);
  constexpr int beside = 6;  // the heading of the next panel
  legend->setContentsMargins(beside, 0, beside, 0);
  legend->setToolTip("The bold one is selected; a click on a point of the other one selects that");
  legend->hide();
  return legend;
}

void show_modes(QLabel& legend, const std::string& selected, bool both) {
  legend.setVisible(both);
  if (both) {
    const std::string other = Module_display_data::other_mode_of(selected);
    const bool first = selected < other;  // in one order, whichever is selected
    legend.setText(first ? entry(selected, true) + "&nbsp; " + entry(other, false)
                         : entry(other, false) + "&nbsp; " + entry(selected, true));
  }
}
