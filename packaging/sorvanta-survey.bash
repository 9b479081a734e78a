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
    --json | --csv | --markdown)
      mapfile -t COMPREPLY < <(compgen -f -- "$word")
      return
      ;;
    --details | --with | --seconds | --precision | --frame | --device | --seed | --patience) return ;;
    *)
      case ${COMP_WORDS[1]} in
        run)
          offered="--methods --primitives --details --with --seconds --precision --frame --device
            --on-screen --seed --patience --json --csv --markdown --quiet --unoptimised --help"
          ;;
        devices) offered="--help" ;;
        *) offered="run devices --help --version" ;;
      esac
      ;;
  esac
  mapfile -t COMPREPLY < <(compgen -P "$head" -W "$offered" -- "${word#"$head"}")
}

complete -F _sorvanta_survey sorvanta-survey
