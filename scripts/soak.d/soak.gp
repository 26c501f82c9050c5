# gnuplot -c soak.gp FIGURES PICTURE: what the processes of a soak have over time.
set datafile separator ","
set terminal svg size 1000,1100 font "sans,12" background "white"
set output ARG2
set key outside right
set grid
set datafile missing NaN
names = system("awk -F, 'NR > 1 && !($3 in known) { known[$3] = 1; print $3 }' '".ARG1."'")
at(name) = strcol(3) eq name ? $1 / 60 : NaN
set xlabel "minutes"
set yrange [0:*]
set offsets graph 0, 0, 0.05, 0
set multiplot layout 4,1
set ylabel "resident MiB"
plot for [name in names] ARG1 using (at(name)):($4 / 1024) with linespoints pointsize 0.3 title name
set ylabel "threads"
plot for [name in names] ARG1 using (at(name)):5 with linespoints pointsize 0.3 title name
set ylabel "descriptors"
plot for [name in names] ARG1 using (at(name)):6 with linespoints pointsize 0.3 title name
set ylabel "named objects"
plot ARG1 using ($1 / 60):7 with linespoints pointsize 0.3 title "all"
unset multiplot
