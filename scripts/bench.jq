# The medians of a run, by name, as lines of fields between tabs. $earlier has another run, or none.
def round(digits): pow(10; digits) as $by | (. * $by | floor) / $by;
def medians: [.benchmarks[] | select(.aggregate_name == "median") | .name |= split("/iterations")[0]];
def fields: [
  .name,
  (.ns | if . < 100 then round(1) else round end),
  (.multiple | round(2)),
  .allocations,
  (.bytes / .ns * 1000 | round)
];

($earlier[0] // {benchmarks: []} | medians | map({key: .name, value: .multiple}) | from_entries) as $before |
def change: $before[.name] as $was |
  if $was then "\($was | round(2)) (\((.multiple / $was - 1) * 100 | round)%)" else "-" end;
(["operation", "ns", "x floor", "allocations", "MB/s"] + if $earlier[0] then ["before"] else [] end),
(medians | sort_by(.name)[] | fields + if $earlier[0] then [change] else [] end) | @tsv
