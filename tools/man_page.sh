#!/usr/bin/env bash
# Writes the man page of the host program from what its --help pages say, so that there is one source for
# both. Knows how a help page is laid out, and no option by name.
#
#   man_page.sh PROGRAM > zrteval.1
set -euo pipefail
program="$(realpath "$1")"

commands="$("$program" --help | awk '/^$/ { on = 0 } on && /^  [a-z]/ { print $1 } /^Commands:/ { on = 1 }')"
export LC_ALL=C
{
  "$program" --version
  for command in '' $commands; do
    printf '\f%s\n' "$command"
    "$program" ${command:+"$command"} --help
  done
} | awk '
  function roff(text) {
    gsub(/\\/, "\\e", text)
    gsub(/-/, "\\-", text)
    gsub(/\047/, "\\(aq", text)
    gsub(/\^/, "\\(ha", text)
    gsub(/~/, "\\(ti", text)
    return text ~ /^\./ ? "\\&" text : text
  }
  function add(section, text) { body[section] = body[section] text "\n" }
  # A row of a table: what stands left, bold, and its meaning.
  function row(section, line) {
    if (substr(line, 1, 20) ~ /^ *$/) {
      sub(/^ +/, "", line)
      add(section, roff(line))
      return
    }
    match(line, /^ +[^ ]+( [A-Z=]+)?/)
    name = substr(line, 1, RLENGTH)
    sub(/^ +/, "", name)
    meaning = substr(line, RLENGTH + 1)
    sub(/^ +/, "", meaning)
    add(section, ".TP\n.B " roff(name) "\n" roff(meaning))
  }
  NR == 1 { version = $2; next }
  /^\f/ {
    command = substr($0, 2)
    part = ""
    if (command != "") add("OPTIONS", ".SS " command)
    next
  }
  /^$/ { if (part == "Usage") part = "Description"; next }
  /^[A-Z][a-z ]*:$/ { part = $1; next }
  /^Usage: / { part = "Usage" }
  part == "Examples:" { add("EXAMPLES", roff(substr($0, 3))) }
  part == "Usage" {
    sub(/^(Usage:)? */, "")
    add(command == "" ? "SYNOPSIS" : "OPTIONS", roff($0) "\n.br")
  }
  part == "Description" {
    if (command == "") description = description roff($0) "\n"
    else add("OPTIONS", (described == command ? "" : ".PP\n") roff($0))
    described = command
  }
  part == "Options:" && command != "" && / --?(h,--help|version) / { next }
  part ~ /^(Arguments:|Positionals:|Options:)$/ {
    if (command == "" && !told++) add("OPTIONS", "Of each command:")
    row("OPTIONS", $0)
  }
  part == "Commands:" { row("COMMANDS", $0) }
  part == "Exit" && command == "" { row("EXIT STATUS", $0) }
  END {
    print ".\\\" Made from the output of zrteval --help: not to be edited."
    print ".TH ZRTEVAL 1 \"\" \"zrteval " version "\" \"User Commands\""
    print ".SH NAME\nzrteval \\- evaluate expressions of a template language for device data"
    print ".SH SYNOPSIS\n" body["SYNOPSIS"] ".SH DESCRIPTION\n" description
    print "Values go to standard output, one a line; failures go to standard error with their place."
    split("COMMANDS|OPTIONS|EXIT STATUS", sections, "|")
    for (i = 1; i <= 3; ++i) printf ".SH %s\n%s", sections[i], body[sections[i]]
    printf ".SH EXAMPLES\n.nf\n%s.fi\n", body["EXAMPLES"]
    print ".SH FILES\n.TP\n.I share/zrtexpression/ErrorList.txt"
    print "A sentence for each failure. Its directory is one for \\-\\-data\\-dir."
    print ".TP\n.I share/zrtexpression/example\\-scope.jsonc\nA file for \\-\\-scope."
  }' | sed '/^$/d'
