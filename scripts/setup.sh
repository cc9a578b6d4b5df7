# SPDX-License-Identifier: GPL-3.0-or-later
# shellcheck shell=bash
# Functions that ./run and ./test share: install what is missing, configure and build. Source it from the project's root.

# apt_get ARGUMENT...: apt-get as root, with sudo where this user is not root.
apt_get() {
  if [ "$(id -u)" -eq 0 ]; then
    DEBIAN_FRONTEND=noninteractive apt-get "$@"
  elif command -v sudo >/dev/null; then
    sudo DEBIAN_FRONTEND=noninteractive apt-get "$@"
  else
    echo "Needs root to install packages, and there is no sudo." >&2
    return 1
  fi
}

# is_installed PACKAGE: true when dpkg has it, installed whole.
is_installed() {
  [ "$(dpkg-query -W -f '${db:Status-Status}' "$1" 2>/dev/null)" = installed ]
}

# missing_packages USE...: the packages of scripts/packages for these uses that are not installed, one a line. A row may
# name several packages joined by "|": any one will do, and the last is what gets installed.
missing_packages() {
  local use name candidate found
  while read -r use name; do
    [[ " $* " == *" $use "* ]] || continue
    found=
    for candidate in ${name//|/ }; do
      if is_installed "$candidate"; then found=1; fi
    done
    [ -n "$found" ] || echo "${name##*|}"
  done < <(sed -e 's/#.*//' -e '/^ *$/d' scripts/packages)
}

# install_missing USE...: installs by apt-get what the uses lack. "run" and "test" mean all that ./run and ./test need.
# Where dpkg is not there, the packages are the user's matter.
install_missing() {
  local uses missing
  case "$*" in
    test) uses="build package run display test" ;;
    *) uses="$*" ;;
  esac
  if ! command -v dpkg-query >/dev/null; then
    echo "Not a Debian system: the packages of scripts/packages are taken to be there." >&2
    return 0
  fi
  # shellcheck disable=SC2086
  missing=$(missing_packages $uses)
  [ -n "$missing" ] || return 0
  echo "Installing: ${missing//$'\n'/ }"
  apt_get update -qq || true # packages may still be found in the lists that are there
  # shellcheck disable=SC2086
  apt_get install -y --no-install-recommends $missing
}

# build_preset PRESET [TARGET...]: configures by preset and builds.
build_preset() {
  local preset=$1
  shift
  cmake --preset "$preset" >/dev/null
  if [ $# -gt 0 ]; then
    cmake --build --preset "$preset" --target "$@"
  else
    cmake --build --preset "$preset"
  fi
}
