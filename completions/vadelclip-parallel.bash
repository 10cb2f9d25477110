# Completion of the options and arguments of vadelclip-parallel and vadelclip-slurm in bash. Source it, or put it into a
# directory that bash-completion reads, under both names: ~/.local/share/bash-completion/completions/vadelclip-parallel

_vadelclip_engine_offer_files() {
  local file
  while IFS= read -r file; do
    COMPREPLY+=("$file")
  done < <(compgen "$@")
  compopt -o filenames 2>/dev/null || true
}

_vadelclip_engine() {
  local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]} index
  COMPREPLY=()

  # "--lang=de" comes as three words.
  if [ "$current" = = ]; then
    current=
  elif [ "$previous" = = ]; then
    previous=${COMP_WORDS[COMP_CWORD - 2]}
  fi

  # After "--" the options of the engine follow.
  for ((index = 1; index < COMP_CWORD; index++)); do
    [ "${COMP_WORDS[index]}" != -- ] || return 0
  done

  # A directory, a new name, a file; then the options.
  case $COMP_CWORD,$previous in
  1,*) _vadelclip_engine_offer_files -d -- "$current" ;;
  2,*) ;;
  3,*) _vadelclip_engine_offer_files -f -- "$current" ;;
  *,--lang) mapfile -t COMPREPLY < <(compgen -W "de en" -- "$current") ;;
  *,--shards | *,--part) ;;
  *) mapfile -t COMPREPLY < <(compgen -W "--lang --part --shards --" -- "$current") ;;
  esac
}

complete -F _vadelclip_engine vadelclip-parallel
complete -F _vadelclip_engine vadelclip-slurm
