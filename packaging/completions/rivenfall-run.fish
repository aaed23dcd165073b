# Completion of rivenfall-run for fish: options, documents, variables with their values, and the
# texts behind --on, --off and --only.

# Prints what the document of the call has of the kind $argv[1]: texts, compilers, or variables with
# their values. Texts of several lines are left out.
function __rivenfall_run_choices
    set -l kind $argv[1]
    set -l words (commandline -opc)
    set -l call $words[1]
    set -l document
    set -e words[1]
    while set -q words[1]
        switch $words[1]
            case -C --directory
                set -a call -C "$words[2]"
                set -e words[1]
            case '--directory=*'
                set -a call $words[1]
            case --on --off --only
                set -e words[1]
            case '-*'
            case '*'
                set -q document[1]; or set document $words[1]
        end
        set -e words[1]
    end
    # Options may stand before the document that they are about.
    set -q document[1]; or set document (commandline -o | string match '*.tvq')[1]
    set -l tree
    set -l variable
    set call (string replace -r '^~/' "$HOME/" -- $call)
    for line in ($call --print -- (string replace -r '^~/' "$HOME/" -- $document) 2>/dev/null)
        string match -q ' *' -- $line; or set tree $line
        set -l text (string replace -rf '^ *\[.\] ' '' -- $line)
        or continue
        string match -qr '(^|[^\\\\])(\\\\\\\\)*\\\\[nt]' -- $text; and continue
        set text (printf '%b' $text)
        switch $kind$tree(string sub -l 4 -- $line)
            case 'textsCompilers*' 'compilersCompilers  [*'
                printf '%s\n' $text
            case 'variablesVariables  [*'
                set variable $text
                string match -q '*=*' -- $text; or printf '%s=\n' $text
            case 'variablesVariables*'
                string match -q '*=*' -- $variable; or printf '%s=%s\n' $variable $text
        end
    end
end

# The document stands before the word at hand.
function __rivenfall_run_has_document
    set -l words (commandline -opc)[2..]
    set -l behind_option no
    for word in $words
        switch $behind_option$word
            case no-C no--directory no--on no--off no--only
                set behind_option yes
            case 'no-*' 'yes*'
                set behind_option no
            case '*'
                return 0
        end
    end
    return 1
end

complete -c rivenfall-run -f
complete -c rivenfall-run -n 'not __rivenfall_run_has_document' -k -a '(__fish_complete_suffix .tvq)'
complete -c rivenfall-run -n __rivenfall_run_has_document -a '(__rivenfall_run_choices variables)'
complete -c rivenfall-run -s C -l directory -x -a '(__fish_complete_directories)' -d 'Change to a directory first'
complete -c rivenfall-run -s e -l stop-on-error -d 'End after the first failure'
complete -c rivenfall-run -s i -l ignore-errors -d 'End with status 0 in spite of failures'
complete -c rivenfall-run -s q -l quiet -d 'Print no frames'
complete -c rivenfall-run -s u -l strict -d 'Start nothing if a reference finds no value'
complete -c rivenfall-run -s n -l dry-run -d 'Print the command lines, start nothing'
complete -c rivenfall-run -s l -l list -d 'List the variables and the compilers'
complete -c rivenfall-run -s p -l print -d 'Print the document as text'
complete -c rivenfall-run -l on -x -a '(__rivenfall_run_choices texts)' -d 'Tick what has this text'
complete -c rivenfall-run -l off -x -a '(__rivenfall_run_choices texts)' -d 'Take check marks away'
complete -c rivenfall-run -l only -x -a '(__rivenfall_run_choices compilers)' -d 'Run these compilers alone'
complete -c rivenfall-run -s h -l help -d 'Print help and end'
complete -c rivenfall-run -l version -d 'Print the version and end'
