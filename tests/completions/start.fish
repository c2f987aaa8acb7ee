# Sets up fish for the tests: Ctrl-T inserts every match, and the programs print their arguments.
set fish_greeting
function fish_prompt
    printf 'READY> '
end
function fish_title
end

function korvel
    printf 'ARGUMENTS%sEND\n' (string join '' '<'$argv'>')
end
function korvel-report
    korvel $argv
end
function korvel-fleet
    korvel $argv
end

function insert_all
    set -l found (complete --do-complete (commandline --cut-at-cursor --current-process) | string split -f1 \t)
    set -q found[1]; and commandline --current-token --replace -- "$found"
end
bind \ct insert_all
