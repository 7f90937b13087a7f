#!/usr/bin/env bash
# Installs the Debian packages that building and testing typeprint need, when any is missing.
set -euo pipefail
packages=(cmake g++ make pkg-config zlib1g-dev libplist-dev libicu-dev libdeflate-dev
          libgtest-dev libgmock-dev libbenchmark-dev binutils
          libwoff-dev libbrotli-dev
          libcli11-dev nlohmann-json3-dev libfontconfig-dev python3-jsonschema  # the typeprint command and its tests
          fontconfig t1utils python3-fonttools python3-brotli  # the duplicates tree test
          clang libclang-rt-14-dev
          t1utils xfonts-utils python3-fonttools fontconfig  # checkers of the files extract writes
          help2man debhelper dpkg-dev lintian  # the man page; the Debian packages and their test
          fonts-dejavu-core fonts-urw-base35)  # real fonts the analysis tests read (skipped when absent)
missing=()
for p in "${packages[@]}"; do
  dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q 'install ok installed' || missing+=("$p")
done
if [ ${#missing[@]} -gt 0 ]; then
  echo "installing: ${missing[*]}" >&2
  SUDO=""; [ "$(id -u)" -eq 0 ] || SUDO=sudo
  $SUDO apt-get update
  DEBIAN_FRONTEND=noninteractive $SUDO apt-get install -y "${missing[@]}"
fi
