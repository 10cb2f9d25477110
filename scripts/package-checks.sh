# What has to hold for an installed package. Sourced by the tests of the package, which set the array "inside": what is
# put in front of a command to run it where the package is installed.

source scripts/example-counts.sh
failures=0

# expect <what> <expected> <got>
expect() {
  if [ "$2" = "$3" ]; then
    printf '  ok      %s\n' "$1"
  else
    printf '  FAILED  %s\n' "$1"
    diff <(printf '%s\n' "$2") <(printf '%s\n' "$3") | sed 's/^/    /' || true
    failures=$((failures + 1))
  fi
}

# A shell where the package is installed, in a new directory with a copy of the examples.
in_new_directory() {
  "${inside[@]}" bash -c 'directory=$(mktemp -d) && cd "$directory" && trap "cd /; rm -rf \"$directory\"" EXIT &&
    cp -r /usr/share/doc/vadelclip/examples/* . && '"$1" 2>&1
}

expected_counts() {
  local set=$1 area=$2 file count
  for file in examples/"$set"/nodes/*; do
    file=$(basename "$file")
    count=$(expected_count "\`$file\`" "$area.xml")
    [ "$count" -eq 0 ] || echo "$file $count"
  done
  echo "total $(expected_count all "$area.xml")"
}

check_counts() {
  local set=$1 area=$2 option=$3
  expect "$set, $area.xml, $option: the counts of examples/README.md" "$(expected_counts "$set" "$area")" \
    "$(in_new_directory "/usr/bin/Vadelclip $set/nodes kept $set/$area.xml $option && cd $set/kept &&
      for file in [!t]*; do echo \"\$file \$((\$(wc -l <\"\$file\") - 1))\"; done && echo \"total \$(cat t*)\"")"
}

check_messages() {
  expect "German, through the link in bin" \
    "Aufruf: Vadelclip <Pfad des Eingabeverzeichnisses> <Name des Ausgabeverzeichnisses> <Pfad der Grenzdatei>" \
    "$("${inside[@]}" /usr/bin/Vadelclip)"
  expect "English, through the link in bin" \
    "Usage: Vadelclip <input directory path> <output directory name> <boundary file path>" \
    "$("${inside[@]}" /usr/bin/Vadelclip -lang=en)"
  expect "Vadelwatch has the version of the sources" "Vadelwatch $(scripts/version.sh)" \
    "$("${inside[@]}" /usr/bin/Vadelwatch --version)"
}

# check_manual_pages <directory of man pages>
check_manual_pages() {
  local name result
  for name in Vadelclip Vadelwatch; do
    result=$(PYTHONDONTWRITEBYTECODE=1 python3 tests/support/manual_examples.py "$1/$name.1.gz" "${inside[@]}") || true
    expect "$name(1): its examples print what it says" "" "$(grep -v ', all as the page says: ' <<<"$result")"
    expect "$name(1): no warnings" "" \
      "$(LC_ALL=C.UTF-8 man --warnings -E UTF-8 -l -Tutf8 -Z "$1/$name.1.gz" 2>&1 >/dev/null)"
  done
}

# check_installed <directory of man pages>
check_installed() {
  check_messages
  check_counts merewether buildings -lang=de
  check_counts merewether road -lang=en
  check_counts coast islands -lang=de
  check_manual_pages "$1"
}

finish_checks() {
  [ "$failures" -eq 0 ] || { echo "$failures checks of the package failed." >&2; exit 1; }
}
