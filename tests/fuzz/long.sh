#!/usr/bin/env bash
# Fuzzes every target for a share of the given seconds (an hour without), one at a time, and prints a
# table: what was run, how fast, what was reached and what was found. What is new to a target stays in
# the build folder's corpus, and so does every find, beside the command that replays it. Built by ./check.
#
#     tests/fuzz/long.sh [SECONDS [TARGET...]]      TARGET: settings_document, keeper_message, ...
set -euo pipefail
cd "$(dirname "$0")/../.."
seconds=${1:-${VX_LONG_SECONDS:-3600}}
shift $(($# > 0))
programs=build/sanitize/tests/fuzz
targets=("$@")
if [ ${#targets[@]} = 0 ]; then
  mapfile -t targets < <(find "$programs" -maxdepth 1 -type f -name 'fuzz_*' -perm -u+x -printf '%f\n' |
                         sed 's/^fuzz_//' | sort)
fi
[ ${#targets[@]} -gt 0 ] || { echo "no targets in $programs: run ./check first" >&2; exit 2; }
each=$((seconds / ${#targets[@]}))
export ASAN_OPTIONS=${ASAN_OPTIONS:-detect_leaks=1:strict_string_checks=1}
export UBSAN_OPTIONS=${UBSAN_OPTIONS:-print_stacktrace=1:halt_on_error=1}

# The value of a line "stat::NAME: VALUE" of a log.
figure() { sed -n "s/^stat::$2: *//p" "$1" | tail -1; }

# Edges and features that the corpus reaches, from libFuzzer's last line.
reached() { sed -n 's/.*cov: \([0-9]*\) ft: \([0-9]*\).*/\1 \2/p' "$1" | tail -1; }

# Runs one target; prints its line of the table. Fails when something was found.
fuzz() {
  local target=$1 log=$programs/$1.log corpus=$programs/corpus/$1 found=0 cpu runs edges features
  mkdir -p "$corpus"
  TIMEFORMAT='cpu %U %S'
  { time "$programs/fuzz_$target" -max_total_time="$each" -max_len=4096 -rss_limit_mb=1024 \
      -timeout=20 -close_fd_mask=1 -print_final_stats=1 -dict="$programs/words/wire.dict" \
      -artifact_prefix="$programs/$target-" "$corpus" "tests/fuzz/seeds/$target"; } \
    > "$log" 2>&1 || found=1
  cpu=$(awk '/^cpu/ {print $2 + $3}' "$log")
  runs=$(figure "$log" number_of_executed_units)
  read -r edges features < <(reached "$log") || true
  printf '%-18s %10d %9d %9d %7d %9d %6d\n' "$target" "${runs:-0}" \
    "$(awk -v runs="${runs:-0}" -v cpu="$cpu" 'BEGIN {print int(runs / (cpu + 0.01))}')" \
    "$(figure "$log" average_exec_per_sec)" "${edges:-0}" "${features:-0}" "$found"
  [ "$found" = 0 ] || tell_find "$target" "$log"
  return "$found"
}

tell_find() {
  local file
  file=$(sed -n 's/.*Test unit written to //p' "$2" | tail -1)
  grep -aE 'ERROR|runtime error|out of range|no JSON|the lab answers' "$2" | head -3 | sed 's/^/    /'
  echo "    replay: $programs/fuzz_$1 $file"
}

printf '%-18s %10s %9s %9s %7s %9s %6s\n' target runs 'a CPU s' 'a second' edges features finds
finds=0
for target in "${targets[@]}"; do
  fuzz "$target" || finds=$((finds + 1))
done
[ "$finds" = 0 ]
