# shellcheck shell=bash
# Sets up bash for the tests: Ctrl-T inserts every match, and korvel prints its arguments.
PS1='READY> '
bind 'set enable-bracketed-paste off'
bind 'set bell-style none'
bind '"\C-t": insert-completions'

korvel() {
    printf 'ARGUMENTS'
    [ $# -eq 0 ] || printf '<%s>' "$@"
    printf 'END\n'
}

# shellcheck source=/dev/null
source "$COMPLETION_SCRIPT"
