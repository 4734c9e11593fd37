#!/usr/bin/python3
"""make_manual.py TOOL VERSION OUT: manual pages and completions out of the tool's own description of its commands.

Writes OUT/man1/vessa.1 and OUT/man1/vessa-COMMAND.1, OUT/vessa.bash and OUT/_vessa.
"""

import json
import pathlib
import subprocess
import sys



# --- Manual pages ----------------------------------------------------------------------------------------------------


def roff(text):
    """Text that means itself in a manual page."""
    text = text.replace("\\", "\\e").replace("-", "\\-")
    return "\n".join("\\&" + line if line.startswith((".", "'")) else line for line in text.split("\n"))


def option_lines(option):
    head = option.get("positional") or ", ".join(option["names"])
    value = option.get("value", "").split(":")[0]
    if value and "positional" not in option:
        head += " " + value
    text = option["text"] + (f" [{option['default']}]" if option.get("default") else "")
    yield ".TP"
    yield f".B {roff(head)}"
    for number, line in enumerate(text.rstrip("\n").split("\n")):
        if number:
            yield ".br"
        yield roff(line)


def option_section(title, options):
    if options:
        yield f".SH {title}"
        for option in options:
            yield from option_lines(option)


def example_lines(footer):
    _, _, examples = footer.partition("\n")
    if examples.strip():
        yield ".SH EXAMPLES"
        yield ".EX"
        yield from (roff(line.removeprefix("  ")) for line in examples.rstrip().split("\n"))
        yield ".EE"


def page(name, version, summary, body):
    title = name.upper().replace("-", "\\-")
    head = [f'.TH "{title}" "1" "" "VessaDCM {version}" "User Commands"', ".SH NAME"]
    return "\n".join([*head, f"{roff(name)} \\- {roff(summary)}", *body]) + "\n"


def paragraphs(text):
    for number, paragraph in enumerate(text.split("\n\n")):
        if number:
            yield ".PP"
        yield roff(paragraph)


def command_page(command, general, version):
    named = [option for option in command["options"] if "positional" not in option]
    body = [".SH SYNOPSIS", f".B {roff(command['usage'])}"]
    body += option_section("ARGUMENTS", [option for option in command["options"] if "positional" in option])
    body += option_section("OPTIONS", named)
    shared = [option for option in general if not {"--help", "--version"} & set(option["names"])]
    body += option_section("OPTIONS OF ALL COMMANDS", shared)
    body += example_lines(command["footer"])
    body += [".SH SEE ALSO", r".BR vessa (1)"]
    return page(f"vessa-{command['name']}", version, command["text"], body)


def main_page(tool, version):
    text, _, more = tool["text"].partition("\n\n")
    body = [".SH SYNOPSIS", ".B vessa", ".RI [ OPTIONS ] \" COMMAND \" ...", ".SH DESCRIPTION"]
    body += paragraphs(f"{text}\n\n{more}" if more else text)
    body += option_section("OPTIONS", tool["options"])
    body.append(".SH COMMANDS")
    for command in tool["commands"]:
        body += [".TP", f".BR vessa\\-{roff(command['name'])} (1)", roff(command["text"])]
    body += example_lines(tool["footer"])
    return page("vessa", version, "run the VessaDCM library in a stand-in host, on files", body)


# --- Completions -----------------------------------------------------------------------------------------------------


def names(options):
    return [name for option in options for name in option.get("names", [])]


def takes_value(option):
    return bool(option.get("value")) and "positional" not in option


