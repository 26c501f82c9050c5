# The crash on purpose. Part of scripts/demo.

# planCrash: the vehicle's flags for it, when there is time for it before the vehicle is killed; dumps go to build/<system>/demo.
planCrash() {
    unset STUDIO_DISABLE_DUMP STUDIO_PROCESS_DUMP_LEVEL
    mkdir -p "$folder/dumps"
    export STUDIO_DUMP_DIR="$drive$folder/dumps"
    [ -n "$keep" ] || find "$folder/dumps" -name '*.dmp' -mmin +60 -delete # those of a demo that still runs stay
    if [ "$crash" != none ] && [ "$configuration" != REFLECTIVE ] && lasts 8; then
        crashes=planned
        modules+=" -crash $crash -crashAfter 2"
    fi
}

# checkCrash: shows the dump that the supervisor has named, and what it tells.
checkCrash() {
    local dump tool crashed place
    dump=$(sed -n 's/^supervisor: .* vehicle  *[0-9]* .* crashed, dump \(.*\.dmp\);.*/\1/p' "$notes/said" | head -n 1)
    if [ -z "$dump" ]; then
        [ "$stopped" = yes ] || fail "the supervisor has named no dump of the vehicle's crash"
        return
    fi
    dump=${dump#"$drive"}
    dump=${dump//\\//}
    echo "demo: the vehicle crashed: $dump"
    # It is where the library's build has found it.
    tool=$(sed -n 's/^Breakpad_STACKWALK:[A-Z]*=//p' "$build/CMakeCache.txt")
    if [ ! -x "$tool" ]; then
        echo "demo: minidump_stackwalk is not there, which would tell what crashed"
        return
    fi
    "$tool" -m "$dump" >"$notes/crash" 2>/dev/null || true
    IFS='|' read -r crashed place < <(awk -F '|' '
        $1 == "Crash" { what = $2 " at " $3; thread = $4 }
        what != "" && $1 == thread && $2 == "0" { print what "|thread " thread ", in " $3 " at " $7; exit }' "$notes/crash") || true
    if [ -n "${place:-}" ]; then
        echo "demo:   what:  $crashed"
        echo "demo:   where: $place"
    else
        fail "minidump_stackwalk does not find the crash in the dump"
    fi
}
