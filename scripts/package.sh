#!/usr/bin/env bash
# Usage: package.sh
# Makes a profile and with it the Debian packages in build/package, checks them with lintian, unpacks
# them into a folder and tries siputil and examples/consumer there.
set -euo pipefail

cd "$(dirname "$0")/.."
scripts/need.sh g++ cmake ninja zlib.h CLI/CLI.hpp nlohmann/json.hpp utf8.h pcap/pcap.h dpkg-shlibdeps \
  lintian pkg-config
scripts/profile.sh
build=$PWD/build/package
export DEB_BUILD_MAINT_OPTIONS=hardening=+all
CXXFLAGS="$(dpkg-buildflags --get CPPFLAGS) $(dpkg-buildflags --get CXXFLAGS) -g0"
LDFLAGS=$(dpkg-buildflags --get LDFLAGS)
SOURCE_DATE_EPOCH=$(git log -1 --format=%ct 2>/dev/null || date +%s)
export CXXFLAGS LDFLAGS SOURCE_DATE_EPOCH
umask 022
set -x
cmake -S . -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=Release -DSIPUTILITY_BUILD_TESTS=OFF \
  -DSIPUTILITY_PROFILE=build/profile -DCMAKE_INSTALL_PREFIX=/usr \
  -DSIPUTILITY_ZSH_COMPLETIONS=share/zsh/vendor-completions
cmake --build "$build"
rm -rf "$build"/*.deb "$build/root"
cpack --config "$build/CPackConfig.cmake" -B "$build"
lintian --fail-on error "$build"/*.deb

root=$build/root
for package in "$build"/*.deb; do dpkg-deb -x "$package" "$root"; done
"$root/usr/bin/siputil" address 'sip:alice@example.test;lr'
tests/consumer.sh "$root/usr" "$build/consumer" Ninja "${CXX-c++}" "${CC-cc}"
ls -1 "$build"/*.deb
