"""Line charts as SVG, drawn by gnuplot. Every colour contrasts about equally with white and with black."""

import re
import subprocess

GREY = "#797979"
LINES = ('"#3079d0" lw 2', '"#3079d0" dt 4', '"#bf6510"', '"#bf6510" dt 2', '"#2c8a4b"')
LAST_LINE = f'"{GREY}" dt 3'
SCRIPT = f"""
$data << END
%s
END
set terminal svg size 760,440 font "sans-serif,14" linewidth 2
set logscale xy 2
set border 3 linecolor rgb "{GREY}"
set grid linecolor rgb "{GREY}" linewidth 0.3
set tics nomirror
set xtics (%s)
set xrange [%g:%g]
set xlabel "%s" textcolor rgb "{GREY}"
set ylabel "%s" textcolor rgb "{GREY}"
set key top left reverse Left textcolor rgb "{GREY}"
plot %s
"""


def draw(path, x_label, y_label, ticks, lines):
    """Draws lines (name: one value per tick) into a file; both axes are logarithmic."""
    rows = (" ".join(f"{number:.4g}" for number in row) for row in zip(ticks, *lines.values()))
    styles = zip(lines, (*LINES[:len(lines) - 1], LAST_LINE))
    plots = (f'$data using 1:{n} with lines lc rgb {style} title "{name}"' for n, (name, style) in enumerate(styles, 2))
    script = SCRIPT % ("\n".join(rows), ", ".join(map(str, ticks)), ticks[0], ticks[-1] * 1.001, x_label, y_label,
                       ", ".join(plots))
    svg = subprocess.run(["gnuplot"], input=script, text=True, check=True, capture_output=True).stdout
    path.write_text(re.sub(r"<g [^>]*>\n</g>\n", "", svg))  # empty groups make up a third of it
