# fish completion for vx63(1) and vx63-vmeter(1). The programs know what can follow; see cli/declaration.h.

function __vx63_complete
    set -l before (commandline --tokenize --cut-at-cursor --current-process)
    set -l word (commandline --current-token --cut-at-cursor)
    for line in ($before[1] --complete $before[2..-1] "$word" 2>/dev/null)
        switch $line
            case :files
                __fish_complete_path "$word"
            case :folders
                __fish_complete_directories "$word"
            case ':command *'
                set -l first (math (string replace ':command ' '' -- $line) + 1)
                complete --do-complete (string join ' ' -- (string escape -- $before[$first..-1]) "$word")
            case '*'
                printf '%s\n' $line
        end
    end
end

complete --command vx63 --command vx63-vmeter --no-files --arguments '(__vx63_complete)'
