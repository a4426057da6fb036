#!/usr/bin/env bash
# Usage: external.sh PREFIX WORK_DIRECTORY GENERATOR C++_COMPILER C_COMPILER
# Checks what the packages of a library over an external platform do if a library of the platform is
# elsewhere, and that they name files as they were named. PREFIX is where such a library is
# installed.
set -euo pipefail

root=$(dirname "$(dirname "$(readlink -f "$0")")")
work=$2 elsewhere="$2/lib-imsvarn.so"
options=(-G "$3" -DCMAKE_CXX_COMPILER="$4" -DCMAKE_C_COMPILER="$5")
rm -rf "$work"
mkdir -p "$work"
cp -a "$1" "$work/moved"
find "$work/moved" -name lib-imsvarn.so -exec mv {} "$elsewhere" \;

configure() {
  cmake -S "$root/examples/consumer" -B "$work/consumer" "${options[@]}" \
    -DCMAKE_PREFIX_PATH="$work/moved" "$@"
}
if configure 2>"$work/refused"; then exit 1; fi
grep 'set SIPUTILITY_IMSVARN_LIBRARY to lib-imsvarn of your platform' "$work/refused"
configure -DSIPUTILITY_IMSVARN_LIBRARY="$elsewhere"
cmake --build "$work/consumer"
"$work/consumer/consumer"

PKG_CONFIG_PATH=$(dirname "$(find "$work/moved" -name siputility.pc)")
export PKG_CONFIG_PATH
pkg-config --libs siputility --define-variable=imsvarn=/at/lib-imsvarn.so |
  grep ' /at/lib-imsvarn.so '

cmake -S "$root" -B "$work/files" "${options[@]}" -DSIPUTILITY_PLATFORM=external \
  -DSIPUTILITY_IMSDPL_LIBRARY=/at/lib-imsdpl.so -DSIPUTILITY_IMSVARN_LIBRARY="$elsewhere" \
  -DSIPUTILITY_IMSXML_LIBRARY=/at/lib-imsxml.so
grep 'imsdpl=-L/at -l:lib-imsdpl.so' "$work/files/siputility.pc"
grep '"/at/lib-imsdpl.so"' "$work/files/siputilityConfig.cmake"
