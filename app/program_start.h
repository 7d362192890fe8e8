// program_start.h: what the programs that show Brenlox's windows have in common at start.
#pragma once
#include <memory>

#include "core/user_interface.h"
#include "platform/settings_store/settings_store.h"

/// Help and version are words on the console and need no display. Before the QApplication is created.
void choose_platform(int argc, char** argv);

/// Gives the QApplication its name, version, icon and style.
void set_up_application();

/// From here on messages and questions go to `user`; settings are read from and written to `settings`.
void install_interfaces(std::unique_ptr<UserInterface> user, std::unique_ptr<SettingsStore> settings);
