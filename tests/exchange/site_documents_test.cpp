#include "exchange/site_documents.h"

#include <algorithm>

#include "core/calendar.h"
#include "core/text_fields.h"
#include "database/sites.h"
#include "tensor/station_tensor.h"
#include "tests/exchange/exported_survey.h"

using formats::transfer_function::Component;
using formats::transfer_function::Point;
using formats::transfer_function::Value;
using Module_exchange::StationDocument;
using Module_tensor::CurveType;

namespace {

class SiteDocuments : public ExportedSurvey {
 protected:
  /// Imports one file at 1024 Hz, and reads the curves of its station.
  void import_section(const Module_samples::EdiSection& section) {
    ASSERT_EQ(import({folder.write("L200E_S0100_E0_R1024.edi", edi_text(section))}), 0);
    load();
  }
  void load() {
    frequencies = *Module_database::load_reference_frequencies(choice().reference_type);
    Module_tensor::LineCurves line;
    ASSERT_EQ(load_line_curves(choice(), frequencies, line), 0);
    ASSERT_EQ(line.stations.size(), 1U);
    curves = line.stations.front();
  }

  [[nodiscard]] StationDocument document(std::optional<double> rotation = std::nullopt) const {
    return Module_exchange::station_document(choice(), curves, frequencies, rotation);
  }
  Module_database::StoredReading& merged(CurveType type) {
    return curves.merged[static_cast<std::size_t>(type)];
  }
  void leave_only(CurveType type) {
    for (std::size_t other = 0; other < curves.merged.size(); ++other) {
      if (other != static_cast<std::size_t>(type)) {
        curves.merged[other] = {};
        curves.sources[other] = {};
      }
    }
  }

  Module_tensor::StationCurves curves;
  Frequencies frequencies;
};

bool holds(const std::vector<std::string>& sentences, const std::string& text) {
  return std::ranges::any_of(
      sentences, [&](const std::string& sentence) { return sentence.find(text) != std::string::npos; });
}

void expect_near(std::complex<double> value, std::complex<double> expected, double tolerance) {
  EXPECT_NEAR(value.real(), expected.real(), tolerance);
  EXPECT_NEAR(value.imag(), expected.imag(), tolerance);
}

/// Z of known values in other axes, at 1 Hz, errors of the parts 0.2 and 0.01.
Module_samples::EdiSection worked_example() {
  using namespace std::complex_literals;
  Module_samples::EdiSection section;
  section.section_id = "ET100";
  section.date = "05/14/11";
  section.frequencies = {1.0};
  section.elements[0] = {{1.0 + 2.0i}, {0.2}};
  section.elements[1] = {{10.0 + 8.0i}, {0.2}};
  section.elements[2] = {{-9.0 - 11.0i}, {0.2}};
  section.elements[3] = {{-0.5 - 1.0i}, {0.2}};
  section.tipper[0] = {{0.10 + 0.02i}, {0.01}};
  section.tipper[1] = {{-0.25 + 0.05i}, {0.01}};
  return section;
}

/// A file without the blocks of XX and YY.
std::string without_diagonals(std::string_view text) {
  std::string kept;
  bool is_left_out = false;
  for (std::string_view line; take_line(text, line);) {
    if (line.starts_with('>')) {
      is_left_out = line.find("XX") < 6 || line.find("YY") < 6;
    }
    kept += is_left_out ? "" : std::string(line) + '\n';
  }
  return kept;
}

}  // namespace

TEST_F(SiteDocuments, Have_the_tensor_with_the_sign_of_Ey_turned_back) {
  using namespace std::complex_literals;
  import_section(worked_example());
  const StationDocument made = document();
  EXPECT_EQ(made.refusal, "");
  ASSERT_EQ(made.document.function.points.size(), 1U);
  const Point& point = made.document.function.points.front();
  EXPECT_EQ(merged(CurveType::EyHx).axes.EyTurned, Module_database::ey_turned);
  expect_near(point.of(Component::zxx).value, 1.0 + 2.0i, 1e-5);
  expect_near(point.of(Component::zyx).value, -9.0 - 11.0i, 1e-5);
  expect_near(point.of(Component::zyy).value, -0.5 - 1.0i, 1e-6);
  expect_near(point.of(Component::ty).value, -0.25 + 0.05i, 1e-7);
  EXPECT_NEAR(point.of(Component::zyx).phase, -129.289407, 1e-4);
  for (const Component component : {Component::zxx, Component::zxy, Component::zyx, Component::zyy}) {
    EXPECT_NEAR(point.of(component).variance, 0.08, 1e-7);
  }
  EXPECT_NEAR(point.of(Component::tx).variance, 0.0002, 1e-10);
  EXPECT_TRUE(holds(made.document.history, "sign of Ey, turned in the survey, is turned back"));
  EXPECT_TRUE(holds(made.document.history, "azimuth of Hx 0 degrees"));
}

