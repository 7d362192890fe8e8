// What the tables of a line hold, with values known by hand.
#include <array>
#include <cmath>
#include <limits>
#include <tuple>

#include "core/calendar.h"
#include "core/number_text.h"
#include "tests/exchange/made_export.h"

using namespace Module_exchange;

namespace {

using Strings = std::vector<std::string>;
using Cells = std::map<std::string, std::string>;

double number(const Cells& row, const std::string& column) {
  const auto found = row.find(column);
  EXPECT_TRUE(found != row.end()) << column;
  return found != row.end() && is_numeric(found->second) ? numeric_value(found->second)
                                                         : std::numeric_limits<double>::quiet_NaN();
}

class CsvExport : public ExportTest {
 protected:
  CsvExport() { choices.format = ExportFormat::csv; }

  [[nodiscard]] made::Table table(const std::string& name) {
    interface->yes_no_answers = {true};
    EXPECT_EQ(write(), 0);
    return made::Table(written("200E_" + name + ".csv"));
  }
  /// Changes the merged curve of a station.
  static void edit_merged(double station, const std::function<void(dao::Recordset&)>& change) {
    dao::Recordset row = Module_database::open_survey().database.open_recordset(
        "SELECT * FROM ReadingsDataTable WHERE ReductionType = 2 AND Station = " + std::to_string(station));
    row.edit();
    change(row);
    row.update();
  }
};

}  // namespace

TEST_F(CsvExport, Merged_curves_have_static_factor_errors_of_repeats_and_masks) {
  made::store_line(2);
  made::place_site(100.0, -20.5, 139.25);
  edit_merged(200.0, [](dao::Recordset& row) {
    auto merged = Module_database::read_reading(row);
    merged.curve.counts_at(Module_database::field_resistivity, 0) = 0;
    merged.curve.value(Module_database::field_resistivity, 0) = no_data;  // all repeats are masked
    merged.curve.counts_at(Module_database::field_phase, 1) = 0;
    row.set_single("ResOffset", 2.0F);
    write_curve(row, merged.curve);
  });
  const made::Table curves = table("curves");
  EXPECT_EQ(curves.rows.size(), 14U);
  const Cells plain = curves.find({{"station", "100"}, {"frequency_Hz", "1"}});
  EXPECT_EQ(plain.at("line"), "200E");
  EXPECT_EQ(plain.at("data_type"), "ExHy");
  EXPECT_EQ(plain.at("scan_rate_Hz"), "0");
  EXPECT_EQ(plain.at("masked"), "0");
  EXPECT_DOUBLE_EQ(number(plain, "latitude_deg"), -20.5);
  EXPECT_DOUBLE_EQ(number(plain, "longitude_deg"), 139.25);
  EXPECT_DOUBLE_EQ(number(plain, "elevation_m"), 218.0);
  // Repeats of 112 to 115 ohm-m, 41 to 44 degrees: the deviation is the root of 1.25, the error half of it.
  EXPECT_NEAR(number(plain, "resistivity_ohm_m"), 113.5, 1e-4);
  EXPECT_NEAR(number(plain, "phase_deg"), 42.5, 1e-4);
  EXPECT_NEAR(number(plain, "resistivity_error_ohm_m"), 0.5590170, 1e-5);
  EXPECT_NEAR(number(plain, "phase_error_deg"), 0.5590170, 1e-5);
  const Cells masked = curves.find({{"station", "200"}, {"frequency_Hz", "1"}});
  EXPECT_NEAR(number(masked, "resistivity_ohm_m"), 2.0 * 123.5, 1e-3) << "the mean regardless of masks";
  EXPECT_EQ(masked.at("masked"), "1");
  EXPECT_EQ(masked.at("resistivity_masked"), "1");
  EXPECT_EQ(masked.at("phase_masked"), "0");
  const Cells factor = curves.find({{"station", "200"}, {"frequency_Hz", "2"}});
  EXPECT_NEAR(number(factor, "resistivity_ohm_m"), 2.0 * 124.5, 1e-3);
  EXPECT_NEAR(number(factor, "resistivity_error_ohm_m"), 2.0 * 0.5590170, 1e-4);
  EXPECT_EQ(factor.at("resistivity_masked"), "0");
  EXPECT_EQ(factor.at("phase_masked"), "1");
}

