#include "tests/formats/transfer_function/made_sites.h"

#include <cmath>
#include <stdexcept>

#include "formats/emtf_xml/emtf_xml.h"
#include "formats/j_format/j_format.h"
#include "formats/z_file/z_file.h"
#include "formats/zonge/zonge_avg_parser.h"
#include "tests/support/temporary_folder.h"

using formats::transfer_function::TransferFunction;

namespace {

const char* const xml_text =
    "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<EM_TF>\n<ProductId>Made.7.2019</ProductId>\n"
    "<Site><Id>7</Id><Name>Seven</Name><YearCollected>2019</YearCollected>\n<Location datum=\"WGS84\">"
    "<Latitude>-19.5</Latitude><Longitude>136.25</Longitude><Elevation>218</Elevation></Location>\n"
    "<Orientation angle_to_geographic_north=\"0.0\">orthogonal</Orientation></Site>\n<Data count=\"2\">\n"
    "<Period value=\"4.0\" units=\"secs\">\n<Z type=\"complex\" size=\"2  2\" units=\"[mV/km]/[nT]\">\n"
    "<value name=\"Zxx\" output=\"Ex\" input=\"Hx\">0.5 -0.25</value>\n"
    "<value name=\"Zxy\" output=\"Ex\" input=\"Hy\">3 4</value>\n"
    "<value name=\"Zyx\" output=\"Ey\" input=\"Hx\">-5 -6</value>\n"
    "<value name=\"Zyy\" output=\"Ey\" input=\"Hy\">0.125 1</value>\n</Z>\n"
    "<Z.VAR><value output=\"Ex\" input=\"Hy\">0.5</value></Z.VAR>\n"
    "<T><value name=\"Tx\" output=\"Hz\" input=\"Hx\">0.1 0.2</value></T>\n</Period>\n"
    "<Period value=\"8.0\" units=\"secs\"><Z><value name=\"Zxy\" output=\"Ex\" input=\"Hy\">2 3</value></Z>"
    "</Period>\n</Data>\n</EM_TF>\n";

const char* const z_text =
    " TRANSFER FUNCTIONS IN MEASUREMENT COORDINATES\n ********** WITH FULL ERROR COVARIANCE*********\n"
    "Robust Remote Reference\nstation    :S7\ncoordinate    -19.500   136.250 declination    5.00\n"
    "number of channels   5   number of frequencies   2\n orientations and tilts of each channel\n"
    "    1     0.00     0.00 S7  Hx\n    2    90.00     0.00 S7  Hy\n    3     0.00     0.00 S7  Hz\n"
    "    4     0.00     0.00 S7  Ex\n    5    90.00     0.00 S7  Ey\n\n"
    "period :      4.00000    decimation level   1    freq. band from   25 to   30\n"
    "number of data point  64340 sampling freq.   1.000 Hz\n Transfer Functions\n"
    " 0.1 0.2 0.3 0.4\n 1.0 2.0 3.0 4.0\n 5.0 6.0 7.0 8.0\n Inverse Coherent Signal Power Matrix\n"
    " 2.0 0.0\n 0.5 0.1 3.0 0.0\n Residual Covariance\n 0.01 0.0\n 0.0 0.0 0.5 0.0\n"
    " 0.0 0.0 0.1 0.2 0.7 0.0\n"
    "period :      4.00000    decimation level   2    freq. band from   25 to   30\n"
    "number of data point  32170 sampling freq.   0.250 Hz\n Transfer Functions\n"
    " 0.2 0.2 0.3 0.4\n 2.0 2.0 3.0 4.0\n 6.0 6.0 7.0 8.0\n Inverse Coherent Signal Power Matrix\n"
    " 2.0 0.0\n 0.5 0.1 3.0 0.0\n Residual Covariance\n 0.01 0.0\n 0.0 0.0 0.5 0.0\n"
    " 0.0 0.0 0.1 0.2 0.7 0.0\n";

const char* const j_text =
    "# made\n>LATITUDE  = -19.5\n>LONGITUDE = 136.25\n>ELEVATION = 218.0\n>AZIMUTH   = 0.0\nS07  0\n"
    "RXY\n 2\n-100.0 50.0 40.0 55.0 45.0 42.0 38.0 1.0 1.0\n 4.0 20.0 30.0 22.0 18.0 31.0 29.0 1.0 1.0\n"
    "ZXY FIELD UNITS\n 2\n-100.0 121.12 101.64 8.0 1.0\n 4.0 4.3301 2.5 0.2 1.0\n"
    "TZX\n 1\n-100.0 0.25 -0.5 0.01 1.0\nTZY\n 1\n-100.0 0.1 0.2 0.01 1.0\n";

const char* const plain_text =
    "\\ AMTAVG 7.76: \"M1.fld\", Dated 19-07-31, Processed 11 Aug 19\n$ ASPACE=  50.0m\n$ XMTR  =    20.\n"
    "skp Station Freq  Comp Amps     Emag     Ephz      Hmag     Hphz  Resistivity   Phase   %Rho   sPhz\n"
    "\\-++------++----++---++----++---------++------++---------++------++---------++------++-----++-----+\n"
    " 2   150.0   8192 ExHy  5.00  3.1061e+2  1371.6  9.2137e-2  1953.2  2.7746e+2  -581.6   14.7  136.0\n"
    " 1   150.0     .5 ExHy  5.00  3.1061e+2  1371.6  9.2137e-2  1953.2  2.7746e+2  -581.6  184.7 1136.0\n"
    " 2   200.0   8192 ExHy  5.00  6.3982e+2  1722.8  9.2137e-2  1953.2  1.1773e+3  -230.4    8.3   69.9\n"
    " 1   200.0     .5 ExHy  5.00  6.3982e+2  1722.8  9.2137e-2  1953.2  1.1773e+3  -230.4    8.3   69.9\n";

const char* const keyword_text =
    "$Survey.Type=MT\n$GDP.Date=05/16/2022\n$Unit.Length=m\n$GPS.Lat=38.6653467\n$GPS.Lon=-113.1690717\n"
    "$Rx.GdpStn= 22\n$Rx.HPR=11,0,180\n\n$Rx.Cmp = Zxy\n$Rx.Length=100 m\n"
    "$Rx.Center=311288:4281879:1548.1 m\nSkp,Freq,Z.mag,Z.phz,ARes.mag,ARes.%err,Z.perr\n"
    "2, 2.5, 10, 785.4, 8.0, 20, 100.2\n2, 5, 20, -785.4, 16.0, 168, 997\n"
    "$Rx.Cmp = Tzx\nSkp,Freq,Z.mag,Z.phz,ARes.mag,ARes.%err,Z.perr\n1, 2.5, .5, 0, .5, 20, 100.2\n"
    "1, 5, .5, 0, .5, 20, 100.2\n";

SitesRead read_xml(const std::string& bytes) {
  SitesRead read;
  read.functions.push_back(formats::emtf_xml::read_emtf_xml(bytes, read.report));
  return read;
}

template <class Read>
SitesRead read_lines(const std::string& bytes, const Read& read_into) {
  const TemporaryFolder folder;
  SitesRead read;
  try {
    LineReader lines(folder.write("made.txt", bytes));
    read_into(lines, read);
  } catch (const std::runtime_error& failure) {
    read.report.failure = failure.what();
  }
  return read;
}

SitesRead read_z(const std::string& bytes) {
  return read_lines(bytes, [](LineReader& lines, SitesRead& read) {
    read.functions.push_back(formats::z_file::read_z_file(lines, read.report));
  });
}

SitesRead read_j(const std::string& bytes) {
  return read_lines(bytes, [](LineReader& lines, SitesRead& read) {
    read.functions.push_back(formats::j_format::read_j_format(lines, read.report));
  });
}

SitesRead read_avg(const std::string& bytes) {
  return read_lines(bytes, [](LineReader& lines, SitesRead& read) {
    for (auto& station : formats::zonge::read_zonge_avg(lines, read.report)) {
      read.functions.push_back(std::move(station.function));
    }
  });
}

}  // namespace

std::size_t SitesRead::points() const {
  std::size_t count = 0;
  for (const TransferFunction& function : functions) {
    count += function.points.size();
  }
  return count;
}

std::size_t SitesRead::values() const {
  std::size_t count = 0;
  for (const TransferFunction& function : functions) {
    for (const auto& point : function.points) {
      for (const auto& value : point.values) {
        count += (value.has_value() ? 1U : 0U) + (std::isnan(value.resistivity) ? 0U : 1U) +
                 (std::isnan(value.phase) ? 0U : 1U);
      }
    }
  }
  return count;
}

const std::vector<SiteFormat>& site_formats() {
  static const std::vector<SiteFormat> formats{{"EMTF XML", xml_text, true, read_xml},
                                               {"Z", z_text, true, read_z},
                                               {"J", j_text, false, read_j},
                                               {"AVG, plain", plain_text, false, read_avg},
                                               {"AVG, keywords", keyword_text, false, read_avg}};
  return formats;
}
