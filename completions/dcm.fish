# Completes dcm's command line in fish. The tool itself determines the candidates: tools/dcm/commands/completion.h.

function __dcm_candidates
    set -l words (commandline -opc)
    set -l current (commandline -ct)
    set -l before (string match -r -- '^--[a-z-]+=' $current)
    set -l path (string replace -- "$before" '' $current)
    for line in ($words[1] --complete (math (count $words) - 1) $words[2..-1] $current 2>/dev/null)
        switch $line
            case :files
                printf "$before%s\n" (__fish_complete_path $path)
            case :folders
                printf "$before%s\n" (__fish_complete_directories $path)
            case '*'
                echo $line
        end
    end
end

complete -c dcm -f -a '(__dcm_candidates)'
