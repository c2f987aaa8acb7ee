# shellcheck shell=bash
# Completion of korvel(1) for bash. It works without the bash-completion package.

# Prints the types of an action's operands. "interface", "port" and "switch" are completed;
# other types only hold a place.
_korvel_operands() {
    case $1 in
        getport) echo port ;;
        mirrorport) echo switch port port ;;
        loopbackport) echo switch port ;;
        add_interface) echo interface ;;
        portswap) echo interface interface ;;
        addmulticastmac) echo address interface ;;
    esac
}

# Offers the words of $1 that begin with $2.
_korvel_offer() {
    mapfile -t -O "${#COMPREPLY[@]}" COMPREPLY < <(compgen -W "$1" -- "$2")
}

_korvel_offer_interfaces() {
    local folder=/sys/class/net/ folders
    mapfile -t folders < <(compgen -d -- "$folder$1")
    COMPREPLY+=("${folders[@]#"$folder"}")
}

# Offers the options, except those that were given and have no effect a second time.
# Usage: _korvel_offer_options CURRENT GIVEN...
_korvel_offer_options() {
    local current=$1 option offered='-d'
    shift
    for option in -v -c -m --help; do
        [[ " $* " == *" $option "* ]] || offered+=" $option"
    done
    _korvel_offer "$offered" "$current"
}

# Collection keywords follow one another: each at most once, and at most one package.
# Usage: _korvel_offer_keywords CURRENT GIVEN...
_korvel_offer_keywords() {
    local current=$1 keyword offered='' packages='pkg pkg-trs pkg-sup pkg-pm pkg-sdown'
    shift
    [[ " $*" == *' pkg'* ]] && packages=''
    for keyword in print dump $packages all netfp proxy server master resmgr slog dall dinf dstat dlog; do
        [[ " $* " == *" $keyword "* ]] || offered+=" $keyword"
    done
    _korvel_offer "$offered" "$current"
}

# The first word that is not an option decides which words may follow.
# Usage: _korvel_offer_words CURRENT GIVEN...
_korvel_offer_words() {
    local actions='getport mirrorport loopbackport portswap addmulticastmac resetqosstats mem_dump desc_dump'
    local current=$1 operands
    shift
    if (($# == 0)); then
        _korvel_offer "$actions add_interface supervision archive" "$current"
        _korvel_offer_keywords "$current"
        return
    fi
    case $1 in
        print | dump | pkg | pkg-* | all | netfp | proxy | server | master | resmgr | slog | dall | dinf | dstat | dlog)
            _korvel_offer_keywords "$current" "$@"
            return
            ;;
    esac
    read -ra operands <<< "$(_korvel_operands "$1")"
    case ${operands[$# - 1]-} in
        switch) _korvel_offer 'enable disable' "$current" ;;
        port)
            _korvel_offer '1 2 3 4' "$current"
            _korvel_offer_interfaces "$current"
            ;;
        interface) _korvel_offer_interfaces "$current" ;;
    esac
}

# Splits $1, the line up to the cursor, as the shell does. The word at the cursor goes to "current", the words before
# it go to "typed". A redirection operator is a separate word. COMP_WORDS would split a MAC address into many words.
_korvel_split() {
    local rest=$1 operator='([0-9]*|&)[<>]+[&|]?' token
    token="^[[:blank:]]*($operator|([^[:blank:]<>\"'\\]|\\\\.|\"([^\"\\]|\\\\.)*\"|'[^']*')+)"
    while [[ $rest =~ $token ]]; do
        typed+=("${BASH_REMATCH[1]}")
        rest=${rest#"${BASH_REMATCH[0]}"}
    done
    if [[ $rest != [[:blank:]]* && ! ${typed[-1]} =~ ^$operator$ ]]; then
        rest=${typed[-1]}$rest
        unset 'typed[-1]'
    fi
    current=${rest#"${rest%%[![:blank:]]*}"}
}

_korvel() {
    local current awaited='' word
    local -a typed=() options=() words=()
    COMPREPLY=()
    _korvel_split "${COMP_LINE:0:COMP_POINT}"
    for word in "${typed[@]:1}"; do
        if [[ $awaited ]]; then
            awaited=''
            continue
        fi
        case $word in
            --help) return ;;
            -v) options+=("$word") ;;
            -c | -m | -d) options+=("$word") awaited=$word ;;
            [\<\>]* | [0-9\&]*[\<\>]*) awaited=a-file ;;
            *) words+=("$word") ;;
        esac
    done
    case $awaited in
        -c | -m | a-file) compopt -o default ;;
        -d) _korvel_offer 'iwf sfn all' "$current" ;;
        *)
            if [[ $current == -* ]]; then
                _korvel_offer_options "$current" "${options[@]}"
            else
                _korvel_offer_words "$current" "${words[@]}"
            fi
            ;;
    esac
}

complete -F _korvel korvel
