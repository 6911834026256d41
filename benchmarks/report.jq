# SPDX-License-Identifier: MIT
# Makes the table and the bars of scripts/bench from the output of Google Benchmark.
#
# L is log4cpp writing the same lines, ready-made ("bare-..."). The own share of a call is what it costs
# beyond the direct call and L, as a fraction of L.
#
# "extended-..." and "timed-..." are the extended module, its timing lines silent or written.
#
# The figures are medians over the rounds. Within a round, the fastest repetition counts: it's the one
# that the rest of the machine disturbed least.

def median: sort | (.[(length - 1) / 2 | floor] + .[length / 2 | floor]) / 2;

def medians:
  [.rounds[]
   | group_by(.run_name)[]
   | {key: (.[0].run_name | gsub("/(iterations:[0-9]+|repeats:[0-9]+|real_time)"; "")),
      value: (map(.real_time) | min)}]
  | group_by(.key) | map({key: .[0].key, value: (map(.value) | median)}) | from_entries;

def pad($width): tostring | . + (" " * ([$width - length, 0] | max));
def lead($width): tostring | (" " * ([$width - length, 0] | max)) + .;
def fixed($digits):
  if . == null then "-" else
  . as $x | pow(10; $digits) as $scale | ($x | fabs * $scale | round) as $units
  | (if $x < 0 and $units > 0 then "-" else "" end) + ($units / $scale | floor | tostring)
    + (if $digits > 0 then "." + ($units % $scale | tostring | lead($digits) | gsub(" "; "0"))
       else "" end) end;
def time:
  if . == null then "-"
  elif . < 1000 then (fixed(1) + " ns")
  elif . < 1000000 then (. / 1000 | fixed(2) + " us")
  else (. / 1000000 | fixed(2) + " ms") end;

def small: ["DSQueueBuffer", "EventGetData/8", "DSGetBufferInfo/STRING", "DSGetBufferInfo/SIZET",
            "DSGetBufferInfo/PTR", "GCReadPort/4", "GCRegisterEvent+GCUnregisterEvent", "frame"];

def layouts: ["basic", "pattern", "fast"];

# $edition is "" or "extended-".
def share($m; $case; $edition; $layout):
  if $m["call/\($case)/\($edition)\($layout)"] == null then null else
  ($m["call/\($case)/\($edition)\($layout)"] - $m["call/\($case)/direct"])
  / $m["call/\($case)/bare-\($layout)"] - 1 end;

def share($m; $case; $layout): share($m; $case; ""; $layout);

def bar($what; $value; $limit; $digits):
  {what: $what, value: $value, limit: $limit, met: ($value <= $limit),
   text: "\($value | fixed($digits)) (at most \($limit))"};

def bars($m):
  [(small[] as $case | ("basic", "pattern", "fast") as $layout
    | bar("own share of \($case), \($layout), in L"; share($m; $case; $layout); 0.10; 3)),
   ($m["call/DSQueueBuffer/off"] - $m["call/DSQueueBuffer/direct"]) as $off
   | bar("DSQueueBuffer with INFO off, ns over the direct call"; $off; 60; 1),
   (("STRING", "SIZET", "PTR") as $type | "call/DSGetBufferInfo/\($type)" as $case
    | bar("DSGetBufferInfo/\($type) with INFO off, over the direct call, in L";
          ($m[$case + "/off"] - $m[$case + "/direct"]) / $m[$case + "/bare-basic"]; 0.12; 3)),
   bar("a byte dump of 4 KiB, parts of the stream's time";
       $m["render/ByteDump/4KiB"] / $m["render/ByteDump/4KiB/stream"]; 0.01; 4),
   bar("a byte dump of 1 MiB, times filling a string of its size";
       $m["render/ByteDump/1MiB"] / $m["render/ByteDump/1MiB/fill"]; 2; 2),
   (("basic", "pattern", "fast") as $layout
    | bar("GCReadPort/1MiB, \($layout), in L";
          $m["call/GCReadPort/1MiB/\($layout)"] / $m["call/GCReadPort/1MiB/bare-\($layout)"];
          1.15; 3)),
   (small[] as $case
    | bar("the extended module beyond the other one, \($case) with INFO off, in L";
          ($m["call/\($case)/extended-off"] - $m["call/\($case)/off"])
          / $m["call/\($case)/bare-basic"]; 0.01; 4)),
   (small[] as $case | layouts[] as $layout
    | bar("\($case) with timing lines, \($layout), in L";
          $m["call/\($case)/timed-\($layout)"] / $m["call/\($case)/bare-\($layout)"]; 3.2; 2)),
   (("", "extended-") as $edition | layouts[] as $layout
    | bar("own share of GCReadPortStacked/16, \($edition)\($layout), in L";
          share($m; "GCReadPortStacked/16"; $edition; $layout); 0.2; 3))];

