// use_switches.h: the three check boxes that switch a reading, its resistivity and its phase.
#pragma once
#include <QString>
#include <array>

class QCheckBox;

std::array<QCheckBox*, 3> make_use_switches(const QString& name);

void show_use_switches(const std::array<QCheckBox*, 3>& boxes, bool reading, bool resistivity, bool phase);
