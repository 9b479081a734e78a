#!/usr/bin/env bats
# Verdicts and exit statuses of the whole program, with workers whose speed is made up.
load common

versus() {
  "$scripted" versus "${cells[@]}" "$@"
}

first_line() {
  output=$(head -1 <<<"$output")
}

@test "The answer comes with the status for a bisection" {
  while IFS='|' read -r status environment answer; do
    run "-$status" --separate-stderr versus --base '' --new "$environment"
    first_line
    matches "$answer"
  done <<'SIDES'
0||new is the same as base within 5 %: 0\.. % ± 0\.. % (slower|faster) overall\.
1|SPEED=all=0.93|new is 7\.0 % ± 0\.. % slower; worst: .*, detail (8|64), 7\.. %\.
0|SPEED=all=1.2|new is 2.\.. % ± 0\.. % faster; best: .*
1|SPEED=displayLists/triStrip/8=0.85|new is slower in 1 of 4 cells; worst: displayLists, detail 8, 15\.. %; overall .*
1|SCRIPT=displayLists/triStrip/8=abort|new fails in 1 cell that base runs \(displayLists/triStrip/8\); new is the same .*
1|SCRIPT=begin=fail|new fails in 4 cells that base runs .*
SIDES
}

@test "A death while drawing is its own side's, whoever begins" {
  for seed in {1..6}; do
    run -1 --separate-stderr versus --seed "$seed" --base '' \
      --new SCRIPT=displayLists/triStrip/8=drawing
    first_line
    matches 'new fails in 1 cell that base runs \(displayLists/triStrip/8\); new is the same .*'
  done
}

@test "Who begins a pair of frames changes with every pair" {
  export TURNS=$PWD/turns
  run -0 --separate-stderr versus --base SIDE=base --new SIDE=new
  # A pair is two lines. Of the pairs a visit draws only the first may begin as the one before it.
  awk '
    NR % 2 { asked = $1; next }
    $1 == asked { exit 1 }
    { pairs++; changes += asked != last; base += asked == "base"; last = asked }
    END {
      print pairs " pairs, " changes " changes, begun by base " base
      exit !(pairs > 50 && changes > 0.8 * pairs && base > 0.4 * pairs && base < 0.6 * pairs)
    }' turns
}

@test "Cells are judged one by one" {
  run -1 --separate-stderr versus --base '' \
    --new 'SPEED=displayLists/triStrip/8=0.8 SCRIPT=displayLists/triStrip/64=abort' \
    --new-name "Karl's" --markdown md
  matches "Karl's fails in .*
base: scripted .*
Karl's: scripted .* \(with SPEED=.*
.*SAME DRIVER.*

Detail 8, .*
method +base MTri/s +Karl's MTri/s +ratio .*
drawArrays +102 +102 +(1\.00.|0\.99.) +[01]\.... to [01]\.... +[0-9]+ +same
displayLists +101 +80\.. +0\.8.. +0\.... to 0\.80. +[0-9]+ +slower

Detail 64, .*
method .*
drawArrays .* same
displayLists + - +fails +\[1\]

\[1\] Karl's: died of SIGABRT .*assertion failed.*"
  output=$stderr
  matches "${anything}Slower by .* overall, or by .* in one cell, would ${anything}Fails in Karl's alone: .*"
  [ "$(grep -c '^| ' md)" = 8 ]
}

@test "Undecided rather than a guess" {
  # One block is no evidence, however large the change.
  run -125 --separate-stderr versus --base '' --new SPEED=all=0.5 --seconds 0.001
  first_line
  matches 'undecided: there was not enough time .*'
}

@test "A new side that starts at first and then no more leaves it undecided" {
  run -125 --separate-stderr versus --base '' --new SCRIPT=begin=later
  first_line
  matches 'undecided whether new still works, as no further worker could be started; .*'
}

@test "Every new side is held against the base, and the worst one is the answer" {
  run -1 --separate-stderr versus --base '' --new SPEED=all=1.001 --new SPEED=all=0.8 \
    --new SCRIPT=begin=fail --json three.json
  matches "new1 is the same as base .*
new2 is 20\.. % ± .* slower; .*
new3 fails in 4 cells .*
$anything"
  run -0 "$scripted" report three.json --html three.html
  run -255 versus --base '' --new A=1 --new A=2 --new-name one
}

@test "A base side that cannot be used stops a bisection" {
  run -255 versus --base SCRIPT=begin=fail --new ''
  matches '.*the base side cannot be used, as no worker of it could be started: found no device\.'
  run -255 --separate-stderr "$scripted" versus --unoptimised --methods drawArrays --details 8 \
    --base SCRIPT=drawArrays/triStrip/8=refuse --new ''
  first_line
  matches 'base has no figure to compare with\.'
  run -0 --separate-stderr versus --base SCRIPT=drawArrays/triStrip/8=fail --new ''
  matches "${anything}drawArrays .* base fails .*\n$anything\[1\] base: lost its context"
}

