# doxygen.awk - shows Doxygen the plain comments of a header: what stands in front of a declaration
# or behind one documents it, the opening comment the file, an indented line stands as it is, and
# of several declarations without a blank line between them each gets the comment of the first.
# In the page of log lines it keeps Doxygen from reading the texts.
BEGIN { RS = ""; FS = "\n" }

FILENAME ~ /\.md$/ {
  for (i = 1; i <= NF; ++i) print $i ~ /^- [0-9] `/ ? item($i) : $i
  print ""
  next
}

{
  comment = 0
  while ($(comment + 1) ~ /^ *\/\//) ++comment
  shared = !/class |enum |struct |"C" \{/
  describe(1, comment)
  for (i = comment + 1; i <= NF; ++i) {
    if ($i ~ /^ *\/\/ /) {
      comment = i
      while ($(i + 1) ~ /^ *\/\//) ++i
      describe(comment, i)
      shared = 0
    } else {
      code($i)
      if (shared && $i ~ /;( *\/\/.*)?$/ && $(i + 1) !~ /^ *\/\// && i < NF) describe(1, comment)
    }
  }
  print ""
}

function describe(from, to, each, text, verbatim) {
  if (NR == 1) print "/// \\file"
  for (each = from; each <= to; ++each) {
    text = $each
    sub(/^ *\/\/ ?/, "", text)
    if (NR == 1 && each == 1) sub(/^[^ ]* - /, "", text)
    if (text ~ /^  / && !verbatim || text ~ /^[^ ]/ && verbatim) {
      print "/// ~~~"
      verbatim = !verbatim
    }
    if (text ~ /^(Requires|Fails|Owns|Example): /) print "///"
    print "/// " (verbatim ? text : escaped(text))
  }
  if (verbatim) print "/// ~~~"
}

function item(line, end, text) {
  end = index(line, "`: ")
  text = escaped(substr(line, 1, end))
  gsub(/::/, "\\::", text)
  return text substr(line, end + 1)
}

function code(text, at) {
  at = match(text, /([;,{]|= [0-9]+) *\/\/ [^N]/) ? index(text, "// ") : 0
  print at ? substr(text, 1, at - 1) "///< " escaped(substr(text, at + 3)) : text
}

# Nothing in the words is a command or a mark; what stands between two backticks is code.
function escaped(text, out) {
  gsub(/[\\@#%&<>"*|]/, "\\\\&", text)
  gsub(/\\"\\\*\\"/, "\\\"*\\\"", text)
  gsub(/__/, "\\_\\_", text)
  while (match(text, /`[^`]*`/)) {
    out = out substr(text, 1, RSTART - 1) "<tt>" substr(text, RSTART + 1, RLENGTH - 2) "</tt>"
    text = substr(text, RSTART + RLENGTH)
  }
  return out text
}
