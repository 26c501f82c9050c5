# gnuplot -c speed.gp RECORDING PICTURE [TITLE]: draws the speed over time of a recording (CSV) as a picture (SVG).
set terminal svg size 1000,520 background rgb 'white' font 'DejaVu Sans,Helvetica,Arial,sans-serif,15' enhanced
set output ARG2
set datafile separator ','
set datafile columnheaders

set title (strlen(ARG3) > 0 ? ARG3 : 'Speed of the vehicle') font ',19' noenhanced
set xlabel 'time since the recording began [s]'
set ylabel 'speed [km/h]' offset -0.5,0
set bmargin 6.5
set key at screen 0.53,0.02 bottom center horizontal maxrows 1 samplen 2.5 width -2
set border 3 lc rgb '#555555'
set tics nomirror out scale 0.6
set mxtics 2
set grid xtics ytics lt 1 lw 1 lc rgb '#dddddd'
set xrange [0:*] noextend
set yrange [-1.5:*] # who stands still shows above the axis
set ytics 0,10
set mytics 2
set lmargin 9
set rmargin 4

stale = 0.3 # seconds without news after which a vehicle is not just late
hole = 0.5 # seconds between two rows of which some are missing

# Lines end where rows are missing, and what a vehicle that fell silent told last is not its speed.
before = 0
isHole(now) = (missing = now - before > hole, before = now, missing)
ownTime = 0
isRestart(now) = (fell = now < ownTime, ownTime = now, fell)
cycle = '#a8a8a8'; vehicle = '#1660b0'; silent = '#d9541e'
plot before = 0, ARG1 \
    using (column('time s')):(isHole(column('time s')) || column('age s') > stale ? NaN : 3.6 * column('target m/s')) \
        with lines lw 5 lc rgb cycle title 'driving cycle', \
    before = 0, '' \
    using (column('time s')):(isHole(column('time s')) || column('age s') > stale ? NaN : 3.6 * column('speed m/s')) \
        with lines lw 2 lc rgb vehicle title 'vehicle', \
    before = 0, '' \
    using (column('time s')):(isHole(column('time s')) || column('age s') <= stale ? NaN : 3.6 * column('speed m/s')) \
        with lines lw 3 dt (4,3) lc rgb silent title 'no news: its last speed', \
    ownTime = 0, '' \
    using (column('time s')):(isRestart(column('vehicle time s')) ? 0 : NaN) \
        with points pt 9 ps 0.9 lc rgb silent title 'vehicle started again'
