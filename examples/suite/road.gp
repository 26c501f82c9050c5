# gnuplot -c road.gp RECORDING PICTURE STRAIGHT RADIUS LANEWIDTH RANGE VIEW [TITLE]: draws a moment of a recording (CSV) as a
# picture (SVG): the road from above, and what the sensor has in its own frame. It is the last moment at which the sensor sees
# two vehicles or more, where there is none one vehicle, or else the end. The road is that of "Process.xfg", in metres, as is
# the range of the sensor; its field of view in degrees.
recording = ARG1
straight = ARG3 + 0.0; radius = ARG4 + 0.0; laneWidth = ARG5 + 0.0; range = ARG6 + 0.0; view = ARG7 * pi / 180
set datafile separator ','
set datafile columnheaders
count = 5
name(i, what) = sprintf('traffic %d %s', i, what)
minimum(a, b) = (a < b ? a : b)
maximum(a, b) = (a > b ? a : b)

# The moment, and the lanes that are in use.
most = -1; row = -1; leftmost = 0; rightmost = 0
choose(n, now) = (n >= most ? (most = n, row = now, 1) : 0)
widen(lane) = (leftmost = maximum(lane, leftmost), rightmost = minimum(lane, rightmost), 0)
stats recording using (column('sensor frame') > 0 ? choose(minimum(2, sum [i = 1:count] column(name(i, 'in view'))), column('row')) \
    + sum [i = 1:count] widen(column(name(i, 'lane'))) : 0) nooutput
if (row < 0) { exit error 'the recording has nothing of a sensor' }

# What the recording has of it.
array X[count]; array Y[count]; array H[count]; array AHEAD[count]; array LEFT[count]
array DISTANCE[count]; array BEARING[count]; array SEEN[count]
take(i) = (X[i] = column(name(i, 'x m')), Y[i] = column(name(i, 'y m')), H[i] = column(name(i, 'heading rad')), \
    AHEAD[i] = column(name(i, 'seen x m')), LEFT[i] = column(name(i, 'seen y m')), DISTANCE[i] = column(name(i, 'seen distance m')), \
    BEARING[i] = column(name(i, 'seen bearing rad')), SEEN[i] = column(name(i, 'in view')), 0)
stats recording using (column('row') != row ? 0 : (moment = column('time s'), frame = column('traffic frame'), \
    egoX = column('ego x m'), egoY = column('ego y m'), egoH = column('ego heading rad'), \
    sensorX = column('sensor x m'), sensorY = column('sensor y m'), sensorH = column('sensor heading rad'), \
    sum [i = 1:count] take(i))) nooutput

# Where a place along the road is, so many metres to the left of its middle line.
half = straight + pi * radius
along(s) = (s < half ? s : s - half)
side(s) = (s < half ? 1 : -1)
roadX(s, gap) = side(s) * (along(s) <= straight ? along(s) - straight / 2 : straight / 2 + (radius - gap) * sin((along(s) - straight) / radius))
roadY(s, gap) = -side(s) * (along(s) <= straight ? radius - gap : (radius - gap) * cos((along(s) - straight) / radius))
leftEdge = (leftmost + 0.5) * laneWidth; rightEdge = (rightmost - 0.5) * laneWidth

# The corners of a vehicle, 0 to 4. On large roads it is drawn larger than it is.
cornerX(k, x, h) = x + scale * ((k == 1 || k == 2 ? 2.25 : -2.25) * cos(h) - (k == 2 || k == 3 ? 0.9 : -0.9) * sin(h))
cornerY(k, y, h) = y + scale * ((k == 1 || k == 2 ? 2.25 : -2.25) * sin(h) + (k == 2 || k == 3 ? 0.9 : -0.9) * cos(h))
# The outline of what the sensor sees, 0 to 1.
beamX(part, x, h) = x + (part <= 0 || part >= 1 ? 0 : range * cos(h + view * (part - 0.5)))
beamY(part, y, h) = y + (part <= 0 || part >= 1 ? 0 : range * sin(h + view * (part - 0.5)))

asphalt = '#dcdcdc'; ego = '#1660b0'; visible = '#d9541e'; hidden = '#6b6b6b'; beam = '#f4b400'
colour(i) = (SEEN[i] > 0 ? visible : hidden)
set terminal svg size 1000,1080 background rgb 'white' font 'DejaVu Sans,Helvetica,Arial,sans-serif,15' enhanced
set output ARG2
set multiplot title (strlen(ARG8) > 0 ? ARG8 : 'Road and traffic') . sprintf(', after %.1f s', moment) font ',19' noenhanced
set border 3 lc rgb '#555555'
set tics nomirror out scale 0.6
set grid lt 1 lw 1 lc rgb '#ececec'
set size ratio -1
set samples 800
set key at screen 0.64,0.205 top left Left reverse samplen 1.5 spacing 1.4

# The road. What a vehicle drove during the last two seconds of its own time is a line behind it.
wide = straight / 2 + radius - rightEdge + 0.35 * range
high = radius - rightEdge + 0.35 * range
do for [k = 0:100] { # all of what the sensor sees
    wide = maximum(wide, 1.03 * abs(beamX(k / 100.0, sensorX, sensorH)))
    high = maximum(high, 1.03 * abs(beamY(k / 100.0, sensorY, sensorH)))
}
wide = maximum(wide, 1.9 * high) # as wide as the panel
scale = maximum(1.0, wide / 250)
away = wide / 17
isTail = 0; lastX = 0; lastY = 0
tail(x, y) = (isTail = column('row') <= row && column('traffic frame') > frame - 100 && column('traffic frame') <= frame \
    && abs(x - lastX) + abs(y - lastY) < 60, lastX = x, lastY = y, isTail ? y : NaN)
