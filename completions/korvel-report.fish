# Completion of korvel-report(1) for fish.

# Whether the line has one of these subcommands.
function __korvel_report_is
    __fish_seen_subcommand_from $argv
end

# Whether the line has no subcommand yet.
function __korvel_report_is_first
    not __korvel_report_is check show html json diff clean restore metrics add trend export
end

complete -c korvel-report -s h -l help -d 'Print the help text'
complete -c korvel-report -n __korvel_report_is_first -f -l version -d 'Print the version'

complete -c korvel-report -n __korvel_report_is_first -f -a check -d 'Tell whether packages can be trusted'
complete -c korvel-report -n __korvel_report_is_first -f -a show -d 'Print findings, values and logs'
complete -c korvel-report -n __korvel_report_is_first -f -a html -d 'Make a page'
complete -c korvel-report -n __korvel_report_is_first -f -a json -d 'Print packages as JSON'
complete -c korvel-report -n __korvel_report_is_first -f -a diff -d 'Print what differs between two packages'
complete -c korvel-report -n __korvel_report_is_first -f -a clean -d 'Copy a package without addresses and names'
complete -c korvel-report -n __korvel_report_is_first -f -a restore -d 'Put addresses and names back'
complete -c korvel-report -n __korvel_report_is_first -f -a metrics -d 'Print values for Prometheus'
complete -c korvel-report -n __korvel_report_is_first -f -a add -d 'Add packages to a store'
complete -c korvel-report -n __korvel_report_is_first -f -a trend -d 'Print values over time'
complete -c korvel-report -n __korvel_report_is_first -f -a export -d 'Write the tables of a store as CSV files'

set -l identity check show html json metrics add
set -l all $identity diff clean restore
set -l writers check show html json metrics diff clean restore trend
set -l rules '__korvel_report_is_first; or __korvel_report_is show html json add'

complete -c korvel-report -n "__korvel_report_is $identity" -l board -x -d 'The name of the board'
complete -c korvel-report -n "__korvel_report_is $identity" -l kind -xa 'pkg pkg-trs pkg-sup pkg-pm pkg-sdown' -d 'The keyword that made the package'
complete -c korvel-report -n "__korvel_report_is $identity" -l expect -xa 'all netfp proxy server master resmgr slog dall dinf dstat dlog' -d 'The coverage keywords of the run'
complete -c korvel-report -n "__korvel_report_is $identity clean restore" -l run -rF -d 'Use this sidecar'
complete -c korvel-report -n "__korvel_report_is $all" -l no-run -d 'Read no sidecar'
complete -c korvel-report -n $rules -l rules -rF -d 'Add the rules of a file'
complete -c korvel-report -n $rules -l explain -xa "(command korvel-report --explain 2> /dev/null | string replace -r ' +' \\t)" -d 'Print a rule, or a list of them'
complete -c korvel-report -n '__korvel_report_is show' -l part -x -d 'Only a part or a directory'
complete -c korvel-report -n '__korvel_report_is show' -l log -d 'Only log entries'
complete -c korvel-report -n '__korvel_report_is show' -l since -x -d 'Only log entries from a time on'
complete -c korvel-report -n '__korvel_report_is show' -l until -x -d 'Only log entries up to a time'
complete -c korvel-report -n '__korvel_report_is show' -l grep -x -d 'Only entries and lines that fit'
complete -c korvel-report -n '__korvel_report_is show diff trend' -l no-pager -d 'Use no pager'
complete -c korvel-report -n '__korvel_report_is trend' -l board -x -d 'Only the values of a board'
complete -c korvel-report -n '__korvel_report_is trend' -l since -x -d 'Only packages from a time on'
complete -c korvel-report -n '__korvel_report_is trend' -l until -x -d 'Only packages up to a time'
complete -c korvel-report -n '__korvel_report_is trend' -l limit -x -d 'At most so many values'
complete -c korvel-report -n '__korvel_report_is trend' -l html -d 'Make a page with plots'
complete -c korvel-report -n '__korvel_report_is clean restore' -l map -rF -d 'Use this file of originals and replacements'
complete -c korvel-report -n '__korvel_report_is clean' -l words -rF -d 'Replace the words in a file, too'
complete -c korvel-report -n "__korvel_report_is $writers" -s o -l output -rF -d 'Write to a file'

complete -c korvel-report -n "__korvel_report_is $all" -l max-bytes -x -d 'Limit of inflated bytes'
complete -c korvel-report -n "__korvel_report_is $all" -l max-members -x -d 'Limit of members'
complete -c korvel-report -n "__korvel_report_is $all" -l max-line -x -d 'Limit of the length of a line'
complete -c korvel-report -n "__korvel_report_is $all" -l max-name -x -d 'Limit of the length of a name'
complete -c korvel-report -n "__korvel_report_is $all" -l max-depth -x -d 'Limit of layers'
complete -c korvel-report -n "__korvel_report_is $all" -l max-seconds -x -d 'Limit of processor time'
complete -c korvel-report -n "__korvel_report_is $all" -l max-memory -x -d 'Limit of memory'
