// toolbar_icons.h: the pictures on the toolbar, drawn as lines: sharp at any size, and in the desktop's
// colours.
#pragma once
#include <QIcon>

enum class ToolbarIcon {
  open,
  import_files,
  undo,
  redo,
  previous,
  next,
  both_modes,
  pseudo_section,
  invert,
  inversion,
  export_files
};

QIcon toolbar_icon(ToolbarIcon icon);
