# The recording: its place, what is in it, pictures of it. Part of scripts/demo.

# keepRecording: moves the recording to its place, tells what is in it and draws it.
keepRecording() {
    local name=run title
    [ -z "$keep" ] || name=$(date +run-%Y-%m-%d_%Hh%Mm%S)
    mkdir -p "$folder"
    mv -f "$notes/run.csv" "$folder/$name.csv"
    echo
    if "${runner[@]}" "$build/bin/summary$suffix" "$drive$folder/$name.csv" </dev/null >"$notes/summary"; then
        # Of five vehicles one shows what there is.
        sed -e 's/\r$//' -e '/^summary:   traffic [2-4] /d' -e 's/^summary: /demo: /' -e 's/^\(demo:   \)traffic 5 lane .*/\1.../' \
            -e '/^demo:   traffic 5 /d' "$notes/summary"
        checkScene
    else
        fail "the recording cannot be read"
    fi
    title=$(sed -n 's/^display: the vehicle drives \([^ ]*\) .* at \(.*\) x real time$/\1 at \2 x real time/p' "$notes/said" | head -n 1)
    rm -f "$folder/$name.svg" "$folder/$name-road.svg"
    if ! command -v gnuplot >/dev/null; then
        echo "demo: no pictures: gnuplot is not installed"
        return
    fi
    draw speed "$folder/$name.svg" "Speed of the vehicle${title:+: $title}"
    local number='\([0-9.e+]*\)' road sees
    read -ra road < <(sed -n "s/^traffic: .* straights of $number m, .* radius $number m, lanes of $number m\$/\\1 \\2 \\3/p" "$notes/said" | head -n 1) || true
    read -ra sees < <(sed -n "s/^sensor: .* sees $number m far and $number degrees wide\$/\\1 \\2/p" "$notes/said" | head -n 1) || true
    if [ "$sensorRows" -gt 0 ] && [ ${#road[@]} -eq 3 ] && [ ${#sees[@]} -eq 2 ]; then
        draw road "$folder/$name-road.svg" "${road[@]}" "${sees[@]}" "Road and traffic${title:+: $title}"
    fi
}

# draw SCRIPT PICTURE ARGUMENT...: from the recording.
draw() {
    if gnuplot -c "$root/examples/suite/$1.gp" "$folder/$name.csv" "${@:2}"; then
        echo "demo: picture: $2"
    else
        fail "gnuplot has drawn no picture of the $1"
    fi
}

# checkScene: whether traffic and sensor have done something, and what the sensor says of each vehicle is where this is.
sensorRows=0
checkScene() {
    local frames off
    frames=$(sed -n 's/^summary: traffic: \([0-9]*\) frames; .*/\1/p' "$notes/summary")
    sensorRows=$(sed -n 's/^summary: sensor: told something in \([0-9]*\) rows, .*/\1/p' "$notes/summary")
    sensorRows=${sensorRows:-0}
    off=$(tr -d '\r' <"$notes/summary" | sed -n 's/^summary: sensor: .* by at most \([0-9.]*\) mm$/\1/p')
    if ! grep -q '^summary:   traffic 5 in view ' "$notes/summary"; then
        fail "the recording has no columns of traffic and sensor"
    elif [ "$stopped" = no ] && lasts 3 && { [ "$sensorRows" -eq 0 ] || [ "${frames:-0}" -eq 0 ]; }; then
        fail "traffic or sensor have told nothing"
    elif [ "$sensorRows" -gt 0 ] && ! awk -v off="$off" 'BEGIN { exit !(off != "" && off <= 1) }'; then
        fail "the sensor does not have the vehicles where they are"
    fi
}
