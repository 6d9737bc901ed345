# shellcheck shell=bash
# The Debian packages that the project stands on, by purpose, and the one function that sees to
# them. Sourced by ./play, ./test, bench/run and tests/fuzz/run.

declare -A packagesFor=(
  [build]="cmake ninja-build g++ pkg-config libsdl2-dev libasound2-dev libfreetype-dev libpng-dev libcli11-dev libhwy-dev libimagequant-dev librsvg2-dev libsndfile1-dev libfluidsynth-dev librtmidi-dev sox flac"
  [play]="fonts-ipafont-gothic fonts-ipafont-mincho timgm6mb-soundfont"
  [test]="libgtest-dev libgmock-dev nlohmann-json3-dev xvfb xdotool imagemagick openbox"
  [fuzz]="clang libclang-rt-dev"
  [format]="clang-format"
  [tidy]="clang-tidy"
  [bench]="liblua5.4-dev libpixman-1-dev liblz4-dev libpango1.0-dev libcairo2-dev libfluidsynth-dev libx11-dev libxtst-dev xvfb"
)

# needPackages PURPOSE...: installs what is missing, where we may; else prints the line that does.
needPackages() {
  # Another distribution has its own names for these; there the build itself says what is missing.
  command -v dpkg-query >/dev/null || return 0

  local purpose more wanted=() missing=()
  for purpose in "$@"; do
    read -r -d '' -a more <<<"${packagesFor[$purpose]}" || true
    wanted+=("${more[@]}")
  done
  local installed
  installed=" $(dpkg-query -W -f='${db:Status-Status}/${Package} ' "${wanted[@]}" 2>/dev/null || true)"
  local package
  for package in "${wanted[@]}"; do
    [[ $installed == *" installed/$package "* ]] || missing+=("$package")
  done
  ((${#missing[@]})) || return 0

  local line="apt-get update && apt-get install -y --no-install-recommends ${missing[*]}"
  local asRoot=()
  if [[ $(id -u) != 0 ]]; then
    if ! sudo -n true 2>/dev/null; then
      echo "Packages are missing; install them with:" >&2
      echo "sudo sh -c '$line'" >&2
      return 1
    fi
    asRoot=(sudo -n)
  fi
  echo "Installing: ${missing[*]}"
  local log
  log=$(mktemp)
  local apt=("${asRoot[@]}" env DEBIAN_FRONTEND=noninteractive apt-get -q -o DPkg::Lock::Timeout=300)
  if ! { "${apt[@]}" update && "${apt[@]}" install -y --no-install-recommends "${missing[@]}"; } \
      >"$log" 2>&1; then
    tail -n 20 "$log" >&2
    rm -f "$log"
    echo "The packages could not be installed; try by hand: $line" >&2
    return 1
  fi
  rm -f "$log"
}
