# bash completion for vx63(1)

_vx63()
{
    local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]}
    local commands="measure input power-supply status log"
    commands+=" info doctor keys failure power update factory-reset developer-mode calibrate battery buzzer volume brightness"
    local command=${COMP_WORDS[1]} words=
    COMPREPLY=()

    # The value of an option. The current word is the value even if it is still empty.
    case $previous in
        --system) words="terrestrial satellite satellite-2 catv jsat jsat-2 skyp catv-2 level" ;;
        --mod) words="OFDM BPSK QPSK 8PSK 16APSK 32APSK 64QAM 256QAM none" ;;
        --supply) words="0 1 2 3 4" ;;
        --input) words="0 1" ;;
        --program) words="boot main sub qt product" ;;
        --source) words="internal usb1 usb2" ;;
        --id) words="1 2 3 4 5 7 9 11 13 14 15 16 17" ;;
        --freq | --lo | --band | --condition | --channel | --disp-type | --lock-timeout | --count | --interval | --lines | --info | --new-version | --size)
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
                info | doctor) words="--json --id --help" ;;
                keys) words="--watch --interval --json --id --help" ;;
                failure)
                    if ((COMP_CWORD == 2)); then
                        words="show set clear --help"
                    else
                        case ${COMP_WORDS[2]} in
                            show) words="--json --id --help" ;;
                            set) words="--info --id --help" ;;
                            clear) words="--id --help" ;;
                        esac
                    fi
                    ;;
                power)
                    if ((COMP_CWORD == 2)); then
                        words="reboot shutdown standby wakeup state --help"
                    else
                        case ${COMP_WORDS[2]} in
                            reboot | shutdown) words="--yes --id --help" ;;
                            standby | wakeup) words="--force --measurement --id --help" ;;
                            state) words="--json --id --help" ;;
                        esac
                    fi
                    ;;
                update)
                    words="--program --new-version --size --source --yes --id --help"
                    [[ $current != -* ]] && COMPREPLY=($(compgen -f -- "$current"))
                    ;;
                factory-reset) words="--yes --id --help" ;;
                developer-mode) words="on off --id --help" ;;
                calibrate) words="--level-only --id --help" ;;
                battery) words="low ok --id --help" ;;
                buzzer) words="click confirmation warning error alarm --repeat --stop --id --help" ;;
                volume) words="all click confirmation warning error alarm --id --help" ;;
                brightness) words="dark middle bright --id --help" ;;
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
