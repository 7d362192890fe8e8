// made_site_files.h: files of the transfer functions of one site, made to measure, in each layout.
#pragma once
#include <string>

/// A site over a uniform earth of 100 ohm-m at 10 and 1 Hz, whose tipper is 0.1 + 0.2i for both channels.
struct MadeSite {
  std::string name = "MT7";
  std::string latitude = "-30.5";
  std::string longitude = "139.25";
  std::string date = "2019-07-01T12:00:00";  // that EMTF XML has
  bool turned = false;                       // Ey has the other sign: its phases are those of Ex
};

/// Latitude and longitude are left out where they are empty, and the date likewise.
std::string made_emtf_xml(const MadeSite& site = {});
std::string made_z_file(const MadeSite& site = {});  // variances of 2 |Z|^2 1e-4: a relative error of 0.01
std::string made_j(const MadeSite& site = {});
