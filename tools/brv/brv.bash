# Completion of brv for bash: the program itself knows what can follow.
_brv() {
    local IFS=$'\n' line word="${COMP_WORDS[COMP_CWORD]}"
    COMPREPLY=()
    for line in $("${COMP_WORDS[0]}" --complete -- "${COMP_WORDS[@]:1:COMP_CWORD}" 2>/dev/null </dev/null); do
        case "$line" in
            :files) compopt -o filenames 2>/dev/null; COMPREPLY+=($(compgen -f -- "$word")) ;;
            :folders) compopt -o filenames 2>/dev/null; COMPREPLY+=($(compgen -d -- "$word")) ;;
            *) COMPREPLY+=("$(printf %q "$line")") ;;
        esac
    done
}
complete -F _brv brv
