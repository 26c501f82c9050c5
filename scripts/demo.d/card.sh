# The software card, for the configuration REFLECTIVE. Part of scripts/demo.

# card ARGUMENT...: the program that looks after the software card's rings.
card() {
    "${runner[@]}" "$build/bin/rfm2g-card$suffix" "$@" </dev/null
}

# makeCard: a ring and a configuration of this run alone, and on the card the version of the vehicle's segment.
makeCard() {
    export RFM2G_RING=demo RFM2G_FOLDER="$drive$notes/rings" RFM2G_NODE=3 # the supervisor's own
    if [ "$system" = windows ]; then
        export WINEPATH="$drive$build/drivers/rfm2g"
        WINEPATH=${WINEPATH//\//\\}
    else
        export LD_LIBRARY_PATH="$build/drivers/rfm2g${LD_LIBRARY_PATH:+:$LD_LIBRARY_PATH}"
    fi
    mkdir -m 700 "$notes/rings"
    cp -r "$root/examples/suite/config/REFLECTIVE" "$notes"
    local user
    user=$(id -un | sed 's/[\\/&]/\\&/g')
    sed -i "s/@USER@/$user/" "$notes/REFLECTIVE/shm.cfg"
    modules=$(sed -n 's/^modules *= *//p' "$notes/REFLECTIVE/Process.xfg") # with their nodes; the vehicle is the last
    export LOCAL_STUDIO_PATH="$drive$notes" # its list of configurations goes before that of the suite
    printf '[Common]\nREFLECTIVE = %s\n' "$drive$notes/REFLECTIVE" >"$notes/configurations.cfg"

    # A module that finds no version tells all that it takes to write it.
    "${runner[@]}" "$build/bin/display$suffix" "${choice[@]}" -wait 0 >"$notes/trial" 2>&1 </dev/null || true
    [ "$stopped" = no ] || exit 130
    local segment version size said
    segment=$(sed -n 's/^\[SHM VMIC\] SHM \(Vehicle_[^ ]*\) size: .*/\1/p' "$notes/trial")
    size=$(sed -n 's/^\[SHM VMIC\] SHM Vehicle_.* size: \([0-9]*\) bytes.*/\1/p' "$notes/trial")
    version=$(sed -n 's/^Creating composite shared memory "Vehicle_.*" v\([0-9]*\).*/\1/p' "$notes/trial")
    if [ -z "$segment" ] || [ -z "$size" ] || [ -z "$version" ]; then
        cat "$notes/trial" >&2
        echo "demo: the vehicle's segment does not live on the card" >&2
        exit 1
    fi
    said=$(card version "$drive$notes/REFLECTIVE/shm.cfg" "$segment" "$version" "$size" | tr -d '\r') || exit 1
    echo "demo: $said"
}

# frames: the column of this name in the display's lines.
frames() {
    awk '$1 == "display:" && NF == 8 && $2 ~ /^[0-9.]+$/ { print $7 }' "$notes/said"
}

# lookAtSilence: switches the fault on and off and looks what the display makes of it, one step after the other.
lookAtSilence() {
    local shown=() last
    [[ "$silence" =~ ^(planned|on|over)$ ]] || return 0
    mapfile -t shown < <(frames)
    [ ${#shown[@]} -gt 0 ] || return 0
    last=${shown[-1]}
    case "$silence" in
        planned)
            echo "demo: the vehicle's node falls silent: rfm2g-card fault silent 1"
            silence=on before=${#shown[@]} # also for a signal that comes meanwhile
            card fault silent 1 >/dev/null || true # a failure shows in the picture
            [ "$stopped" = no ] || card fault silent 1 off >/dev/null || true ;;
        on)
            if [ $((${#shown[@]} - before)) -ge 2 ] && [ "$last" = "${shown[-2]}" ]; then
                echo "demo: the display's picture stands still at frame $last: rfm2g-card fault silent 1 off"
                card fault silent 1 off >/dev/null || true
                silence=over still=$last
            fi ;;
        over)
            if [ "$last" != "$still" ]; then
                echo "demo: the display's picture goes on"
                silence=seen
            fi ;;
    esac
}

# checkCard: what was exchanged over it, and takes it away.
checkCard() {
    local removal
    sed 's/^/demo: /' "$notes/blocks"
    awk '{ refreshes += $6; failures += $6 * $8 / 100 }
        END { printf "demo: %d refreshes of parts from the card, %d of them failed\n", refreshes, failures + 0.5 }' "$notes/blocks"
    if [ "$stopped" = no ] && [ ! -s "$notes/blocks" ]; then
        fail "nothing was exchanged over the card"
    fi
    if [ "$stopped" = no ] && [ "$silence" != none ] && [ "$silence" != seen ]; then
        fail "the silence of the vehicle's node was not seen to its end"
    fi
    if removal=$(card remove "$RFM2G_RING" 2>&1 | tr -d '\r'); then
        echo "demo: $removal"
    else
        fail "$removal"
    fi
}
