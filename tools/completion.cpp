#include "tools/completion.h"

#include "tools/shellquoting.h"

#include "validator/check.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <sstream>
#include <string_view>
#include <utility>
#include <vector>

namespace mirelon::tools {

namespace {

// What comes after an option, or stands for itself.
enum class Kind { nothing, words, parameter, file, folder, text };

struct CompletedOption {
    std::vector<std::string> names; // with their dashes; none: positional
    std::string placeholder;
    std::string summary;
    Kind kind = Kind::nothing;
    std::vector<std::string> words;
    bool repeated = false;
};

struct CompletedCommand {
    std::string path; // "chunk save"; empty: the program
    std::string name;
    std::string summary;
    std::vector<CompletedOption> options;
    std::vector<CompletedCommand> commands;
};

// The words in the braces of a type like "KIND:{wav,flac}" or "{idle->0,both->2}".
std::vector<std::string> wordsOf(const std::string& type) {
    const auto open = type.find('{');
    const auto close = type.find('}', open);
    if (open == std::string::npos || close == std::string::npos)
        return {};
    std::istringstream list(type.substr(open + 1, close - open - 1));
    std::vector<std::string> words;
    for (std::string word; std::getline(list, word, ',');)
        words.push_back(word.substr(0, word.find("->")));
    return words;
}

std::vector<std::string> checkNames() {
    std::vector<std::string> names;
    for (const validator::Check& each : validator::checks())
        names.emplace_back(each.name);
    return names;
}

Kind kindOf(const CLI::Option& option, std::string_view placeholder, bool hasWords) {
    if (option.nonpositional() && option.get_items_expected_max() == 0)
        return Kind::nothing;
    if (hasWords)
        return Kind::words;
    if (placeholder.starts_with("NAME="))
        return Kind::parameter;
    if (placeholder == "FOLDER")
        return Kind::folder;
    return placeholder == "FILE" || !option.nonpositional() ? Kind::file : Kind::text;
}

CompletedOption completed(const CLI::Option& option) {
    CompletedOption result;
    for (const std::string& name : option.get_lnames())
        result.names.push_back("--" + name);
    for (const std::string& name : option.get_snames())
        result.names.push_back("-" + name);
    const std::string type = option.get_type_name();
    result.placeholder = type.substr(0, type.find_first_of(":{ "));
    if (result.placeholder.empty())
        result.placeholder = option.get_single_name();
    result.summary = option.get_description();
    result.words = result.placeholder == "CHECK" ? checkNames() : wordsOf(type);
    result.kind = kindOf(option, result.placeholder, !result.words.empty());
    result.repeated = option.get_items_expected_max() > 1 || option.get_trigger_on_parse();
    return result;
}

CompletedCommand completed(const CLI::App& parser, const std::string& path) {
    CompletedCommand result{path, parser.get_name(), parser.get_description(), {}, {}};
    for (const CLI::Option* const option : parser.get_options()) {
        if (!option->get_group().empty())
            result.options.push_back(completed(*option));
    }
    for (const CLI::App* const command :
         parser.get_subcommands([](const CLI::App*) { return true; }))
        result.commands.push_back(completed(
            *command, path.empty() ? command->get_name() : path + ' ' + command->get_name()));
    return result;
}

template <typename Visit>
void visitAll(const CompletedCommand& command, const Visit& visit) {
    visit(command);
    for (const CompletedCommand& each : command.commands)
        visitAll(each, visit);
}

std::string joined(const std::vector<std::string>& words, const char* between) {
    std::string text;
    for (const std::string& word : words)
        text.append(text.empty() ? "" : between).append(word);
    return text;
}

std::string replacedAll(std::string text, std::string_view what, std::string_view with) {
    for (auto at = text.find(what); at != std::string::npos; at = text.find(what, at + with.size()))
        text.replace(at, what.size(), with);
    return text;
}

// What zsh's _arguments would read as its own signs.
std::string escaped(std::string text) {
    for (const std::string_view sign : {"\\", "[", "]", ":"})
        text = replacedAll(text, sign, "\\" + std::string(sign));
    return text;
}

// --- bash

// What stands between at signs is put in.
constexpr const char* bashFrame =
    R"(# bash completion for @PROGRAM@, made by `@PROGRAM@ completion bash`
@FUNCTION@_words() {
  mapfile -t COMPREPLY < <(compgen -W "$1" -- "$current")
}
@FUNCTION@_files() {
  compopt -o filenames 2>/dev/null
  mapfile -t COMPREPLY < <(compgen -f -- "$current")
}
@FUNCTION@_folders() {
  compopt -o filenames 2>/dev/null
  mapfile -t COMPREPLY < <(compgen -d -- "$current")
}
# What follows --plugin, in one piece again: colons and equals signs are words of their own.
@FUNCTION@_plugin() {
  local -i at
  local plugin=
  for ((at = 1; at < ${#COMP_WORDS[@]} - 1; at++)); do
    [[ ${COMP_WORDS[at]} == --plugin ]] || continue
    [[ ${COMP_WORDS[at + 1]} == = ]] && at+=1
    plugin=${COMP_WORDS[at + 1]}
    while [[ ${COMP_WORDS[at + 2]-} == [:=] ]]; do
      plugin+=${COMP_WORDS[at + 2]}${COMP_WORDS[at + 3]-}
      at+=2
    done
  done
  plugin=${plugin//[\"\'\\]/}
  printf '%s' "${plugin/#\~\//$HOME/}"
}
# The plug-in itself is asked, which must not take the prompt away.
@FUNCTION@_parameters() {
  local plugin name typed=${current//\\/}
  typed=${typed,,}
  plugin=$(@FUNCTION@_plugin)
  compopt -o nospace 2>/dev/null
  while IFS= read -r name; do
    if [[ $current == [\"\']* ]]; then
      [[ ${name,,} == "${typed:1}"* ]] && COMPREPLY+=("$name=")
    elif [[ ${name,,} == "$typed"* ]]; then
      COMPREPLY+=("$(printf '%q' "$name")=")
    fi
  done < <(timeout 5 "${COMP_WORDS[0]/#\~\//$HOME/}" info --parameter-names \
    ${plugin:+--plugin="$plugin"} 2>/dev/null </dev/null)
}
@FUNCTION@() {
  local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]}
  local path='' word
  COMPREPLY=()
  # An equals sign is a word of its own. Behind that of NAME=VALUE nothing is offered.
  if [[ $current == = || $previous == = ]]; then
    if [[ $current == = ]]; then current=; else previous=${COMP_WORDS[COMP_CWORD - 2]}; fi
    [[ $previous == -* ]] || return
  fi
  for word in "${COMP_WORDS[@]:1:COMP_CWORD-1}"; do
    case "$path/$word" in
@COMMANDS@    esac
  done
  case "$path/$previous" in
@VALUES@  esac
  case $path in
@PLACES@  esac
}
complete -F @FUNCTION@ @PROGRAM@
)";

std::string bashAnswer(const CompletedOption& option) {
    switch (option.kind) {
    case Kind::words:
        return "@FUNCTION@_words " + shellQuoted(joined(option.words, " ")) + "; return";
    case Kind::parameter:
        return "@FUNCTION@_parameters; return";
    case Kind::folder:
        return "@FUNCTION@_folders; return";
    case Kind::file:
        return "@FUNCTION@_files; return";
    case Kind::nothing:
    case Kind::text:
        break;
    }
    return "return";
}

// All names that may stand at a place, and whether files may.
std::string bashPlace(const CompletedCommand& command) {
    std::vector<std::string> names;
    bool files = false;
    std::vector<std::string> words;
    for (const CompletedOption& option : command.options) {
        names.insert(names.end(), option.names.begin(), option.names.end());
        files |= option.names.empty() && option.kind == Kind::file;
        if (option.names.empty())
            words.insert(words.end(), option.words.begin(), option.words.end());
    }
    for (const CompletedCommand& each : command.commands)
        words.push_back(each.name);
    std::string text =
        "if [[ $current == -* ]]; then @FUNCTION@_words " + shellQuoted(joined(names, " "));
    text += !words.empty() ? "; else @FUNCTION@_words " + shellQuoted(joined(words, " "))
            : files        ? "; else @FUNCTION@_files"
                           : "";
    return text + "; fi";
}

// --- zsh

// What stands between at signs is put in.
constexpr const char* zshFrame = R"ZSH(#compdef @PROGRAM@
# made by `@PROGRAM@ completion zsh`

# The plug-in itself is asked, which must not take the prompt away.
_@PROGRAM@_parameter_names() {
  local -a plugin names
  local -i at=${words[(I)--plugin(|=*)]}
  if ((at > 0 && at < $#words)); then
    local file=${${(Q)words[at]}#--plugin}
    file=${${file#=}:-${(Q)words[at + 1]}}
    plugin=(--plugin "${file/#\~\//$HOME/}")
  fi
  names=(${(f)"$(timeout 5 ${${(Q)program}/#\~\//$HOME/} info --parameter-names \
    $plugin 2>/dev/null </dev/null)"})
  local expl
  _wanted parameters expl parameter compadd -S = \
    -M 'm:{[:lower:][:upper:]}={[:upper:][:lower:]}' -a names
}
@FUNCTIONS@
# Loaded by its first use, which is to be answered already.
_@PROGRAM@ "$@"
)ZSH";

std::string zshFunction(const CompletedCommand& command, const std::string& program) {
    return replacedAll("_" + program + (command.path.empty() ? "" : " " + command.path), " ", "_");
}

std::string zshAnswer(const CompletedOption& option) {
    std::string placeholder = ":" + escaped(option.placeholder) + ":";
    switch (option.kind) {
    case Kind::nothing:
        return "";
    case Kind::words:
        return placeholder + "(" + joined(option.words, " ") + ")";
    case Kind::parameter:
        return placeholder + "_@PROGRAM@_parameter_names";
    case Kind::folder:
        return placeholder + "_files -/";
    case Kind::file:
        return placeholder + "_files";
    case Kind::text:
        break;
    }
    return placeholder;
}

std::string zshArguments(const CompletedCommand& command) {
    std::string text;
    for (const CompletedOption& option : command.options) {
        const std::string answer = zshAnswer(option);
        if (option.names.empty()) {
            text += " \\\n    " + shellQuoted((option.repeated ? "*" : "") + answer);
            continue;
        }
        for (const std::string& name : option.names)
            text += " \\\n    " + shellQuoted(std::string(option.repeated ? "*" : "")
                                                  .append(name)
                                                  .append("[")
                                                  .append(escaped(option.summary))
                                                  .append("]")
                                                  .append(answer));
    }
    return text;
}

void putZshFunction(std::ostream& out, const CompletedCommand& command,
                    const std::string& program) {
    out << '\n' << zshFunction(command, program) << "() {\n";
    if (command.commands.empty()) {
        out << "  _arguments" << zshArguments(command) << "\n}\n";
        return;
    }
    if (command.path.empty())
        out << "  local program=$words[1]\n";
    out << "  local curcontext=$curcontext state line\n"
           "  _arguments -C"
        << zshArguments(command)
        << " \\\n    '1: :->command' \\\n    '*:: :->rest'\n"
           "  case $state in\n"
           "  command)\n"
           "    local -a commands=(";
    for (const CompletedCommand& each : command.commands)
        out << "\n      " << shellQuoted(each.name + ':' + escaped(each.summary));
    out << "\n    )\n"
           "    _describe command commands\n"
           "    ;;\n"
           "  rest)\n"
           "    case $words[1] in\n";
    for (const CompletedCommand& each : command.commands)
        out << "    " << each.name << ") " << zshFunction(each, program) << " ;;\n";
    out << "    esac\n"
           "    ;;\n"
           "  esac\n"
           "}\n";
}

} // namespace

std::string bashCompletion(const CLI::App& program) {
    const CompletedCommand root = completed(program, "");
    std::ostringstream commands;
    std::ostringstream values;
    std::ostringstream places;
    visitAll(root, [&](const CompletedCommand& command) {
        for (const CompletedCommand& each : command.commands)
            commands << "    " << shellQuoted(command.path + '/' + each.name)
                     << ") path=" << shellQuoted(each.path) << " ;;\n";
        for (const CompletedOption& option : command.options) {
            if (option.names.empty() || option.kind == Kind::nothing)
                continue;
            std::vector<std::string> names;
            for (const std::string& name : option.names)
                names.push_back(shellQuoted(command.path + '/' + name));
            values << "  " << joined(names, " | ") << ") " << bashAnswer(option) << " ;;\n";
        }
        places << "  " << shellQuoted(command.path) << ") " << bashPlace(command) << " ;;\n";
    });
    std::string script = bashFrame;
    for (const auto& [mark, text] : {std::pair{"COMMANDS", commands.str()},
                                     {"VALUES", values.str()},
                                     {"PLACES", places.str()},
                                     {"FUNCTION", "_" + replacedAll(root.name, "-", "_")},
                                     {"PROGRAM", root.name}})
        script = replacedAll(std::move(script), std::string("@") + mark + "@", text);
    return script;
}

std::string zshCompletion(const CLI::App& program) {
    const CompletedCommand root = completed(program, "");
    std::ostringstream functions;
    visitAll(root, [&](const CompletedCommand& command) {
        putZshFunction(functions, command, root.name);
    });
    return replacedAll(replacedAll(zshFrame, "@FUNCTIONS@", functions.str()), "@PROGRAM@",
                       root.name);
}

} // namespace mirelon::tools