TEST_F(CsvExport, What_nothing_went_into_is_empty) {
  made::StoredReading curve =
      made::reading({{1, 100, 45}, {2, no_data, 45}, {4, 100, no_data}, {8, no_data, no_data}});
  for (const std::size_t absent : {1U, 3U}) {
    curve.curve.counts_at(Module_database::field_resistivity, absent) = 0;
  }
  for (const std::size_t absent : {2U, 3U}) {
    curve.curve.counts_at(Module_database::field_phase, absent) = 0;
  }
  made::StoredReading tipper = made::reading({{1, 0, 0.25F}, {2, no_data, 0.5F}});
  tipper.curve.counts_at(Module_database::field_resistivity, 0) = 0;
  tipper.curve.counts_at(Module_database::field_resistivity, 1) = 0;
  made::ReadingKey of_tipper = made::key(64.0F);
  of_tipper.data_type = "HzHx";
  for (const auto& [key, reading] : {std::pair(made::key(64.0F), curve), std::pair(of_tipper, tipper)}) {
    made::store(key, 1, reading);
    Module_database::StoredReading average;
    ASSERT_EQ(Module_averaged_data::average_repeats(key, made::frequencies(), average), 0);
  }
  for (const std::int32_t reduction : {1, 2}) {
    SCOPED_TRACE(reduction);
    choices.reduction = reduction;
    const made::Table curves = table("curves");
    const Cells lone_phase = curves.find({{"data_type", "ExHy"}, {"frequency_Hz", "2"}});
    EXPECT_EQ(lone_phase.at("resistivity_ohm_m"), "");
    EXPECT_EQ(lone_phase.at("phase_deg"), "45");
    const Cells lone_resistivity = curves.find({{"data_type", "ExHy"}, {"frequency_Hz", "4"}});
    EXPECT_EQ(lone_resistivity.at("resistivity_ohm_m"), "100");
    EXPECT_EQ(lone_resistivity.at("phase_deg"), "");
    EXPECT_EQ(curves.rows.size(), 5U) << "no row where neither is known";
    const Cells lone_part = curves.find({{"data_type", "HzHx"}, {"frequency_Hz", "2"}});
    EXPECT_EQ(lone_part.at("tipper_real"), "");
    EXPECT_EQ(lone_part.at("tipper_imaginary"), "0.5");
    if (reduction == 2) {
      const Cells masked = curves.find({{"data_type", "HzHx"}, {"frequency_Hz", "1"}});
      EXPECT_EQ(masked.at("tipper_real"), "0") << "it is there, and masked";
      EXPECT_EQ(masked.at("masked"), "1");
    }
  }
}

TEST_F(CsvExport, A_file_of_several_stations_dates_all_of_them) {
  dao::Recordset& files = Module_database::open_survey().files;
  files.add_new();
  files.set_text("SurveyFile", "all.csv");
  files.set_text("LineNumber", "900E");  // of the first of its lines
  files.set_double("Station", 1.0);
  files.set_date("DateCollected", day_count(2019, 1, 7));
  files.update();
  files.requery();
  const std::int32_t file =
      Module_database::open_survey().database.open_recordset("SELECT ID FROM FileTable").get_long("ID");
  for (const double station : {100.0, 200.0}) {
    made::store(made::key(64.0F, station), 1, made::reading({{1, 100, 45}}), 0, file);
  }
  for (const std::int32_t reduction : {0, 2}) {
    choices.reduction = reduction;
    const made::Table curves = table("curves");
    EXPECT_EQ(curves.rows.size(), 2U);
    for (const Cells& row : curves.rows) {
      EXPECT_EQ(row.at("date"), "2019-01-07") << row.at("station");
    }
  }
}

