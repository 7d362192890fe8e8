#include "rhoplus/inversion_log.h"

#include <limits>

#include <gtest/gtest.h>

#include "tests/numerics/rhoplus/made_data.h"
#include "tests/support/temporary_folder.h"

namespace {

using numerics::rhoplus::RhoplusInversion;
using numerics::rhoplus::RhoplusRow;
using numerics::rhoplus::RhoplusRun;
using numerics::rhoplus::RhoplusSurface;

std::vector<RhoplusRow> noisy_rows() {
  std::vector<made::RhoplusDatum> data =
      made::layered(made::ground(3), made::frequencies(20, 1e-2, 1e2), 0.05);
  made::add_noise(data, 1);
  return made::table(data);
}

std::string log_of(std::vector<RhoplusRow>& rows) {
  RhoplusInversion details;
  const RhoplusRun run = numerics::rhoplus::rhoplus(rows, RhoplusSurface::insulating, &details);
  return Module_rhoplus::inversion_log("tmd_1250", rows, RhoplusSurface::insulating, run, details);
}

bool has(const std::string& log, const std::string& text) { return log.find(text) != std::string::npos; }

}  // namespace

TEST(Rhoplus_log, Names_data_fit_and_model) {
  std::vector<RhoplusRow> rows = noisy_rows();
  rows[7].use_phase = 0.0F;
  const std::string log = log_of(rows);
  for (const char* text : {"tmd_1250", "insulating", "39 (20 resistivities, 19 phases)", "Achieved chi",
                           "Target chi", "95 % level", "Certificate", "Basement", "conductance (S)"}) {
    EXPECT_TRUE(has(log, text)) << text;
  }
  EXPECT_FALSE(has(log, "\n\n")) << "each line ends in CR LF";
  const std::size_t heading = log.find("sheet  ");
  const std::size_t first_sheet = log.find("\r\n", heading) + 2;
  EXPECT_EQ(log.find("\r\n", first_sheet) - first_sheet, first_sheet - 2 - log.rfind('\n', heading) - 1)
      << "numbers end below the ends of their headings";
  EXPECT_FALSE(has(log, "limit of iterations"));
  EXPECT_FALSE(has(log, "a closer proof"));

  RhoplusInversion details;
  const RhoplusRun run = numerics::rhoplus::rhoplus(rows, RhoplusSurface::insulating, &details);
  details.limit_met = true;
  details.fit.gap = 1.0;
  details.resistivities = 1;
  details.phases = 2;
  const std::string odd = Module_rhoplus::inversion_log("a", rows, RhoplusSurface::insulating, run, details);
  EXPECT_TRUE(has(odd, "The limit of iterations was met."));
  EXPECT_TRUE(has(odd, "for a closer proof in double precision"));
  EXPECT_TRUE(has(odd, "3 (1 resistivity, 2 phases)"));
}

TEST(Rhoplus_log, Names_what_could_not_be_used) {
  std::vector<RhoplusRow> rows = noisy_rows();
  rows[0].frequency = std::numeric_limits<float>::quiet_NaN();
  rows[3].phase_error = 0.0F;
  const std::string log = log_of(rows);
  EXPECT_TRUE(has(log, "Row 1: the frequency can't be used.\r\n"));
  EXPECT_TRUE(has(log, "Row 4: the phase or its error can't be used.\r\n"));
  EXPECT_FALSE(has(log, "nan"));

  for (RhoplusRow& row : rows) {
    row.use_resistivity = row.use_phase = 0.0F;
  }
  EXPECT_TRUE(has(log_of(rows), "There is nothing to invert: no value is used, or none can be.\r\n"));
  RhoplusRun failed;
  failed.status = numerics::rhoplus::rhoplus_failed;
  failed.message = "no way";
  EXPECT_EQ(Module_rhoplus::inversion_log("tmd_1250", rows, RhoplusSurface::insulating, failed, {}),
            "Rho+ inversion of tmd_1250 failed: no way\r\n");
}

TEST(Rhoplus_log, Is_written_or_leaves_no_file) {
  const TemporaryFolder folder;
  const std::string path = folder.path("tmd_1250.out");
  EXPECT_EQ(Module_rhoplus::write_log(path, "earlier and longer\r\n"), "");
  EXPECT_EQ(Module_rhoplus::write_log(path, "log\r\n"), "");
  EXPECT_EQ(file_contents(path), "log\r\n");
  const std::string missing = folder.path("missing/tmd_1250.out");
  EXPECT_EQ(Module_rhoplus::write_log(missing, "log\r\n").rfind(missing + ": ", 0), 0U);
}
