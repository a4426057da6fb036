# growth.awk - draws bench.jq's growth table: bytes of text against nanoseconds for a byte, both
# logarithmic, a line for each operation.
BEGIN {
  FS = "\t"
  split("1024 16384 262144 1048576", size, " ")
  left = 60; top = 20; width = 520; height = 460; low = 0.01; high = 1000
  print "<svg xmlns=\"http://www.w3.org/2000/svg\" viewBox=\"0 0 800 540\" font-family=\"sans-serif\" font-size=\"12\">"
  print "<rect width=\"800\" height=\"540\" fill=\"white\"/>"
  for (cost = low; cost <= high * 1.01; cost *= 10) {
    line(left, y(cost), left + width, y(cost))
    text(left - 6, y(cost) + 4, "end", cost)
  }
  split("1 KiB,16 KiB,256 KiB,1 MiB", label, ",")
  for (i = 1; i <= 4; ++i) {
    line(x(size[i]), top, x(size[i]), top + height)
    text(x(size[i]), top + height + 18, "middle", label[i])
  }
  text(left + width / 2, top + height + 38, "middle", "bytes of text")
  printf "<text transform=\"translate(16 %d) rotate(-90)\" text-anchor=\"middle\">ns for a byte</text>\n", top + height / 2
}
function x(bytes) { return left + width * log(bytes / size[1]) / log(size[4] / size[1]) }
function y(cost) { return top + height * (1 - log(cost / low) / log(high / low)) }
function line(x1, y1, x2, y2) {
  printf "<path d=\"M%.1f %.1fL%.1f %.1f\" stroke=\"#ddd\"/>\n", x1, y1, x2, y2
}
function text(x1, y1, anchor, words) {
  printf "<text x=\"%.1f\" y=\"%.1f\" text-anchor=\"%s\">%s</text>\n", x1, y1, anchor, words
}
NR > 1 {
  colour = sprintf("hsl(%d,70%%,%d%%)", NR * 137 % 360, 35 + NR % 3 * 10)
  path = ""
  for (i = 1; i <= 4; ++i) {
    path = path (i == 1 ? "M" : "L") sprintf("%.1f %.1f", x(size[i]), y($(i + 1) < low ? low : $(i + 1)))
  }
  printf "<path d=\"%s\" fill=\"none\" stroke=\"%s\" stroke-width=\"1.5\"/>\n", path, colour
  printf "<path d=\"M%d %dh16\" stroke=\"%s\" stroke-width=\"3\"/>\n", left + width + 20, top + NR * 17 - 20, colour
  text(left + width + 42, top + NR * 17 - 16, "start", $1)
}
END { print "</svg>" }
