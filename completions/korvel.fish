# Completion of korvel(1) for fish.

# Prints the complete words before the cursor, without redirections.
function __korvel_line
    set -l line (commandline --cut-at-cursor --current-process)
    set -l current (commandline --cut-at-cursor --current-token)
    string sub --length (math (string length -- "$line") - (string length -- "$current")) -- "$line" |
        string replace --all --regex '(^|\s)(\d*|&)[<>]+[&?|]?\s*\S+' '' |
        read --local --tokenize --list words
    printf '%s\n' $words
end

# Prints the words before the cursor that are neither options nor their values. --help is printed too, because it ends
# the command line.
function __korvel_words
    set -l awaited no
    for word in (__korvel_line)[2..]
        if test $awaited = yes
            set awaited no
        else if contains -- $word -c -m -d
            set awaited yes
        else if test $word != -v
            printf '%s\n' $word
        end
    end
end

function __korvel_is_first
    not count (__korvel_words) >/dev/null
end

# Whether the word at the cursor is an operand of type $argv[1]: "interface", "port" or "switch".
function __korvel_expects
    set -l words (__korvel_words)
    set -l operands
    switch "$words[1]"
        case getport
            set operands port
        case mirrorport
            set operands switch port port
        case loopbackport
            set operands switch port
        case add_interface
            set operands interface
        case portswap
            set operands interface interface
        case addmulticastmac
            set operands address interface
    end
    set -l place (count $words)
    test $place -gt 0; and test "$operands[$place]" = $argv[1]
end

# Collection keywords follow one another: each at most once, and at most one package.
function __korvel_takes
    set -l words (__korvel_words)
    set -l packages pkg pkg-trs pkg-sup pkg-pm pkg-sdown
    set -l family print dump $packages all netfp proxy server master resmgr slog dall dinf dstat dlog
    if set -q words[1]; and not contains -- $words[1] $family
        return 1
    end
    if contains -- $argv[1] $packages
        not string match -q -- 'pkg*' $words
    else
        not contains -- $argv[1] $words
    end
end

# Whether an option may still be given. Usage:
#   __korvel_allows OPTION        for an option without a value
#   __korvel_allows OPTION VALUE  for an option with a value, which may be the word at the cursor
#   __korvel_allows               for an option that may be repeated
function __korvel_allows
    set -l words (__korvel_line)
    if set -q argv[2]; and test "$words[-1]" = $argv[1]
        set -e words[-1]
    end
    not contains -- --help $words; and not contains -- "$argv[1]" $words
end

function __korvel_interfaces
    set -l folders /sys/class/net/*/
    string replace --regex '.*/(.+)/' '$1' -- $folders
end

complete --command korvel --no-files

# -o declares "old" options: each option and each value is a separate word.
complete -c korvel -o v -n '__korvel_allows -v' -d 'Print each step'
complete -c korvel -o c -n '__korvel_allows -c path' -rF -d 'Use this path for the client socket'
complete -c korvel -o m -n '__korvel_allows -m path' -rF -d 'Use this path for the master socket'
complete -c korvel -o d -n __korvel_allows -xa 'iwf sfn all' -d 'Select the dispatchers'
complete -c korvel -l help -n __korvel_allows -d 'Print the help text'

complete -c korvel -n __korvel_is_first -a getport -d 'Print the switch port of an interface'
complete -c korvel -n __korvel_is_first -a mirrorport -d 'Copy the traffic of one port to another'
complete -c korvel -n __korvel_is_first -a loopbackport -d 'Loop a switch port back to itself'
complete -c korvel -n __korvel_is_first -a portswap -d 'Exchange the switch ports of two interfaces'
complete -c korvel -n __korvel_is_first -a addmulticastmac -d 'Let a multicast address through'
complete -c korvel -n __korvel_is_first -a resetqosstats -d 'Clear the QoS statistics of the dispatchers'
complete -c korvel -n __korvel_is_first -a mem_dump -d 'Print physical memory'
complete -c korvel -n __korvel_is_first -a desc_dump -d 'Print a packet descriptor'
complete -c korvel -n __korvel_is_first -a add_interface -d 'Ask netfp_proxy to manage an interface'
complete -c korvel -n __korvel_is_first -a supervision -d 'Check the processes by heartbeats'
complete -c korvel -n __korvel_is_first -a archive -d 'Follow the shared-memory logs into files'

complete -c korvel -n '__korvel_takes print' -a print -d 'Print on standard output'
complete -c korvel -n '__korvel_takes dump' -a dump -d 'Write to files below /tmp/korvel'
complete -c korvel -n '__korvel_takes pkg' -a pkg -d 'Pack with the time in the name'
complete -c korvel -n '__korvel_takes pkg-trs' -a pkg-trs -d 'Pack under a fixed name'
complete -c korvel -n '__korvel_takes pkg-sup' -a pkg-sup -d 'Pack for the supervisor service'
complete -c korvel -n '__korvel_takes pkg-pm' -a pkg-pm -d 'Pack after a crash'
complete -c korvel -n '__korvel_takes pkg-sdown' -a pkg-sdown -d 'Pack at a system shutdown, if allowed'
complete -c korvel -n '__korvel_takes all' -a all -d 'Everything'
complete -c korvel -n '__korvel_takes netfp' -a netfp -d 'All NetFP processes and the SYSLIB log'
complete -c korvel -n '__korvel_takes proxy' -a proxy -d 'Dump of netfp_proxy'
complete -c korvel -n '__korvel_takes server' -a server -d 'Dump of netfp_server'
complete -c korvel -n '__korvel_takes master' -a master -d 'Dump of netfp_master'
complete -c korvel -n '__korvel_takes resmgr' -a resmgr -d 'Dump of resmgr_server'
complete -c korvel -n '__korvel_takes slog' -a slog -d 'SYSLIB log'
complete -c korvel -n '__korvel_takes dall' -a dall -d 'State, statistics and log of the dispatchers'
complete -c korvel -n '__korvel_takes dinf' -a dinf -d 'State of the dispatchers'
complete -c korvel -n '__korvel_takes dstat' -a dstat -d 'Statistics of the dispatchers'
complete -c korvel -n '__korvel_takes dlog' -a dlog -d 'Log of the dispatchers'

complete -c korvel -n '__korvel_expects switch' -a 'enable disable'
complete -c korvel -n '__korvel_expects port' -a '1 2 3 4' -d 'Switch port'
complete -c korvel -n '__korvel_expects port; or __korvel_expects interface' -a '(__korvel_interfaces)' -d Interface