def bash_completion(tool):
    general = names(tool["options"])
    valued = sorted({name for part in [tool, *tool["commands"]] for option in part["options"] if takes_value(option)
                     for name in option["names"]})
    lines = [
        "# Completion of vessa for bash, made from the tool's own description of its commands.",
        "_vessa() {",
        "  local current=${COMP_WORDS[COMP_CWORD]} command= word index skip=",
        "  local commands='" + " ".join(command["name"] for command in tool["commands"]) + "'",
        "  for ((index = 1; index < COMP_CWORD; ++index)); do",
        "    word=${COMP_WORDS[index]}",
        "    if [ -n \"$skip\" ]; then skip=; continue; fi",
        "    case $word in",
        f"      {'|'.join(valued)}) skip=yes ;;",
        "      -*) ;;",
        "      *)",
        "        case \" $commands \" in *\" $word \"*) command=$word ;; esac",
        "        [ \"$command\" = trace ] || [ -z \"$command\" ] || break",
        "        ;;",
        "    esac",
        "  done",
        "  local options",
        "  case $command in",
    ]
    for command in tool["commands"]:
        lines.append(f"    {command['name']}) options='{' '.join(names(command['options']))}' ;;")
    lines += [
        "    *) options= ;;",
        "  esac",
        "  if [ -n \"$skip\" ]; then",
        "    COMPREPLY=($(compgen -f -- \"$current\"))",
        "  elif [[ $current == -* ]]; then",
        f"    COMPREPLY=($(compgen -W \"$options {' '.join(general)}\" -- \"$current\"))",
        "  elif [ -z \"$command\" ] || [ \"$command\" = trace ]; then",
        "    COMPREPLY=($(compgen -W \"$commands\" -- \"$current\"))",
        "  else",
        "    COMPREPLY=($(compgen -f -- \"$current\"))",
        "  fi",
        "}",
        "complete -o filenames -F _vessa vessa",
    ]
    return "\n".join(lines) + "\n"


def zsh_text(text):
    first = text.split("\n")[0]
    return first.replace("'", "'\\''").replace("[", "\\[").replace("]", "\\]").replace(":", "\\:")


def zsh_options(options):
    for option in options:
        for name in option.get("names", []):
            value = ":value:_files" if takes_value(option) else ""
            yield f"'*{name}[{zsh_text(option['text'])}]{value}'"


def zsh_completion(tool):
    lines = ["#compdef vessa", "# Made from the tool's own description of its commands.", "_vessa() {", "  local -a commands"]
    lines.append("  commands=(")
    lines += [f"    '{command['name']}:{zsh_text(command['text'])}'" for command in tool["commands"]]
    lines += ["  )", "  local curcontext=$curcontext state line", "  _arguments -C \\"]
    lines += [f"    {option} \\" for option in zsh_options(tool["options"])]
    lines += ["    '1:command:->command' '*::argument:->argument' && return", "  case $state in",
              "    command) _describe command commands ;;", "    argument)", "      case $line[1] in"]
    for command in tool["commands"]:
        rest = "'*:command:_vessa'" if command["name"] == "trace" else "'*:file:_files'"
        lines.append(f"        {command['name']}) _arguments \\")
        lines += [f"          {option} \\" for option in zsh_options([*command["options"], *tool["options"]])]
        lines.append(f"          {rest} ;;")
    lines += ["      esac ;;", "  esac", "}", "_vessa \"$@\""]
    return "\n".join(lines) + "\n"


def main():
    tool_path, version, out = sys.argv[1], sys.argv[2], pathlib.Path(sys.argv[3])
    described = subprocess.run([tool_path, "--describe"], stdout=subprocess.PIPE, check=True).stdout
    tool = json.loads(described)
    (out / "man1").mkdir(parents=True, exist_ok=True)
    (out / "man1/vessa.1").write_text(main_page(tool, version), encoding="utf-8")
    for command in tool["commands"]:
        path = out / f"man1/vessa-{command['name']}.1"
        path.write_text(command_page(command, tool["options"], version), encoding="utf-8")
    (out / "vessa.bash").write_text(bash_completion(tool), encoding="utf-8")
    (out / "_vessa").write_text(zsh_completion(tool), encoding="utf-8")


if __name__ == "__main__":
    main()
