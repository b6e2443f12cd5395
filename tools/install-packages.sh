#!/usr/bin/env bash
# Installs the Debian packages that packages.txt lists, and those named as arguments, where they are
# missing. Asks dpkg only; apt-get runs only when something is missing.
set -euo pipefail

if [[ "${1:-}" == --help ]]; then
    echo "usage: tools/install-packages.sh [PACKAGE...]"
    echo "Installs what is missing of packages.txt and of the packages named."
    exit 0
fi

list="$(dirname "$0")/../packages.txt"
mapfile -t wanted < <(sed -e 's/#.*//' -e 's/[[:space:]]//g' -e '/^$/d' "$list")
wanted+=("$@")

if ! command -v dpkg-query > /dev/null; then
    echo "install-packages: not a Debian system; needed are the equivalents of: ${wanted[*]}" >&2
    exit 0
fi

missing=()
installed=" $(dpkg-query -W -f '${Package} ${db:Status-Status}\n' | awk '$2 == "installed" { printf "%s ", $1 }')"
for package in "${wanted[@]}"; do
    [[ "$installed" == *" $package "* ]] || missing+=("$package")
done
[[ ${#missing[@]} -eq 0 ]] && exit 0

if [[ "$(id -u)" -eq 0 ]]; then
    as_root=(env)
elif command -v sudo > /dev/null && sudo -n true 2> /dev/null; then
    as_root=(sudo -n env)
else
    echo "install-packages: please install first: sudo apt-get install ${missing[*]}" >&2
    exit 1
fi

echo "install-packages: installing ${missing[*]}" >&2
"${as_root[@]}" apt-get update -qq >&2
"${as_root[@]}" DEBIAN_FRONTEND=noninteractive \
    apt-get install -y -qq --no-install-recommends "${missing[@]}" >&2 < /dev/null
