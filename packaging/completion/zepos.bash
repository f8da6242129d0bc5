# bash completion of zepos
_zepos()
{
    local cur prev words cword split
    _init_completion -s || return
    case $prev in
    --from | --to)
        COMPREPLY=($(compgen -W "$(zepos --list-formats 2>/dev/null | cut -d ' ' -f 1)" -- "$cur"))
        return
        ;;
    --rate)
        COMPREPLY=($(compgen -W "44100 48000 88200 96000 192000" -- "$cur"))
        return
        ;;
    --locale)
        COMPREPLY=($(compgen -W "$(locale -a 2>/dev/null)" -- "$cur"))
        return
        ;;
    --frame-rate | --tempo | --time-signature | --ticks | --percent-base | --offset | --ticks-for) return ;;
    esac
    $split && return
    COMPREPLY=($(compgen -W "--from --to --rate --frame-rate --tempo --time-signature --ticks --percent-base --offset
        --length --locale --ticks-for --list-formats --help --version" -- "$cur"))
} && complete -F _zepos zepos
