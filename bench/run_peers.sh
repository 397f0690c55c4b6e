#!/usr/bin/env bash
# Runs the workloads of the peer benchmark (../shared/bench-peers) with our library plugged in,
# so our figures and the peers' come from one run on one machine.
#   bench/run_peers.sh [--install] [--xml | --all] [extra options for run_all.sh ...]
#     --install  install the peers from Debian first (the peer suite's install_peers.sh)
#     --xml      the XML family's workloads (W1, W2, W5 xlsx, W6, LS1) with their anchors,
#                libxlsxwriter, liborcus and ssconvert, instead of the binary family's
#     --all      every workload and peer instead of the binary family's (W3, W4, W5 xls, LS2)
# Environment: BUILD the Release build directory (default build-bench), PEERS the peer suite
# (default ../shared/bench-peers beside the repository), RESULTS the TSV to write (default
# bench/results/peers-<date>.tsv), BENCH_WORK the scratch directory.
set -euo pipefail
ROOT="$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)"
PEERS="${PEERS:-$ROOT/../shared/bench-peers}"
BUILD="${BUILD:-$ROOT/build-bench}"
[[ -d "$PEERS" ]] || { echo "peer suite not found at $PEERS" >&2; exit 1; }

install=0 all=0 xml=0 extra=()
for arg in "$@"; do
  case "$arg" in
    --install) install=1 ;;
    --all) all=1 ;;
    --xml) xml=1 ;;
    *) extra+=("$arg") ;;
  esac
done
if (( install )); then "$PEERS/install_peers.sh"; fi

cmake -S "$ROOT" -B "$BUILD" -DCMAKE_BUILD_TYPE=Release -DZELVAR_TESTS=OFF -DZELVAR_EXAMPLES=OFF >/dev/null
cmake --build "$BUILD" -j"${JOBS:-2}" --target zelvar
HARNESS="$BUILD/zelvar_bench"
g++ -std=c++17 -O2 -I"$ROOT/include" "$PEERS/harness/zelvar/zelvar_bench.cpp" -o "$HARNESS" \
    -L"$BUILD" -lzelvar -Wl,-rpath,"$BUILD" -ldl

mkdir -p "$ROOT/bench/results"
export ZELVAR_BENCH="$HARNESS"
export RESULTS="${RESULTS:-$ROOT/bench/results/peers-$(date -u +%F).tsv}"
select=()
if (( xml && ! all )); then
  # The XML family, its anchors and the peers its targets name; the Python and Perl writers
  # and the office suite take minutes and add nothing to these ratios.
  export RESULTS="${RESULTS%.tsv}"
  [[ "$RESULTS" == *-xml ]] || RESULTS="$RESULTS-xml"
  RESULTS="$RESULTS.tsv"
  select=(--only 'zelvar W1' --only 'zelvar W2' --only 'zelvar [xlsx]' --only 'zelvar W6' --only 'zelvar LS1'
          --only 'libxlsxwriter' --only 'liborcus (C++)' --only 'anchor: zlib' --only 'ssconvert LS1'
          --skip soffice)
elif (( ! all )); then
  # The binary family and its peers; the office suite and the Perl peers take minutes and add
  # nothing to these ratios.
  select=(--only W3 --only W4 --only 'xls]' --only LS2 --skip perl --skip soffice --skip LS3 --skip LS4)
fi
"$PEERS/run_all.sh" ${select[@]+"${select[@]}"} ${extra[@]+"${extra[@]}"}
echo "results: $RESULTS" >&2
