// settings_names.h: where the program keeps what belongs to its user rather than to a survey.
#pragma once

inline constexpr const char* settings_application = "Marrowgate";
inline constexpr const char* settings_section = "Brenlox";
