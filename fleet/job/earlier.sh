# shellcheck shell=sh disable=SC2154 # collection.sh assigns some variables
# The files that were on the board before the job: they are set aside while korvel runs, and brought back. Each function
# needs the lock of lock_packages: files with these names then belong to this job, or to one that was killed.
#   $directory/NAME.before-fleet.PID   a package whose name korvel needs
#   $private/PID/                      the work files of an earlier collection, and the time when korvel ended
#   $directory/*.tgz.fleet.PID         a new package

private=/tmp/korvel-fleet-$user
own=$private/$$

# --- Packages ----------------------------------------------------------------------------------------------------

# keep_both FILE: gives the earlier package the name that make-package gives to a previous one. Its run file follows.
keep_both() {
    newer=${1%.before-fleet.*}
    earlier=$1
    if ! exists "$newer.previous" && ! exists "$newer.previous.run"; then
        earlier=$newer.previous
        earlier_sum=$(sha256sum < "$1")
        ! grep -qsx "sha256: ${earlier_sum%% *}" "$newer.run" || mv "$newer.run" "$earlier.run"
        mv "$1" "$earlier"
    fi
    say "$newer is there again, perhaps from somebody else: the earlier package is $earlier"
} < /dev/null

# put_back FILE: gives an earlier package its name again.
put_back() {
    if exists "${1%.before-fleet.*}"; then
        keep_both "$1"
    else
        mv "$1" "${1%.before-fleet.*}"
    fi
}

# Cleans up after jobs that were killed with all their processes.
settle_packages() {
    for file in "$directory"/netfp_logs*.tgz.fleet.*; do
        ! exists "$file" || rm -f "$file"
    done
    for file in "$directory"/netfp_logs*.tgz.before-fleet.*; do
        ! exists "$file" || put_back "$file"
    done
}

# --- Work files --------------------------------------------------------------------------------------------------

prepare_private_directory() {
    mkdir -m 0700 "$private" 2> /dev/null
    is_own_directory "$private"
}

# merge FROM TO: moves files, but leaves those whose names exist.
merge() {
    for entry in "$1"/* "$1"/.[!.]*; do
        if ! exists "$entry"; then
            continue
        elif ! exists "$2/${entry##*/}"; then
            mv "$entry" "$2/"
        elif [ -d "$entry" ] && [ ! -L "$entry" ] && [ -d "$2/${entry##*/}" ] && [ ! -L "$2/${entry##*/}" ]; then
            merge "$entry" "$2/${entry##*/}"
        fi
    done
    rmdir "$1"
} 2> /dev/null

# take_back FOLDER: moves work files back. If somebody collected meanwhile, files of the same names stay aside.
take_back() {
    rm -f "$1/ended"
    mkdir "$work" 2> /dev/null
    is_own_directory "$work" && merge "$1" "$work" && return
    ! exists "$1" || {
        kept=$private/earlier
        while exists "$kept"; do kept=$kept-; done
        mv "$1" "$kept" && say "$work has newer files: those of an earlier collection are in $kept"
    }
}

settle_work() {
    for folder in "$private"/*; do
        case ${folder##*/} in
            *[!0-9]*) ;;
            *) take_back "$folder" ;;
        esac
    done
}

# move_collected FROM TO
move_collected() {
    for name in $collected; do
        ! exists "$1/$name" || mv "$1/$name" "$2/" || return 1
    done
} 2> /dev/null

# --- All together ------------------------------------------------------------------------------------------------

# The package would include files of an earlier collection that korvel does not overwrite.
set_work_aside() {
    prepare_private_directory || return 1
    settle_work
    mkdir "$own" && move_collected "$work" "$own"
}
