# The Debian packages that ./run and ./test need, and how they are installed. Other scripts that build source this file too.

native_packages=(g++ cmake ninja-build libcli11-dev nlohmann-json3-dev libncurses-dev gcc-mingw-w64-x86-64)
test_packages=(googletest tmux)
windows_packages=(g++-mingw-w64-x86-64-win32 g++-mingw-w64-i686-win32)
fuzz_packages=(clang libclang-rt-dev)

# as_root COMMAND...: runs the command as root.
as_root() {
  if [ "$(id -u)" -eq 0 ]; then "$@"; else sudo "$@"; fi
}

is_installed() { dpkg-query -W -f '${db:Status-Status}' "$1" 2>/dev/null | grep -qx installed; }

# need PACKAGES...: installs what is missing.
need() {
  local missing=() package
  for package in "$@"; do
    is_installed "$package" || missing+=("$package")
  done
  [ ${#missing[@]} -eq 0 ] && return
  echo "== installing ${missing[*]}" >&2
  as_root apt-get update -qq >&2
  as_root env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends "${missing[@]}" >&2
}

# build PRESET [--target TARGET]: configures and builds; prints output only on an error.
build() {
  local log
  log=$(mktemp)
  if ! { cmake --preset "$1" && cmake --build --preset "$@"; } >"$log" 2>&1; then
    cat "$log" >&2
    rm -f "$log"
    return 1
  fi
  if grep -E 'warning:' "$log" >&2; then
    echo "== the build of $1 has warnings" >&2
    rm -f "$log"
    return 1
  fi
  rm -f "$log"
}

# need_wine: puts a Wine for programs of 32 and 64 bits on PATH. If the system has none, it makes one in a root below build,
# once, and keeps it. False if that isn't possible.
need_wine() {
  local top log
  if is_installed wine && is_installed wine64 && is_installed wine32:i386 && is_installed locales; then
    return
  fi
  top=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
  if [ ! -x "$top/build/wine-root/usr/bin/wine" ]; then
    echo "== making build/wine-root: a small Debian with a 32-bit Wine, 1.6 GB; this system stays as it is" >&2
    log=$(mktemp)
    if ! { need debootstrap && as_root "$top/cmake/wine-root/make" "$top/build/wine-root"; } >"$log" 2>&1; then
      tail -n 5 "$log" >&2
      rm -f "$log"
      return 1
    fi
    rm -f "$log"
  fi
  export PATH=$top/cmake/wine-root:$PATH
}

# wine_environment FOLDER [win32|win64]: sets up a Japanese Wine, with a prefix of that architecture (by default win64) and
# a locale in that folder.
wine_environment() {
  export WINEPREFIX=$1/prefix WINEARCH=${2:-win64} WINEDEBUG=-all DISPLAY='' LOCPATH=$1/locales
  mkdir -p "$LOCPATH"
  [ -d "$LOCPATH/ja_JP.UTF-8" ] || localedef -i ja_JP -f UTF-8 "$LOCPATH/ja_JP.UTF-8"
  export LC_ALL=ja_JP.UTF-8
}

# fresh_wine_prefix: makes the environment's prefix anew. Its windows need no display.
fresh_wine_prefix() {
  rm -rf "$WINEPREFIX"
  wineboot -i >/dev/null 2>&1
  wine reg add 'HKCU\Software\Wine\Drivers' /v Graphics /d null /f >/dev/null
  wineserver -w # the next one reads it
}
