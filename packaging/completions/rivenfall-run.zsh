#compdef rivenfall-run
# Completion of rivenfall-run for zsh: options, documents, variables with their values, and the texts
# behind --on, --off and --only. Nothing that a word or a document holds is carried out.

# Offers what the document of the call has of the kind $1, texts, compilers, variables, or the values
# of the variable $2, to compadd with the arguments behind those.
_rivenfall_run_offer() {
  local kind=$1 name=${2:l} tree variable text
  shift 2
  local -a choices call=(${(Q)words[1]})
  local document=${(Q)line[1]:-${(Q)${(M)words:#*.tvq}[1]}}
  local directory=${(Q)opt_args[-C]:-${(Q)opt_args[--directory]}}
  [[ -z $directory ]] || call+=(-C ${directory/#\~\//$HOME/})
  for text in "${(@f)$($call --print -- ${document/#\~\//$HOME/} 2>/dev/null)}"; do
    [[ $text == ' '* ]] || tree=$text
    # Neither an entry without text nor a heading is a choice.
    [[ $text == *\]\ * ]] || continue
    case $kind$tree$text in
      (texts'Compilers '*|compilers'Compilers  ['*|variables'Variables  ['*)
        choices+=("${(g::)text#*\] }") ;;
      (values'Variables  ['*) variable=${(Lg::)text#*\] } ;;
      (values'Variables '*) [[ $variable != $name ]] || choices+=("${(g::)text#*\] }") ;;
    esac
  done
  # Such a name can't be given by an argument.
  [[ $kind != variables ]] || choices=("${(@)choices:#*=*}")
  compadd "$@" -M 'm:{[:lower:][:upper:]}={[:upper:][:lower:]}' -a choices
}

_rivenfall_run() {
  local context state state_descr
  local -a line
  local -A opt_args
  _arguments -s -S -C \
    '*'{-C+,--directory=}'[change to a directory first]:directory:_files -/' \
    '(-e --stop-on-error -i --ignore-errors)'{-e,--stop-on-error}'[end after the first failure]' \
    '(-i --ignore-errors -e --stop-on-error)'{-i,--ignore-errors}'[end with status 0 in spite of failures]' \
    '(-q --quiet)'{-q,--quiet}'[print no frames]' \
    '(-u --strict)'{-u,--strict}'[start nothing if a reference finds no value]' \
    '(-n --dry-run -l --list -p --print)'{-n,--dry-run}'[print the command lines, start nothing]' \
    '(-n --dry-run -l --list -p --print)'{-l,--list}'[list the variables and the compilers]' \
    '(-n --dry-run -l --list -p --print)'{-p,--print}'[print the document as text]' \
    '*--on=[tick what has this text]:text:->texts' \
    '*--off=[take check marks away]:text:->texts' \
    '*--only=[run these compilers alone]:compiler:->compilers' \
    '(-)'{-h,--help}'[print help and end]' \
    '(-)--version[print the version and end]' \
    '1:document:->document' '*:variable:->variables' && return
  case $state in
    (texts|compilers) _rivenfall_run_offer $state '' ;;
    (document)
      local directory=${(Q)opt_args[-C]:-${(Q)opt_args[--directory]}}
      _files ${directory:+-W} ${directory:+${directory/#\~\//$HOME/}} -g '*.tvq(-.)' ;;
    (variables)
      if compset -P 1 '*='; then
        _rivenfall_run_offer values "${(Q)IPREFIX%=}"
      else
        _rivenfall_run_offer variables '' -S =
      fi ;;
  esac
}

_rivenfall_run "$@"
