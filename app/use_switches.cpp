#include "app/use_switches.h"

#include <QCheckBox>

std::array<QCheckBox*, 3> make_use_switches(const QString& name) {
  const char* const captions[] = {"Use Data", "Use Res", "Use Phase"};
  const char* const tool_tips[] = {"Off: this curve takes no part in anything",
                                   "Off: resistivities of this curve are left out",
                                   "Off: phases of this curve are left out"};
  std::array<QCheckBox*, 3> boxes{};
  for (std::size_t index = 0; index < boxes.size(); ++index) {
    boxes[index] = new QCheckBox(captions[index]);
    boxes[index]->setToolTip(tool_tips[index]);
    boxes[index]->setObjectName(QString("%1_%2").arg(name).arg(index));
  }
  return boxes;
}

void show_use_switches(const std::array<QCheckBox*, 3>& boxes, bool reading, bool resistivity, bool phase) {
  boxes[0]->setChecked(reading);
  boxes[1]->setChecked(resistivity);
  boxes[2]->setChecked(phase);
}
