// data_file.h: the data file of an inversion: sites, frequencies, data with their errors.
#pragma once
#include <string>
#include <vector>

#include "formats/occam/data_type.h"
#include "formats/occam/occam_data.h"

namespace Module_occam {

struct DataRow {
  int site_number = 0;       // from 1
  int frequency_number = 0;  // from 1
  DataType type = DataType::tm_resistivity;
  double datum = 0.0;
  double error = 0.0;
};

/// What a data file is written from.
struct DataFile {
  std::string description;
  std::vector<float> positions;    // of the sites, m along the line; they name the sites, too
  std::vector<float> frequencies;  // Hz
  std::vector<DataRow> rows;
};

/// The text of a data file, lines ending in CR LF.
std::string data_file_text(const DataFile& data);

/// Reads title and sites of a data file into occam_state().data; frequencies and rows are not read.
/// @return 0; -1 after a message, or without one where the file has an empty line before its sites end
[[nodiscard]] int read_occam_data_file(const std::string& path);

/// A data file as a whole.
struct ObservedData {
  std::vector<std::string> site_names;
  std::vector<double> site_offsets;  // m along the line
  std::vector<double> frequencies;   // Hz
  std::vector<DataRow> rows;         // of every data type, in the order of the file
};

/// Reads a whole data file.
/// @return as read_occam_data_file; `data` is as before after a failure
[[nodiscard]] int read_occam_data_rows(const std::string& path, ObservedData& data);

}  // namespace Module_occam
