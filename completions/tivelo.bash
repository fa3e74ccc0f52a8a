# What bash completes behind "tivelo"; put where bash-completion looks, or sourced from ~/.bashrc.
_tivelo() {
  local word=${COMP_WORDS[COMP_CWORD]} i taken=
  local options='-e -f -q -p --explain --no-history -h --help -V --version'
  # taken: the option that takes the word. What an option takes is no option; behind "--" is none.
  for ((i = 1; i < COMP_CWORD; ++i)); do
    if [[ -n $taken ]]; then
      taken=
    elif [[ ${COMP_WORDS[i]} == -[efp] ]]; then
      taken=${COMP_WORDS[i]}
    elif [[ ${COMP_WORDS[i]} == -- ]]; then
      options=
      break
    fi
  done
  COMPREPLY=()
  if [[ $taken == -p ]]; then
    mapfile -t COMPREPLY < <(compgen -W '0 1 2 3 4 5 6 7 8 9' -- "$word")
  elif [[ -z $taken && -n $options && $word == -* ]]; then
    mapfile -t COMPREPLY < <(compgen -W "$options" -- "$word")
  elif [[ $taken != -e ]]; then
    compopt -o filenames 2>/dev/null
    mapfile -t COMPREPLY < <(compgen -f -- "$word")
  fi
}
complete -F _tivelo tivelo
