#!/usr/bin/env bash
# usage: completion_test.sh COMPLETION PROGRAM: what bash offers behind the beginning of a call.
source "$1"
program=$2
failed=0

# offers "CALL" "WORDS": the call's last word is the one being completed; the words are sorted.
offers() {
    local offered
    read -ra COMP_WORDS <<<"x $1"
    [[ $1 != *' ' ]] || COMP_WORDS+=("")
    COMP_WORDS[0]=$program COMP_CWORD=$((${#COMP_WORDS[@]} - 1))
    _telvox_cli
    offered=$(printf '%s\n' "${COMPREPLY[@]}" | sort | paste -sd' ')
    [[ $offered == "$2" ]] || { printf '"%s" offers "%s", not "%s"\n' "$1" "$offered" "$2"; failed=1; }
}

offers 'ala' 'alarm-aus alarmtest'
offers '--v' '--version'
offers 'pin --p' '--passwort --pin --port'
offers 'parametrieren --pi' ''
offers 'alarmtest --typ g' 'gprs gsm'
offers 'alarmtest --typ = i' 'isdn'
offers 'alarmtest --typ =' 'analog ethernet gprs gsm isdn'
offers 'ipt-schreiben --telemetrie ' 'aus ein'
offers 'alarmtest --empfaenger ' ''
offers 'pin --port 3 = /dev/nul' '/dev/null'
offers 'pin --schnittstelle /dev/nul' '/dev/null'
offers 'gprs-schreiben --aus /etc/hostna' '/etc/hostname'
offers 'liste /etc/hostna' '/etc/hostname'
offers 'liste x.csv --si' '--simulator --simulator-fall'
offers 'pin --simulator-fall netz-a' 'netz-abgewiesen netz-aus'
offers 'pin --datenordner /us' '/usr'

# Whatever the help of a job names is offered.
for job in $("$program" --vorschlaege | sed -n 's/^\([a-z][^ ]*\).*/\1/p'); do
    offers "$job --" "$({ echo --help; "$program" "$job" --help | sed -n 's/^  \(--[^ ]*\).*/\1/p'; } | sort | paste -sd' ')"
done
exit $failed
