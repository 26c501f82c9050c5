# Tells of each process in the figures of a soak whether it has grown, by the rules in scripts/soak. Exits with 1 when one has.
BEGIN { FS = ","; limit = 256 }
FNR == 1 { next }
{
    if (!($3 in count)) {
        names[++known] = $3
    }
    number = ++count[$3]
    at[$3, number] = $1
    for (column = 4; column <= 7; column++) {
        value[$3, number, column] = $column
    }
    end = $1
}

# The least between two moments.
function least(name, column, from, to,   number, found) {
    found = ""
    for (number = 1; number <= count[name]; number++) {
        if (at[name, number] >= from && at[name, number] <= to && (found == "" || value[name, number, column] < found)) {
            found = value[name, number, column] + 0
        }
    }
    return found
}

# By which a line of least squares rises over the second half.
function rise(name,   number, n, x, y, sx, sy, sxx, sxy) {
    n = sx = sy = sxx = sxy = 0
    for (number = 1; number <= count[name]; number++) {
        x = at[name, number]
        y = value[name, number, 4]
        if (x >= end / 2) {
            ++n; sx += x; sy += y; sxx += x * x; sxy += x * y
        }
    }
    return n < 3 ? "" : (n * sxy - sx * sy) / (n * sxx - sx * sx) * end / 2
}

function grew(name, column,   early, late) {
    early = least(name, column, end / 4, end / 2)
    late = least(name, column, end * 3 / 4, end)
    change[column] = early == late ? early : early " to " late
    return early == "" || late == "" || late > early
}

END {
    printf "soak: %-11s %12s %12s %10s %12s %14s\n", "process", "first MiB", "last MiB", "rise KiB", "threads", "descriptors"
    for (i = 1; i <= known; i++) {
        name = names[i]
        climb = rise(name)
        bad = (climb == "" || climb > limit) + grew(name, 5) + grew(name, 6)
        printf "soak: %-11s %12.2f %12.2f %10.0f %12s %14s  %s\n", name, value[name, 1, 4] / 1024, value[name, count[name], 4] / 1024,
            climb, change[5], change[6], bad ? "GROWS" : "flat"
        worst += bad
    }
    none = known == 0 || value[names[1], count[names[1]], 7] + 0 == 0 # nobody has seen those that there must be
    bad = none || grew(names[1], 7)
    printf "soak: named objects: %s, %s; %d looks at all of it\n", change[7], none ? "NOT SEEN" : bad ? "GROW" : "flat", count[names[1]]
    exit worst + bad > 0
}