@test "A library that does not load leaves no driver to be compared with itself" {
  run -255 --separate-stderr versus --base LD_PRELOAD=/no.so --new A=
  [[ $stderr == *"the base side cannot be used"*": object '/no.so' from LD_PRELOAD cannot be "* ]]
  run -1 --separate-stderr versus --base A= --new 'LD_PRELOAD=/no.so SCRIPT=begin=chatter'
  first_line
  matches 'new fails in 4 cells that base runs .*'
  LD_PRELOAD=/no.so run -0 --separate-stderr versus --base '' --new LD_LIBRARY_PATH=/x
  first_line
  matches 'new is the same as base .*'
}

@test "What neither side can do is nobody's fault, whoever is asked first" {
  for seed in 1 3; do  # with these the one and the other
    run -255 versus --seed "$seed" --base SCRIPT=begin=fail --new SCRIPT=begin=fail
    for deed in abort fail silence; do
      SCRIPT=displayLists/triStrip/8=$deed run -0 --separate-stderr \
        versus --seed "$seed" --patience 2 --base '' --new ''
      first_line
      matches 'new is the same as base .*; 1 cell not compared\.'
    done
    SCRIPT='displayLists/triStrip/8=drawing displayLists/triStrip/64=drawing
      drawArrays/triStrip/64=drawing' run -0 --separate-stderr \
      versus --seed "$seed" --base '' --new ''
    first_line
    matches 'new is the same as base .*; 3 cells not compared\.'
  done
}

@test "A command line or a signal that leaves no verdict stops a bisection" {
  while IFS='|' read -r arguments sentence; do
    run -255 --separate-stderr eval "versus $arguments"
    grep -F -e "$sentence" <<<"$stderr"
  done <<'ARGUMENTS'
--base 'LIBGL_DRIVERS_PATH /x' --new ''|--base: 'LIBGL_DRIVERS_PATH' is no assignment
--base '' --new 'A=$(date)'|commands are not run
--base '' --new 'A="'|not closed
--base ''|--new is required
--base '' --new '' --threshold 0|--threshold
--base '' --new '' --frame nan|'nan' is no number
--base '' --new '' --base-name new|names that differ
--base '' --new '' --methds all|did you mean '--methods'
--base '' --new '' --json /nonexistent/file --seconds 1|cannot be written
ARGUMENTS
  run -130 --separate-stderr versus --base '' --new SCRIPT=displayLists/triStrip/8=interrupt
}

@test "Environments go to their sides alone" {
  # The base side is slow by what is in the environment, the new side is not.
  SPEED=all=0.5 run -0 --separate-stderr versus --base '' --new 'SPEED="all=1"'
  first_line
  matches 'new is .* faster; .*'
}

@test "A line and test cases tell a change elsewhere" {
  run -1 --separate-stderr versus --base '' \
    --new 'SPEED=drawArrays/triStrip/64=0.8 SCRIPT=displayLists/triStrip/8=abort' --line --junit cases.xml
  matches 'drawArrays, detail 64: -(19|20)\.[0-9]+ % ± [0-9.]+ % \(n = [0-9]+\)'
  grep '<testsuite name="new: Detail 64, triStrip, vertices alone" tests="2" failures="1" skipped="0" errors="0">' cases.xml
  grep -A1 'name="drawArrays/triStrip/64"><failure message="slower: 20\.' cases.xml
  grep 'name="displayLists/triStrip/8"><failure message="fails in new alone: died of SIGABRT' cases.xml
  /usr/bin/python3 -c 'import xml.etree.ElementTree as tree; tree.parse("cases.xml")'
}

@test "Functions explain a change" {
  run -1 --separate-stderr versus --base '' --new SPEED=drawArrays/triStrip/64=0.8 --seconds 8 --explain
  grep -E '^drawArrays/triStrip/64: \+2[0-9]\.. % of time in new; of that \+2[0-9]\.. in slowed \(libscripted\.so\)' <<<"$output"
  grep -E '^slowed +libscripted\.so .* changed$' <<<"$output"
  run -0 --separate-stderr versus --base '' --new SAMPLES=forbidden --seconds 8 \
    --explain displayLists/triStrip/8
  grep '^displayLists/triStrip/8: nobody knows where the time goes, as forbidden$' <<<"$output"
  run -255 versus --base '' --new '' --explain drawArray/triStrip/8
  matches ".*'drawArray/triStrip/8' is no cell; did you mean 'drawArrays/triStrip/8'\?"
}

