// platform_lines.h: keeps what the off-screen platform can't do out of the error output.
#pragma once

/// The plugin says of each window that it "does not support" hints of its size or being raised: no fault of
/// the pictures, and in their number they hide what is one. All other messages go on as before.
void drop_platform_lines();
