#!/usr/bin/env bash
# Usage: linking.sh WAY PREFIX WORK_DIRECTORY GENERATOR C++_COMPILER C_COMPILER
# Links examples/consumer as the section WAY of docs/linking.md does, installs the program and runs
# it. PREFIX is where the library is installed.
set -euo pipefail

root=$(dirname "$(dirname "$(readlink -f "$0")")")
way=$1 prefix=$2 work=$3 generator=$4 cxx=$5 cc=$6

block() { # LANGUAGE: the first such block of the section
  awk -v heading="## $way" -v fence="\`\`\`$1" '
    inside && $0 == "```" {exit}
    inside
    $0 == heading {found = 1}
    found && $0 == fence {inside = 1}' "$root/docs/linking.md"
}

rm -rf "$work"
mkdir -p "$work/project" "$work/installed/bin"
cp "$root"/examples/consumer/{consumer.cpp,caller.c} "$work/project"
printf '%s\n' '#include <siputility/sipMessage.h>' \
  'int main() { return siputility::isStartLine("SIP/2.0 200 OK") ? 0 : 1; }' \
  >"$work/project/messages.cpp"
program=consumer
options=()
case $way in
  add_subdirectory) ln -s "$root" "$work/project/lib-siputility" ;;
  # The static libraries are installed for other tests.
  FetchContent) options=(-DFETCHCONTENT_SOURCE_DIR_SIPUTILITY="$root" -DSIPUTILITY_INSTALL=ON) ;;
  find_package) ;;
  C) program=caller ;;
esac
if [ "$way" = pkg-config ]; then
  PKG_CONFIG_PATH=$(dirname "$(find "$prefix" -name siputility.pc)")
  export PKG_CONFIG_PATH
  (
    cd "$work/project"
    # shellcheck disable=SC2317  # eval calls it
    c++() { "$cxx" "$@"; }
    eval "eval $(block sh)"
    mv consumer "$work/installed/bin"
    # shellcheck disable=SC2046  # words are options
    eval "$cxx" -std=c++17 messages.cpp $(pkg-config --cflags --libs siputility-message) \
      -Wl,-rpath,$(pkg-config --variable=libdir siputility)
    ./a.out
  )
else
  block cmake >"$work/project/CMakeLists.txt"
  if [ "$way" != C ]; then
    # A program that uses the platform only, and one that reads messages.
    printf '%s\n' 'add_executable(blocks blocks.cpp)' \
      'target_link_libraries(blocks PRIVATE siputility::imsdpl)' \
      'add_executable(messages messages.cpp)' \
      'target_link_libraries(messages PRIVATE siputility::message)' >>"$work/project/CMakeLists.txt"
    printf '%s\n' '#include <siputility/imsdpl.h>' '#include "hostControl.h"' \
      'int main() { __free(__malloc(1)); return hostLiveBlocks() == 0 ? 0 : 1; }' \
      >"$work/project/blocks.cpp"
  fi
  cmake -S "$work/project" -B "$work/build" -G "$generator" \
    -DCMAKE_CXX_COMPILER="$cxx" -DCMAKE_C_COMPILER="$cc" -DCMAKE_PREFIX_PATH="$prefix" \
    -DCMAKE_FIND_PACKAGE_NO_PACKAGE_REGISTRY=ON "${options[@]}"
  cmake --build "$work/build"
  [ "$way" = C ] || { "$work/build/blocks" && "$work/build/messages"; }
  cmake --install "$work/build" --prefix "$work/installed"
  # Only what is installed is left.
  mv "$work/build" "$work/build.moved"
  trap 'mv "$work/build.moved" "$work/build"' EXIT
fi
"$work/installed/bin/$program"
