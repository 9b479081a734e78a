#!/usr/bin/env bats
# The survey's whole program, with workers that misbehave on command.
load common

survey() {
  "$scripted" run "${cells[@]}" "$@"
}

@test "It prints the answer and the table, and nothing else" {
  run -0 survey --precision 5
  matches 'Fastest for triStrip, vertices alone: at detail 8 drawArrays \(102 MTri/s at 18 vertices a call; 1\.01 times displayLists\), at detail 64 drawArrays \(102 .*\)\.
On scripted .* renderer, 1\.0[;,].*

Detail 8, triStrip, vertices alone
 *method +MTri/s .*
> +drawArrays +102 +0\.. % +1\.000 +18 +157 +50 % +itself +yes
 +displayLists +101 +0\.. % +0\.99. +0\.. % .*

Detail 64(?s:.*)'
}

@test "Advice answers for a mesh of another shape" {
  run -0 --separate-stderr "$scripted" advise --triangles 2000 --strips 10 --changes every-frame \
    --seconds 10 --unoptimised --json advice.json
  output=$(head -1 <<<"$output")
  matches 'For 10 strips of 200 triangles that change every time: streamPersistent, [0-9.]+ µs a model .*'
  grep '"question":{"changes":true' advice.json
  run -255 "$scripted" advise --triangles 10 --strips 11
  matches '.*there cannot be more strips than triangles\.?'
}

@test "A fault costs its cell with the reason" {
  while read -r deed reason; do
    SCRIPT=displayLists/triStrip/8=$deed run -0 --separate-stderr survey --patience 3 --seconds 8
    [ "$(grep -c failed <<<"$stderr")" = 1 ]
    matches "$anything> +drawArrays +102$anything displayLists +- .*\[1\]\n${anything}displayLists +101$anything\n\[1\] $reason"
  done <<'FAULTS'
SIGKILL died of SIGKILL \(Killed\)
SIGSTOP did not answer within 3 s
silence did not answer within 3 s
abort died of SIGABRT \(Aborted\), after "driver: assertion failed"
garbage sent what is no answer
memory there is not enough memory
fail lost its context
FAULTS
}

@test "A larger model gets more time for an answer" {
  SCRIPT=drawArrays/triStrip/2048=slow run -0 --separate-stderr \
    "$scripted" run --methods drawArrays --details 2048 --unoptimised --patience 2 --seconds 6
  matches "$anything> +drawArrays +102 .*"
}

@test "A cell gets a second chance but no third" {
  SCRIPT=displayLists/triStrip/8=once run -0 --separate-stderr survey
  matches "$anything +displayLists +101 .*\[1\]\n$anything\n\[1\] made a worker fail once: died of SIGKILL .*"
  rm "$WORKERS"
  SCRIPT=displayLists/triStrip/8=SIGKILL run -0 --separate-stderr survey
  [ "$(grep -c 101 <<<"$output")" = 1 ]
  [ "$(wc -l <"$WORKERS")" -le 9 ]  # six blocks, the yardstick, and two workers that it cost
}

@test "A cell that the driver does not run is a row that says so" {
  SCRIPT=displayLists/triStrip/8=refuse run -0 --separate-stderr survey \
    --seconds 3 --csv table --markdown md
  grep 'does not run 1 cell' <<<"$stderr"
  grep -Ex '"displayLists/triStrip/8",displayLists,triStrip,8,"","",MTri/s,{15},"there are no lists here"' \
    table
  grep -Ex '\|  \| displayLists \| - \|.* refused \|.*\[1\] \|' md
}

@test "Waiting for the processor is taken out, and told" {
  SCRIPT=drawArrays/triStrip/8=disturb run -0 --separate-stderr survey --precision 5
  grep -E ' [1-9][0-9]* of [1-9][0-9]* frames waited for the processor, [1-9][0-9]* % of the time, which is not counted\.$' <<<"$stderr"
  [ "$(grep -cE '^> +drawArrays +102 ' <<<"$output")" = 2 ]
  SCRIPT='drawArrays/triStrip/8=busy drawArrays/triStrip/64=busy displayLists/triStrip/64=busy' run -0 --separate-stderr survey \
    --seconds 3 --json busy.json
  grep 'The machine is too busy for sure figures' <<<"$stderr"
  grep -E '\[\[(\[[^]]*,true,0\],?){4}\]\]' busy.json >/dev/null  # twice as many as would do
}

