#!/usr/bin/env bats
# Pages, by the whole program with scripted workers.
load common

report() {
  "$scripted" report "$@"
}

# The page is valid, holds the words that follow and needs nothing beside itself; $output is what
# its charts show.
check() {
  run -0 /usr/bin/python3 "$root/tests/survey/check-page.py" "$@"
}

@test "A report is one valid page that holds every cell" {
  export VERSION='<b>&"'
  "$scripted" run "${cells[@]}" --seconds 3 --json a.json
  SCRIPT=displayLists/triStrip/8=refuse "$scripted" run "${cells[@]}" --seconds 3 --json b.json
  report a.json --html a.html
  check a.html 'Fastest for' '<b>&"' 'Detail 8, triStrip' 'Detail 64, triStrip' drawArrays displayLists \
    'Rates over detail'
  matches "3 charts\n$anything"  # rates of two details and their lines
  report a.json b.json --html ab.html
  check ab.html 'Side by side' a b 'no lists here'
  matches "4 charts\n$anything"  # the same side by side, with lines for each
  "$scripted" versus "${cells[@]}" --base '' \
    --new 'SPEED="displayLists/triStrip/8=0.85 drawArrays/triStrip/64=1.08"' --json c.json || [ $? = 1 ]
  report c.json --html c.html
  check c.html 'slower in 1 of 4' 'geometric mean' 'SAME DRIVER'
  matches "7 charts\nslower 1, same 1\nfaster 1, same 1\n$anything"  # ratios of two details and of all; below them rates as above
  report a.json b.json c.json --html abc.html
  check abc.html
  matches "11 charts\n$anything"
}

@test "A report says what it lacks" {
  "$scripted" run "${cells[@]}" --seconds 3 --json a.json
  # The page's name forgotten: a result is no place for a page.
  cp a.json b
  run -255 report --html a.json b
  matches '.*a.json holds a result, which would be lost; .*'
  run -255 report a.json --html a.json
  matches '.*a.json is named twice; .*'
  cmp a.json b
  run -255 report b.json --html page
  matches '.*b.json cannot be read.*'
  run -1 report a.json --html /nonexistent/p
  matches '.*/nonexistent/p cannot be written.*'
}
