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

# build_preset PRESET [TARGET...]: configures if need be, and builds.
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

# Wine with a prefix of this checkout's own, made at the first use.
use_wine() {
  # Without a character set, Wine cannot see file names with other than ASCII letters.
  export LC_ALL=C.UTF-8
  export WINEPREFIX=$vextrel_root/build/wine WINEDEBUG=-all WINEDLLOVERRIDES="mscoree=;mshtml="
  if [ ! -d "$WINEPREFIX/drive_c" ]; then
    mkdir -p "$WINEPREFIX"
    quietly wine-prefix "Wine could not make its prefix" bash -c 'wine wineboot -i; wineserver -w; test -d "$WINEPREFIX/drive_c"'
  fi
}

# For many short runs: starting Wine's services anew for each would cost more than the runs. The
# services must not inherit a pipe that somebody reads to its end, so they are started here.
keep_wine_running() {
  trap 'wineserver -k >/dev/null 2>&1 || true' EXIT
  wineserver -p >/dev/null 2>&1 </dev/null || true
  wine cmd /c exit >/dev/null 2>&1 </dev/null || true
}
