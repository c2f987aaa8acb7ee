# Completion of korvel-fleet(1) for fish.

# Whether the line has one of these subcommands.
function __korvel_fleet_is
    __fish_seen_subcommand_from $argv
end

# Whether the line has no subcommand yet.
function __korvel_fleet_is_first
    not __korvel_fleet_is collect run probe status
end

complete -c korvel-fleet -f
complete -c korvel-fleet -s h -l help -d 'Print the help text'
complete -c korvel-fleet -n __korvel_fleet_is_first -l version -d 'Print the version'

complete -c korvel-fleet -n __korvel_fleet_is_first -a collect -d 'Collect a package from each board'
complete -c korvel-fleet -n __korvel_fleet_is_first -a run -d 'Run a command line of korvel on each board'
complete -c korvel-fleet -n __korvel_fleet_is_first -a probe -d 'Tell how the boards are'
complete -c korvel-fleet -n __korvel_fleet_is_first -a status -d 'Tell what a directory of packages holds'

set -l asking '__korvel_fleet_is collect run probe'
complete -c korvel-fleet -n $asking -s w -x -d 'The boards'
complete -c korvel-fleet -n $asking -s x -x -d 'Boards to leave out'
complete -c korvel-fleet -n $asking -l fanout -x -d 'Ask at most so many boards at the same time'
complete -c korvel-fleet -n $asking -l timeout -x -d 'The time for one board'
complete -c korvel-fleet -n $asking -l ssh -x -d 'The ssh command'
complete -c korvel-fleet -n '__korvel_fleet_is collect' -s o -xa '(__fish_complete_directories)' -d 'The directory for the packages'
complete -c korvel-fleet -n '__korvel_fleet_is collect' -l package -xa 'pkg pkg-trs pkg-sup pkg-pm pkg-sdown' -d 'The kind of package'
complete -c korvel-fleet -n '__korvel_fleet_is collect' -l resume -d 'Ask only boards without a whole package'
complete -c korvel-fleet -n '__korvel_fleet_is collect probe' -l port -x -d 'Also ask for the switch ports of interfaces'
complete -c korvel-fleet -n '__korvel_fleet_is collect run' -l max-bytes -x -d 'Limit of what a board sends'
complete -c korvel-fleet -n '__korvel_fleet_is status' -l metrics -rF -d 'Write metrics for Prometheus'
complete -c korvel-fleet -n '__korvel_fleet_is status' -a '(__fish_complete_directories)'
