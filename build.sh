#!/usr/bin/env bash
# Sets up a fresh Debian machine (as root) and builds zor.
#   ./build.sh test   installs missing packages, builds, runs every test (plain, then under
#                     AddressSanitizer + UndefinedBehaviorSanitizer), then builds a consumer
#                     against the installed package.
set -euo pipefail
cd "$(dirname "$0")"

packages=(g++ cmake ninja-build pkg-config libgtest-dev libgmock-dev libbenchmark-dev
          libsqlite3-dev libsystemd-dev uuid-dev libelf-dev dbus-daemon)

install_missing() {
  local missing=()
  for p in "${packages[@]}"; do
    dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed" || missing+=("$p")
  done
  if ((${#missing[@]})); then
    echo "== installing: ${missing[*]}"
    export DEBIAN_FRONTEND=noninteractive
    apt-get update -qq
    apt-get install -y -qq --no-install-recommends "${missing[@]}"
  fi
}

jobs=$(nproc)

build_and_test() {  # dir, cmake args...
  local dir=$1; shift
  cmake -S . -B "$dir" -G Ninja -DZOR_WERROR=ON "$@"
  cmake --build "$dir" -j "$jobs"
  ctest --test-dir "$dir" -j "$jobs" --output-on-failure --timeout 600
}

run_tests() {
  install_missing
  echo "== release build and tests"
  build_and_test build -DCMAKE_BUILD_TYPE=RelWithDebInfo

  echo "== sanitizer build and tests"
  ASAN_OPTIONS=detect_leaks=1:abort_on_error=1 UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1 \
    build_and_test build-asan -DCMAKE_BUILD_TYPE=Debug -DZOR_SANITIZE=ON -DZOR_BUILD_BENCHMARKS=OFF

  echo "== installed package: find_package and pkg-config consumers"
  local prefix
  prefix=$(mktemp -d)
  cmake --install build --prefix "$prefix"
  cmake -S tests/consumer -B build-consumer -G Ninja -DCMAKE_PREFIX_PATH="$prefix"
  cmake --build build-consumer
  ./build-consumer/zor_consumer
  g++ -o build-consumer/zor_consumer_pc tests/consumer/main.cpp \
    $(PKG_CONFIG_PATH="$prefix/lib/pkgconfig" pkg-config --cflags --libs zor)
  ./build-consumer/zor_consumer_pc
  rm -rf "$prefix"
  echo "== all tests passed"
}

case "${1:-}" in
  test) run_tests ;;
  *) echo "usage: $0 test" >&2; exit 2 ;;
esac
