#!/usr/bin/env bash
# Installs the Debian packages the build needs, when any is missing.
set -euo pipefail

packages=(
    cmake g++ make pkg-config
    qt6-base-dev qt6-base-dev-tools libgl-dev
    libgtest-dev libgmock-dev libbenchmark-dev nlohmann-json3-dev libeigen3-dev
    fonts-dejavu-core fontconfig
    python3
    desktop-file-utils
    clang-14 libclang-rt-14-dev llvm-14
)

missing=()
for package in "${packages[@]}"; do
    if ! dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q "install ok installed"; then
        missing+=("$package")
    fi
done

if [ ${#missing[@]} -gt 0 ]; then
    echo "Installing: ${missing[*]}"
    sudo=""
    if [ "$(id -u)" -ne 0 ]; then
        sudo="sudo"
    fi
    $sudo env DEBIAN_FRONTEND=noninteractive apt-get update -qq
    $sudo env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends "${missing[@]}"
fi