# The recipe of docs/comparing.md: commits that change how fast it is, some of which cannot tell.
@test "A bisection is led to the commit" {
  export HOME=$PWD GIT_CONFIG_NOSYSTEM=1
  git init -q repo
  cd repo
  git config user.email a@b
  git config user.name a
  for speed in 1 1.001 0.999 skip 1 0.9 skip 0.9 0.9 0.9; do
    echo "$speed" >speed
    date +%N >>speed
    git add speed
    git commit -qm "speed $speed"
  done
  cat >../judge <<'JUDGE'
speed=$(head -1 speed) seconds=10
[ "$speed" != skip ] || speed=1 seconds=0.01
exec "$scripted" versus $cells --base '' --new SPEED=all=$speed --threshold 2 --seconds $seconds
JUDGE
  git bisect start HEAD HEAD~9
  run -0 env scripted="$scripted" cells="${cells[*]}" git bisect run bash ../judge
  [ "$(grep -A5 'is the first bad commit' <<<"$output" | grep -o 'speed.*')" = "speed 0.9" ]
  grep -e undecided <<<"$output"
  git bisect reset
  git bisect start HEAD HEAD~9
  run ! git bisect run "$scripted" versus --base '' --nwe ''
}

@test "Files are held against each other" {
  survey=("$scripted" run "${cells[@]}")
  "${survey[@]}" --precision 5 --json old.json
  SPEED=displayLists/triStrip/8=0.1 VERSION=2 "$scripted" run --unoptimised --details 8 \
    --methods drawArrays,displayLists,arrayElement --frame 10 --precision 5 --json new.json
  run -125 --separate-stderr "$scripted" compare old.json new.json
  matches "undecided whether new is slower than old: .*\n$anything"
  grep 'One sitting a side does not tell how far sittings lie apart' <<<"$stderr"
  run -0 --separate-stderr "$scripted" compare old.json --new old.json --threshold 20
  matches "new is the same as old within 20 %: .*\n$anything DRIVER$anything"
  for name in old new; do  # as if taken once more
    sed 's/"seed":[0-9]*/"seed":7/' "$name.json" >"$name-2.json"
  done
  run -0 --separate-stderr "$scripted" compare old.json old-2.json --new old.json old-2.json
  run -255 "$scripted" compare old.json old.json --new new.json
  matches '.*old.json is a sitting that was named before, and would count twice.*'
  run -1 --separate-stderr "$scripted" compare old.json old-2.json --new new.json new-2.json \
    --json both.json
  matches "new is .*slower.*; worst: displayLists, detail 8, 90\.. %.*\n$anything"
  output=$(grep -e missing -e added <<<"$output")
  matches 'arrayElement .* added .*\ndrawArrays .* missing .*\ndisplayLists .* missing .*'
  output=$stderr
  matches "${anything}The sittings differ in the length of a frame: 15 ms and 10 ms\.
${anything}Only in old: drawArrays/triStrip/64, displayLists/triStrip/64\.
${anything}Only in new: arrayElement/triStrip/8\."
  sed 's/"seed":[0-9]*/"seed":9/g' both.json >both-2.json
  run -0 --separate-stderr "$scripted" compare both.json both-2.json --new old.json old-2.json --threshold 60
  matches "new is .* faster; best: displayLists, detail 8, (899|900)\..*\n$anything"
}

@test "Cells that fail are named in files whose cells are in another order" {
  SCRIPT=drawArrays/triStrip/8=abort "$scripted" run "${cells[@]}" --seconds 3 --json old.json
  SCRIPT=displayLists/triStrip/64=abort "$scripted" run --methods displayLists,drawArrays \
    --details 64,8 --unoptimised --seconds 3 --json new.json
  run -1 --separate-stderr "$scripted" compare old.json new.json --json both.json
  first_line
  matches 'new fails in 1 cell that old runs \(displayLists/triStrip/64\);.*'
  grep 'Fails in new alone: displayLists/triStrip/64\.$' <<<"$stderr"
  grep 'Fails in old alone: drawArrays/triStrip/8\.$' <<<"$stderr"
  grep '"fails":\["displayLists/triStrip/64"\]' both.json
}

@test "Files that cannot be compared are refused" {
  "$scripted" run "${cells[@]}" --seconds 3 --json a.json
  "$scripted" run --methods arrayElement --details 8 --seconds 3 --unoptimised --json b.json
  run -255 --separate-stderr "$scripted" compare a.json b.json
  first_line
  matches 'old and new have no cell in common\.'
  echo '{"context": {}, "benchmarks": []}' >google.json
  run -255 "$scripted" compare google.json google.json
  matches '.*: google.json: this is a result of Google Benchmark, but not of .*'
  run -255 "$scripted" compare no.json b.json
  matches '.*: no.json cannot be read: No such file or directory'
}