TEST_F(CsvExport, Raw_readings_and_averages_are_as_stored_each_with_its_scan_rate) {
  made::store_line(1);
  choices.reduction = 0;
  const made::Table raw = table("curves");
  EXPECT_EQ(raw.rows.size(), 4U * (5U + 4U));
  const Cells third = raw.find({{"event", "3"}, {"scan_rate_Hz", "256"}, {"frequency_Hz", "8"}});
  EXPECT_NEAR(number(third, "resistivity_ohm_m"), 100.0 + 10.0 + 3.0 + 8.0, 1e-4);
  EXPECT_EQ(third.at("resistivity_error_ohm_m"), "") << "nothing is known";
  choices.reduction = 1;
  const made::Table averages = table("curves");
  EXPECT_EQ(averages.rows.size(), 9U);
  const Cells average = averages.find({{"scan_rate_Hz", "64"}, {"frequency_Hz", "8"}});
  EXPECT_EQ(average.at("event"), "");
  EXPECT_NEAR(number(average, "resistivity_ohm_m"), 100.0 + 10.0 + 2.5 + 8.0, 1e-4);
}

TEST_F(CsvExport, What_is_switched_off_is_left_out_or_masked) {
  made::store_line(1);
  made::store(made::key(64.0F), 9, [] {
    auto off = made::reading({{1.0F, 7.0F, 8.0F}});
    off.UsePhase = false;
    return off;
  }());
  Frequencies list = made::frequencies();
  list.enabled[1] = 0;  // 2 Hz
  ASSERT_EQ(Module_database::save_frequency_selection(0, list), 0);
  choices.reduction = 0;
  const made::Table raw = table("curves");
  EXPECT_EQ(raw.rows.size(), 4U * (4U + 4U) + 1U);
  const Cells off = raw.find({{"event", "9"}});
  EXPECT_EQ(off.at("resistivity_masked"), "0");
  EXPECT_EQ(off.at("phase_masked"), "1");
}

TEST_F(CsvExport, Tensors_are_a_row_an_element_with_values_known_by_hand) {
  made::store_tensor(100.0);
  const made::Table tensors = table("tensors");
  EXPECT_EQ(tensors.rows.size(), 12U);
  // |Z| = sqrt(5 f rho): 70.71 at 10 Hz and 100 ohm-m.
  const Cells xy = tensors.find({{"frequency_Hz", "10"}, {"element", "Zxy"}});
  EXPECT_NEAR(number(xy, "real_mV/km/nT"), 50.0, 1e-6);
  EXPECT_NEAR(number(xy, "imaginary_mV/km/nT"), 50.0, 1e-6);
  // a = 0.1/2 along, b = 3 degrees across: |Z|^2 (a^2 + b^2).
  EXPECT_NEAR(number(xy, "variance_(mV/km/nT)^2"), 5000.0 * (0.0025 + 0.0027415568), 1e-4);
  EXPECT_NEAR(number(xy, "resistivity_error_ohm_m"), 10.0, 1e-5);
  const Cells yx = tensors.find({{"frequency_Hz", "10"}, {"element", "Zyx"}});
  EXPECT_NEAR(number(yx, "real_mV/km/nT"), -100.0, 1e-6);
  EXPECT_NEAR(number(yx, "phase_deg"), -135.0, 1e-6);
  EXPECT_EQ(files_in_folder(), (Strings{"200E_curves.csv", "200E_parameters.csv", "200E_tensors.csv"}))
      << "there is no tipper";
  const made::Table parameters(written("200E_parameters.csv"));
  ASSERT_EQ(parameters.rows.size(), 3U);
  EXPECT_FALSE(std::isnan(number(parameters.rows.front(), "pt_phi_max_deg")));
  EXPECT_FALSE(std::isnan(number(parameters.rows.front(), "swift_strike_error_deg")));
  // The determinant of [[z, 10 e45], [20 e-135, z]] with small z: |10 * 20| gives 200 ohm-m in the mean.
  EXPECT_NEAR(number(parameters.rows.front(), "det_rho_ohm_m"), 200.0, 3.0);
}

