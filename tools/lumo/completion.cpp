#include "completion.h"

#include <algorithm>
#include <sstream>

namespace tool {

namespace {

using CLI::detail::join;

std::vector<std::string> Names(const std::vector<CliCommand>& commands) {
  std::vector<std::string> names;
  for (const CliCommand& command : commands) names.push_back(command.name);
  return names;
}

std::vector<std::string> OptionNames(const CliCommand& command) {
  std::vector<std::string> names;
  for (const CliOption& option : command.options)
    names.insert(names.end(), option.names.begin(), option.names.end());
  return names;
}

/// What a description begins with: lists of completions have little room.
std::string Short(const std::string& description) { return description.substr(0, description.find(';')); }

/// In single quotes, with a backslash before each of `special`.
std::string Quoted(std::string_view text, std::string_view special, std::string_view quote) {
  std::string result = "'";
  for (const char c : text) {
    if (special.find(c) != std::string_view::npos) result += '\\';
    result += c == '\'' ? std::string(quote) : std::string(1, c);
  }
  return result + "'";
}

std::string ZshFunction(const CliCommand& command) {
  std::string name = "_" + command.path;
  std::ranges::replace(name, ' ', '_');
  return name;
}

/// One option in the language of _arguments.
std::string ZshOption(const CliOption& option) {
  const auto text = [](const std::string& raw) { return Quoted(raw, "[]:\\", "'\\''"); };
  const auto bare = [&](const std::string& raw) {
    const std::string quoted = text(raw);
    return quoted.substr(1, quoted.size() - 2);
  };
  std::string value;
  if (!option.choices.empty()) {
    value = ":value:(" + join(option.choices, " ") + ")";
  } else if (option.file) {
    value = ":file:_files";
  } else if (!option.value.empty()) {
    value = ":" + bare(option.value) + ": ";
  }
  if (option.positional) {
    const std::string action = !option.choices.empty() ? "(" + join(option.choices, " ") + ")"
                               : option.file           ? std::string("_files")
                                                       : std::string(" ");
    return std::string("'") + (option.required ? ":" : "::") + bare(option.value) + ":" + action + "'";
  }
  const std::string names = option.names.size() > 1 ? "{" + join(option.names, ",") + "}" : option.names[0];
  const std::string excluded = option.many ? std::string("'*'") : "'(" + join(option.names, " ") + ")'";
  return excluded + names + "'[" + bare(Short(option.description)) + "]" + value + "'";
}

}  // namespace

std::string BashCompletion(const CliCommand& program) {
  std::ostringstream paths, values, words;
  for (const CliCommand* command : Flattened(program)) {
    if (command != &program) paths << (paths.tellp() > 0 ? " | " : "") << '"' << command->path << '"';
    words << "    \"" << command->path << "\")\n      commands=\"" << join(Names(command->subcommands), " ")
          << "\"\n      options=\"" << join(OptionNames(*command), " ") << "\" ;;\n";
    for (const CliOption& option : command->options) {
      if (option.value.empty() || (option.positional && option.choices.empty())) continue;
      if (option.positional) {
        values << "    \"" << command->path << "\")\n      choices=\"" << join(option.choices, " ")
               << "\" ;;\n";
        continue;
      }
      std::vector<std::string> patterns;
      for (const std::string& name : option.names)
        patterns.push_back("\"" + command->path + " " + name + "\"");
      values << "    " << join(patterns, " | ") << ")\n";
      if (!option.choices.empty()) {
        values << "      choices=\"" << join(option.choices, " ") << "\" ;;\n";
      } else {
        values << (option.file ? "      compopt -o default 2>/dev/null; return ;;\n" : "      return ;;\n");
      }
    }
  }
  return "# bash completion for lumo, written by: lumo completion bash\n"
         "_lumo() {\n"
         "  local current=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD - 1]}\n"
         "  local path=lumo commands= options= choices= i\n"
         "  COMPREPLY=()\n"
         "  for ((i = 1; i < COMP_CWORD; i++)); do\n"
         "    case \"$path ${COMP_WORDS[i]}\" in\n"
         "      " +
         paths.str() +
         ") path=\"$path ${COMP_WORDS[i]}\" ;;\n"
         "    esac\n"
         "  done\n"
         "  [[ $path == *\" $before\" ]] && before=\n"
         "  case \"$path${before:+ $before}\" in\n" +
         values.str() +
         "  esac\n"
         "  case \"$path\" in\n" +
         words.str() +
         "  esac\n"
         "  if [[ -n $choices ]]; then\n"
         "    COMPREPLY=($(compgen -W \"$choices\" -- \"$current\"))\n"
         "  elif [[ $current == -* ]]; then\n"
         "    COMPREPLY=($(compgen -W \"$options\" -- \"$current\"))\n"
         "  elif [[ -n $commands ]]; then\n"
         "    COMPREPLY=($(compgen -W \"$commands\" -- \"$current\"))\n"
         "  else\n"
         "    compopt -o default 2>/dev/null\n"
         "  fi\n"
         "  return 0\n"
         "}\n"
         "complete -F _lumo lumo\n";
}

std::string ZshCompletion(const CliCommand& program) {
  std::ostringstream text;
  text << "#compdef lumo\n# zsh completion for lumo, written by: lumo completion zsh\n";
  for (const CliCommand* command : Flattened(program)) {
    text << '\n' << ZshFunction(*command) << "() {\n";
    if (!command->subcommands.empty()) text << "  local state line\n  typeset -A opt_args\n";
    text << "  _arguments -s" << (command->subcommands.empty() ? "" : " -C");
    for (const CliOption& option : command->options) text << " \\\n    " << ZshOption(option);
    if (command->subcommands.empty()) {
      text << "\n}\n";
      continue;
    }
    text << " \\\n    '1:subcommand:->subcommand' \\\n    '*::argument:->argument'\n"
         << "  case $state in\n    subcommand)\n      local -a subcommands=(\n";
    for (const CliCommand& sub : command->subcommands)
      text << "        " << Quoted(sub.name + ":" + Short(sub.description), "", "'\\''") << '\n';
    text << "      )\n      _describe subcommand subcommands ;;\n    argument)\n      case $line[1] in\n";
    for (const CliCommand& sub : command->subcommands)
      text << "        " << sub.name << ") " << ZshFunction(sub) << " ;;\n";
    text << "      esac ;;\n  esac\n}\n";
  }
  text << "\nif [[ $funcstack[1] == _lumo ]]; then\n  _lumo \"$@\"\nelse\n  compdef _lumo lumo\nfi\n";
  return text.str();
}

std::string FishCompletion(const CliCommand& program) {
  const auto text = [](const std::string& raw) { return Quoted(raw, "\\", "\\'"); };
  std::ostringstream out;
  std::vector<std::string> paths;
  for (const CliCommand* command : Flattened(program)) paths.push_back(text(command->path));
  out << "# fish completion for lumo, written by: lumo completion fish\n"
         "function __lumo_path\n"
         "  set -l path lumo\n"
         "  for word in (commandline -opc)[2..-1]\n"
         "    if contains -- \"$path $word\" "
      << join(paths, " ")
      << "\n      set path \"$path $word\"\n    end\n  end\n  echo $path\nend\n"
         "function __lumo_at\n  test (__lumo_path) = \"$argv\"\nend\n";
  for (const CliCommand* command : Flattened(program)) {
    const std::string begin = "complete -c lumo -n " + text("__lumo_at " + command->path);
    for (const CliCommand& sub : command->subcommands)
      out << begin << " -f -a " << text(sub.name) << " -d " << text(Short(sub.description)) << '\n';
    for (const CliOption& option : command->options) {
      if (option.positional && option.choices.empty()) continue;
      out << begin;
      for (const std::string& name : option.names)
        out << (name.starts_with("--") ? " -l " + name.substr(2) : " -s " + name.substr(1));
      if (!option.choices.empty()) {
        out << (option.positional ? " -f" : " -x") << " -a " << text(join(option.choices, " "));
      } else if (!option.value.empty()) {
        out << (option.file ? " -r -F" : " -x");
      }
      out << " -d " << text(Short(option.description)) << '\n';
    }
  }
  return out.str();
}

}  // namespace tool
