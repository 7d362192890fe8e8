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

/// What goes into a data file.
struct DataFile {
  std::string description;
  std::vector<float> positions;    // of the sites, m along the line
  std::vector<float> frequencies;  // Hz
  std::vector<DataRow> rows;
  std::vector<std::string> site_names;  // empty: site_name_at their positions
};

/// "station_1250.0": what a site without a name of its own is called.
std::string site_name_at(float position);

/// The text of a data file, lines ending in CR LF.
std::string data_file_text(const DataFile& data);

/// Reads title and sites of a data file; frequencies and rows are not read. Throws Refusal or EmptyLine
/// (text_input.h), or std::runtime_error with what is wrong.
OccamData read_data_file_sites(const std::string& path);

/// A data file as a whole.
struct ObservedData {
  std::vector<std::string> site_names;
  std::vector<double> site_offsets;  // m along the line
  std::vector<double> frequencies;   // Hz
  std::vector<DataRow> rows;         // of every data type, in the order of the file
};

/// Reads a whole data file. Throws as read_data_file_sites.
ObservedData read_data_file(const std::string& path);

}  // namespace Module_occam
