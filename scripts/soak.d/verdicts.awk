# Compares what the supervisor tells with the kills: each is seen exactly once, its module comes back, and nobody else is
# called dead. To be given the kills, and then what was said. Exits with 1 when that is not so.
{ sub(/\r$/, "") }
NR == FNR { killed[$1, $2] = 1; kills++; next }
$1 == "supervisor:" && $4 ~ /^[0-9]+$/ {
    module = $3; process = $4; state = $5
    if (state == "dead" && (before[module] != "dead" || lastProcess[module] != process)) {
        deaths++
        if (++seen[module, process] > 1 || !((module, process) in killed)) {
            real = $6 ~ /^(ended|crashed)/ && seen[module, process] == 1 # there was a death, but not by a kill of ours
            real ? strangeDeaths++ : falseAlarms++
            print "soak: " (real ? "died by itself or by somebody else: " : "false alarm: ") $0
        } else {
            away[module] = process
        }
    } else if (state == "alive" && module in away && process != away[module]) {
        back++
        delete away[module]
    } else if (state == "failed" && before[module] != "failed") {
        failures++
        print "soak: " $0
    }
    before[module] = state
    lastProcess[module] = process
}
END {
    for (kill in killed) {
        split(kill, words, SUBSEP)
        if (!(kill in seen)) {
            missed++
            print "soak: not seen: the death of " words[1] ", process " words[2]
        }
    }
    for (module in away) {
        print "soak: has not come back: " module
        lost++
    }
    printf "soak: %d kills, %d deaths seen, %d came back, %d missed, %d false alarms, %d other deaths\n",
        kills, deaths, back, missed, falseAlarms, strangeDeaths
    exit kills == 0 || strangeDeaths + missed + falseAlarms + failures + lost > 0
}
