# Completion of Vadelclip's arguments and options in bash. Source it, or put it into a directory that bash-completion
# reads: ~/.local/share/bash-completion/completions/Vadelclip

_vadelclip_offer_files() {
  local file
  while IFS= read -r file; do
    COMPREPLY+=("$file")
  done < <(compgen "$@")
  compopt -o filenames 2>/dev/null || true
}

# Offers the options that are not on the line yet. No space follows "-lang=".
_vadelclip_offer_options() {
  local offered=
  [[ " ${COMP_WORDS[*]:0:COMP_CWORD} " == *" -lang "* ]] || offered="-lang="
  [[ " ${COMP_WORDS[*]:0:COMP_CWORD} " == *" -pipe "* ]] || offered+=" -pipe"
  mapfile -t COMPREPLY < <(compgen -W "$offered" -- "$1")
  [ "${COMPREPLY[*]}" != "-lang=" ] || compopt -o nospace 2>/dev/null || true
}

_vadelclip() {
  local current=${COMP_WORDS[COMP_CWORD]} place=1 index
  COMPREPLY=()

  # Bash splits "-lang=de" into three words.
  for ((index = 2; index <= COMP_CWORD; index++)); do
    [ "${COMP_WORDS[index]}" = = ] || [ "${COMP_WORDS[index - 1]}" = = ] || ((place++))
  done
  local option=${COMP_WORDS[COMP_CWORD - 1]}
  if [ "$current" = = ]; then
    current=
  elif [ "$option" = = ]; then
    option=${COMP_WORDS[COMP_CWORD - 2]}
  fi

  # First a directory, then a new name, a file, and the options.
  case $place in
  1) _vadelclip_offer_files -d -- "$current" ;;
  2) ;;
  3) _vadelclip_offer_files -f -- "$current" ;;
  *)
    if [ "$option" = -lang ]; then
      mapfile -t COMPREPLY < <(compgen -W "de en" -- "$current")
    else
      _vadelclip_offer_options "$current"
    fi
    ;;
  esac
}

complete -F _vadelclip Vadelclip
