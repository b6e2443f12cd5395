#!/usr/bin/env bash
# Builds a program against an installed libketra with the flags of pkg-config, and runs it.
# usage: pkg-config.sh LIBDIR SOURCE WORKING_FOLDER COMPILER [FLAG...]
set -euo pipefail

libdir="$1" source="$2" folder="$3"
shift 3
export PKG_CONFIG_PATH="$libdir/pkgconfig"

mkdir -p "$folder"
resources="$(pkg-config --variable=resourcesdir ketra)"
# shellcheck disable=SC2046  # the flags are several words
"$@" -std=c++20 -DKETRA_RESOURCES_DIR="\"$resources\"" "$source" -o "$folder/host" \
    $(pkg-config --cflags --libs ketra) -Wl,-rpath,"$libdir"
cd "$folder"
./host
