// made_sites.h: a small file of one site in each exchange format, for tests of what damage does to them.
#pragma once
#include <string>
#include <vector>

#include "formats/file_report.h"
#include "formats/transfer_function/transfer_function.h"

struct SitesRead {
  std::vector<formats::transfer_function::TransferFunction> functions;  // a station each
  formats::FileReport report;

  [[nodiscard]] std::size_t points() const;
  [[nodiscard]] std::size_t values() const;  // that are there: complex values, resistivities, phases
};

struct SiteFormat {
  std::string name;
  std::string text;       // a whole file, read without a remark
  bool counts_its_parts;  // so that a cut can't go unnoticed
  /// Reads the bytes as a file. What a file reader throws is in the report's failure.
  SitesRead (*read)(const std::string& bytes);
};

const std::vector<SiteFormat>& site_formats();
