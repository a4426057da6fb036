#!/usr/bin/env bash
# Usage: need.sh PROBE...
# Makes sure that programs and headers are installed. On Debian and Ubuntu it installs the packages
# of missing ones; elsewhere it lists them. A probe is one of the names below.
set -euo pipefail

package_of() {
  case $1 in
    g++ | cmake | clang-format | clang-tidy | debootstrap | doxygen | gcovr | jq) echo "$1" ;;
    doxygen-awesome-css | lintian | pkg-config | python3 | python3-jsonschema | python3-scipy) echo "$1" ;;
    shellcheck | valgrind | zsh) echo "$1" ;;
    clang++) echo clang ;;
    dpkg-shlibdeps) echo dpkg-dev ;;
    ninja) echo ninja-build ;;
    CLI/CLI.hpp) echo libcli11-dev ;;
    nlohmann/json.hpp) echo nlohmann-json3-dev ;;
    utf8.h) echo libutfcpp-dev ;;
    gtest/gtest.h) echo libgtest-dev ;;
    benchmark/benchmark.h) echo libbenchmark-dev ;;
    compare.py) echo libbenchmark-tools ;;
    pcap/pcap.h) echo libpcap-dev ;;
    zlib.h) echo zlib1g-dev ;;
    *-linux-gnu*-g++) echo "g++-${1%-g++}" ;;
    qemu-*) echo qemu-user ;;
    googletest) echo googletest ;;
    sanitizer/asan_interface.h) echo libclang-rt-dev ;;
    *)
      echo "need.sh: unknown probe $1" >&2
      exit 2
      ;;
  esac
}

present() {
  case $1 in
    sanitizer/*) echo "#include <$1>" | clang++ -E -x c++ - ;;
    doxygen-awesome-css) [ -r /usr/share/doxygen-awesome-css/doxygen-awesome.css ] ;;
    compare.py) [ -r /usr/share/benchmark/compare.py ] ;;
    googletest) [ -d /usr/src/googletest ] ;;
    python3-jsonschema) /usr/bin/python3 -c 'from jsonschema import Draft202012Validator' ;;
    python3-scipy) /usr/bin/python3 -c 'import scipy' ;;
    *.h | */*) echo "#include <$1>" | g++ -E -x c++ - ;;
    *) command -v "$1" ;;
  esac >/dev/null 2>&1
}

missing=()
for probe in "$@"; do
  present "$probe" || missing+=("$(package_of "$probe")")
done
[ ${#missing[@]} -ne 0 ] || exit 0

as_root=()
[ "$(id -u)" -eq 0 ] || as_root=(sudo)
if ! command -v apt-get >/dev/null || ! command -v "${as_root[0]-true}" >/dev/null; then
  echo "dev: missing here, please install (Debian's package names): ${missing[*]}" >&2
  exit 1
fi
install() {
  "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -y --no-install-recommends \
    "${missing[@]}"
}

# The package lists are fetched only if an install fails without that. A list of another source that
# cannot be fetched does not stop the script: the second attempt decides.
echo "dev: installing ${missing[*]} with apt-get" >&2
{
  install || {
    "${as_root[@]}" apt-get update || true
    install
  }
} >&2 </dev/null
