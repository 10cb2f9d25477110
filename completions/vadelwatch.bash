# Completion of Vadelwatch's options and arguments in bash. Source it, or put it into a directory that bash-completion
# reads: ~/.local/share/bash-completion/completions/Vadelwatch

_vadelwatch_offer_files() {
  local file
  while IFS= read -r file; do
    COMPREPLY+=("$file")
  done < <(compgen "$@")
  compopt -o filenames 2>/dev/null || true
}

_vadelwatch() {
  local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]}
  COMPREPLY=()

  # Bash splits "--lang=de" into three words.
  if [ "$current" = = ]; then
    current=
  elif [ "$previous" = = ]; then
    previous=${COMP_WORDS[COMP_CWORD - 2]}
  fi

  # The first argument is a directory, the second a new name, the third a file.
  local place=0 ended="" index
  for ((index = 1; index < COMP_CWORD; index++)); do
    case $ended${COMP_WORDS[index]} in
    --) ended="after " ;;
    --lang | --log | --map | --map-colour | --map-size | --progress)
      # Skips the value and an equals sign before it.
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
  --progress)
    mapfile -t COMPREPLY < <(compgen -W "auto bar plain none" -- "$current")
    return
    ;;
  --map-colour)
    mapfile -t COMPREPLY < <(compgen -W "density elevation" -- "$current")
    return
    ;;
  --log | --map)
    _vadelwatch_offer_files -f -- "$current"
    return
    ;;
  esac

  if [[ $ended$current == -* ]]; then
    mapfile -t COMPREPLY < <(compgen -W "--help --json --lang --log --map --map-colour --map-size --progress --quiet --verbose --version -h" -- "$current")
    return
  fi

  case $place in
  0) _vadelwatch_offer_files -d -- "$current" ;;
  2) _vadelwatch_offer_files -f -- "$current" ;;
  esac
}

complete -F _vadelwatch Vadelwatch
