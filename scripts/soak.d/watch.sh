# How the modules are, as the supervisor tells it, and what their processes have. Part of scripts/soak.

# now: in milliseconds.
now() {
    echo $((${EPOCHREALTIME/[.,]/} / 1000))
}

# sleepUntil MOMENT: or until a signal comes.
sleepUntil() {
    local rest=$(($1 - $(now)))
    [ "$rest" -le 0 ] || sleep "$((rest / 1000)).$(printf %03d $((rest % 1000)))" || true
}

# lastRow MODULE: its process and its state, from the supervisor's last row about it.
lastRow() {
    tail -n 400 "$said" | awk -v module="$1" '$1 == "supervisor:" && $3 == module { process = $4; state = $5 }
        END { sub(/\r/, "", state); print process, state }'
}

processOf() {
    local row
    row=$(lastRow "$1")
    echo "${row% *}"
}

# await WHAT CONDITION ARGUMENT...: false, and a word about it, when the condition does not come true within a minute.
await() {
    local tenth
    for ((tenth = 0; tenth < 600; tenth++)); do
        if "${@:2}"; then
            return 0
        fi
        [ "$stopped" = no ] || return 1
        kill -0 "$supervisor" 2>/dev/null || break
        sleep 0.1 || true
    done
    tail -n 20 "$said"
    cat "$folder/errors.txt"
    fail "$1 within a minute"
    return 1
}

allAlive() {
    local module
    for module in "${modules[@]}"; do
        [[ "$(lastRow "$module")" = *" alive" ]] || return 1
    done
}

awaitAll() {
    await "at $1 not all were alive" allAlive
}

isDead() {
    [[ "$(lastRow "$1")" != "$2 alive" ]]
}

awaitDeath() {
    await "the death of the $1, process $2, was not seen" isDead "$@"
}

startFigures() {
    echo "seconds,kills,module,resident KiB,threads,descriptors,named objects" >"$figures"
}

# systemProcesses: "MODULE NUMBER" of each, by the number that this system has for it: Wine's programs have two.
systemProcesses() {
    local module process words name
    if [ "$system" = linux ]; then
        echo "supervisor $supervisor"
        for module in "${modules[@]}"; do
            echo "$module $(processOf "$module")"
        done
        return
    fi
    for process in /proc/[0-9]*; do
        { grep -qzxF "STUDIO_INSTANCE=$STUDIO_INSTANCE" "$process/environ" && mapfile -d '' words <"$process/cmdline"; } 2>/dev/null || continue
        name=$(sed -n 's/\.exe$//p' "$process/comm" 2>/dev/null) || continue
        [[ "$name" != supervisor && " ${words[*]} " =~ " -p "([a-z]+)" " ]] && name=${BASH_REMATCH[1]}
        case " supervisor ${modules[*]} " in
            *" $name "*) echo "$name ${process#/proc/}" ;;
        esac
    done
    for process in /proc/[0-9]*; do # of this build folder
        if [ "$(cat "$process/comm" 2>/dev/null)" = wineserver64 ] && grep -qzxF "WINEPREFIX=$build/wine-prefix" "$process/environ" 2>/dev/null; then
            echo "wineserver ${process#/proc/}"
        fi
    done
}

# takeFigures SECONDS KILLS: a line for each process, and one for the names.
takeFigures() {
    local module process objects
    objects=$("${runner[@]}" "$build/bin/brv$suffix" ipc list --json </dev/null 2>>"$folder/errors.txt" \
        | awk '/"kind":/ { ++count } /"left_over":/ { count += $2 } END { print count + 0 }') \
        || fail "brv cannot list the named objects after $1 s; why is in $folder/errors.txt"
    systemProcesses | while read -r module process; do
        [ -r "/proc/$process/status" ] || continue
        printf '%s,%s,%s,%s,%s,%s\n' "$1" "$2" "$module" \
            "$(awk '/^VmRSS:/ { memory = $2 } /^Threads:/ { threads = $2 } END { print memory "," threads }' "/proc/$process/status")" \
            "$(ls "/proc/$process/fd" 2>/dev/null | wc -l)" "$objects"
    done >>"$figures"
}
