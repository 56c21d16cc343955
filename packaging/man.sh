#!/bin/sh
# usage: man.sh TEMPLATE PROGRAM VERSION: the manual page, where @HILFE@ stands for what PROGRAM --help says about its
# jobs and options, so that page and program cannot drift apart.
set -eu
help=$(mktemp)
trap 'rm -f "$help"' EXIT
LC_ALL=C.UTF-8 "$2" --help | LC_ALL=C awk '
function plain(text) {
    gsub(/\\/, "\\e", text)
    gsub(/-/, "\\-", text)
    sub(/^[.\047]/, "\\\\\\&&", text)
    return text
}
/^$/ { gap = 1; next }
/^[^ ].*:$/ { sub(/:$/, ""); print ".SS " plain($0); begun = 1; next }
/^  [^ ]/ { begun = 1 }
!begun { next } # how it is called stands in the template
/^  [^ ]/ { # an entry: name, value behind one blank, purpose behind several
    line = substr($0, 3)
    name = line
    sub(/ .*/, "", name)
    line = substr(line, length(name) + 1)
    value = ""
    if (name ~ /^-/ && line ~ /^ [^ ]/) {
        value = substr(line, 2)
        sub(/ .*/, "", value)
        line = substr(line, length(value) + 2)
        value = " \\fI" plain(value) "\\fR"
    }
    sub(/^ +/, "", line)
    print ".TP\n\\fB" plain(name) "\\fR" value
    if (line != "") print plain(line)
    next
}
/^ / { sub(/^ +/, ""); if (/^(COM [0-9]+|[a-z-]+): /) print ".br"; print plain($0); next }
{
    if (!closing++) print ".SH EIN\\- UND AUSGABE, ERGEBNIS"
    else if (gap) print ".PP"
    gap = 0
    print plain($0)
}' >"$help"
sed -e "s/@VERSION@/$3/" -e "/@HILFE@/{r $help
d}" "$1"