def big: ["GCReadPortStacked/16", "GCReadPort/4KiB", "GCReadPort/1MiB", "GCReadPort/64MiB"];

def call_table($m):
  ("\("call" | pad(34))\("direct" | lead(8))\("off" | lead(11))"
   + ([layouts[] | lead(12) + ("L" | lead(12)) + ("share" | lead(7))] | add)),
  ((small + big)[] as $case | "call/\($case)" as $key
   | "\($case | pad(34))\($m[$key + "/direct"] | time | lead(8))\($m[$key + "/off"] | time | lead(11))"
     + ([layouts[] as $layout
         | ($m["\($key)/\($layout)"] | time | lead(12))
           + ($m["\($key)/bare-\($layout)"] | time | lead(12))
           + (share($m; $case; $layout) | fixed(3) | lead(7))] | add));

def extended_table($m):
  ("\("the extended module" | pad(34))\("off" | lead(8))\("silent" | lead(11))"
   + ([layouts[] | lead(12) + ("share" | lead(7)) + ("timed" | lead(12)) + ("in L" | lead(7))] | add)),
  ((small + ["GCReadPortStacked/16"])[] as $case | "call/\($case)" as $key
   | "\($case | pad(34))\($m[$key + "/off"] | time | lead(8))\($m[$key + "/extended-off"] | time | lead(11))"
     + ([layouts[] as $layout
         | ($m["\($key)/extended-\($layout)"] | time | lead(12))
           + (share($m; $case; "extended-"; $layout) | fixed(3) | lead(7))
           + ($m["\($key)/timed-\($layout)"] | time | lead(12))
           + ($m["\($key)/timed-\($layout)"] / $m["\($key)/bare-\($layout)"] | fixed(2) | lead(7))]
        | add));

def thread_table($m):
  ("\("calls by threads" | pad(34))\("direct" | lead(8))\("off" | lead(11))"
   + (["basic", "pattern"] | map(lead(12) + ("L" | lead(12)) + ("share" | lead(7))) | add)),
  ($m | keys[] | capture("^threads/(?<case>.*)/direct/threads:(?<count>[0-9]+)$")
   | . as {$case, $count}
   | (["direct", "off", "basic", "bare-basic", "pattern", "bare-pattern"]
      | map({key: ., value: $m["threads/\($case)/\(.)/threads:\($count)"]}) | from_entries) as $of
   | "\("\($case), \($count)" | pad(34))\($of.direct | time | lead(8))\($of.off | time | lead(11))"
     + (["basic", "pattern"]
        | map(. as $layout | $of["bare-" + $layout] as $bare
              | ($of[$layout] | time | lead(12)) + ($bare | time | lead(12))
                + (($of[$layout] - $of.direct) / $bare - 1 | fixed(3) | lead(7))) | add));

def other_table($m):
  $m | keys[] | select(startswith("call/") or startswith("threads/") | not)
  | "\(. | pad(48))\($m[.] | time | lead(12))";

medians as $m
| bars($m) as $bars
| call_table($m), "", extended_table($m), "", thread_table($m), "", other_table($m), "",
  ($bars[] | "\(if .met then "met   " else "MISSED" end)  \(.what): \(.text)"),
  "",
  "\([$bars[] | select(.met)] | length) of \($bars | length) bars met"
