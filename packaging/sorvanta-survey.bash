# bash completion for sorvanta-survey

_sorvanta_survey() {
  local word=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD - 1]} offered
  COMPREPLY=()
  # A list's words follow each other after commas.
  local head=
  [[ $word == *,* ]] && head=${word%,*},
  case $before in
    --methods)
      offered="ten all immediateMode arrayElement drawArrays compiledVertArray displayLists
        drawArraysWithVertArrayRng drawArraysWithVertArrayObjects
        drawArraysWithDynVertBufferObjectsVAO drawArraysWithStatVertBufferObjectsVAO
        drawArraysWithStaticVBO multiDrawArrays multiDrawArraysIndirect drawElementsWithRestart
        streamSubData streamMapRange streamPersistent"
      ;;
    --primitives) offered="all triStrip quadStrip lineStrip lines points quads triangles" ;;
    --json | --csv | --markdown | --html)
      mapfile -t COMPREPLY < <(compgen -f -- "$word")
      return
      ;;
    --details | --with | --seconds | --precision | --frame | --device | --seed | --patience | \
      --threshold | --base | --new | --base-name | --new-name)
      return
      ;;
    *)
      case ${COMP_WORDS[1]} in
        run)
          offered="--methods --primitives --details --with --seconds --precision --frame --device
            --on-screen --seed --patience --json --csv --markdown --quiet --unoptimised --help"
          ;;
        versus)
          offered="--base --new --base-name --new-name --threshold --methods --primitives --details
            --with --seconds --frame --device --on-screen --seed --patience --json --markdown --quiet
            --unoptimised --help"
          ;;
        compare | report)
          offered="--threshold --json --markdown --help"
          [ "${COMP_WORDS[1]}" = compare ] || offered="--html --help"
          mapfile -t COMPREPLY < <(compgen -f -X '!*.json' -- "$word")
          ;;
        devices) offered="--help" ;;
        *) offered="run versus compare report devices --help --version" ;;
      esac
      ;;
  esac
  mapfile -t -O ${#COMPREPLY[@]} COMPREPLY < <(compgen -P "$head" -W "$offered" -- "${word#"$head"}")
}

complete -F _sorvanta_survey sorvanta-survey
