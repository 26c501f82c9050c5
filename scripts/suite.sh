# What scripts/demo and scripts/soak have in common: the suite's programs, how they run, and what they leave. To be sourced
# with the script's name in `me`, and `root`, `system` and `build`, the folder of that system's build.

# buildPrograms TARGET...: what the build says is of interest only when it fails.
buildPrograms() {
    local log="$build/$me-build.log"
    "$root/scripts/setup" "$system"
    echo "$me: building the modules for $system (about a minute when new)"
    mkdir -p "$build"
    exec 9>"$build/demo-build.lock" # two at once build one after the other
    flock 9
    if ! { cmake --preset "$system" && cmake --build --preset "$system" --target "$@"; } >"$log" 2>&1; then
        tail -n 40 "$log" >&2
        echo "$me: the build failed; all of it is in $log" >&2
        exit 1
    fi
    exec 9>&-
}

# choosePrograms: names of this run alone, and on Linux a name space of its own, so that it shows what is left behind; in
# `runner`, `suffix` and `drive` what stands before a program, behind it, and before paths; in `stopSignal` what ends a
# supervisor well.
choosePrograms() {
    export STUDIO_INSTANCE="$me-$$-" STUDIO_IPC_NAMESPACE="brvUtils-$me-$$"
    namespace="/dev/shm/$STUDIO_IPC_NAMESPACE"
    if [ "$system" = windows ]; then
        stopSignal=INT # a Ctrl-C; Wine ends a program at once for the others
        suffix=.exe
        drive=Z:
        runner=("$root/cmake/wine-run" "$build")
        if [ ! -d "$build/wine-prefix" ]; then
            "${runner[@]}" --start >/dev/null 2>&1
            "${runner[@]}" --stop >/dev/null 2>&1
        fi
    else
        stopSignal=TERM
        suffix=
        drive=
        runner=()
    fi
    export STUDIO_PATH="$drive$build/bin/suite"
}

# killProcess NUMBER: at once, without a chance to clean up.
killProcess() {
    if [ "$system" = windows ]; then
        "${runner[@]}" taskkill /F /PID "$1" >/dev/null 2>&1 || true
    else
        kill -KILL "$1" 2>/dev/null || true
    fi
}

# checkNothingLeft: of the named objects, when all is over. Calls `fail` with what is wrong.
checkNothingLeft() {
    if [ "$system" = windows ]; then
        # The server ends by itself soon after the last program, and the objects with it. One that stays is serving others.
        if WINEPREFIX="$build/wine-prefix" timeout 10 wineserver -w; then
            echo "$me: nothing is left, Wine's server has ended"
        else
            echo "$me: Wine's server still runs: other programs use it"
        fi
    elif [ ! -d "$namespace" ]; then
        fail "no shared memory was used"
    elif rmdir "$namespace" 2>/dev/null; then
        echo "$me: nothing is left in the shared-memory file system"
    else
        fail "left behind in $namespace:"
        ls -l "$namespace"
    fi
}
