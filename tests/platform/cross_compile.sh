#!/bin/sh
# Compiles each source for another processor with its cross compiler (no link), failing on any error
# or warning. Exits 77 (skipped) when the cross compiler is not installed.
#
#   cross_compile.sh COMPILER WORK_DIR INCLUDE_DIR [-DNAME=VALUE ...] -- SOURCE...
set -u

compiler=$1
work=$2
include=$3
shift 3
definitions=""
while [ $# -gt 0 ] && [ "$1" != "--" ]; do
  definitions="$definitions $1"
  shift
done
[ $# -gt 0 ] && shift

if ! command -v "$compiler" >/dev/null 2>&1; then
  echo "SKIPPED: $compiler is not installed (Debian's g++-aarch64-linux-gnu; scripts/setup installs it)"
  exit 77
fi

# A cross compiler does not search the build machine's /usr/include (its headers are for another
# processor), so the header-only libraries the engine uses are handed to it alone.
mkdir -p "$work/include"
ln -sfn /usr/include/rapidjson "$work/include/rapidjson"
ln -sfn /usr/include/tiny_gltf.h "$work/include/tiny_gltf.h"

count=0
failed=0
for source in "$@"; do
  count=$((count + 1))
  # shellcheck disable=SC2086 # the definitions are separate words
  if ! "$compiler" -std=c++20 -Wall -Wextra -Werror -I"$include" -isystem "$work/include" $definitions \
    -c "$source" -o "$work/unit.o"; then
    echo "FAILED: $source"
    failed=$((failed + 1))
  fi
done
rm -f "$work/unit.o"
echo "$compiler: $((count - failed)) of $count sources compile"
[ "$count" -gt 0 ] && [ "$failed" -eq 0 ]
