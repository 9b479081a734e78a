# bash completion for sorvanta-survey

# Files whose names match the pattern, and directories, on the way to others.
_sorvanta_survey_files() {
  compopt -o filenames 2>/dev/null || true
  mapfile -t COMPREPLY < <({ compgen -d -- "$word" || true; compgen -f -X "!$1" -- "$word"; } |
    sort --unique)
}

_sorvanta_survey() {
  local word=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD - 1]} offered head=
  COMPREPLY=()
  # --option=value is three words.
  if [ "$word" = = ]; then
    word=
  elif [ "$before" = = ]; then
    before=${COMP_WORDS[COMP_CWORD - 2]}
  fi
  case $before in
    --methods)
      offered="ten today static stream core all immediateMode arrayElement drawArrays compiledVertArray displayLists
        drawArraysWithVertArrayRng drawArraysWithVertArrayObjects
        drawArraysWithDynVertBufferObjectsVAO drawArraysWithStatVertBufferObjectsVAO
        drawArraysWithStaticVBO multiDrawArrays multiDrawArraysIndirect drawElementsWithRestart
        streamSubData streamMapRange streamPersistent"
      ;;
    --primitives) offered="all triStrip quadStrip lineStrip lines points quads triangles" ;;
    --json | --csv | --markdown | --junit | --html)
      _sorvanta_survey_files '*'
      return
      ;;
    --changes) offered="never every-frame" ;;
    --details | --with | --triangles | --strips | --seconds | --precision | --frame | --device | --seed | --patience | \
      --threshold | --base | --new | --base-name | --new-name)
      return
      ;;
    *)
      case ${COMP_WORDS[1]} in
        run)
          offered="--methods --primitives --details --with --seconds --precision --frame --device
            --on-screen --seed --patience --json --csv --markdown --junit --quiet --unoptimised --help"
          ;;
        advise)
          offered="--triangles --strips --changes --core --with --seconds --frame --device --on-screen
            --seed --patience --json --markdown --junit --quiet --unoptimised --help"
          ;;
        versus)
          offered="--base --new --base-name --new-name --threshold --explain --methods --primitives
            --details --with --seconds --frame --device --on-screen --seed --patience --json --markdown
            --junit --line --quiet --unoptimised --help"
          ;;
        compare | report)
          offered="--new --threshold --json --markdown --junit --line --help"
          [ "${COMP_WORDS[1]}" = compare ] || offered="--html --help"
          _sorvanta_survey_files '*.json'
          ;;
        devices) offered="--help" ;;
        *) offered="run advise versus compare report devices --help --version" ;;
      esac
      ;;
  esac
  # A list's words follow each other after commas, so no blank comes after one.
  if [[ $before == --methods || $before == --primitives ]]; then
    compopt -o nospace 2>/dev/null || true
    [[ $word != *,* ]] || head=${word%,*},
  fi
  mapfile -t -O ${#COMPREPLY[@]} COMPREPLY < <(compgen -P "$head" -W "$offered" -- "${word#"$head"}")
}

complete -F _sorvanta_survey sorvanta-survey
