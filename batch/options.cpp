#include "batch/options.h"

#include <cmath>
#include <optional>

#include <CLI/CLI.hpp>

#include "core/number_text.h"

namespace Batch {

Option Option::required() {
  option_->required();
  return *this;
}

Option Option::needs(const Option& other) {
  option_->needs(other.option_);
  return *this;
}

Option Option::shows_default() {
  option_->capture_default_str();
  return *this;
}

Option Option::may_lack_value(const std::string& value) {
  option_->expected(0, 1)->default_str(value);
  return *this;
}

Option Option::in_range(int lowest, int highest) {
  option_->check(CLI::Range(lowest, highest));
  return *this;
}

Option Option::above_zero() {
  option_->check([](const std::string& text) {
    const bool above = is_numeric(text) && numeric_value(text) > 0.0 && std::isfinite(numeric_value(text));
    return above ? std::string() : text + " is no number above 0";
  });
  return *this;
}

Option Option::one_of(const std::vector<std::string>& texts) {
  option_->check(CLI::IsMember(texts));
  return *this;
}

Option Option::one_of_in_any_case(const std::vector<std::string>& texts) {
  option_->transform(CLI::IsMember(texts, CLI::ignore_case));
  return *this;
}

Option Option::existing_directory() {
  option_->check(CLI::ExistingDirectory);
  return *this;
}

Option Option::checked(const std::function<std::string(const std::string&)>& fault_of) {
  option_->check(fault_of);
  return *this;
}

template <class Value>
Option Parser::add_option(const std::string& name, Value& value, const std::string& help) {
  return Option(*parser_->add_option(name, value, help));
}

template Option Parser::add_option(const std::string&, std::string&, const std::string&);
template Option Parser::add_option(const std::string&, std::vector<std::string>&, const std::string&);
template Option Parser::add_option(const std::string&, int&, const std::string&);
template Option Parser::add_option(const std::string&, float&, const std::string&);
template Option Parser::add_option(const std::string&, double&, const std::string&);
template Option Parser::add_option(const std::string&, std::optional<int>&, const std::string&);
template Option Parser::add_option(const std::string&, std::optional<float>&, const std::string&);
template Option Parser::add_option(const std::string&, std::optional<double>&, const std::string&);

void Parser::add_named_numbers(const std::string& name, const std::map<std::string, std::uint8_t>& numbers,
                               const std::function<void(std::uint8_t)>& take, const std::string& default_name,
                               const std::string& help) {
  // The library only sees names: it would print the numbers, which are bytes, as characters.
  std::vector<std::string> names;
  names.reserve(numbers.size());
  for (const auto& [text, number] : numbers) {
    names.push_back(text);
  }
  parser_
      ->add_option_function<std::string>(
          name, [numbers, take](const std::string& given) { take(numbers.at(given)); }, help)
      ->check(CLI::IsMember(names))
      ->default_str(default_name);
}

void Parser::add_flag(const std::string& name, bool& given, const std::string& help) {
  parser_->add_flag(name, given, help);
}

void Parser::add_flag(const std::string& name, const std::function<void()>& act, const std::string& help) {
  parser_->add_flag_callback(name, act, help);
}

Option Parser::add_flag(const std::string& name, std::string& value, const std::string& alone,
                        const std::string& help) {
  return Option(*parser_->add_flag(name + "{" + alone + "}", value, help));
}

void Parser::add_switch_off(const std::string& name, bool& setting, const std::string& help) {
  parser_->add_flag_function(
      name, [&setting](std::int64_t times) { setting = setting && times <= 0; }, help);
}

void Parser::add_switch_off(const std::string& name, std::int32_t& setting, const std::string& help) {
  parser_->add_flag_function(
      name, [&setting](std::int64_t times) { setting = times > 0 ? 0 : setting; }, help);
}

Parser Parser::add_alternatives(const std::string& title, const std::string& help) {
  CLI::Option_group* group = parser_->add_option_group(title, help);
  group->require_option(0, 1);
  return Parser(*group);
}

bool Parser::is_given() const { return parser_->parsed(); }

Program::Program(const std::string& description, const std::string& footer, const std::string& version)
    : app_(std::make_unique<CLI::App>(description)) {
  app_->footer(footer);
  app_->set_version_flag("-v,--version", version);
  app_->require_subcommand(1);
}

Program::~Program() = default;

Parser Program::add_command(const std::string& name, const std::string& help) {
  return Parser(*app_->add_subcommand(name, help));
}

ParseResult Program::parse(int argument_count, char** arguments) {
  try {
    app_->parse(argument_count, arguments);
    return ParseResult::command;
  } catch (const CLI::ParseError& fault) {
    return app_->exit(fault) == 0 ? ParseResult::answered : ParseResult::wrong_usage;
  }
}

}  // namespace Batch
