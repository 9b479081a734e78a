#!/usr/bin/env bats
# The survey with its own workers, on the real driver.
load common

# Drivers end the program in their own way where a library is loaded before the sanitizers'.
export ASAN_OPTIONS=verify_asan_link_order=0

@test "All cells are drawn without an error" {
  run -0 --separate-stderr "$survey" run --methods all --details 1,64 --frame 1 --seconds 100 \
    --precision 100 --csv table
  grep "^On .*$renderer" <<<"$output"
  [ "$(awk -F, 'NR > 1 && $8 > 0' table | wc -l)" = 32 ]
  run ! grep failed <<<"$stderr"
}

@test "A worker that dies or stops inside the driver costs its cell" {
  while read -r signal seconds reason; do
    CALL_LIST_SIGNAL=$(kill -l "$signal") LD_PRELOAD=$build/tests/survey/libsignal_in_call_list.so \
      run -0 --separate-stderr "$survey" run --methods drawArrays,displayLists --details 8 \
      --seconds "$seconds" --patience 8 --precision 100
    matches "$anything> +drawArrays +[0-9.]+ $anything +displayLists +- .*\[1\]\n\n\[1\] $reason.*"
  done <<'ENDS'
SIGABRT 8 died of SIGABRT \(Aborted\)
SIGKILL 8 died of SIGKILL \(Killed\)
SIGSTOP 20 did not answer within 8 s
ENDS
}

@test "A file tells which builds were loaded, and in which environment" {
  library=$build/tests/survey/libsignal_in_call_list.so
  LD_PRELOAD=$library MESA_OF_NO_USE=1 run -0 --separate-stderr "$survey" run \
    --methods drawArrays --details 8 --seconds 2 --precision 100 --json a.json
  id=$(readelf --notes "$library" | sed -n 's/.*Build ID: //p')
  [ "${#id}" = 40 ]
  grep -F "{\"build\":\"$id\",\"path\":\"$library\"}" a.json >/dev/null
  grep -F "\"LD_PRELOAD=$library\",\"MESA_OF_NO_USE=1\"" a.json >/dev/null
}

@test "A device that is not there is named as it was asked for" {
  run -1 "$survey" run --device nowhere --methods drawArrays --details 8
  matches 'sorvanta-survey: .* no worker could be started: --device=nowhere matches no graphics device; .*(\n  [0-9]+: .+)+'
}

@test "Samples name functions, or why there are none" {
  run -0 --separate-stderr "$survey" versus --base '' --new '' --methods drawArrays --details 8 \
    --seconds 12 --threshold 90 --explain drawArrays/triStrip/8
  grep -E ' ((the kernel (takes|lets this user take) no samples)|.*% of time in new)' <<<"$output"
  grep 'no samples' <<<"$output" ||
    grep -E '^(__libc_)?malloc +libc.so |^_int_malloc +libc.so |^(\(no name\)|[a-z_]+) +(swrast|libgallium)' <<<"$output"
}

@test "It draws on screen only when asked to" {
  # Where a software renderer has to fill pixels as well.
  rate() {
    "$survey" run --methods drawArrays --details 8 --seconds 2 --precision 100 --csv table "$@" >out 2>&1
    awk -F, 'NR > 1 { print int($8) }' table
  }
  [ "$(rate)" -gt $((2 * $(rate --on-screen))) ]
}

@test "Cells that sent less are ranked among their like and say so" {
  run -0 --separate-stderr "$survey" run --methods drawArrays,immediateMode,drawArraysWithStaticVBO \
    --details 8 --with '-c -n' --with -m --frame 1 --seconds 20 --precision 100
  output=$(grep -e ^Detail -e sends -e changes -e '^.  .*StaticVBO  ' <<<"$output")
  matches 'Detail 8, triStrip, with -n
.*StaticVBO .*\[.\]
Detail 8, triStrip, with -n -c
Detail 8, triStrip, with -m
Detail 8, triStrip, vertices alone
.*StaticVBO .*\[.\]
(.* method drawArrays.* sends no colours.*\n){2}.*-m changes nothing here.*'
}
