#!/usr/bin/env bash
# Installs the Debian packages that building, testing and running Quirnel need. Packages that
# dpkg already knows as installed are skipped, so a second run takes seconds.
set -euo pipefail

packages=(
    g++ cmake ninja-build pkg-config git
    qt6-base-dev qt6-base-dev-tools qt6-charts-dev libqt6opengl6-dev libgl-dev
    libfreeimage-dev libgtest-dev libgmock-dev libbenchmark-dev
    clang-format xvfb xauth imagemagick fonts-dejavu-core python3 poppler-utils
    clang libclang-rt-14-dev
    libhunspell-dev hunspell-en-us
)

missing=()
for package in "${packages[@]}"; do
    if ! dpkg -s "$package" >/dev/null 2>&1; then
        missing+=("$package")
    fi
done

if [ ${#missing[@]} -eq 0 ]; then
    echo "bootstrap: all ${#packages[@]} packages present"
    exit 0
fi

sudo=""
if [ "$(id -u)" -ne 0 ]; then
    sudo="sudo"
fi
echo "bootstrap: installing ${missing[*]}"
$sudo apt-get update -qq
DEBIAN_FRONTEND=noninteractive $sudo apt-get install -y -qq --no-install-recommends "${missing[@]}"
