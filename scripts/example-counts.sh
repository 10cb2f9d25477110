# Sourced by scripts that compare a run over the examples with the counts in examples/README.md.

# The number in the row of a node file and the column "kept: <boundary>" of the tables in examples/README.md.
expected_count() {
  awk -F' *[|] *' -v row="$1" -v column="kept: $2" '
    { kept = 0; for (i = 2; i < NF; i++) if ($i == column) at = i }
    at && $2 == row { print $at; exit }
    $0 == "" { at = 0 }' examples/README.md
}
