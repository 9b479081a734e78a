#!/usr/bin/env bats
# The program without a display: as in a window, but for what needs one.
load common

unset DISPLAY
said='Sorvanta: there is no display; running headless on .+\n'

@test "It reports and ends as in a window" {
  run -0 --separate-stderr "$sorvanta" -r 5 -o
  matches ' .+, .+\n([0-9.]+ MTri/sec\n){2,}'
  output=$stderr
  matches "$said"
  DISPLAY='' run -1 --separate-stderr "$sorvanta" -r 5 -o -regress 1e6 0.5 -M drawArrays
  matches ' [0-9.]+ MTri/sec'
  local begin=$EPOCHREALTIME
  DISPLAY='' run -0 --separate-stderr "$sorvanta" -r 2 -o -terse -avg -n -c -M drawArrays
  awk "BEGIN { exit !($EPOCHREALTIME - $begin >= 2) }"
  grep 'beside normals' <<<"$stderr"
  run -130 timeout --preserve-status -s INT 2 "$sorvanta" -r 600
  run -0 eval "(set +o pipefail; $sorvanta -r 600 -o 2>said | head -1 | wc -l
    echo \${PIPESTATUS[0]})"
  matches '1\n141'
  [ "$("$sorvanta" -help 2>said | sha256sum)" = \
    "0db4780d1a6b724503aa8172f3bd90dd2611e82c20480e2aa0f5d6e2bc497825  -" ]
  run -1 "$sorvanta" -r 5 -geometry 1x1+5+5 -sync -a
  matches " cmd line option '-a' not recognized.\nError$anything"
}

@test "Every method and option runs without a GL error" {
  export MESA_DEBUG=1
  for method in $(methods); do
    run -0 --separate-stderr "$sorvanta" -r -5 -t0 -t1 -t7 -l0 -l7 -c -s -m -T -p quadStrip -d 5 -z 2 \
      -A -u -n -w 17 -h 5 -M "$method"
    matches ' .+, .+'
    output=$(grep -v -e 'no display' -e 'beside normals' -e 'table of entry points' <<<"$stderr" || true)
    matches ''
  done
}

@test "Sizes are corrected as those of windows" {
  run -0 "$sorvanta" -r -5 -terse -w 0 -h 99999
  matches "Sorvanta: .* it will be 1 by 400.\nSorvanta: .* it will be 1 by 8192.\n$said "
}

@test "It ends with a sentence where it cannot go on" {
  run -1 "$sorvanta" -r 5 -b
  matches 'Sorvanta: .* no window to draw behind; .*\n '
  mkdir bin
  cp "$sorvanta" bin
  run -1 bin/Sorvanta -r 5
  matches 'Sorvanta: .* locate resource = OpenGLLogo.jpg .*'
  SORVANTA_DEVICE=99 run -1 "$sorvanta" -r 5
  matches 'Sorvanta: SORVANTA_DEVICE=99 matches no graphics device; .*\n(  [0-9]+: .+\n)+'
  echo '{"file_format_version": "1.0.0", "ICD": {"library_path": "none"}}' >none.json
  __EGL_VENDOR_LIBRARY_FILENAMES=$PWD/none.json run -1 "$sorvanta" -r 5
  matches 'Sorvanta: no EGL driver here offers the device platform, .*'
  GALLIUM_DRIVER=none SORVANTA_DEVICE=0 run -1 "$sorvanta" -r 5
  matches 'Sorvanta: the graphics device that SORVANTA_DEVICE chooses cannot be used:
  0: .+ It said: .+'
}
