# SPDX-License-Identifier: MIT
# What the scripts share: sourced, not run.
# shellcheck shell=bash

vextrel_root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
vextrel_cache=${VEXTREL_CACHE:-${HOME:-$vextrel_root/build}/.cache/vextrel}
vextrel_logs=$vextrel_root/build/logs
export VEXTREL_CACHE=$vextrel_cache

fail() {
  printf '%s: %s\n' "${0##*/}" "$*" >&2
  exit 1
}

say() { printf '%s\n' "$*"; }

# quietly NAME ADVICE COMMAND...: keeps the command's output in build/logs/NAME.log, and shows its
# end only if the command fails.
quietly() {
  local log=$vextrel_logs/$1.log advice=$2
  shift 2
  mkdir -p "$vextrel_logs"
  if ! "$@" >"$log" 2>&1 </dev/null; then
    tail -n 40 "$log" >&2
    fail "$advice (all of its output: $log)"
  fi
}

# build_preset PRESET [TARGET...]: configures if need be, and builds. The modules are named by their
# files, because on Linux 'vextrel' is also the file that the program is built as.
build_preset() {
  local preset=$1
  shift
  cd "$vextrel_root" || exit 1
  if [ ! -f "build/$preset/build.ninja" ]; then
    quietly "configure-$preset" "CMake could not configure the $preset build" \
      cmake --preset "$preset"
  fi
  quietly "build-$preset" "the $preset build failed" \
    cmake --build --preset "$preset" ${1:+--target "$@"}
}

# Uses a Wine prefix for this checkout, created at first use.
use_wine() {
  # Without a UTF-8 locale, Wine can't see file names with non-ASCII letters.
  export LC_ALL=C.UTF-8
  export WINEPREFIX=$vextrel_root/build/wine WINEDEBUG=-all WINEDLLOVERRIDES="mscoree=;mshtml="
  if [ ! -d "$WINEPREFIX/drive_c" ]; then
    mkdir -p "$WINEPREFIX"
    quietly wine-prefix "Wine could not make its prefix" bash -c 'wine wineboot -i; wineserver -w; test -d "$WINEPREFIX/drive_c"'
  fi
}

# For many short runs, which cost less than starting Wine's services each time. Started here, the
# services don't inherit a pipe, whose reader would wait for them.
keep_wine_running() {
  trap 'wineserver -k >/dev/null 2>&1 || true' EXIT
  wineserver -p >/dev/null 2>&1 </dev/null || true
  wine cmd /c exit >/dev/null 2>&1 </dev/null || true
}
