# The medians of a run, by name, as lines of fields between tabs. $earlier has another run, or none.
def hundredths: (. * 100 | round) as $n | "\($n / 100 | floor).\("0\($n % 100)"[-2:])";
def medians: [.benchmarks[] | select(.aggregate_name == "median") | .name |= split("/iterations")[0]];
def fields: [
  .name,
  (.ns | if . < 100 then (. * 10 | round) / 10 else round end),
  (.multiple | hundredths),
  .allocations,
  (.bytes / .ns * 1000 | round)
];

($earlier[0] // {benchmarks: []} | medians | map({key: .name, value: .multiple}) | from_entries) as $before |
def change: $before[.name] as $was |
  if $was then "\($was | hundredths) (\((.multiple / $was - 1) * 100 | round)%)" else "-" end;
(["operation", "ns", "x floor", "allocations", "MB/s"] + if $earlier[0] then ["before"] else [] end),
(medians | sort_by(.name)[] | fields + if $earlier[0] then [change] else [] end) | @tsv
