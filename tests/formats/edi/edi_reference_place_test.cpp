#include "formats/edi/edi_reference_place.h"

#include <filesystem>

#include <gtest/gtest.h>

using formats::edi::read_edi_reference_place;

TEST(Reference_place, Of_real_files_is_read_without_a_remark) {
  namespace fs = std::filesystem;
  const fs::path folder = fs::path(BRENLOX_FIELD_DATA) / "edi";
  if (!fs::is_directory(folder)) {
    GTEST_SKIP() << "no field data";
  }
  int with_place = 0;
  for (const char* const line : {"tensor_line", "tensor_line_b", "impedance_only", "spectra"}) {
    for (const fs::directory_entry& file : fs::directory_iterator(folder / line)) {
      if (file.path().extension() != ".edi") {
        continue;
      }
      SCOPED_TRACE(file.path());
      formats::FileReport report;
      const auto place = read_edi_reference_place(file.path().string(), report);
      ASSERT_TRUE(place.has_value());
      EXPECT_FALSE(report.has_remarks());
      ++with_place;
    }
  }
  EXPECT_GT(with_place, 40);
}
