#!/usr/bin/env bash
# Installs the Debian packages that building, testing, fuzzing and benchmarking need.
# Only missing packages are installed; apt-get update runs at most once.
set -euo pipefail

packages=(
  cmake g++ make pkg-config
  zlib1g-dev libsparsehash-dev libutfcpp-dev libxml2-dev
  libgtest-dev libgmock-dev libbenchmark-dev
  python3 python3-xlrd python3-openpyxl python3-olefile
  clang libclang-rt-14-dev
  zip unzip libxml2-utils
  gnumeric  # ssconvert recalculates the formulas we write, in the tests
  python3-pil file  # openpyxl loads pictures through it; file tells an image's size independently

)

missing=()
for p in "${packages[@]}"; do
  if ! dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q 'install ok installed'; then
    missing+=("$p")
  fi
done
[ ${#missing[@]} -eq 0 ] && exit 0

if [ "$(id -u)" -eq 0 ]; then sudo=""; else sudo="sudo"; fi
echo "installing: ${missing[*]}"
export DEBIAN_FRONTEND=noninteractive
$sudo apt-get update -qq
$sudo apt-get install -y -qq --no-install-recommends "${missing[@]}"
