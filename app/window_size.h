// window_size.h: the size of the main window from one start of the program to the next.
#pragma once

class QWidget;

/// The size that the preferences hold, or the design's, as far as the screen has room for it.
void restore_size(QWidget& window);
/// Keeps whether it is maximized. The size itself is part of the preferences.
void keep_maximized(const QWidget& window);
