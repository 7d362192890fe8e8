// The command that compares a line with layered ground, through the batch program.
#include <cmath>
#include <set>
#include <tuple>

#include "tests/batch/batch_program.h"

namespace {

using Json = nlohmann::json;

class Consistency : public Batch_program {
 protected:
  void SetUp() override {
    write_field_files(4);
    import_field_files();
  }
};

const std::vector<std::string> consistency{"consistency", "survey.mdb", "--line", "200E"};

std::vector<std::string> with(std::vector<std::string> arguments, const std::vector<std::string>& more) {
  arguments.insert(arguments.end(), more.begin(), more.end());
  return arguments;
}

using Value = std::tuple<std::string, std::string, double, std::string>;

/// Station, data type, frequency and component of what is beyond a limit.
std::set<Value> beyond(const Json& residuals, double errors) {
  std::set<Value> values;
  for (const Json& point : residuals) {
    for (const char* const component : {"resistivity", "phase"}) {
      if (!point[component].is_null() && std::abs(point[component].get<double>()) > errors) {
        values.insert({point["station"].dump(), point["data_type"], point["frequency"], component});
      }
    }
  }
  return values;
}

std::set<Value> masked_values(const Json& masked) {
  std::set<Value> values;
  for (const Json& point : masked) {
    for (const char* const component : {"resistivity", "phase"}) {
      if (point[component] == true) {
        values.insert({point["station"].dump(), point["data_type"], point["frequency"], component});
      }
    }
  }
  return values;
}

}  // namespace

TEST_F(Consistency, Lists_residuals_and_masks_those_beyond_the_limit) {
  const Json before = run_for_json(with(consistency, {"--json"}));
  ASSERT_FALSE(before["residuals"].empty());
  EXPECT_FALSE(before.contains("masked"));
  std::set<std::string> types;
  for (const Json& curve : before["curves"]) {
    EXPECT_EQ(curve["inverted"], true);
    EXPECT_GT(curve["target"], 0.0);
    types.insert(curve["data_type"]);
    double chi2 = 0.0;
    int values = 0;
    for (const Json& point : before["residuals"]) {
      for (const char* const component : {"resistivity", "phase"}) {
        if (point["station"] == curve["station"] && point["data_type"] == curve["data_type"] &&
            !point[component].is_null()) {
          chi2 += std::pow(point[component].get<double>(), 2);
          ++values;
        }
      }
    }
    EXPECT_EQ(values, curve["values"]);
    EXPECT_NEAR(std::sqrt(chi2), curve["chi"], 1e-3);
    EXPECT_LE(std::abs(curve["largest"]["residual"].get<double>()), std::sqrt(chi2) + 1e-9);
  }
  EXPECT_EQ(types, (std::set<std::string>{"ExHy", "EyHx"}));

  // Errors of a tenth make residuals that are beyond any sensible limit.
  const std::vector<std::string> strict =
      with(consistency, {"--floor", "0.1", "--phase-floor", "0.05", "--three-dimensional", "--json"});
  const std::set<Value> expected = beyond(run_for_json(strict)["residuals"], 3.0);
  ASSERT_FALSE(expected.empty());
  const Json masked = run_for_json(with(strict, {"--mask", "3"}));
  EXPECT_EQ(masked_values(masked["masked"]), expected);
  EXPECT_EQ(masked["left_three_dimensional"], 0);
  const Json after = run_for_json(strict);
  for (const Json& point : after["residuals"]) {
    for (const char* const component : {"resistivity", "phase"}) {
      const bool was_masked =
          expected.contains({point["station"].dump(), point["data_type"], point["frequency"], component});
      EXPECT_TRUE(!was_masked || point[component].is_null()) << point;
    }
  }
}

TEST_F(Consistency, Prints_a_table_and_says_what_was_masked) {
  const Outcome table = run(consistency);
  EXPECT_EQ(table.status, 0) << table.errors;
  EXPECT_NE(table.output.find("Largest"), std::string::npos);
  EXPECT_NE(table.output.find("EyHx"), std::string::npos);
  const Outcome nothing = run(with(consistency, {"--mask", "1e6"}));
  EXPECT_EQ(nothing.status, 0);
  EXPECT_NE(nothing.output.find("0 values of ExHy and 0 values of EyHx lie beyond the limit."),
            std::string::npos)
      << nothing.output;
}

TEST_F(Consistency, Refuses_what_it_can_not_work_on) {
  EXPECT_EQ(run(with(consistency, {"--mask", "0"})).status, 2);
  EXPECT_EQ(run(with(consistency, {"--mask", "x"})).status, 2);
  EXPECT_EQ(run({"consistency", "survey.mdb"}).status, 2);
  const Outcome no_line = run({"consistency", "survey.mdb", "--line", "999W"});
  EXPECT_EQ(no_line.status, 2);
  EXPECT_NE(no_line.errors.find("999W"), std::string::npos);
}
