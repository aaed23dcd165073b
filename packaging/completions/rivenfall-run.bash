# Completion of rivenfall-run for bash: options, documents, variables with their values, and the
# texts behind --on, --off and --only.

# Prints the word $1 of a command line without its quoting, and carries nothing out that it holds.
_rivenfall_run_text() {
    xargs printf '%s' <<<"${1/#\~\//"$HOME"/}" 2>/dev/null
}

# Prints, with a NUL behind each, what the document read by the call "$@" has of the kind $1: texts,
# compilers, variables, or the values of the variable $2.
_rivenfall_run_choices() {
    local kind=$1 name=${2,,} tree='' variable='' line text
    shift 2
    "$@" 2>/dev/null | while IFS= read -r line; do
        [[ $line == ' '* ]] || tree=$line
        printf -v text '%b.' "${line#*"] "}"
        text=${text%.}
        [[ ! $line =~ ^\ +\[.\]$ ]] || text=''
        case $kind$tree$line in
            texts'Compilers '* | compilers'Compilers  ['* | variables'Variables  ['*) ;;
            values'Variables  ['*)
                variable=${text,,}
                continue
                ;;
            values'Variables '*) [[ $variable == "$name" ]] || continue ;;
            *) continue ;;
        esac
        printf '%s\0' "$text"
    done
}

# Offers the texts on standard input, each with $1 behind it, for the word at hand from behind its
# part $2 on.
_rivenfall_run_offer() {
    local word=$cur quote='' typed text part
    typed=$(_rivenfall_run_text "$word") || for quote in \' \"; do
        ! typed=$(_rivenfall_run_text "$word$quote") || break
    done
    [[ ! $2 ]] || typed=${typed#*=}
    # What Readline takes for the word: it begins behind =, : or a quote.
    _get_comp_words_by_ref cur
    [[ $cur != [=:] ]] || cur=''
    while IFS= read -r -d '' text; do
        [[ ${text,,} == "${typed,,}"* && $text ]] || continue
        case $quote in
            \') text=${text//\'/\'\\\'\'} ;;
            \")
                text=${text//\\/\\\\}
                text=${text//\"/\\\"}
                text=${text//\$/\\\$}
                text=${text//\`/\\\`}
                ;;
            *)
                printf -v text '%s%q' "$2" "$text"
                part=${word%"$cur"}
                [[ $text == "$part"* ]] || continue
                text=${text#"$part"}
                ;;
        esac
        # Behind an open quote the word begins there.
        [[ ! $quote || $2 != *"$quote"* ]] || text=${2#*"$quote"}$text
        COMPREPLY+=("$text$1")
    done
}

_rivenfall_run() {
    local cur prev words cword
    _init_completion -n =: || return

    # What stands before the word at hand: the document, and the options that say where it is.
    local document='' directory=() position options=yes
    for ((position = 1; position < cword; ++position)); do
        case $options${words[position]} in
            yes--) options='' ;;
            yes-C | yes--directory)
                ((++position))
                directory+=("$(_rivenfall_run_text "${words[position]}")")
                ;;
            yes--directory=*) directory+=("$(_rivenfall_run_text "${words[position]#*=}")") ;;
            yes--on | yes--off | yes--only) ((++position)) ;;
            yes-*) ;;
            *) [[ $document ]] || document=$(_rivenfall_run_text "${words[position]}") ;;
        esac
    done
    # Options may stand before the document that they are about.
    for ((position = cword + 1; position < ${#words[@]}; ++position)); do
        [[ $document || ${words[position]} != *.tvq ]] ||
            document=$(_rivenfall_run_text "${words[position]}")
    done
    local read=("$(_rivenfall_run_text "${words[0]}")" "${directory[@]/#/-C}" --print -- "$document")

    case $options$cur,$prev in
        yes*,-C | yes*,--directory | yes--directory=*)
            cur=${cur#--directory=}
            _filedir -d
            return
            ;;
        yes*,--on | yes*,--off)
            _rivenfall_run_offer '' '' < <(_rivenfall_run_choices texts '' "${read[@]}")
            return
            ;;
        yes*,--only)
            _rivenfall_run_offer '' '' < <(_rivenfall_run_choices compilers '' "${read[@]}")
            return
            ;;
        yes--only=*)
            _rivenfall_run_offer '' --only= < <(_rivenfall_run_choices compilers '' "${read[@]}")
            return
            ;;
        yes--on=* | yes--off=*)
            _rivenfall_run_offer '' "${cur%%=*}=" < <(_rivenfall_run_choices texts '' "${read[@]}")
            return
            ;;
        yes-*)
            mapfile -t COMPREPLY < <(compgen -W '-C -e -h -i -l -n -p -q -u --directory= --dry-run
                --help --ignore-errors --list --off --on --only --print --quiet --stop-on-error
                --strict --version' -- "$cur")
            [[ ${COMPREPLY[*]} != *= ]] || compopt -o nospace
            return
            ;;
    esac

    if [[ ! $document ]]; then
        # Seen from the directory that the options lead to.
        mapfile -t COMPREPLY < <(
            for position in "${directory[@]}"; do
                CDPATH='' cd -- "$position" 2>/dev/null || exit
            done
            _filedir tvq
            ((${#COMPREPLY[@]} == 0)) || printf '%s\n' "${COMPREPLY[@]}"
        )
        compopt -o filenames
    elif [[ $cur == *=* ]]; then
        local name=${cur%%=*}
        [[ ${name:1} == *[\'\"]* ]] || name=${name#[\'\"]}
        _rivenfall_run_offer '' "${cur%%=*}=" < <(
            _rivenfall_run_choices values "$(_rivenfall_run_text "$name")" "${read[@]}"
        )
    else
        compopt -o nospace
        _rivenfall_run_offer '=' '' < <(
            _rivenfall_run_choices variables '' "${read[@]}" | grep -zv =
        )
    fi
} && complete -F _rivenfall_run rivenfall-run
