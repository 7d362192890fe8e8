// station_keys.h: Left and Right in the main window.
#pragma once

class SelectionRow;

/// Left and Right go to the station before and the next one, but in controls that have a use for these keys.
/// Without effect while the row is hidden.
void add_station_keys(SelectionRow& row);