// The values are those of a worked example that three programs agree on.
TEST_F(SiteDocuments, Rotate_impedances_tipper_and_errors) {
  using namespace std::complex_literals;
  import_section(worked_example());
  const StationDocument made = document(30.0);
  ASSERT_EQ(made.document.function.points.size(), 1U);
  const Point& point = made.document.function.points.front();
  expect_near(point.of(Component::zxx).value, 1.058013 - 0.049038i, 2e-6);
  expect_near(point.of(Component::zxy).value, 9.100481 + 7.450962i, 2e-6);
  expect_near(point.of(Component::tx).value, -0.038397 + 0.042321i, 1e-6);
  expect_near(point.of(Component::ty).value, -0.266506 + 0.033301i, 1e-6);
  EXPECT_NEAR(point.of(Component::zxy).resistivity, 27.6671, 1e-4);
  EXPECT_NEAR(point.of(Component::zxy).resistivity_error, 0.9409, 1e-4);
  EXPECT_NEAR(point.of(Component::zxy).phase, 39.309, 1e-3);
  EXPECT_NEAR(point.of(Component::zxy).phase_error, 0.974, 1e-3);
  EXPECT_NEAR(point.of(Component::zyx).variance, 0.08, 1e-7);
  EXPECT_NEAR(point.of(Component::ty).variance, 0.0002, 1e-10);
  EXPECT_EQ(made.document.function.site.x_azimuth, 30.0);
  EXPECT_EQ(made.document.sensor_azimuth, 0.0);
  EXPECT_TRUE(holds(made.document.history, "Rotated to axes with x 30 degrees from north"));

  merged(CurveType::ExHx) = {};
  const StationDocument tipper_only = document(30.0);
  EXPECT_EQ(tipper_only.refusal, "");
  EXPECT_TRUE(holds(tipper_only.remarks, "there is no ExHx"));
  EXPECT_FALSE(tipper_only.document.has(Component::zxy));
  expect_near(tipper_only.document.function.points.at(0).of(Component::tx).value, -0.038397 + 0.042321i,
              1e-6);
}

TEST_F(SiteDocuments, Leave_out_what_is_masked_and_no_more) {
  import_section(made_section(0, {1000, 100, 10}));
  const auto value_at = [this](Component component, std::size_t point) {
    return document().document.function.points.at(point).of(component);
  };
  const double zxx_phase = value_at(Component::zxx, 2).phase;
  EXPECT_NEAR(zxx_phase, 0.0, 1e-4) << "masked by the import for its sign, if anything";
  EXPECT_NEAR(value_at(Component::zxx, 1).phase, -10.0, 1e-4);
  EXPECT_TRUE(value_at(Component::zxx, 1).has_value());
  EXPECT_EQ(merged(CurveType::ExHx).curve.counts_at(Module_database::field_phase, 1), 0);

  merged(CurveType::EyHx).curve.counts_at(Module_database::field_phase, 1) = 0;
  merged(CurveType::EyHy).curve.counts_at(Module_database::field_phase, 1) = 0;
  merged(CurveType::ExHx).curve.counts_at(Module_database::field_resistivity, 1) = 0;
  merged(CurveType::HzHx).curve.counts_at(Module_database::field_phase, 1) = 0;
  const Value zyx = value_at(Component::zyx, 1);
  EXPECT_FALSE(zyx.has_value() || std::isfinite(zyx.variance) || std::isfinite(zyx.phase_error));
  EXPECT_NEAR(zyx.resistivity, 64.0, 1e-3);
  EXPECT_GT(zyx.resistivity_error, 0.0);
  EXPECT_FALSE(value_at(Component::zyy, 1).has_value()) << "a phase above 0 was masked by somebody";
  EXPECT_FALSE(std::isfinite(value_at(Component::zyy, 1).phase));
  EXPECT_FALSE(std::isfinite(value_at(Component::zxx, 1).phase)) << "goes with its resistivity";
  EXPECT_FALSE(value_at(Component::tx, 1).has_value());
  EXPECT_TRUE(value_at(Component::ty, 1).has_value());
  EXPECT_TRUE(value_at(Component::zxy, 1).has_value());
  const StationDocument made = document();
  EXPECT_TRUE(holds(made.document.history, "EyHx, EyHy: 1 phase masked"));
  EXPECT_TRUE(holds(made.document.history, "HzHx: 1 imaginary part masked"));
  EXPECT_TRUE(holds(made.document.history, "masked at the import for the sign, taken all the same"));
  EXPECT_TRUE(holds(made.document.history, "ExHx: 1 resistivity masked, 1 phase masked"));

  frequencies.enabled.at(0) = 0;
  merged(CurveType::EyHy).UseReading = false;
  const StationDocument less = document();
  ASSERT_EQ(less.document.function.points.size(), 2U);
  EXPECT_EQ(less.document.function.points.front().frequency, 100.0);
  EXPECT_FALSE(less.document.has(Component::zyy));
  EXPECT_TRUE(holds(less.document.history, "EyHy: switched off"));
  EXPECT_TRUE(holds(less.document.history, "1 frequency switched off and left out"));
}

