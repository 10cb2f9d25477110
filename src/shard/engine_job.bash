# The common part of vadelclip-parallel and vadelclip-slurm: it reads their arguments and plans the job. It needs:
#
#     programFile    path of the script, without symbolic links
#
# It sets:
#
#     program        name of the script
#     shard          path of Vadelshard, which is in the directory of this file
#     shards         value of --shards, or empty
#     planOptions    options of Vadelshard plan
#     engineOptions  arguments after "--"
#     output         path of the output directory, set by planJob
#     work           path of the work directory, set by planJob
#
# shellcheck shell=bash disable=SC2034 # The scripts use them.

program=${0##*/}
shard=${programFile%/*}/Vadelshard
language=de

# say <German> <English>: prints a text in the language of the job.
say() {
  if [[ $language == de* ]]; then echo "$1"; else echo "$2"; fi
}

# refuse <German> <English>: prints why the script ends, and ends it.
refuse() {
  say "$program: $1" "$program: $2" >&2
  exit 2
}

# need <command>
need() {
  command -v "$1" >/dev/null || refuse "$1 ist nicht installiert." "$1 is not installed."
}

# readArguments <engine> <argument>...
readArguments() {
  local engine=$1 help=
  shift
  job=() planOptions=() shards=
  while [ $# -gt 0 ] && [ "$1" != -- ]; do
    case $1 in
    -h | --help) help=1 ;;
    --shards) shards=${2-} ;;
    --shards=*) shards=${1#*=} ;;
    --lang) language=${2-} ;;
    --lang=*) language=${1#*=} ;;
    esac
    if [ ${#job[@]} -lt 3 ]; then job+=("$1"); else planOptions+=("$1"); fi
    shift
  done
  engineOptions=("${@:2}")
  if [ -n "$help" ] || [ ${#job[@]} -lt 3 ]; then
    say "Aufruf: $program <Pfad des Eingabeverzeichnisses> <Name des Ausgabeverzeichnisses> <Pfad der Grenzdatei>
       [--shards <Anzahl>] [--part <Bytes>] [--lang <Sprache>] [-- <Optionen von $engine>]" \
      "Usage: $program <input directory path> <output directory name> <boundary file path>
       [--shards <number>] [--part <bytes>] [--lang <language>] [-- <options of $engine>]"
    [ -n "$help" ] || exit 2
    exit 0
  fi
}

# Plans the job, or checks that it is planned with these arguments already. Vadelshard prints the refusal of the tool or
# the number of shards, which is not shown.
planJob() {
  local answer status=0 name=${job[1]}
  answer=$("$shard" plan "${planOptions[@]}" -- "${job[@]}") || status=$?
  if [ "$status" -ne 0 ]; then
    [ -z "$answer" ] || echo "$answer"
    exit "$status"
  fi
  name=${name%"${name##*[!/]}"} # without slashes at its end
  output=$(realpath -- "${job[0]%/*}/")/$name
  work=$output.shards
}