@test "No frame is begun after the time" {
  SCRIPT=drawArrays/triStrip/8=long run -0 --separate-stderr "$scripted" run --methods drawArrays \
    --details 8 --unoptimised --seconds 3 --json long.json
  grep -E '"frames":\[\[\[[^]]*\]\]\]' long.json >/dev/null  # one, where two are wanted
}

@test "It ends early with what is known" {
  SCRIPT=displayLists/triStrip/64=interrupt run -130 --separate-stderr survey --json known --quiet
  [ "$(grep -c Detail <<<"$output")" = 2 ]
  grep 'Interrupted by a signal' <<<"$stderr"
  grep sorvanta known
  SCRIPT=begin=fail run -1 survey
  matches '.*no worker could be started: found no device\.'
  rm "$WORKERS"
  SCRIPT=begin=later run -0 --separate-stderr survey
  grep 'Ended early, after .* no further worker could be started: it found no device\.$' <<<"$stderr"
}

@test "A second signal loses nothing" {
  "$scripted" run "${cells[@]}" --json known --seconds 100 --precision 0.001 >out 2>errors 3>&- &
  wait_until test -s "$WORKERS"
  sleep 1
  kill -TERM $!
  for _ in {1..50}; do
    kill -HUP $! 2>/dev/null || break
    sleep 0.004
  done
  status=0
  wait $! || status=$?
  # Only when all is written may one end it.
  [ "$status" = 143 ] || [ "$status" = 129 ]
  grep Detail out
  grep sorvanta known
}

@test "A sitting without a figure fails, and leaves the file that was there" {
  survey --seconds 3 --json a.json >/dev/null 2>&1
  cp a.json before.json
  SCRIPT='drawArrays/triStrip/8=refuse displayLists/triStrip/8=refuse' run -1 --separate-stderr \
    "$scripted" run --methods drawArrays,displayLists --details 8 --unoptimised --json a.json
  grep 'nothing was measured; a.json stays as it was\.$' <<<"$stderr"
  cmp a.json before.json
  chmod 600 a.json
  ln -s b.json link
  survey --seconds 3 --json a.json >/dev/null 2>&1
  survey --seconds 3 --json link >/dev/null 2>&1
  [ "$(stat -c %a a.json)" = 600 ] && [ -L link ] && grep sorvanta b.json
  run -0 --separate-stderr survey --seconds 3 --json -
  grep '^"sorvanta"' <<<"$output"
  grep 'Fastest for' <<<"$stderr"
}

@test "A controller that is killed takes its worker along" {
  SCRIPT=drawArrays/triStrip/64=silence "$scripted" run "${cells[@]}" >out 2>&1 3>&- &
  wait_until test -s "$WORKERS"
  sleep 1
  kill -KILL $!
  wait || true
  for worker in $(cat "$WORKERS"); do
    wait_until test ! -e "/proc/$worker"
  done
}

@test "Files are written whole or not at all" {
  for file in '--json /nowhere/a.json' '--csv .'; do
    # shellcheck disable=SC2086
    run -1 survey --markdown table $file
    matches '.* (/nowhere/a.json cannot be written: No such file or directory|\. cannot be written: Is a directory)\.'
    [ -z "$(ls)" ]
  done
  echo before >a.json
  run -1 --separate-stderr eval "(trap '' XFSZ; ulimit -f 1; survey --json a.json >/dev/null)"
  grep ' a.json cannot be written: File too large\.$' <<<"$stderr"
  [ "$(echo *a.json*)" = a.json ]
  [ "$(<a.json)" = before ]
  run -1 eval "survey --seconds 3 2>&1 >/dev/full"
  grep 'standard output cannot be written to\.$' <<<"$output"
}