// Phases of xx are -0.5, 0.5 and 1.5 degrees at 891 Hz: the first one is masked, and belongs to the mean.
TEST_F(SiteDocuments, Have_the_values_of_the_tensor_where_some_repeats_are_masked) {
  const std::vector<std::string> files{section_file(0, 4096, {891, 100}), section_file(1, 4096, {891, 100}),
                                       section_file(2, 4096, {891, 100})};
  ASSERT_EQ(import(files), 0);
  load();
  const auto tensor = station_tensor(curves, Module_database::ey_sign_by_rule);
  const auto points = document().document.function.points;
  ASSERT_EQ(points.size(), 2U);
  ASSERT_EQ(tensor.points.size(), 2U);
  EXPECT_TRUE(holds(document().document.history, "1 phase with masked repeats"));
  for (std::size_t at = 0; at < points.size(); ++at) {
    for (std::size_t element = 0; element < 4; ++element) {
      const std::complex<double> z = tensor.points[at].tensor.z[element];
      expect_near(points[at].values[element].value, z, 1e-6 * std::abs(z));
    }
  }
}

TEST_F(SiteDocuments, Have_no_elements_that_a_file_does_not_have) {
  const std::string file =
      folder.write("L200E_S0100_E0_R1024.edi", without_diagonals(edi_text(worked_example())));
  ASSERT_EQ(import({file}), 0);
  load();
  const StationDocument made = document();
  EXPECT_TRUE(made.document.has(Component::zyx));
  EXPECT_FALSE(made.document.has(Component::zxx) || made.document.has(Component::zyy));
}

TEST_F(SiteDocuments, Tell_what_rotation_leaves_out_and_what_masked_values_it_takes) {
  import_section(made_section(0, {1000, 100, 10}));
  merged(CurveType::ExHx).curve.counts_at(Module_database::field_resistivity, 0) = 0;
  merged(CurveType::EyHx).curve.counts_at(Module_database::field_phase, 1) = 0;
  const StationDocument made = document(30.0);
  EXPECT_FALSE(made.document.function.points.at(1).of(Component::zxy).has_value());
  for (const auto& sentences : {made.remarks, made.document.history}) {
    EXPECT_TRUE(holds(sentences, "1 frequency without a whole tensor left out"));
  }
  EXPECT_TRUE(holds(made.remarks, "1 value of ExHx and EyHy that somebody has masked had to be taken"));
  EXPECT_TRUE(holds(made.document.history, "of ExHx and EyHy rotated in spite of masks"));
}

TEST_F(SiteDocuments, Tell_why_Ey_has_its_sign) {
  import_section(worked_example());
  for (Module_database::StoredReading& reading : curves.merged) {
    reading.axes.EyTurned = Module_database::ey_as_measured;
  }
  const StationDocument by_rule = document();
  EXPECT_TRUE(holds(by_rule.document.history, "is reversed, as Zxy and Zyx point the same way"));
  EXPECT_FALSE(holds(by_rule.document.history, "turned in the survey"));

  Module_database::set_ey_sign("200E", 100.0, Module_database::ey_sign_as_measured);
  const StationDocument as_set = document();
  EXPECT_NEAR(as_set.document.function.points.at(0).of(Component::zyx).phase, 180.0 - 129.289407, 1e-4);
  EXPECT_TRUE(holds(as_set.remarks, "phases of Zyx lie in the first quadrant"));
}

TEST_F(SiteDocuments, Bring_angles_within_a_turn_and_tell_of_second_points) {
  import_section(made_section(0, {1000, 100, 10}));
  merged(CurveType::ExHy).curve.value(Module_database::field_phase, 0) = -214.96F;
  merged(CurveType::ExHy).curve.counts_at(Module_database::field_phase, 0) = 1;
  merged(CurveType::EyHx).curve.frequencies[1] = 10.0F;
  for (Module_database::StoredReading& reading : curves.merged) {
    reading.axes.HxAzimuth = 11.18F;
  }
  const StationDocument made = document();
  EXPECT_NEAR(made.document.function.points.at(0).of(Component::zxy).phase, 145.04, 1e-6);
  EXPECT_EQ(made.document.sensor_azimuth, 11.18);
  EXPECT_TRUE(holds(made.remarks, "of several points that a curve has at 1 frequency the first one"));
}

