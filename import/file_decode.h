// file_decode.h: what a field file is, and what its name says about line, event and scan rate.
#pragma once
#include <string>
#include <string_view>

#include "formats/file_report.h"
#include "import/file_formats.h"
#include "import/reading_record.h"

namespace Module_data_file {

enum class ShowFault { no, yes };

/// The texts of the sample fields for one file.
struct SampleFields {
  std::string line;
  std::string event;
  std::string rate;
  std::string station;
  std::string date;  // "21-Oct-2019"
};

/// The folder that a file stands in, as FolderLine names it: absolute, without dots.
std::string folder_of(const std::string& file);
/// The path of a file in the same way.
std::string settled_file(const std::string& file);

/// The first fault of the choices, as its message words it; empty if they have none. A typed line is brought
/// into its normal form on the way.
std::string choices_fault(ImportChoices& choices);

/// Tests the choices of a record; a typed line is brought into its normal form on the way.
/// @return 0; -1 at the first fault, after its message if faults are shown
[[nodiscard]] int decode_file_format(ShowFault show, ReadingRecord& record);

/// Brings a line text into its normal form, a whole number with a letter: "-200" becomes "200W" or "200S".
/// For callers that have a line text alone; choices_fault does the same to the line of an import.
/// @param number the line's number, negative for W and S
/// @return 0, or -1 at a fault, after its message if faults are shown; `number` and `line` are then as before
[[nodiscard]] int decode_line(ShowFault show, std::string_view text, LineDirection direction, double& number,
                              std::string& line);

/// Takes line, event and scan rate from the choices and the file's name into the record and the sample
/// fields, without a look into the file. What can't be read goes into the report.
void decode_file_name(const std::string& file, ReadingRecord& record, SampleFields& sample,
                      formats::FileReport& report);

/// Takes line, event and scan rate from the choices and the file's name, and format, dates and unit from the
/// file, into the record and the sample fields. What can't be read goes into the report; a text of no known
/// kind is its failure. Throws std::runtime_error if the file can't be read or is empty.
void display_file_format(const std::string& file, ReadingRecord& record, SampleFields& sample,
                         formats::FileReport& report);

/// decode_file_format and, if that passed, display_file_format: for a caller that shows one file at a time.
/// An import tests its choices once for all files.
/// @return 0; -1 at a fault of the choices, after its message
[[nodiscard]] int display_file_decode(const std::string& file, ReadingRecord& record, SampleFields& sample,
                                      formats::FileReport& report);

}  // namespace Module_data_file