set lmargin at screen 0.085
set rmargin at screen 0.975
set tmargin at screen 0.955
set bmargin at screen 0.52
set xlabel 'x [m]' offset 0,0.4
set ylabel 'y [m]' offset 1.2,0
set xrange [-wide:wide]
set yrange [-high:high]
set label 1 'ego' at egoX - away * sin(egoH), egoY + away * cos(egoH) center tc rgb ego front
do for [i = 1:count] { # on the right-hand side of the road
    set label 1 + i sprintf('%d', i) at X[i] + away * sin(H[i]), Y[i] - away * cos(H[i]) center tc rgb colour(i) front
}
plot sample [s = 0:2 * half] '+' using (roadX($1, rightEdge)):(roadY($1, rightEdge)) with filledcurves closed fc rgb asphalt notitle, \
    [s = 0:2 * half] '+' using (roadX($1, leftEdge)):(roadY($1, leftEdge)) with filledcurves closed fc rgb 'white' notitle, \
    for [lane = rightmost:leftmost - 1] [s = 0:2 * half] '+' using (roadX($1, (lane + 0.5) * laneWidth)):(roadY($1, (lane + 0.5) * laneWidth)) \
        with lines lw (scale > 1.5 ? 0.5 : 1) dt (8,8) lc rgb 'white' notitle, \
    [p = -0.01:1.01] '+' using (beamX($1, sensorX, sensorH)):(beamY($1, sensorY, sensorH)) with filledcurves closed \
        fc rgb beam fs transparent solid 0.35 noborder notitle, \
    recording using (column('ego x m')):(tail(column('ego x m'), column('ego y m'))) with lines lw 1.5 lc rgb ego notitle, \
    for [i = 1:count] recording using (column(name(i, 'x m'))):(tail(column(name(i, 'x m')), column(name(i, 'y m')))) \
        with lines lw 1.5 lc rgb colour(i) notitle, \
    for [i = 1:count] [k = 0:4:1] '+' using (cornerX($1, X[i], H[i])):(cornerY($1, Y[i], H[i])) with filledcurves closed \
        fc rgb colour(i) fs solid noborder notitle, \
    [k = 0:4:1] '+' using (cornerX($1, egoX, egoH)):(cornerY($1, egoY, egoH)) with filledcurves closed fc rgb ego fs solid noborder notitle, \
    keyentry with boxes fc rgb ego fs solid noborder title 'ego', \
    keyentry with boxes fc rgb visible fs solid noborder title 'the sensor sees it', \
    keyentry with boxes fc rgb hidden fs solid noborder title 'it does not', \
    keyentry with boxes fc rgb beam fs transparent solid 0.35 noborder title 'field of view'

# The frame of the sensor.
unset label
reach = 1.08 * range
aside = 1.08 * maximum(range * (view < pi ? sin(view / 2) : 1), 20)
back = (view < pi ? -0.2 * range : -reach)
scale = maximum(1.0, reach / 130)
set rmargin at screen 0.60
set tmargin at screen 0.455
set bmargin at screen 0.085
set xlabel 'ahead of the sensor [m]'
set ylabel 'to its left [m]' offset 1,0
set xrange [back:reach]
set yrange [-aside:aside]
set key off
set label 1 'vehicle' at screen 0.69,0.42 center tc rgb '#333333'
set label 2 'distance' at screen 0.825,0.42 right tc rgb '#333333'
set label 3 'to the left' at screen 0.94,0.42 right tc rgb '#333333'
inPanel(i) = (AHEAD[i] > 0.9 * back && AHEAD[i] < 0.97 * reach && abs(LEFT[i]) < aside)
inSensorX(x, y) = x * cos(sensorH) + y * sin(sensorH)
inSensorY(x, y) = y * cos(sensorH) - x * sin(sensorH)
do for [i = 1:count] {
    set label 51 + i sprintf('%d', i) at screen 0.69,0.42 - 0.03 * i center tc rgb colour(i)
    set label 11 + i sprintf('%.1f m', DISTANCE[i]) at screen 0.825,0.42 - 0.03 * i right tc rgb colour(i)
    set label 21 + i sprintf('%+.1f°', BEARING[i] * 180 / pi) at screen 0.94,0.42 - 0.03 * i right tc rgb colour(i)
    if (inPanel(i)) {
        set label 31 + i sprintf('%d', i) at AHEAD[i], LEFT[i] center offset 0,0.9 tc rgb colour(i) front
    }
}
plot sample [p = -0.01:1.01] '+' using (beamX($1, 0, 0)):(beamY($1, 0, 0)) with filledcurves closed \
        fc rgb beam fs transparent solid 0.35 noborder notitle, \
    for [i = 1:count] [k = 0:4:1] '+' using (cornerX($1, AHEAD[i], H[i] - sensorH)):(cornerY($1, LEFT[i], H[i] - sensorH)) \
        with filledcurves closed fc rgb colour(i) fs solid noborder notitle, \
    [k = 0:4:1] '+' using (cornerX($1, inSensorX(egoX - sensorX, egoY - sensorY), egoH - sensorH)): \
        (cornerY($1, inSensorY(egoX - sensorX, egoY - sensorY), egoH - sensorH)) with filledcurves closed fc rgb ego fs solid noborder notitle
unset multiplot
