# shellcheck shell=bash
# Completion of korvel-report(1) for bash. It works without the bash-completion package.

# Prints the options of a subcommand, or of the program if there is none yet.
_korvel_report_options() {
    local identity='--board --kind --run --no-run --expect' rules='--rules --explain' output='-o --output'
    local choice='--part --log --since --until --grep --no-pager'
    local limits='--max-bytes --max-members --max-line --max-name --max-depth --max-seconds --max-memory'
    case $1 in
        add) echo "$identity $rules $limits" ;;
        check | metrics) echo "$identity $output $limits" ;;
        show) echo "$choice $identity $rules $output $limits" ;;
        html | json) echo "$identity $rules $output $limits" ;;
        diff) echo "--no-pager --no-run $output $limits" ;;
        clean) echo "$output --map --words --run --no-run $limits" ;;
        trend) echo "--board --since --until --limit --html --no-pager $output" ;;
        restore) echo "--map $output --run --no-run $limits" ;;
        '') echo "$rules --version" ;;
    esac
    echo '-h --help'
}

# Offers the words of $1 that begin with $2, except the options that follow. --rules may be repeated.
# Usage: _korvel_report_offer WORDS CURRENT GIVEN...
_korvel_report_offer() {
    local word offered='' current=$2 given=" ${*:3} "
    for word in $1; do
        [[ $word != --rules && $given == *" $word "* ]] || offered+=" $word"
    done
    mapfile -t COMPREPLY < <(compgen -W "$offered" -- "$current")
}

_korvel_report() {
    local subcommands='check show html json diff clean restore metrics add trend export'
    local current=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD - 1]} subcommand='' word
    COMPREPLY=()
    for word in "${COMP_WORDS[@]:1:COMP_CWORD - 1}"; do
        [[ " $subcommands " != *" $word "* ]] || subcommand=${subcommand:-$word}
    done
    case $before in
        --run | --rules | --map | --words | -o | --output) compopt -o default ;;
        --kind) _korvel_report_offer 'pkg pkg-trs pkg-sup pkg-pm pkg-sdown' "$current" ;;
        --expect)
            _korvel_report_offer 'all netfp proxy server master resmgr slog dall dinf dstat dlog' "$current"
            ;;
        --explain) _korvel_report_offer "$(command korvel-report --explain 2> /dev/null | sed 's/ .*//')" "$current" ;;
        --board | --part | --since | --until | --grep | --limit | --max-*) ;;
        *)
            if [[ $current == -* ]]; then
                _korvel_report_offer "$(_korvel_report_options "$subcommand")" "$current" "${COMP_WORDS[@]:1:COMP_CWORD - 1}"
            elif [[ $subcommand ]]; then
                compopt -o default
            else
                _korvel_report_offer "$subcommands" "$current"
            fi
            ;;
    esac
}

complete -F _korvel_report korvel-report
