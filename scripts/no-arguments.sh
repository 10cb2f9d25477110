# Sourced first by scripts that take no arguments, so that one meant for something else does not start them.
if [ $# -gt 0 ]; then
  echo "Usage: scripts/${0##*/}" >&2
  exit 2
fi
