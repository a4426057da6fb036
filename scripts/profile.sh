#!/usr/bin/env bash
# Usage: profile.sh
# Makes a profile in build/profile: builds the libraries so that they count what runs, and counts
# while profile/train.cpp reads, edits and writes the texts of the tests and of the fuzz targets.
# Later builds of the preset release use the profile. ./dev package makes it anew.
set -euo pipefail

cd "$(dirname "$0")/.."
scripts/need.sh g++ cmake ninja zlib.h utf8.h
set -x
cmake --preset profile
cmake --build --preset profile
rm -rf build/profile/counts-*
build/profile/profile/siputility_train
