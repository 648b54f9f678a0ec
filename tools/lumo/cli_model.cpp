#include "cli_model.h"

namespace tool {

namespace {

/// The parts of a value such as "round|miter"; none when it has no bar.
std::vector<std::string> Choices(const std::string& value) {
  if (value.find('|') == std::string::npos) return {};
  return CLI::detail::split(value, '|');
}

CliOption DescribeOption(const CLI::Option& option) {
  CliOption result;
  for (const std::string& name : option.get_snames()) result.names.push_back("-" + name);
  for (const std::string& name : option.get_lnames()) result.names.push_back("--" + name);
  result.positional = result.names.empty();
  if (option.get_items_expected_max() > 0) result.value = option.get_type_name();
  result.file = result.value == "FILE";
  result.choices = Choices(result.value);
  if (result.positional) result.value = option.get_name(true);
  result.description = option.get_description();
  result.defaultValue = option.get_default_str();
  result.required = option.get_required();
  result.many = option.get_items_expected_max() > 1;
  return result;
}

CliCommand DescribeCommand(const CLI::App& app, const std::string& above) {
  CliCommand command;
  command.name = app.get_name();
  command.path = above.empty() ? command.name : above + " " + command.name;
  command.description = app.get_description();
  command.footer = app.get_footer();
  for (const CLI::Option* option : app.get_options()) {
    // Without a group an option is hidden.
    if (!option->get_group().empty()) command.options.push_back(DescribeOption(*option));
  }
  for (const CLI::App* subcommand : app.get_subcommands([](const CLI::App*) { return true; }))
    command.subcommands.push_back(DescribeCommand(*subcommand, command.path));
  return command;
}

void Flatten(const CliCommand& command, std::vector<const CliCommand*>& list) {
  list.push_back(&command);
  for (const CliCommand& subcommand : command.subcommands) Flatten(subcommand, list);
}

}  // namespace

CliCommand Describe(const CLI::App& program) { return DescribeCommand(program, {}); }

std::vector<const CliCommand*> Flattened(const CliCommand& program) {
  std::vector<const CliCommand*> list;
  Flatten(program, list);
  return list;
}

CLI::Option* AddChoice(CLI::App& command, const std::string& name, std::string& value,
                       const std::vector<std::string>& choices, const std::string& what) {
  return command.add_option(name, value, what)
      ->check(CLI::IsMember(choices).description(""))
      ->type_name(CLI::detail::join(choices, "|"));
}

}  // namespace tool
