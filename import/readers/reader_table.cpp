#include "import/readers/reader_table.h"

#include "import/file_formats.h"
#include "import/readers/curve_table_reader.h"
#include "import/readers/edi_mt_reader.h"
#include "import/readers/edi_spectra_reader.h"
#include "import/readers/em1dfm_reader.h"
#include "import/readers/fixed_column_reader.h"
#include "import/readers/site_file_reader.h"
#include "import/readers/zonge_avg_reader.h"
#include "import/readers/zonge_raw_reader.h"

namespace Module_data_file {

FieldReader reader_of(std::int32_t file_format) {
  switch (file_format) {
    case format_edi_mt:
      return read_edi_mt;
    case format_fixed_columns:
      return read_fixed_columns;
    case format_edi_spectra:
      return read_edi_spectra;
    case format_em1dfm:
      return read_em1dfm;
    case format_zonge_raw:
      return read_zonge_raw;
    case format_emtf_xml:
    case format_z_file:
    case format_j:
      return read_site;
    case format_zonge_avg:
      return read_averages;
    case format_curve_table:
      return read_curves;
    default:
      return nullptr;
  }
}

}  // namespace Module_data_file