TEST_F(SiteDocuments, Include_the_static_factor_and_say_so) {
  import_section(worked_example());
  const Value before = document().document.function.points.at(0).of(Component::zxy);
  merged(CurveType::ExHy).ResOffset = 4.0F;
  const StationDocument made = document();
  const Value after = made.document.function.points.at(0).of(Component::zxy);
  EXPECT_NEAR(after.resistivity, 4.0 * before.resistivity, 1e-9);
  EXPECT_NEAR(after.resistivity_error, 4.0 * before.resistivity_error, 1e-9);
  expect_near(after.value, 2.0 * before.value, 1e-9);
  EXPECT_NEAR(after.variance, 4.0 * before.variance, 1e-9);
  EXPECT_EQ(after.phase, before.phase);
  EXPECT_TRUE(holds(made.document.history, "ExHy: static factor 4 included"));
}

TEST_F(SiteDocuments, Say_what_the_curves_were_made_from) {
  std::vector<std::string> files{section_file(0, 4096, {1000, 300, 100}),
                                 section_file(1, 4096, {1000, 300, 100}),
                                 section_file(2, 4096, {1000, 300, 100})};
  files.push_back(section_file(0, 1024, {100, 10}));
  ASSERT_EQ(import(files), 0);
  load();
  const StationDocument made = document();
  EXPECT_TRUE(
      holds(made.document.history,
            "ExHx, ExHy, EyHx, EyHy, HzHx, HzHy: average of 3 repeats at 4096 Hz, 1 reading at 1024 Hz; "
            "2 scan rates merged"));
  EXPECT_EQ(made.document.date_collected, day_count(2011, 5, 14));
  EXPECT_EQ(made.document.program.substr(0, 8), "Brenlox ");
  EXPECT_EQ(made.document.line, "200E");
  EXPECT_EQ(made.document.station, 100.0);
  EXPECT_EQ(made.name, "ET100");
  EXPECT_NEAR(*made.document.function.site.latitude, -19.440206, 2e-7);
}

// A reading of one component has no tensor to tell its sign by.
TEST_F(SiteDocuments, Name_no_merge_of_one_scan_rate) {
  ASSERT_EQ(import({section_file(0, 4096, {1000, 300}), section_file(1, 4096, {1000, 300})}), 0);
  load();
  const std::vector<std::string> history = document().document.history;
  EXPECT_TRUE(holds(history, "ExHx, ExHy, EyHx, EyHy, HzHx, HzHy: average of 2 repeats at 4096 Hz"));
  EXPECT_FALSE(holds(history, "scan rate"));
}

TEST_F(SiteDocuments, Turn_back_scalar_curves_by_their_quadrant) {
  import_section(worked_example());
  leave_only(CurveType::EyHx);
  merged(CurveType::EyHx).axes.EyTurned = Module_database::ey_not_known;
  const StationDocument made = document();
  EXPECT_EQ(made.refusal, "");
  EXPECT_NEAR(made.document.function.points.at(0).of(Component::zyx).phase, -129.289407, 1e-4);
  EXPECT_TRUE(holds(made.remarks, "Station 100 (ET100): Ey counts as turned by the quadrant"));
  EXPECT_FALSE(document(30.0).refusal.empty());
}

TEST_F(SiteDocuments, Are_refused_where_nothing_can_be_written) {
  import_section(worked_example());
  const Module_tensor::StationCurves whole = curves;
  leave_only(CurveType::ExHy);
  merged(CurveType::ExHy).UseResistivity = merged(CurveType::ExHy).UsePhase = false;
  EXPECT_EQ(document().refusal, "Station 100 (ET100): no value of its curves counts");

  curves = whole;
  merged(CurveType::EyHx).axes.HxAzimuth = 12.0F;
  EXPECT_NE(document().refusal.find("the azimuths of Hx of its readings differ"), std::string::npos);
}

TEST_F(SiteDocuments, Tell_of_phases_that_an_import_has_masked_for_want_of_a_turn) {
  choices.turn_ey = Module_data_file::TurnEy::never;
  import_section(worked_example());
  const StationDocument made = document();
  const Value& zyx = made.document.function.points.at(0).of(Component::zyx);
  EXPECT_FALSE(zyx.has_value());
  EXPECT_GT(zyx.resistivity, 0.0);
  EXPECT_TRUE(holds(made.remarks, "no phase of EyHx counts"));
}
