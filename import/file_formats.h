// file_formats.h: the formats of field files, and the marks by which the survey knows their readings.
#pragma once
#include <algorithm>
#include <array>
#include <cstdint>
#include <string_view>

namespace Module_data_file {

enum FileFormat : std::int32_t {
  format_unknown = -1,
  format_fixed_columns = 0,
  format_edi_spectra = 1,
  format_edi_mt = 2,
  format_em1dfm = 4,
  format_zonge_raw = 5,
  format_emtf_xml = 6,
  format_z_file = 7,
  format_j = 8,
  format_zonge_avg = 9,
  format_curve_table = 10,
};

inline bool is_edi(std::int32_t format) { return format == format_edi_mt || format == format_edi_spectra; }

/// Formats whose files hold the transfer functions of one site.
inline bool is_site_file(std::int32_t format) {
  return format == format_emtf_xml || format == format_z_file || format == format_j;
}

/// Formats whose sections name a site and its place. Which station of a line that is, the choices of an
/// import say; files of other formats hold their stations.
inline bool names_sites(std::int32_t format) { return is_edi(format) || is_site_file(format); }

/// Formats of tables that hold the curves of many stations, with what is known of each.
inline bool is_station_table(std::int32_t format) {
  return format == format_zonge_avg || format == format_curve_table;
}

// Filter of the rows of FileTable.
inline constexpr std::string_view filter_edi_mt = "EMIRes";
inline constexpr std::string_view filter_edi_spectra = "EMISpect";
inline constexpr std::string_view filter_emtf_xml = "EMTFXML";
inline constexpr std::string_view filter_z_file = "EMTFZ";
inline constexpr std::string_view filter_j = "JFormat";
inline constexpr std::string_view filter_zonge_avg = "ZongeAVG";
inline constexpr std::string_view filter_curve_table = "CSV";

/// Whether a file of this mark names sites, as above.
inline bool is_filter_of_named_sites(std::string_view filter) {
  constexpr std::array<std::string_view, 5> filters{filter_edi_mt, filter_edi_spectra, filter_emtf_xml,
                                                    filter_z_file, filter_j};
  return std::ranges::find(filters, filter) != filters.end();
}

}  // namespace Module_data_file
