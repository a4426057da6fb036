# bench.jq - tables out of runs of siputility_bench, as lines of fields between tabs.

def hundredths: (. * 100 | round) as $n | "\($n / 100 | floor).\("0\($n % 100)"[-2:])";
def short: if . < 100 then (. * 10 | round) / 10 else round end;

# The medians of a run, by name.
def medians:
  [.benchmarks[] | select(.aggregate_name == "median") | .name |= split("/iterations")[0]] |
  sort_by(.name);

# One line for each operation; $earlier, another run or none, adds a column.
def operations($earlier):
  ($earlier // {benchmarks: []} | medians | map({key: .name, value: .multiple}) | from_entries) as $before |
  def change: $before[.name] as $was |
    if $was then "\($was | hundredths) (\((.multiple / $was - 1) * 100 | round)%)" else "-" end;
  (["operation", "ns", "x floor", "allocations", "MB/s"] + if $earlier then ["before"] else [] end),
  (medians[] | [.name, (.ns | short), (.multiple | hundredths), .allocations,
    (.bytes / .ns * 1000 | round)] + if $earlier then [change] else [] end);

# One line for each operation on growing text: nanoseconds for a byte, and the steepest rise from
# one length to a greater one.
def growth:
  ["operation", "1 KiB", "16 KiB", "256 KiB", "1 MiB", "rise"],
  (medians | map(select(.name | startswith("BM_Growth_"))) | group_by(.name | split("/")[0])[] |
    (sort_by(.bytes) | map(.ns / .bytes)) as $costs |
    [(.[0].name | split("/")[0] | ltrimstr("BM_Growth_"))] + ($costs | map(hundredths)) +
    [[range($costs | length) as $i | range($i + 1) as $j | $costs[$i] / $costs[$j]] | max | hundredths]);

# The rows that have a goal: ours, and the floor's, as name, nanoseconds and allocations. The goals
# are multiples of the floor of another machine and scanner, whose nanoseconds are the last argument.
def rows:
  (medians | map({key: .name, value: .}) | from_entries) as $of |
  def row($row; $what; $name; $floor; $goal; $ns): $of[$name] as $own | $of[$floor] as $least |
    [$row, $what, "\($own.floor_ns | round) / \($least.allocations)",
      "\($own.ns | round) / \($own.allocations)", ($own.multiple | hundredths), "\($goal) / \($goal * $ns | round)"];
  def other($what; $name; $goal): row("-"; $what; $name; "BM_Floor_Parse/a"; $goal; 231);
  ["row", "what", "floor, ns / allocations", "library, ns / allocations", "multiple", "goal, multiple / ns"],
  row("a"; "name-addr, 62 bytes"; "BM_SipAddress_Parse/a"; "BM_Floor_Parse/a"; 1.3; 231),
  row("b"; "addr-spec, 36 bytes"; "BM_SipAddress_Parse/b"; "BM_Floor_Parse/b"; 1.4; 150),
  row("c"; "IMS name-addr, 119 bytes"; "BM_SipAddress_Parse/c"; "BM_Floor_Parse/c"; 1.3; 277),
  row("d"; "Contact with 4 parameters, 120 bytes, as `SipHeader`"; "BM_SipHeader_Parse/d"; "BM_Floor_Parse/d"; 1.1; 408),
  row("dd"; "d, then `SipAddress` over the value"; "BM_SipHeader_ParseAndAddress/dd"; "BM_Floor_Parse/d"; 1.8; 408),
  row("ga"; "a, one parameter set, written"; "BM_SipAddress_Edit/ga"; "BM_Floor_Edit/ga"; 1.5; 271),
  row("gd"; "d, one parameter set, written"; "BM_SipHeader_Edit/gd"; "BM_Floor_Edit/gd"; 1.2; 442),
  row("h"; "Route with 20 name-addrs, 1,078 bytes, as `SipHeader`"; "BM_SipHeader_Parse/h"; "BM_Floor_Parse/h"; 0.5; 3445),
  other("Via, 74 bytes, as `SipHeader`"; "BM_SipHeader_Parse/via"; 1.45),
  other("From with tag, 47 bytes"; "BM_SipHeader_Parse/from"; 1.36),
  other("WWW-Authenticate with 5 parameters, 151 bytes"; "BM_SipHeader_Parse/challenge"; 2.4),
  other("tel URI with extension and context"; "BM_TelAddress_Parse/context"; 1.2),
  other("multipart body of 2 parts, 555 bytes"; "BM_MultipartBody_Parse/two"; 5.7),
  other("IMS INVITE, 1,400 bytes: 22 fields and the body"; "BM_SipHeader_ParseMessage/invite"; 26),
  other("`CompareSIPURI` of two texts"; "BM_Utils_CompareSIPURI/names"; 2.4);
