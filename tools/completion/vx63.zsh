#compdef vx63 vx63-vmeter
# zsh completion for vx63(1) and vx63-vmeter(1). The programs know what can follow; see cli/declaration.h.

local line text
local -a before options others
(( CURRENT > 2 )) && before=("${(@Q)words[2,CURRENT-1]}")
for line in "${(@f)$(_call_program words ${(q)words[1]} --complete ${(q)before[@]} ${(q)PREFIX})}"; do
    text=${line%%$'\t'*}
    line=${text//:/\\:}${${line#*$'\t'}:+:${line#*$'\t'}}
    case $text in
        :files) compset -P '--*='; _files ;;
        :folders) compset -P '--*='; _files -/ ;;
        :command*)
            shift ${text#:command } words
            (( CURRENT -= ${text#:command } ))
            _normal
            ;;
        -*) options+=($line) ;;
        ?*) others+=($line) ;;
    esac
done
_describe word others -- options
