// plot_colours.h: the colours of curves.
#pragma once
#include "platform/graph/plot_table.h"

namespace Module_display_data {

inline constexpr graph::Colour black{0, 0, 0};
inline constexpr graph::Colour blue{0, 0, 255};
inline constexpr graph::Colour cyan{0, 255, 255};

/// The colour of the n-th repeat, n from 0; sixteen colours that follow each other.
graph::Colour repeat_colour(int n);

}  // namespace Module_display_data
