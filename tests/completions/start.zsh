# Sets up zsh for the tests: Ctrl-T inserts every match, and the programs print their arguments.
PS1='READY> '
unsetopt prompt_sp prompt_cr beep
unset zle_bracketed_paste

korvel() {
    printf 'ARGUMENTS'
    (( $# )) && printf '<%s>' "$@"
    printf 'END\n'
}
korvel-report() { korvel "$@" }
korvel-fleet() { korvel "$@" }

fpath=($COMPLETION_FOLDER $fpath)
autoload -Uz compinit
compinit -u -D

zle -C insert-all complete-word _generic
bindkey '^T' insert-all
zstyle ':completion:insert-all:*' completer _all_matches _complete
zstyle ':completion:insert-all:*' insert true
