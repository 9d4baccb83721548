# shellcheck shell=bash
# Completion of the program fieldscan: subcommands, long options and named values, as its helps have them; else files.
_fieldscan() {
    local program=${COMP_WORDS[0]/#\~/$HOME} current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]}
    local help words=""
    COMPREPLY=()
    if [ "$COMP_CWORD" -gt 1 ]; then
        help=$("$program" "${COMP_WORDS[1]}" --help 2>/dev/null) || return 0
    else
        help=$("$program" --help 2>/dev/null) || return 0
    fi
    if [[ $current == -* ]]; then
        words=$(sed -nE 's/^  (-.,)?(--[a-z-]+).*/\2/p' <<<"$help")
    elif [ "$COMP_CWORD" -eq 1 ]; then
        words=$(sed -n '/^Subcommands:$/,/^$/s/^  \([a-z]*\) .*/\1/p' <<<"$help")
    elif [[ $previous == --* ]]; then  # --page 932|1252, --to-unit TEXT:{m,ft}=m
        words=$(sed -nE "s/^  (-.,)?$previous ([^ ]*[{|][^ ]*).*/\2/p" <<<"$help" | sed -E 's/^.*\{|\}.*$//g' | tr ',|' '  ')
    fi
    mapfile -t COMPREPLY < <(compgen -W "$words" -- "$current")
}
complete -o default -F _fieldscan fieldscan
