// file_mark.h: what a program remembers about a file beside its contents, where the file system keeps such
// marks. A copy made by other programs mostly has none.
#pragma once
#include <filesystem>
#include <string>

/// Size, time of the last write and number of a file, as a text that differs as soon as the file was written
/// or replaced; empty if there is no file, or no such number.
std::string file_state(const std::filesystem::path& file);

/// Keeps a text with a file. The file's contents and times stay as they are. Where it can't be kept, nothing
/// happens: who looks for the mark finds none.
void set_file_mark(const std::filesystem::path& file, const std::string& text);

/// The text that was kept with a file; empty if there is none.
std::string file_mark(const std::filesystem::path& file);
