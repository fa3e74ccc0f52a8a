#!/usr/bin/env python3
"""Fails where the program's help, the man page and the completions do not name the same options, or
where bash completes wrongly. Usage: tests/check_options.py PROGRAM, from the top of the tree."""
import pathlib
import re
import subprocess
import sys

OPTION = re.compile(r"(?<![\w-])-(?:[A-Za-z]|-[a-z][a-z-]+)(?![\w-])")

# Words behind the program's name, the last one to be completed, and what bash must offer; None
# stands for the options.
BASH = [(["-"], None), (["-p", "6", "-"], None), (["-e", "-p", "-"], None), (["--", "-"], []),
        (["-p", ""], list("0123456789")), (["-e", ""], []), (["-f", "tivelo.f"], ["tivelo.fish"]),
        (["-f", ""], ["_tivelo", "tivelo.bash", "tivelo.fish"])]


def of_help(program):
    """The options that begin a line of the help."""
    run = subprocess.run([program, "--help"], capture_output=True, text=True, check=True)
    heads = re.findall(r"^ *(-.*?)(?:  |$)", run.stdout, re.M)
    return {option for head in heads for option in OPTION.findall(head)}


def of_page():
    section = pathlib.Path("docs/tivelo.1.scd").read_text().split("# OPTIONS\n")[1].split("\n# ")[0]
    return {option for head in re.findall(r"^\*-.*$", section, re.M) for option in OPTION.findall(head)}


def of_zsh():
    text = pathlib.Path("completions/_tivelo").read_text()
    heads = re.findall(r"^  '(?:\*|\([^)]*\))?(.*?)\[", text, re.M)
    return {option for head in heads for option in OPTION.findall(head)}


def of_fish():
    text = pathlib.Path("completions/tivelo.fish").read_text()
    return {("--" if kind == "l" else "-") + name
            for kind, name in re.findall(r" -([slo]) (\S+)", text)}


def of_bash(words):
    """What bash offers for the last of the words, in the folder of the completions."""
    script = ('source ./tivelo.bash; COMP_WORDS=(tivelo "$@"); COMP_CWORD=$#; _tivelo;'
              ' printf "%s\\n" "${COMPREPLY[@]}"')
    run = subprocess.run(["bash", "-c", script, "bash", *words], cwd="completions", text=True,
                         capture_output=True, check=True)
    return set(run.stdout.split())


def main():
    wanted = of_help(sys.argv[1])
    checks = [("the man page", of_page(), wanted), ("completions/_tivelo", of_zsh(), wanted),
              ("completions/tivelo.fish", of_fish(), wanted)]
    for words, offered in BASH:
        checks.append((f"bash behind {words}", of_bash(words), wanted if offered is None else set(offered)))
    faults = [f"{where}: {sorted(found)}, not {sorted(right)}" for where, found, right in checks
              if found != right]
    print("\n".join(faults) or f"all name {' '.join(sorted(wanted))}")
    return bool(faults)


if __name__ == "__main__":
    sys.exit(main())
