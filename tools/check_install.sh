#!/usr/bin/env bash
# Installs a built zelvar into a temporary prefix and builds tiny consumers against it: with CMake's
# find_package(zelvar) and with pkg-config, in C and C++, against the shared and the static library.
# Each consumer must build and run.  usage: tools/check_install.sh <build dir> [c compiler] [c++ compiler]
set -euo pipefail
build=$(cd "$1" && pwd)
cc=${2:-cc}
cxx=${3:-c++}
here=$(cd "$(dirname "$0")" && pwd)
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

cmake --install "$build" --prefix "$work/prefix" > "$work/install.log"
libdir=$(find "$work/prefix" -name zelvar.pc -printf '%h\n' | head -1)
libdir=${libdir%/pkgconfig}

run() {  # name, program
    local out
    out=$("$2") || { echo "FAIL $1: $out"; exit 1; }
    [ "$out" = "consumer ok" ] || { echo "FAIL $1: $out"; exit 1; }
    echo "ok   $1"
}

# CMake: find_package(zelvar), shared and static.
for link in zelvar::zelvar zelvar::zelvar_static; do
    dir="$work/cmake-${link#zelvar::}"
    cmake -S "$here/consumer" -B "$dir" -DCMAKE_PREFIX_PATH="$work/prefix" -DZELVAR_LINK="$link" \
          -DCMAKE_C_COMPILER="$cc" -DCMAKE_CXX_COMPILER="$cxx" > "$dir.log" 2>&1 || { cat "$dir.log"; exit 1; }
    cmake --build "$dir" > "$dir.build.log" 2>&1 || { cat "$dir.build.log"; exit 1; }
    if [ "$link" = zelvar::zelvar_static ] && ldd "$dir/consumer_c" | grep -q libzelvar; then
        echo "FAIL cmake $link: the program needs libzelvar.so"; exit 1
    fi
    run "cmake $link C" "$dir/consumer_c"
    run "cmake $link C++" "$dir/consumer_cpp"
done

# pkg-config: the shared library, then the static one with the libraries it needs (Libs.private).
export PKG_CONFIG_PATH="$libdir/pkgconfig"
cflags=$(pkg-config --cflags zelvar)
shared_libs=$(pkg-config --libs zelvar)
static_libs=$(pkg-config --static --libs zelvar | sed 's/-lzelvar\b/-l:libzelvar.a/')
"$cc" $cflags "$here/consumer/main.c" -o "$work/pc_c_shared" $shared_libs -Wl,-rpath,"$libdir"
"$cxx" -std=c++17 $cflags "$here/consumer/main.cpp" -o "$work/pc_cpp_shared" $shared_libs -Wl,-rpath,"$libdir"
"$cc" $cflags "$here/consumer/main.c" -o "$work/pc_c_static" $static_libs
"$cxx" -std=c++17 $cflags "$here/consumer/main.cpp" -o "$work/pc_cpp_static" $static_libs
run "pkg-config shared C" "$work/pc_c_shared"
run "pkg-config shared C++" "$work/pc_cpp_shared"
run "pkg-config static C" "$work/pc_c_static"
run "pkg-config static C++" "$work/pc_cpp_static"
