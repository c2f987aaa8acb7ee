# shellcheck shell=bash
# Completion of korvel-fleet(1) for bash. It works without the bash-completion package.

# Prints the options of a subcommand, or of the program if there is none yet.
_korvel_fleet_options() {
    local boards='-w -x --fanout --timeout --ssh'
    case $1 in
        collect) echo "$boards -o --package --port --resume --max-bytes" ;;
        run) echo "$boards --max-bytes" ;;
        probe) echo "$boards --port" ;;
        status) echo '--metrics' ;;
        '') echo '--version' ;;
    esac
    echo '-h --help'
}

# Offers the words of $1 that begin with $2, except the options that follow. -w and -x may be repeated.
# Usage: _korvel_fleet_offer WORDS CURRENT GIVEN...
_korvel_fleet_offer() {
    local word offered='' current=$2 given=" ${*:3} "
    for word in $1; do
        [[ $word != -[wx] && $given == *" $word "* ]] || offered+=" $word"
    done
    mapfile -t COMPREPLY < <(compgen -W "$offered" -- "$current")
}

_korvel_fleet() {
    local subcommands='collect run probe status'
    local current=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD - 1]} subcommand='' word
    COMPREPLY=()
    for word in "${COMP_WORDS[@]:1:COMP_CWORD - 1}"; do
        [[ " $subcommands " != *" $word "* ]] || subcommand=${subcommand:-$word}
    done
    case $before in
        -o) compopt -o dirnames ;;
        --metrics) compopt -o default ;;
        --package) _korvel_fleet_offer 'pkg pkg-trs pkg-sup pkg-pm pkg-sdown' "$current" ;;
        -w | -x | --fanout | --timeout | --ssh | --port | --max-bytes) ;;
        *)
            if [[ $current == -* ]]; then
                _korvel_fleet_offer "$(_korvel_fleet_options "$subcommand")" "$current" "${COMP_WORDS[@]:1:COMP_CWORD - 1}"
            elif [[ $subcommand == status ]]; then
                compopt -o dirnames
            elif [[ ! $subcommand ]]; then
                _korvel_fleet_offer "$subcommands" "$current"
            fi
            ;;
    esac
}

complete -F _korvel_fleet korvel-fleet