TEST_F(CsvExport, Tippers_are_a_row_a_component) {
  for (const auto& [type, real, imaginary] :
       {std::tuple("HzHx", 0.25F, -0.125F), std::tuple("HzHy", 0.0F, 0.5F)}) {
    made::StoredReading merged =
        made::with_errors(made::reading({{1, real, imaginary}, {10, real, imaginary}}), 0.02F, 0.02F);
    for (std::size_t at = 0; at < merged.curve.count(); ++at) {
      merged.curve.value(Module_database::field_resistivity_deviation, at) = 0.0F;
      merged.curve.value(Module_database::field_phase_deviation, at) = 0.0F;
    }
    merged.axes = {Module_database::ey_as_measured, 30.0F};
    made::ReadingKey key = made::key(0.0F);
    key.data_type = type;
    made::store(key, 0, merged, 2, -1);
  }
  const made::Table tippers = table("tippers");
  EXPECT_EQ(tippers.rows.size(), 4U);
  const Cells tx = tippers.find({{"frequency_Hz", "10"}, {"component", "Tx"}});
  EXPECT_DOUBLE_EQ(number(tx, "real"), 0.25);
  EXPECT_DOUBLE_EQ(number(tx, "imaginary"), -0.125);
  EXPECT_NEAR(number(tx, "variance"), 2.0 * 0.02 * 0.02, 1e-9);
  EXPECT_EQ(tx.at("x_azimuth_deg"), "30");
  EXPECT_EQ(tippers.find({{"frequency_Hz", "1"}, {"component", "Ty"}}).at("real"), "0");
}

TEST_F(CsvExport, Turned_by_90_degrees_the_modes_change_places) {
  made::store_tensor(100.0);
  choices.rotation = 90.0;
  const made::Table curves = table("curves");
  const Cells xy = curves.find({{"data_type", "ExHy"}, {"frequency_Hz", "10"}});
  EXPECT_NEAR(number(xy, "resistivity_ohm_m"), 400.0, 1e-3);
  EXPECT_NEAR(number(xy, "phase_deg"), 45.0, 1e-5);
  EXPECT_EQ(xy.at("hx_azimuth_deg"), "90");
  const Cells yx = curves.find({{"data_type", "EyHx"}, {"frequency_Hz", "10"}});
  EXPECT_NEAR(number(yx, "resistivity_ohm_m"), 100.0, 1e-3);
  EXPECT_NEAR(number(yx, "phase_deg"), -135.0, 1e-5);
  const made::Table tensors(written("200E_tensors.csv"));
  EXPECT_NEAR(number(tensors.find({{"frequency_Hz", "10"}, {"element", "Zxy"}}), "real_mV/km/nT"), 100.0,
              1e-5);
  EXPECT_EQ(tensors.rows.front().at("x_azimuth_deg"), "90");
}

TEST_F(CsvExport, Rho_plus_gives_a_half_space_back_for_both_modes) {
  made::store_tensor(100.0);
  choices.rhoplus = Module_output::RhoplusSettings{};
  for (const auto& [rotation, rho_xy, rho_yx] :
       {std::tuple(std::optional<double>(), 100.0, 400.0), std::tuple(std::optional(90.0), 400.0, 100.0)}) {
    choices.rotation = rotation;
    const made::Table fits = table("rhoplus");
    EXPECT_EQ(fits.rows.size(), 6U);
    for (const auto& [type, rho] : {std::pair("ExHy", rho_xy), std::pair("EyHx", rho_yx)}) {
      const Cells row = fits.find({{"data_type", type}, {"frequency_Hz", "10"}});
      EXPECT_NEAR(number(row, "resistivity_ohm_m"), rho, 1e-3);
      EXPECT_NEAR(number(row, "resistivity_error_ohm_m"), 0.04 * rho, 1e-3) << "the floor";
      EXPECT_NEAR(number(row, "fitted_resistivity_ohm_m"), rho, 0.02 * rho);
      EXPECT_NEAR(number(row, "phase_deg"), 45.0, 1e-4) << "first quadrant";
      EXPECT_NEAR(number(row, "fitted_phase_deg"), 45.0, 1.0);
      EXPECT_LT(std::abs(number(row, "resistivity_residual")), 0.5);
      EXPECT_EQ(row.at("phase_used"), "1");
      EXPECT_EQ(row.at("x_azimuth_deg"), rotation ? "90" : "0");
    }
  }
}

TEST_F(CsvExport, Rho_plus_can_be_stopped_and_leaves_no_table_then) {
  made::store_tensor(100.0);
  choices.rhoplus = Module_output::RhoplusSettings{};
  int calls = 0;
  ASSERT_EQ(export_files(
                choices, [&](double) { return ++calls < 6; }, result),
            0);
  EXPECT_TRUE(result.stopped);
  EXPECT_EQ(files_in_folder(), Strings{});
}
