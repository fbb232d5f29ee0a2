#!/usr/bin/env bash
# What a user of Linux gets runs where it was put: by `cmake --install`, and with "packages" also what is in the .deb and
# the .tar.gz that the target `package` makes.
# usage: native_test.sh SOURCE BUILD [packages]
set -euo pipefail
source=$1
build=$2
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
export QVESPRIT_REGISTRY=$folder/registry.reg QVEspritUserModelsPath=$folder
export QVEspritInstallPath=$source/examples/shop/programs/ QVEspritExportPath=$folder

# runs_from PREFIX: the program, through its link, finds component, settings and texts in its own folder and imports.
runs_from() {
  local prefix=$1
  "$prefix/bin/deskhost" open "$source/examples/shop/turret.json" import "$source/examples/shop/job-tools.csv" \
    "$source/examples/shop/shop-speeds.csv" save "$folder/turret.json" >"$folder/said" 2>&1 </dev/null ||
    { cat "$folder/said"; return 1; }
  grep -q '"Tools": \[' "$folder/turret.json" || { echo "$prefix: no tools came in"; return 1; }
  grep -q '^\.TH ' "$prefix/share/man/man1/deskhost.1" || gzip -dc "$prefix/share/man/man1/deskhost.1.gz" | grep -q '^\.TH '
  bash -c 'source "$1"; complete -p deskhost' - "$prefix/share/bash-completion/completions/deskhost" >/dev/null
}

cmake --install "$build" --prefix "$folder/installed" >/dev/null
runs_from "$folder/installed"
[ "${3:-}" = packages ] || exit 0

cmake --build "$build" --target package >"$folder/packed" 2>&1 || { cat "$folder/packed"; exit 1; }
packages=$source/build/packages
(cd "$packages" && sha256sum --check --quiet SHA256SUMS)
version=$("$folder/installed/bin/deskhost" --version | sed -n '1s/.* \([0-9][0-9.]*\).*/\1/p')
dpkg-deb -x "$packages/deskhost_${version}_$(dpkg --print-architecture).deb" "$folder/debian"
runs_from "$folder/debian/usr"
mkdir "$folder/archive"
tar -xzf "$packages/deskhost-$version-linux-$(uname -m).tar.gz" -C "$folder/archive" --strip-components=1
runs_from "$folder/archive"
