# Sourced by the scripts beside it: strict mode, the top of the tree as working folder, and what several of them need.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

# need GROUP...: the packages of these groups are installed (see script/bootstrap).
need() { script/bootstrap "$@"; }

# build PRESET [TARGET...]: configures and builds build/PRESET, with what configuring it looks for, whatever the targets.
build() {
  local preset=$1 launcher=()
  shift
  case $preset in
    release | coverage) need build test tool example ;;
    package) need build tool package ;;
    sanitize) need build test tool fuzz ;;
    tsan) need build test fuzz ;;
    mingw) need build windows ;;
    bench) need build bench tool ;;
    *) echo "no preset is called '$preset'" >&2; return 2 ;;
  esac
  command -v ccache >/dev/null && launcher=(-DCMAKE_CXX_COMPILER_LAUNCHER=ccache)
  cmake --preset "$preset" "${launcher[@]}" >"${TMPDIR:-/tmp}/lumo-configure-$$.log" 2>&1 ||
    { cat "${TMPDIR:-/tmp}/lumo-configure-$$.log"; return 1; }
  rm -f "${TMPDIR:-/tmp}/lumo-configure-$$.log"
  cmake --build --preset "$preset" ${1:+--target "$@"}
}

# build_quietly PRESET TARGET...: the same, silent unless it fails.
build_quietly() {
  local log
  log=$(mktemp)
  build "$@" >"$log" 2>&1 || { cat "$log"; rm -f "$log"; return 1; }
  rm -f "$log"
}

# tests_with PATTERN: the test programs, as CMake targets, that have a source with this pattern in it.
tests_with() {
  grep -lE "$1" tests/*/*_test.cpp 2>/dev/null | while read -r file; do
    local folder=${file#tests/}
    folder=${folder%%/*}
    case $file in *_internal_test.cpp) echo "test_${folder}_internal" ;; *) echo "test_$folder" ;; esac
  done | sort -u
}
