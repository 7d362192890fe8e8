#include "import/readers/site_files.h"

#include <optional>

#include "core/line_reader.h"
#include "core/text_fields.h"
#include "formats/emtf_xml/emtf_xml.h"
#include "formats/head_dates.h"
#include "formats/j_format/j_format.h"
#include "formats/z_file/z_file.h"
#include "import/file_formats.h"
#include "import/readers/reader_steps.h"
#include "platform/files/input_file.h"

namespace Module_data_file {

using formats::FileReport;
using formats::transfer_function::TransferFunction;

TransferFunction read_site_file(std::int32_t format, const std::string& file, FileReport& report) {
  if (format == format_emtf_xml) {
    constexpr auto most = static_cast<std::int64_t>(formats::emtf_xml::largest_file);
    return formats::emtf_xml::read_emtf_xml(read_whole_file(file, most), report);
  }
  LineReader lines(file);
  TransferFunction function = format == format_z_file ? formats::z_file::read_z_file(lines, report)
                                                      : formats::j_format::read_j_format(lines, report);
  remark_on_nul_bytes(lines, report);
  return function;
}

double date_of_site(const formats::transfer_function::Site& site, FileReport& report) {
  if (trimmed(site.date).empty()) {
    return start_date;
  }
  const std::optional<double> date = formats::head_date(site.date);
  if (!date) {
    formats::remark_unreadable(
        report, 0, "date " + formats::in_quotes(site.date) + " can't be read, taken as 1 January 1900");
  }
  return date.value_or(start_date);
}

SectionHead site_head(std::int32_t format, const formats::transfer_function::Site& site) {
  SectionHead head;
  head.name = site.id;
  head.name_word = format == format_emtf_xml ? "Id" : "station name";
  head.is_whole_file = true;
  return head;
}

std::string_view filter_of_site_file(std::int32_t format) {
  return format == format_emtf_xml ? filter_emtf_xml : format == format_z_file ? filter_z_file : filter_j;
}

}  // namespace Module_data_file