@test "Tools for Google Benchmark read the files" {
  for file in a b; do
    SCRIPT=displayLists/triStrip/8=refuse survey --precision 20 --json "$file"
  done
  run -0 /usr/bin/python3 /usr/share/benchmark/compare.py --no-color benchmarks a b
  output=$(grep -o -e '^[^ ]*_median  *.0.00' -e '^[^ ]*MEAN  *.0.00' <<<"$output")
  matches 'drawArrays/triStrip/8_median +.0.00\n(.*/triStrip/64_median +.0.00\n){2}OVERALL_GEOMEAN +.0.00'
}

@test "The culprit on a command line is named, with the nearest word" {
  while IFS='|' read -r arguments sentence; do
    run -255 eval "$scripted $arguments"
    matches "survey_of_scripted_workers: $sentence"
  done <<'CULPRITS'
run --methods drawArray|'drawArray' is no method; did you mean 'drawArrays'\?
run --primitives TriStrip|'TriStrip' .* 'triStrip'\?
run --with '-n -l9'|'-l9' is no attribute; did you mean '-l0'\?
run --details 8,4096|'4096' is no detail.*
run --metods all|'--metods' is no option; did you mean '--methods'\?
run 5|'5' has no meaning here
rum|'rum' is no command; did you mean 'run'\?
run --seconds soon|--seconds: 'soon' is no number
run --seconds 1,5|--seconds: '1,5' is no number
run --seed ''|--seed: '' is no whole number
run --seed -1|--seed: '-1' is no whole number
run --json ''|--json: a file needs a name
run --json a --csv a|a is named twice; .*
|.*
CULPRITS
  run -0 "$scripted" --version
  matches 'sorvanta-survey [0-9.]+( \(.*\))?'
  run -0 "$scripted" run --help
  options=$(grep -c -e ' --[a-z]' <<<"$output")
  [ "$options" -ge 15 ]
  [ "$options" -lt 20 ]
}

@test "Sets of attributes keep to their groups" {
  run -0 --separate-stderr survey --with '' --with '-l0 -n' --precision 5
  output=$(grep -E '^(Det|>)' <<<"$output")
  matches '(Detail (8|64), triStrip, (vertices alone|with -n -l0)\n> .*\n){4}'
}

# What Bash offers after these words.
completed() {
  completed_from "$@" ''
}

# The same while the last word is being written.
completed_from() {
  COMP_WORDS=(sorvanta-survey "$@")
  COMP_CWORD=$#
  _sorvanta_survey
  printf '%s\n' "${COMPREPLY[@]}"
}

@test "Documents name every option and method" {
  commands=(run advise versus compare report)
  for command in "${commands[@]}"; do
    "$scripted" "$command" --help
  done | grep -o -e '--[a-z-]*' | grep -v help | sort -u >options
  sed -n '/^.SH OPTIONS/,/^.SH TABLE/s/\\-/-/gp' "$root/packaging/sorvanta-survey.1" |
    grep -o -e '--[a-z-]*' | sort -u | diff options -
  # shellcheck disable=SC1091
  source "$root/packaging/sorvanta-survey.bash"
  for command in "${commands[@]}"; do
    completed "$command"
  done | grep -v help | sort -u | diff options -
  (printf "%s\n" all ten today static stream core; methods) | sort | diff <(completed run --methods | sort) -
}

@test "Completion goes on in lists, behind an equals sign, and into directories" {
  # shellcheck disable=SC1091
  source "$root/packaging/sorvanta-survey.bash"
  mkdir results
  touch results/new.json results.txt
  for words in '--methods drawArrays,imm' '--methods = drawArrays,imm' '--primitives = lineS' \
    '--json = res'; do
    # shellcheck disable=SC2086  # several words
    completed_from run $words
  done >offered
  completed_from compare res >>offered
  completed_from compare results/ >>offered
  diff offered - <<'END'
drawArrays,immediateMode
drawArrays,immediateMode
lineStrip
results
results.txt
results
results/new.json
END
}
