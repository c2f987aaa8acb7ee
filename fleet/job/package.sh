# shellcheck shell=sh disable=SC2154 # collection.sh, limits.sh and earlier.sh assign some variables
# One run of korvel that makes a package, between setting the earlier files aside and bringing them back.

collection_seconds=180
collection_grace=20  # korvel packs what it has after the programs that it started are ended

hung="korvel-fleet: korvel hung: it was ended after $collection_seconds seconds"

# The name of the package that KEYWORD makes; for plain packages, the one that was not there before.
name_of_package() {
    case $1 in
        pkg) new_plain_package ;;
        pkg-trs) echo netfp_logs.tgz ;;
        pkg-sup) echo netfp_logs_sup.tgz ;;
        pkg-pm) echo netfp_logs_post_mortem.tgz ;;
        pkg-sdown) echo netfp_logs_shutdown.tgz ;;
    esac
}

# Prints nothing if several are new.
new_plain_package() {
    new=
    for name in $(plain_packages); do
        case $before in *"$name"*) continue ;; esac
        [ -z "$new" ] || {
            say "$new and $name are new in $directory: somebody else made one of them"
            return
        }
        new=$name
    done
    echo "$new"
}

# The collection lock must be free: nobody may collect while files are moved.
with_work_lock() {
    exists "$work" || mkdir "$work" 2> /dev/null
    is_own_directory "$work" || return 1
    # shellcheck disable=SC2094 # the descriptor is for the lock
    (lock_collection && "$@") 8< "$work" 9>&-
}

set_earlier_files_aside() {
    is_work_clear=true
    with_work_lock set_work_aside || {
        is_work_clear=false
        [ -z "$(earlier_files)" ] || say "cannot move the files of an earlier collection: the package contains them"
    }
    settle_packages
    [ "$keyword" != pkg ] || before=$(plain_packages)
    fixed=$(name_of_package "$keyword")
    [ -n "$fixed" ] && exists "$directory/$fixed" || return 0
    mv "$directory/$fixed" "$directory/$fixed.before-fleet.$$"
}

bring_earlier_files_back() {
    aside=$directory/$fixed.before-fleet.$$
    ! exists "$aside" || put_back "$aside"
    ! "$is_work_clear" || with_work_lock clear_work
    ! is_own_directory "$private" || ! exists "$own" || take_back "$own"
    rmdir "$private" 2> /dev/null
}

# Removes the work files of this run, unless somebody has collected since.
clear_work() {
    newer=$(find "$work" -newer "$own/ended" 2> /dev/null) && [ -z "$newer" ] || return
    set --
    for name in $collected; do
        set -- "$@" "${work:?}/$name"
    done
    rm -rf "$@"
}

# Prints up to errors_kept bytes, and reads the rest.
limited() {
    head -c "$errors_kept"
    cat > /dev/null
}

# Passes lines on until one ends with the token, which gets a line feed in its place. Not until the pipe is closed: a
# program that outlives korvel may keep it open for ever.
until_token() {
    sed "/$token\$/ {
        s///
        q
    }"
}

# If another collection was running, korvel waited for it, and the work files may belong to it.
note_other_collection() {
    case $errors in
        *'Another log collection is running'*) is_work_clear=false ;;
    esac
}

# Sets errors and status. The status goes around the pipe, and follows the text on a line of its own.
run_korvel() {
    began=$(now)
    errors=$({
        status=$({
            {
                within "$collection_seconds" "$collection_grace" korvel "$keyword" 2>&1 > /dev/null
                echo "$?" >&4
                # busybox's sed acts on a line when the next one is there. bash writes line by line: sed may have ended.
                printf '%s\n\n' "$token" 2> /dev/null
            } | until_token | tr -d '\000' | limited >&5
        } 4>&1)
        printf '\n%s' "$status"
    } 5>&1)
    ended=$(now)
    status=${errors##*"$newline"}
    errors=${errors%"$newline"*}
    errors=${errors%"$newline"}
    case $status in
        "$was_ended" | "$was_killed")
            errors=${errors%"$newline"}
            errors=${errors:+"$errors$newline"}$hung$newline
            ;;
    esac
}

# The new package gets the name $made. Without a rename, its own name is needed for the earlier one.
take_package() {
    package=$(name_of_package "$keyword")
    [ -n "$package" ] && exists "$directory/$package" || return 0
    mv "$directory/$package" "$made" || rm -f "$directory/$package"
}

describe_run() {
    printf '%s\n' "$description"
    key command "korvel $keyword"
    key status "$status"
    key began "$began"
    key ended "$ended"
    [ -z "$sum" ] || key sha256 "${sum%% *}"
    printf '\n%s' "$errors"
}

# Why the package may be incomplete, or nothing.
cause_of_run() {
    case $status in
        "$was_ended" | "$was_killed")
            echo hung
            return
            ;;
    esac
    ! has_no_room || is_whole "$made" || echo no-room
}

# Sets what is known of the package.
look_at_package() {
    size='' sum=''
    cause=$(cause_of_run)
    ! exists "$made" || {
        size=$(($(wc -c < "$made")))
        sum=$(sha256sum < "$made")
    }
}

# The heartbeat comes first: the collection could delay an answer, and would find supervision among the processes.
collect_package() {
    describe_and_probe "$@"
    is_ready=true
    set_earlier_files_aside || is_ready=false
    ! "$is_ready" || {
        run_korvel
        note_other_collection
        ! "$is_work_clear" || { true > "$own/ended"; } 2> /dev/null || is_work_clear=false
        take_package
        look_at_package
    }
    bring_earlier_files_back
    "$is_ready"
}

# Makes the package $made. Prints a line with the cause and the size, the run file, and a dot that protects line feeds.
# Runs in a process of its own, which continues after signals, and if the job is killed: it ends soon, holds the lock
# until then, and leaves the board as it was. Its tools inherit the ignored signals. korvel has a handler while it packs,
# so the programs that it starts do not inherit TERM.
make_package() {
    trap '' HUP INT TERM PIPE
    without_folders collect_package "$@" || exit 1
    text=$(describe_run && echo .)
    # In one piece: bash reports only the first failure. It fails if the job was killed.
    printf '%s\n%s' "$cause $size" "$text" 2> /dev/null || rm -f "$made"
}
