#!/usr/bin/env bats
# The program in real windows: arguments, output, endings.
load common

setup() {
  cd "$BATS_TEST_TMPDIR" || return
  start_x_server
}

# Leaves the program running, with what it prints in the file "out", and goes on when it has figures.
start() {
  rm -f out  # of a run before
  "$sorvanta" "$@" >out 2>&1 3>&- &
  program=$!
  until grep -qs /sec out; do
    kill -0 "$program"
    sleep 0.1
  done
}

# The program that was left running ends by itself, with that status.
ends_with() {
  local status=0
  wait "$program" || status=$?
  [ "$status" -eq "$1" ]
}

start_window_manager() {
  "$1" >/dev/null 2>&1 3>&- &
  wait_until eval 'xprop -root _NET_SUPPORTING_WM_CHECK | grep "window id"'
}

@test "A bad command line gives the usage text" {
  # Scripts compare it, to the byte.
  [ "$("$sorvanta" -help | sha256sum)" = \
    "0db4780d1a6b724503aa8172f3bd90dd2611e82c20480e2aa0f5d6e2bc497825  -" ]
  usage=$("$sorvanta" -help || true)
  for options in "" "-r 0.9" "-r 5 -help" "-r 5 -p Triangles" "-regress 40 -r" \
    "-r 5 -M drawArraysWithVBOs" "-r 5 -regress 40" "-r"; do
    # shellcheck disable=SC2086
    run -1 "$sorvanta" $options
    [ "$output" = "$usage" ]
  done
  run -1 "$sorvanta" -r 5 -a -t8 ''
  [ "$output" = " cmd line option '-a' not recognized.
cmd line option '-t8' not recognized.
cmd line option '' not recognized.
${usage# }" ]
}

@test "Figures come per frame or on average, and a regression is the status" {
  run -0 "$sorvanta" -r 5
  matches ' .+, .+\n([0-9.]+ MTri/sec\n){2,}'
  run -0 "$sorvanta" -terse -p quads -r 3
  matches ' ([0-9.]+ MQuad/sec\n)+'
  run -0 "$sorvanta" -r 3 -o -avg -M drawArrays -d 256
  matches ' .+, .+\n[0-9.]+ MTri/sec'
  run -1 "$sorvanta" -r 3 -o -regress 1e6 0.5
  matches ' [0-9.]+ MTri/sec'
  run -0 "$sorvanta" -r -5 -avg
  matches ' .+\nSorvanta: .* before a figure was recorded.*\n-?nan MTri/sec'
}

@test "Every method and option runs without a GL error" {
  export MESA_DEBUG=1
  for method in $(methods); do
    run -0 "$sorvanta" -r -5 -t0 -t1 -t7 -l0 -l7 -c -s -m -T -p quadStrip -d 5 -z 2 -A -u -n -o \
      -M "$method"
    matches " .*$renderer.*, .+
(Sorvanta: beside normals .*\n)?(Sorvanta: .* table of entry points.*\n)?"
  done
}

@test "What the driver lacks is said" {
  export MESA_EXTENSION_OVERRIDE=-GL_ARB_vertex_buffer_object
  between='( |Warning: .*\n)*'  # Mesa warns of the override
  run -0 "$sorvanta" -r -5 -terse -M drawArraysWithVertArrayRng
  matches "${between}Sorvanta: a vertex array range covers at most 0 .*\n$between"
  run -1 "$sorvanta" -r -5 -M drawArraysWithStaticVBO
  matches "${between}Sorvanta: this OpenGL driver has no vertex buffer objects, .*\n$between"
}

# A key other than Escape does nothing; that key ends the run, and the average comes once.
key_ends_the_run() {
  start_window_manager openbox
  "$sorvanta" -r 600 -avg -M drawArrays -o >out 2>&1 3>&- &
  program=$!
  wait_until eval "xdotool search --onlyvisible --name SorvantaTest windowfocus --sync key space"
  # Until it has had two seconds of a processor, in which it draws.
  wait_until eval "awk '{ exit \$14 + \$15 < 2 * $(getconf CLK_TCK) }' /proc/$program/stat"
  xdotool key "$1"
  ends_with 0
  output=$(<out)
  matches ' .+\n[0-9.]+ MTri/sec'
}

@test "Escape ends the run, with one average" {
  key_ends_the_run Escape
}

@test "Closing the window ends the run, with one average" {
  key_ends_the_run alt+F4
}

@test "The window has the size asked for" {
  while IFS='|' read -r options size sentence; do
    # shellcheck disable=SC2086
    start -r 600 -d 1 -o $options
    run -0 eval "xwininfo -name SorvantaTest | grep -o 'geometry [0-9x]*'; grep 'Sorvanta:' out || true"
    matches "geometry $size${sentence:+\n.*$sentence}"
    kill "$program"
    wait "$program" || true
  done <<'SIZES'
-w 300 -h 200|300x200|
-h 200 -w 300|300x200|
-w 300 -w 400|400x400|
-h 0|400x1| 400 by 0 pixels cannot be made; it will be 400 by 1.
-w -5|1x400| it will be 1 by 400.
-w 4294967296|8192x400| it will be 8192 by 400.
SIZES
}

lines() {
  wc -l <out
}

# Starts the program with the options given, has a command hide its window, and sees more frames.
frames_keep_coming() {
  local hide=$1
  shift
  start -r 600 "$@"
  wait_until eval "$hide"
  local before
  before=$(lines)
  wait_until eval '[ "$(lines)" -gt $((before + 3)) ]'
}

obscured="xwininfo -root -tree | grep -Em1 'Obscuring|SorvantaTest' | grep ' 1280x1024+'"

@test "Frames keep coming to a window that is not mapped, and the run ends in time" {
  start_window_manager openbox
  frames_keep_coming "xdotool search --name SorvantaTest windowunmap"
  kill "$program"
  "$sorvanta" -r 3 >out 2>&1 3>&- &
  program=$!
  wait_until eval "xdotool search --onlyvisible --name SorvantaTest windowunmap"
  ends_with 0
}

@test "Frames keep coming to a minimised window" {
  start_window_manager openbox
  frames_keep_coming "xdotool search --name SorvantaTest windowminimize"
}

@test "Frames keep coming behind an obscuring window without a window manager, and the run ends" {
  frames_keep_coming "$obscured" -b
  kill "$program"
  run -0 "$sorvanta" -r 2 -b
}

@test "Frames keep coming behind an obscuring window under openbox" {
  start_window_manager openbox
  frames_keep_coming "$obscured" -b
}

@test "Frames keep coming behind an obscuring window under metacity" {
  start_window_manager metacity
  frames_keep_coming "$obscured" -b
}

@test "Long runs keep their memory" {
  ! grep -q __asan_init "$sorvanta" || skip "the sanitizer keeps freed memory"
  # All kinds of retained structure at once, off the screen: a driver that paints in software
  # queues what is on it, the longer the busier the machine is.
  retaining=(immediateMode displayLists drawArraysWithVertArrayRng drawArraysWithVertArrayObjects
    drawArraysWithStaticVBO)
  programs=()
  for method in "${retaining[@]}"; do
    "$sorvanta" -r 600 -o -A -u -T -t0 -l0 -n -d 128 -M "$method" >"$method" 3>&- &
    programs+=("$!")
  done
  have_figures() {
    for method in "${retaining[@]}"; do
      [ "$(grep -c /sec "$method")" -ge "$1" ] || return
    done
  }
  kilobytes() {
    cat "${programs[@]/%//status}" | awk '/^VmRSS/ { sum += $2 } END { print sum }'
  }
  programs=("${programs[@]/#//proc/}")
  wait_until have_figures 1
  before=$(kilobytes)
  wait_until have_figures 20
  after=$(kilobytes)
  echo "$before kB, then $after kB"
  [ "$before" -gt 100000 ]
  [ $((after - before)) -lt 2000 ]
}

@test "It ends with a sentence where it cannot go on" {
  DISPLAY=:none run -1 "$sorvanta" -r 1
  matches "Sorvanta: no OpenGL: .*':none'.*"
  run -1 "$sorvanta" -indirect -r 1
  matches 'Sorvanta: no OpenGL: .*'
  MESA_GL_VERSION_OVERRIDE=3.3FC run -1 "$sorvanta" -r 1
  matches 'Sorvanta: this OpenGL context .* has no fixed-function pipeline.*'
  lost='Sorvanta: standard output cannot be written.*'
  for options in "-r 600 -avg" "-r -1 -terse"; do
    run -1 eval "$sorvanta $options 2>&1 >/dev/full"
    matches "$lost"
  done
  run -1 eval "$sorvanta -r 600 2>&1 >&-"
  matches "$lost"
  # What it says must not go to the X server, where its connection takes standard error's place.
  run -0 eval "timeout 60 $sorvanta -r 3 -o -terse -avg -w 0 <&- 2>&-"
  matches ' [0-9.]+ MTri/sec'
  [ "$("$sorvanta" -r 600 | head -1 | wc -l)" = 1 ]
  run -130 timeout --preserve-status -s INT 2 "$sorvanta" -r 600
  start -r 600
  kill "$x_server"
  ends_with 1
  [ "$(tail -n 1 out)" = "Sorvanta: the connection to the X server is lost." ]
}
