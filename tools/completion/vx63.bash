# bash completion for vx63(1)

_vx63()
{
    local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]}
    local commands="measure scan angle input power-supply status log"
    local command=${COMP_WORDS[1]} words=
    COMPREPLY=()

    # The value of an option. The current word is the value even if it is still empty.
    case $previous in
        --system) words="terrestrial satellite satellite-2 catv jsat jsat-2 skyp catv-2 level" ;;
        --mod) words="OFDM BPSK QPSK 8PSK 16APSK 32APSK 64QAM 256QAM none" ;;
        --supply) words="0 1 2 3 4" ;;
        --input) words="0 1" ;;
        --id) words="1 2 3 4 5 7 9 11 13 14 15 16 17" ;;
        --points) words="1000 2000 4000" ;;
        --plan) words="uhf bs cs bs-cs catv catv-low catv-high skyp jsat3a jsat4b sccb sccc fm lte pilot up-stream" ;;
        --plot | --conditions)
            COMPREPLY=($(compgen -f -- "$current"))
            return
            ;;
        --wavelength | --timeout)
            return
            ;;
        --freq | --lo | --band | --condition | --channel | --disp-type | --lock-timeout | --count | --interval | --lines)
            return
            ;;
    esac

    if [[ -z $words ]]; then
        if ((COMP_CWORD == 1)); then
            words="$commands --help --version"
        else
            local list="--plan --lo --system --mod --supply --input --disp-type --plot --json --csv --id --help"
            case $command in
                measure)
                    local channel="--freq --lo --system --band --mod --condition --channel --supply --input --disp-type
                        --lock-timeout --json --id --help"
                    if ((COMP_CWORD == 2)); then
                        words="single constellation delay-profile multi optical dc angle --help"
                    else
                        case ${COMP_WORDS[2]} in
                            single) words="$channel --count --interval" ;;
                            constellation) words="$channel --points --plot" ;;
                            delay-profile) words="$channel --plot" ;;
                            multi) words="$list --conditions" ;;
                            optical) words="--wavelength --json --id --help" ;;
                            dc) words="--input --json --id --help" ;;
                            angle) words="--json --id --help" ;;
                        esac
                    fi
                    ;;
                scan) words=$list ;;
                angle)
                    if ((COMP_CWORD == 2)); then
                        words="calibrate --help"
                    elif [[ ${COMP_WORDS[2]} == calibrate ]]; then
                        words="--timeout --json --id --help"
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
