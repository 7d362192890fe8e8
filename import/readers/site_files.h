// site_files.h: files of the transfer functions of one site, whatever their layout.
#pragma once
#include <cstdint>
#include <string>
#include <string_view>

#include "formats/file_report.h"
#include "formats/transfer_function/transfer_function.h"
#include "import/readers/section_stations.h"

namespace Module_data_file {

/// Reads a file of a format for which is_site_file holds. What can't be read is in the report; its failure
/// says why there is nothing, or why there isn't all. Throws std::runtime_error if the file can't be read.
formats::transfer_function::TransferFunction read_site_file(std::int32_t format, const std::string& file,
                                                            formats::FileReport& report);

/// When the site was measured, in days since 30 December 1899; without a date it is start_date, and one that
/// can't be read is in the report.
double date_of_site(const formats::transfer_function::Site& site, formats::FileReport& report);

/// The name of the site, and the word by which messages call it.
SectionHead site_head(std::int32_t format, const formats::transfer_function::Site& site);

/// The mark of such a file in FileTable.
std::string_view filter_of_site_file(std::int32_t format);

}  // namespace Module_data_file
