// options.h: the command line of the program: its commands with their options and arguments.
//
// A thin layer on CLI11, which only options.cpp includes: the library is templates and inline code, and a
// command that includes it spends most of its compile time on it. The layer has only what the commands use.
// Parsers and options refer to what the program owns. The values that options fill in must outlive the
// parsing; an option that is left out leaves its value as it is.
#pragma once
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <type_traits>
#include <vector>

namespace CLI {
class App;
class Option;
}  // namespace CLI

namespace Batch {

/// What else holds for an option.
class Option {
 public:
  explicit Option(CLI::Option& option) : option_(&option) {}

  Option required();
  Option needs(const Option& other);  // which then has to be given, too
  Option shows_default();             // the help shows the value from before the parsing

  /// Lets the option be given without a value, which sets `value`.
  Option may_lack_value(const std::string& value);

  // Checks of the value; both ends of a range belong to it.
  Option in_range(int lowest, int highest);
  Option above_zero();  // in single precision
  Option one_of(const std::vector<std::string>& texts);
  Option one_of_in_any_case(const std::vector<std::string>& texts);  // stores the text as it is listed
  Option existing_directory();

  /// @param fault_of what is wrong with a text; empty: nothing
  Option checked(const std::function<std::string(const std::string&)>& fault_of);

 private:
  CLI::Option* option_;
};

/// The options of one command. A name with leading hyphens is an option, one without is a positional
/// argument.
class Parser {
 public:
  explicit Parser(CLI::App& parser) : parser_(&parser) {}

  /// @tparam Value a text, int, float or double; an optional int, float or double; a vector of texts, which
  /// takes
  ///   one value or more
  template <class Value>
  Option add_option(const std::string& name, Value& value, const std::string& help);

  /// Adds an option for the value of an enumeration, given by its name. The help shows the default.
  template <class Choice>
  void add_choice(const std::string& name, Choice& choice, const std::map<std::string, Choice>& names,
                  const std::string& help) {
    static_assert(std::is_same_v<std::underlying_type_t<Choice>, std::uint8_t>);
    std::map<std::string, std::uint8_t> numbers;
    std::string default_name;
    for (const auto& [text, value] : names) {
      numbers.emplace(text, static_cast<std::uint8_t>(value));
      default_name = value == choice ? text : default_name;
    }
    const auto take = [&choice](std::uint8_t number) { choice = static_cast<Choice>(number); };
    add_named_numbers(name, numbers, take, default_name, help);
  }

  // A flag is an option without a value. It sets `given` or calls `act`.
  void add_flag(const std::string& name, bool& given, const std::string& help);
  void add_flag(const std::string& name, const std::function<void()>& act, const std::string& help);

  /// A flag that may have a value, which only "=" joins to it ("--turn-ey=always"): what follows the flag is
  /// never taken for its value.
  /// @param alone the value of the flag without one
  Option add_flag(const std::string& name, std::string& value, const std::string& alone,
                  const std::string& help);

  // A flag that turns off a setting that is on by default: sets it to false or 0; "=false" leaves it as it
  // is.
  void add_switch_off(const std::string& name, bool& setting, const std::string& help);
  void add_switch_off(const std::string& name, std::int32_t& setting, const std::string& help);

  /// Adds a group of options of which at most one may be given.
  Parser add_alternatives(const std::string& title, const std::string& help);

  /// @return after the parsing, whether this is the command to run
  [[nodiscard]] bool is_given() const;

 private:
  void add_named_numbers(const std::string& name, const std::map<std::string, std::uint8_t>& numbers,
                         const std::function<void(std::uint8_t)>& take, const std::string& default_name,
                         const std::string& help);

  CLI::App* parser_;
};

enum class ParseResult {
  command,     // one command is to be run
  answered,    // the help or the version was asked for and printed
  wrong_usage  // after a message
};

/// The whole command line: --help, --version and one command, which is required.
class Program {
 public:
  Program(const std::string& description, const std::string& footer, const std::string& version);
  ~Program();
  Program(const Program&) = delete;
  Program& operator=(const Program&) = delete;

  /// The help lists the commands in the order in which they are added.
  Parser add_command(const std::string& name, const std::string& help);

  ParseResult parse(int argument_count, char** arguments);

 private:
  std::unique_ptr<CLI::App> app_;
};

}  // namespace Batch
