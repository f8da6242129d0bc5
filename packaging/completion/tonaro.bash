# bash completion of tonaro
_tonaro()
{
    local cur prev words cword split
    _init_completion -s -n =: || return
    local names="waveform start-frequency use-end end-frequency log-sweep gain length sample-rate time-format"
    case $prev in
    --set)
        case $cur in
        # an equals sign ends the word that is replaced
        waveform=*) COMPREPLY=($(compgen -W "sine triangle square sawtooth" -- "${cur#*=}")) ;;
        use-end=* | log-sweep=*) COMPREPLY=($(compgen -W "0 1" -- "${cur#*=}")) ;;
        *=*) ;;
        *)
            COMPREPLY=($(compgen -S = -W "$names" -- "$cur"))
            compopt -o nospace
            ;;
        esac
        return
        ;;
    --render)
        _filedir '@(wav|flac)'
        return
        ;;
    --screenshot | --demo)
        _filedir png
        return
        ;;
    --device)
        local IFS=$'\n'
        COMPREPLY=($(compgen -W "$(tonaro --list-devices 2>/dev/null | sed 's/  ([^(]*)$//')" -- "$cur"))
        __ltrim_colon_completions "$cur"
        return
        ;;
    --scale)
        COMPREPLY=($(compgen -W "1 1.25 1.5 2 3 4" -- "$cur"))
        return
        ;;
    --appearance)
        COMPREPLY=($(compgen -W "auto light dark" -- "$cur"))
        return
        ;;
    --editors) return ;;
    esac
    $split && return
    COMPREPLY=($(compgen -W "--set --device --list-devices --mute --render --editors --scale --appearance --trace
        --screenshot --controls --demo --help --version" -- "$cur"))
} && complete -F _tonaro tonaro
