# bash completion for vx63(1)

_vx63()
{
    local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]}
    local commands="measure input power-supply status log"
    local command=${COMP_WORDS[1]} words=
    COMPREPLY=()

    # The value of an option. The current word is the value even if it is still empty.
    case $previous in
        --system) words="terrestrial satellite satellite-2 catv jsat jsat-2 skyp catv-2 level" ;;
        --mod) words="OFDM BPSK QPSK 8PSK 16APSK 32APSK 64QAM 256QAM none" ;;
        --supply) words="0 1 2 3 4" ;;
        --input) words="0 1" ;;
        --id) words="1 2 3 4 5 7 9 11 13 14 15 16 17" ;;
        --freq | --lo | --band | --condition | --channel | --disp-type | --lock-timeout | --count | --interval | --lines)
            return
            ;;
    esac

    if [[ -z $words ]]; then
        if ((COMP_CWORD == 1)); then
            words="$commands --help --version"
        else
            case $command in
                measure)
                    if ((COMP_CWORD == 2)); then
                        words="single --help"
                    elif [[ ${COMP_WORDS[2]} == single ]]; then
                        words="--freq --lo --system --band --mod --condition --channel --supply --input --disp-type
                            --lock-timeout --count --interval --json --id --help"
                    fi
                    ;;
                input) words="0 1 --id --help" ;;
                power-supply) words="off 0 1 2 3 4 --json --id --help" ;;
                status) words="--json --id --help" ;;
                log)
                    words="--follow --errors --json --lines --help"
                    [[ $current != -* ]] && COMPREPLY=($(compgen -f -- "$current"))
                    ;;
            esac
        fi
    fi
    COMPREPLY+=($(compgen -W "$words" -- "$current"))
}

complete -o filenames -F _vx63 vx63
