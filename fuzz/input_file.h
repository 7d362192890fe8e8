// input_file.h: a fuzzer's input as a file, for readers that take a path.
#pragma once
#include <cstddef>
#include <cstdint>
#include <string>

/// Writes the input to a file of this process, in memory where the system has such a place, over the one
/// before. The folder is removed at the program's end.
/// @param name file name with its extension, which many readers look at
/// @return its path
std::string write_input_file(const std::uint8_t* data, std::size_t size, const std::string& name);

/// The folder that the file is in: readers that look for companions or write beside their input find
/// nothing else there.
std::string input_folder();
