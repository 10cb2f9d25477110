# Completion of Vadelshard's commands, options and arguments in bash. Source it, or put it into a directory that
# bash-completion reads: ~/.local/share/bash-completion/completions/Vadelshard

_vadelshard_offer_files() {
  local file
  while IFS= read -r file; do
    COMPREPLY+=("$file")
  done < <(compgen "$@")
  compopt -o filenames 2>/dev/null || true
}

_vadelshard() {
  local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]} command=${COMP_WORDS[1]}
  COMPREPLY=()

  # "--lang=de" comes as three words.
  if [ "$current" = = ]; then
    current=
  elif [ "$previous" = = ]; then
    previous=${COMP_WORDS[COMP_CWORD - 2]}
  fi

  if [ "$COMP_CWORD" -eq 1 ]; then
    mapfile -t COMPREPLY < <(compgen -W "plan clip merge status --help --version -h" -- "$current")
    return
  fi

  # The number of arguments between the command and this word.
  local place=0 ended="" index
  for ((index = 2; index < COMP_CWORD; index++)); do
    case $ended${COMP_WORDS[index]} in
    --) ended="after " ;;
    --lang | --part | --shards)
      # The value, and an equals sign in front of it.
      [ "${COMP_WORDS[index + 1]}" = = ] && ((index++))
      ((index++))
      ;;
    -*) ;;
    *) ((place++)) ;;
    esac
  done

  case $ended$previous in
  --lang)
    mapfile -t COMPREPLY < <(compgen -W "de en" -- "$current")
    return
    ;;
  --part | --shards) return ;;
  esac

  if [[ $ended$current == -* ]]; then
    local options="--help --lang -h"
    case $command in
    plan) options+=" --part --shards" ;;
    clip) options+=" --direct" ;;
    status) options+=" --json --missing --watch" ;;
    esac
    mapfile -t COMPREPLY < <(compgen -W "$options" -- "$current")
    return
  fi

  case $command$place in
  plan0 | clip0 | merge0 | status0) _vadelshard_offer_files -d -- "$current" ;;
  plan2) _vadelshard_offer_files -f -- "$current" ;;
  esac
}

complete -F _vadelshard Vadelshard
