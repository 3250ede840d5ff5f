# bash completion for vx63(1)

_vx63_plans()
{
    echo ch_set/{uhf,bs,cs,sccb,sccc,jsat3a,jsat4b,catv_all,catv_90_470mhz,catv_470_1002mhz,skyp,pilot,lte,fm} \
        ch_set/{jsat3a_antenna,jsat4b_antenna,fm_def,catv_up_stream_def,bs_cs}
}

_vx63_files()
{
    echo sys_set/{powoff,volume,brightness} \
        meas_set/{local_freq,thrd,cnrmer,catv_freq,cable_loss,cable_loss_enb,input,catv_mod,dc_out,opt_meas} \
        meas_set/{consta_num,manu_bdsys_mod,bdsys_conv,catv_bdsys_conv} pmeas_set/pmeas_mng \
        {user,logger}_set{,_usb1,_usb2}/list ch_set/catv_up_stream
    _vx63_plans
}

_vx63()
{
    local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]}
    local commands="measure scan angle input power-supply status log settings sets"
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
        --with) compopt -o dirnames 2>/dev/null; return ;;
        --from) words=$(_vx63_plans) ;;
        --points) words="1000 2000 4000" ;;
        --plan) words="uhf bs cs bs-cs catv catv-low catv-high skyp jsat3a jsat4b sccb sccc fm lte pilot up-stream" ;;
        --plot | --conditions)
            COMPREPLY=($(compgen -f -- "$current"))
            return
            ;;
        --wavelength | --timeout)
            return
            ;;
        --freq | --lo | --band | --condition | --channel | --disp-type | --lock-timeout | --count | --interval | --lines | --spec | --info | --new-version | --size)
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
                settings)
                    if ((COMP_CWORD == 2)); then
                        words="list show get set diff reset export import check --help"
                    else
                        case ${COMP_WORDS[2]} in
                            list | check) words="--json --help" ;;
                            show) words="--default --json --csv --help" ;;
                            get) words="--default --help" ;;
                            set) words="--id --help" ;;
                            diff) words="--with --json --help" ;;
                            reset) words="--all --delete --yes --id --help" ;;
                            export) words="--help" ;;
                            import) words="--yes --id --help" ;;
                        esac
                        case ${COMP_WORDS[2]} in
                            show | get | set | diff | reset) ((COMP_CWORD == 3)) && words+=" $(_vx63_files)" ;;
                            export | import) [[ $current != -* ]] && COMPREPLY=($(compgen -d -- "$current")) ;;
                        esac
                    fi
                    ;;
                sets)
                    if ((COMP_CWORD == 2)); then
                        words="list show create copy delete clear --help"
                    else
                        words="--usb1 --usb2 --logger --help"
                        case ${COMP_WORDS[2]} in
                            list) words+=" --json" ;;
                            show) words+=" --json --csv" ;;
                            create) words+=" --from --band --spec --mod --id" ;;
                            copy) words+=" --id" ;;
                            delete | clear) words+=" --yes --id" ;;
                        esac
                    fi
                    ;;
            esac
        fi
    fi
    COMPREPLY+=($(compgen -W "$words" -- "$current"))
}

complete -o filenames -F _vx63 vx63
