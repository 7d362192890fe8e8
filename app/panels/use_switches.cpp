#include "app/panels/use_switches.h"

#include <QCheckBox>

namespace {

struct Switch {
  const char* caption;
  const char* tool_tip;
};
constexpr std::array<Switch, 3> switches{{{"Use Data", "Off: this curve takes no part in anything"},
                                          {"Use Res", "Off: resistivities of this curve are left out"},
                                          {"Use Phase", "Off: phases of this curve are left out"}}};

}  // namespace

std::array<QCheckBox*, 3> make_use_switches(const QString& name) {
  std::array<QCheckBox*, 3> boxes{};
  for (std::size_t index = 0; index < boxes.size(); ++index) {
    boxes[index] = new QCheckBox(switches[index].caption);
    boxes[index]->setToolTip(switches[index].tool_tip);
    boxes[index]->setObjectName(QString("%1_%2").arg(name).arg(index));
  }
  return boxes;
}

void show_use_switches(const std::array<QCheckBox*, 3>& boxes, bool reading, bool resistivity, bool phase) {
  boxes[0]->setChecked(reading);
  boxes[1]->setChecked(resistivity);
  boxes[2]->setChecked(phase);
}
