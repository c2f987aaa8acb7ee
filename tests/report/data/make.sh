#!/bin/sh
# Makes the packages of this folder again, with korvel on the simulated board. Takes the folder with boardsim
# and korvel, such as build. This command then writes the texts beside the packages again:
#     UPDATE_PACKAGES=1 build/tests/report_model_test
set -eu

if [ $# -ne 1 ]; then
    echo "Usage: $0 FOLDER" >&2
    exit 2
fi
boardsim=$(realpath "$1")/boardsim
cd "$(dirname "$0")"

# board NAME COMMAND [OPTION...]: runs COMMAND on a board, and keeps the package that it prints as NAME.
board() {
    name=$1
    command=$2
    shift 2
    "$boardsim" "$@" -- sh -c "$command" > "$name" 2> /dev/null
}

board netfp_logs_sup.tgz 'korvel pkg-sup; cat /ffs/run/logs/netfp_logs_sup.tgz'
board netfp_logs_261122_083033.tgz 'korvel pkg; cat /ffs/run/logs/*'
board antenna-7.tgz 'korvel pkg dstat netfp; cat /ffs/run/logs/*' --deployment iwf
# After a failure, with the package of the failure inside.
board netfp_logs.tgz 'korvel supervision; korvel pkg-pm; korvel pkg-trs; cat /ffs/run/logs/netfp_logs.tgz' \
    --fault netfp_proxy=netlink-error:3
# With an archive.
board archive.tgz 'korvel archive & sleep 2; kill $!; wait; korvel pkg dlog; cat /ffs/run/logs/*'
