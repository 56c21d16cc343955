# Completes calls of telvox-cli in bash. Jobs, options and words are those that the program itself lists.

# Puts into COMPREPLY what begins with $1 of what an option takes: $2... are words, or kinds of value in capitals.
_telvox_cli_value() {
    local begun=$1 kind
    shift
    for kind; do
        case $kind in
        *GERÄT) mapfile -O "${#COMPREPLY[@]}" -t COMPREPLY < <(compgen -G "${begun:-/dev/tty[UA]}*") ;;
        DATEI) compopt -o filenames 2>/dev/null; mapfile -O "${#COMPREPLY[@]}" -t COMPREPLY < <(compgen -f -- "$begun") ;;
        ORDNER) compopt -o filenames 2>/dev/null; mapfile -O "${#COMPREPLY[@]}" -t COMPREPLY < <(compgen -d -- "$begun") ;;
        [a-z]* | -*) [[ $kind != "$begun"* ]] || COMPREPLY+=("$kind") ;;
        esac
    done
}

_telvox_cli() {
    local begun=${COMP_WORDS[COMP_CWORD]} last=$((COMP_CWORD - 1)) name rest job=
    local -A jobs=() values=()
    while read -r name rest; do
        if [[ $name == --* ]]; then values[$name]=$rest; else jobs[$name]=$rest; fi
    done < <("${COMP_WORDS[0]}" --vorschlaege 2>/dev/null)
    COMPREPLY=()

    # The shell makes "=" a word of its own: --typ=gsm, --port 3=/dev/ttyUSB0.
    [[ $begun != = ]] || { begun= && last=$((last + 1)); }
    [[ ${COMP_WORDS[last]} != = ]] || last=$((last - 1))
    [[ ${COMP_WORDS[last - 1]} != --port ]] || last=$((last - 1))
    if [[ -n ${values[${COMP_WORDS[last]}]-} ]]; then
        local IFS=' '
        _telvox_cli_value "$begun" ${values[${COMP_WORDS[last]}]}
        return
    fi

    for name in "${COMP_WORDS[@]:1:COMP_CWORD-1}"; do
        [[ -z ${name:+${jobs[$name]-}} ]] || job=$name
    done
    [[ -n $job ]] && rest="${jobs[$job]} --help" || rest="${!jobs[*]} --help --version"
    local IFS=' '
    _telvox_cli_value "$begun" $rest
} && complete -F _telvox_cli telvox-cli
