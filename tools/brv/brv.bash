# Completion of brv for bash: the program itself knows what can follow. Its lines are read as they are, since names of objects
# and files may hold what the shell takes for a pattern.
_brv() {
    local line word="${COMP_WORDS[COMP_CWORD]}"
    local -a lines
    mapfile -t lines < <("${COMP_WORDS[0]}" --complete -- "${COMP_WORDS[@]:1:COMP_CWORD}" 2>/dev/null </dev/null)
    COMPREPLY=()
    for line in "${lines[@]}"; do
        case "$line" in
            :files) compopt -o filenames 2>/dev/null; mapfile -t -O "${#COMPREPLY[@]}" COMPREPLY < <(compgen -f -- "$word") ;;
            :folders) compopt -o filenames 2>/dev/null; mapfile -t -O "${#COMPREPLY[@]}" COMPREPLY < <(compgen -d -- "$word") ;;
            *) COMPREPLY+=("$(printf %q "$line")") ;;
        esac
    done
}
complete -F _brv brv
