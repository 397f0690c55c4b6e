#!/usr/bin/env bash
# Runs every fuzz target of a fuzz build for a short time, as a smoke test.
# fuzz/<name>.seconds sets a target's time (default 60; FUZZ_SCALE multiplies it);
# fuzz/seeds/<name>/ holds committed seeds, and fuzz/<name>.seeds may list further seed
# folders relative to the repository (missing ones are skipped); fuzz/<name>.dict, when
# present, is the target's dictionary; fuzz/<name>.timeout sets the seconds one input may take
# (default 20).
set -euo pipefail
build=${1:-build-fuzz}
root=$(cd "$(dirname "$0")/.." && pwd)
scale=${FUZZ_SCALE:-1}
status=0
shopt -s nullglob
for bin in "$root/$build"/fuzz_*; do
  [ -x "$bin" ] || continue
  name=$(basename "$bin"); name=${name#fuzz_}
  secs=60
  [ -f "$root/fuzz/$name.seconds" ] && secs=$(cat "$root/fuzz/$name.seconds")
  secs=$(( secs * scale ))
  work=$(mktemp -d)
  seeds=("$work")
  [ -d "$root/fuzz/seeds/$name" ] && seeds+=("$root/fuzz/seeds/$name")
  if [ -f "$root/fuzz/$name.seeds" ]; then
    while read -r d; do
      [ -n "$d" ] && [ -d "$root/$d" ] && seeds+=("$root/$d")
    done < "$root/fuzz/$name.seeds"
  fi
  timeout=20
  [ -f "$root/fuzz/$name.timeout" ] && timeout=$(cat "$root/fuzz/$name.timeout")
  extra=()
  [ -f "$root/fuzz/$name.dict" ] && extra+=("-dict=$root/fuzz/$name.dict")
  echo "== fuzz $name for ${secs}s"
  if ! (cd "$work" && "$bin" -max_total_time="$secs" -timeout="$timeout" -rss_limit_mb=2560 \
        -max_len=1048576 -print_final_stats=1 "${extra[@]}" "${seeds[@]}" > "$work/log" 2>&1); then
    echo "fuzz target $name failed:"; tail -60 "$work/log"; status=1
  else
    grep -E '^(stat::number_of_executed_units|Done)' "$work/log" || tail -3 "$work/log"
  fi
  rm -rf "$work"
done
exit $status
