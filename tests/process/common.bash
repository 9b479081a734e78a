# shellcheck shell=bash disable=SC2034
# What the tests of the programs share. To run one by hand: bats tests/process/versus.bats -f bisection;
# $SORVANTA_BUILD names a build directory other than build/.
bats_require_minimum_version 1.5.0

root=$(cd "$BATS_TEST_DIRNAME/../.." && pwd)
build=${SORVANTA_BUILD:-$root/build}
sorvanta=$build/Sorvanta
# The survey as it is, and with workers that do as they are told.
survey=$build/sorvanta-survey
scripted=$build/survey_of_scripted_workers
# A short survey or comparison: two methods at two details.
cells=(--methods 'drawArrays,displayLists' --details '8,64' --unoptimised)
export WORKERS=$BATS_TEST_TMPDIR/workers  # scripted workers write their process ids there
# Part of the name of the renderer that a test is repeated on; empty where any will do.
renderer=${SORVANTA_TEST_RENDERER:-}
anything='(?s:.*)'

setup() {
  cd "$BATS_TEST_TMPDIR" || return
}

# A test ends what it left in the background; everything else that it started has to be gone by
# itself: workers go once their controller has.
teardown() {
  local left jobs
  jobs=$(jobs -p)
  # shellcheck disable=SC2086  # one word each
  [ -z "$jobs" ] || kill $jobs 2>/dev/null || true
  wait
  cd /
  for _ in {1..50}; do
    left=$(processes)
    [ -n "$left" ] || return 0
    sleep 0.1
  done
  echo "left running:"
  ps -fp "$left"
  # shellcheck disable=SC2086
  kill -KILL $left
  return 1
}

# Those that run in the test's directory, or did before it was removed.
processes() {
  find /proc/[0-9]* -maxdepth 1 -name cwd -lname "$BATS_TEST_TMPDIR*" 2>/dev/null |
    cut -d/ -f3 | paste -sd' '
}

# What the last `run` printed matches a Perl regular expression from beginning to end; a dot is no
# line break. A machine with a card is told that the tests draw in software: that may be there.
matches() {
  output=$(sed '/^Sorvanta: .* though this machine has a graphics card/d' <<<"$output")
  LC_ALL=C grep --quiet --null-data --perl-regexp "\A(?:${1//$'\n'/\\n})\n*\z" <<<"$output" || {
    printf 'expected:\n%s\nprinted:\n%s\n' "$1" "$output"
    return 1
  }
}

# Waits until a command succeeds, for a minute and a half.
wait_until() {
  for _ in {1..900}; do
    ! "$@" >/dev/null 2>&1 || return 0
    sleep 0.1
  done
  echo "in vain: $*"
  return 1
}

# Starts an X server with one screen, which ends with the test. Without -noreset it would start
# over when its last client leaves.
start_x_server() {
  Xvfb -displayfd 4 -noreset -nolisten tcp -screen 0 1280x1024x24 \
    4>"$BATS_TEST_TMPDIR/display" 2>/dev/null 3>&- &
  x_server=$!
  wait_until grep . "$BATS_TEST_TMPDIR/display"
  DISPLAY=:$(<"$BATS_TEST_TMPDIR/display")
  export DISPLAY
}

# The words of all draw methods.
methods() {
  sed -n 's/^    {k[A-Za-z]*, "\([A-Za-z]*\)",.*/\1/p' "$root/words/DrawMethods.h" | grep .
}
