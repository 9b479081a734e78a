# bash completion for Sorvanta

_sorvanta() {
  local word=${COMP_WORDS[COMP_CWORD]} offered
  COMPREPLY=()
  case ${COMP_WORDS[COMP_CWORD - 1]} in
    -M)
      offered="immediateMode arrayElement drawArrays compiledVertArray displayLists
        drawArraysWithVertArrayRng drawArraysWithVertArrayObjects
        drawArraysWithDynVertBufferObjectsVAO drawArraysWithStatVertBufferObjectsVAO
        drawArraysWithStaticVBO"
      offered+=" multiDrawArrays multiDrawArraysIndirect drawElementsWithRestart
        streamSubData streamMapRange streamPersistent" # of today
      ;;
    -p) offered="triStrip quadStrip lineStrip lines points quads triangles" ;;
    -r | -d | -z | -w | -h | -regress | -display | -geometry) return ;; # a value follows
    *)
      [[ COMP_CWORD -gt 2 && ${COMP_WORDS[COMP_CWORD - 2]} == -regress ]] && return
      offered="-r -avg -terse -regress -M -p -d -n -c -s -t0 -t1 -t2 -t3 -t4 -t5 -t6 -t7
        -l0 -l1 -l2 -l3 -l4 -l5 -l6 -l7 -m -T -A -o -u -w -h -b -z -help
        -display -geometry"
      ;;
  esac
  mapfile -t COMPREPLY < <(compgen -W "$offered" -- "$word")
}

complete -F _sorvanta Sorvanta
