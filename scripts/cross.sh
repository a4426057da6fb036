#!/usr/bin/env bash
# Usage: cross.sh arm64|armhf|s390x|i386 [CTEST_ARGUMENT...]
# Builds the library, the tool and the tests for another processor with Debian's cross compiler.
# Runs the tests under qemu-user, those for i386 without it. zlib and libpcap come from that
# processor's Debian packages, GoogleTest from its Debian sources.
set -euo pipefail

cd "$(dirname "$0")/.."
case ${1-} in
  arm64) tools=(aarch64-linux-gnu-g++ qemu-aarch64) ;;
  armhf) tools=(arm-linux-gnueabihf-g++ qemu-arm) ;;
  s390x) tools=(s390x-linux-gnu-g++ qemu-s390x) ;;
  i386) tools=(i686-linux-gnu-g++) ;;
  *)
    sed -n '2s/^# //p' "$0" >&2
    exit 2
    ;;
esac
processor=$1
shift
scripts/need.sh "${tools[@]}" cmake ninja CLI/CLI.hpp nlohmann/json.hpp utf8.h googletest \
  python3-jsonschema

sysroot=$PWD/build/sysroot-$processor
if [ ! -f "$sysroot/withoutDbus.ld" ]; then
  # apt works in a folder of its own, so that the machine's list of architectures does not change. A
  # package list that cannot be fetched does not stop the script: the download below decides.
  folder=$(mktemp -d)
  trap 'rm -r "$folder"' EXIT
  mkdir -p "$folder/lists/partial" "$folder/cache/archives/partial"
  apt=(apt-get -o "APT::Architectures::=$processor" -o "Dir::State::Lists=$folder/lists"
    -o "Dir::Cache=$folder/cache" -o APT::Sandbox::User=root)
  "${apt[@]}" update || true
  (cd "$folder" && "${apt[@]}" download "zlib1g-dev:$processor" "libpcap0.8-dev:$processor")
  for package in "$folder"/*.deb; do
    dpkg -x "$package" "$sysroot.new"
  done
  "${tools[0]%g++}nm" "$sysroot.new"/usr/lib/*/libpcap.a 2>/dev/null |
    sed -n 's/^ *U \(dbus_.*\)/PROVIDE(\1 = 0);/p' >"$sysroot.new/withoutDbus.ld"
  rm -rf "$sysroot"
  mv "$sysroot.new" "$sysroot"
fi
set -x
cmake -G Ninja -S . -B "build/$processor" -DCMAKE_TOOLCHAIN_FILE="$PWD/cmake/cross.cmake" \
  -DSIPUTILITY_CROSS="$processor" -DSIPUTILITY_SYSROOT="$sysroot" -DCMAKE_BUILD_TYPE=RelWithDebInfo \
  -DSIPUTILITY_WERROR=ON
cmake --build "build/$processor"
ctest --test-dir "build/$processor" --output-on-failure -j "$(nproc)" "$@"
