# shellcheck shell=bash
# Sets up bash for the tests: Ctrl-T inserts every match, and the programs print their arguments.
PS1='READY> '
bind 'set enable-bracketed-paste off'
bind 'set bell-style none'
bind '"\C-t": insert-completions'

korvel() {
    printf 'ARGUMENTS'
    [ $# -eq 0 ] || printf '<%s>' "$@"
    printf 'END\n'
}
korvel-report() { korvel "$@"; }
korvel-fleet() { korvel "$@"; }

for script in $COMPLETION_SCRIPTS; do
    # shellcheck source=/dev/null
    source "$script"
done
