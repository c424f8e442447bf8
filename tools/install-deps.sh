#!/usr/bin/env bash
# Installs what a fresh Debian machine lacks to build and test Mero, with
# apt-get, and does nothing when everything is there. Run by `make test`
# (and so by CI); safe to run again. `install-deps.sh arm` (run by
# `make test-arm`) also installs the ARM cross compilers, qemu-user and
# GoogleTest's sources.
set -euo pipefail

# Tools are looked for on PATH (a machine may carry its own node and npm, or
# a JDK outside Debian's packages); libraries by their Debian package.
tools=(
  make:make cmake:cmake ninja:ninja-build g++:g++ git:git
  javac:openjdk-17-jdk-headless npm:npm
)
# The card previewer measures and draws text with the DejaVu fonts.
libraries=(libgtest-dev libbenchmark-dev rapidjson-dev libsimdjson-dev fonts-dejavu-core fonts-dejavu-extra fontconfig)

# The ARM checks: Debian's cross compilers with their target libraries, user
# mode emulation, and GoogleTest's sources (/usr/src/googletest) to build it
# for each target.
if [ "${1:-}" = arm ]; then
  tools+=(
    aarch64-linux-gnu-g++:g++-aarch64-linux-gnu arm-linux-gnueabihf-g++:g++-arm-linux-gnueabihf
    qemu-aarch64:qemu-user qemu-arm:qemu-user
  )
  libraries+=(googletest)
fi

missing=()
for entry in "${tools[@]}"; do
  command -v "${entry%%:*}" >/dev/null 2>&1 || missing+=("${entry#*:}")
done
for package in "${libraries[@]}"; do
  if ! dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q "install ok installed"; then
    missing+=("$package")
  fi
done

[ ${#missing[@]} -eq 0 ] && exit 0
mapfile -t missing < <(printf '%s\n' "${missing[@]}" | sort -u)

echo "install-deps: installing ${missing[*]}"
sudo=""
if [ "$(id -u)" -ne 0 ]; then
  if ! command -v sudo >/dev/null 2>&1; then
    echo "install-deps: not root and no sudo; install these with apt-get: ${missing[*]}" >&2
    exit 1
  fi
  sudo="sudo"
fi
$sudo apt-get update -qq
DEBIAN_FRONTEND=noninteractive $sudo apt-get install -y -qq --no-install-recommends "${missing[@]}"
