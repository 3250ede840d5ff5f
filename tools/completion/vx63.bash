# bash completion for vx63(1) and vx63-vmeter(1). The programs know what can follow; see cli/declaration.h.

_vx63()
{
    local text description skip
    COMPREPLY=()
    while IFS=$'\t' read -r text description; do
        case $text in
            :files | :folders)
                compopt -o filenames 2>/dev/null
                local kind=-f
                [[ $text == :folders ]] && kind=-d
                while IFS= read -r text; do
                    COMPREPLY+=("$text")
                done < <(compgen "$kind" -- "$2")
                ;;
            :command*)
                skip=${text#:command }
                if declare -F _command_offset >/dev/null; then
                    _command_offset "$skip"
                elif ((COMP_CWORD == skip)); then
                    COMPREPLY=($(compgen -c -- "$2"))
                else
                    compopt -o filenames 2>/dev/null
                    COMPREPLY=($(compgen -f -- "$2"))
                fi
                ;;
            "$2"*)
                printf -v text %q "$text"
                COMPREPLY+=("$text")
                ;;
        esac
    done < <("$1" --complete "${COMP_WORDS[@]:1:COMP_CWORD-1}" "$2" 2>/dev/null)
}

complete -F _vx63 vx63 vx63-vmeter
