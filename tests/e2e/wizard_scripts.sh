#!/bin/bash
# wizard_scripts.sh NATIVE [WINDOWS win32|win64]: runs the wizards with the scripts in scripts/, each on a new machine that the
# script's first lines describe; NATIVE and WINDOWS are the build folders. With a Windows build the script also runs under
# Wine, on a 32-bit or a 64-bit system, from the same registry: the transcript and the clients' accounts must then be the same.
#
# In a script, `# machine: LIST` names the clients; of several lists, separated by bars, the script runs on each.
# `# setup: COMMAND` runs in the machine's folder; `# before: ARGS` and `# run: ARGS` go to the host program.
# `# wrote: TEXT` must be in the output of `accounts` afterwards; `# platform: native` leaves Windows out. With `# fault: TEXT` the
# native run fails at its end with a line that ends so: of what Windows has no word for.
set -euo pipefail
native=$(realpath "$1")
windows=${2:+$(realpath "$2")}
here=$(cd "$(dirname "$0")" && pwd)
. "$here/../../cmake/packages.sh"

work=$(mktemp -d)
finish() {
  [ -z "$windows" ] || wineserver -k 2>/dev/null || true
  rm -rf "$work"
}
trap finish EXIT

# The machine with which every script begins; under Wine, its registry.
mkdir -p "$work/pristine/drive_c/windows"
if [ -n "$windows" ]; then
  wine_environment "$work"
  export WINEARCH=$3
  fresh_wine_prefix
  wineserver -w
  cp "$WINEPREFIX"/{system,user}.reg "$work/pristine"
fi

reset_native() {
  rm -rf "$work/machine"
  cp -r "$work/pristine" "$work/machine"
  # The native build sees the registry of a 64-bit system as the win32 build does, unless the hive doesn't name its
  # architecture.
  [ "$(basename "$windows")" != win64 ] || sed -i '/^#arch=/d' "$work/machine"/*.reg
}
native_host() { "$native/acctkit" --machine "$work/machine" "$@"; }

# Only the host and what it left are removed: everything else there belongs to Wine itself.
reset_windows() {
  wineserver -k 2>/dev/null || true
  wineserver -w
  cp "$work/pristine"/*.reg "$WINEPREFIX"
  local drive=$WINEPREFIX/drive_c
  rm -rf "$drive/Program Files"*/{Zuvio,Harveld,Netscape,"Outlook Express"} "$drive"/users/*/AppData/Roaming/Mozilla
  mkdir -p "$drive/Program Files/Zuvio"
  cp "$windows"/{acctkit.exe,AcctKit.dll,sample_mailer.dll} "$drive/Program Files/Zuvio"
}
# The output goes through no pipe, since Wine's own programs, which go on, would keep it open.
windows_host() {
  local status=0
  wine 'C:\Program Files\Zuvio\acctkit.exe' "$@" >"$work/out" 2>"$work/err" || status=$?
  tr -d '\r' <"$work/out"
  tr -d '\r' <"$work/err" >&2
  return $status
}

# wizard PLATFORM SCRIPT PATH ARGUMENTS...: runs it once.
wizard() {
  local fault
  fault=$(sed -n 's/^# fault: //p' "$2")
  if [ "$1" = native ] && [ -n "$fault" ]; then
    ! native_host wizard "${@:4}" --script "$3" 2>"$work/fault" && grep -q "^acctkit: .*$fault\$" "$work/fault"
  else
    "$1_host" wizard "${@:4}" --script "$3" 2>&1
  fi
}

# try PLATFORM SCRIPT MACHINE FOLDER PATH: runs the script on a new machine with those clients in that folder. PATH is the
# script's path for the host. It is called in a condition, where a failing command doesn't end the script.
try() {
  local host=$1_host folder=$4 path=$5 key line runs=0
  local -a arguments
  "reset_$1"
  "$host" machine new --with "$3" >/dev/null || return 1
  while IFS= read -r line; do
    key=${line%%:*}
    line=${line#*: }
    case "$key" in
    '# setup') (cd "$folder" && eval "$line") ;;
    '# before') eval "arguments=($line)" && "$host" "${arguments[@]}" >/dev/null ;;
    '# run') runs=$((runs + 1)) && eval "arguments=($line)" && wizard "$1" "$2" "$path" "${arguments[@]}" ;;
    esac || return 1
  done < <(grep -E '^# (setup|before|run): ' "$2")
  [ "$runs" -gt 0 ] || { echo "it runs nothing"; return 1; }

  "$host" accounts --json >"$work/written" || return 1
  cat "$work/written"
  while IFS= read -r line; do
    grep -qF -- "$line" "$work/written" || { echo "not written: $line"; return 1; }
  done < <(sed -n 's/^# wrote: //p' "$2")
}

failed=0
runs=0
fail() {
  echo "FAILED: $1" >&2
  failed=1
}
# run SCRIPT MACHINE: runs it on one platform or both.
run() {
  local name
  name="$(basename "$1" .txt) on $2"
  runs=$((runs + 1))
  try native "$1" "$2" "$work/machine" "$1" >"$work/native" || { fail "$name"; cat "$work/native" >&2; return; }
  [ -n "$windows" ] && ! grep -qx '# platform: native' "$1" || return 0
  try windows "$1" "$2" "$WINEPREFIX" "Z:${1//\//\\}" >"$work/windows" ||
    { fail "$name on Windows"; cat "$work/windows" >&2; return; }
  diff "$work/native" "$work/windows" >&2 || fail "$name differs on Windows"
}
for script in "$here"/scripts/*.txt; do
  machines=()
  IFS='|' read -ra machines < <(sed -n 's/^# machine: //p' "$script") || fail "$(basename "$script") names no machine"
  for machine in "${machines[@]}"; do
    run "$script" "$machine"
  done
done

# wrong STATUS LINE STEPS: checks the host's error for a script that is wrong, or that the wizard doesn't follow.
wrong() {
  local platform status path=$work/wrong.txt
  printf '%b' "$3" >"$path"
  for platform in native ${windows:+windows}; do
    status=0
    "${platform}_host" wizard short --script "$path" >/dev/null 2>"$work/complaint" || status=$?
    [ "$status" -eq "$1" ] && [ "$(wc -l <"$work/complaint")" -eq 1 ] && grep -qF "wrong.txt:$2: " "$work/complaint" ||
      fail "the script $3 gives status $status and $(cat "$work/complaint"), $platform"
    path="Z:${path//\//\\}"
  done
}
for platform in native ${windows:+windows}; do
  "reset_$platform"
  "${platform}_host" machine new --with oe5 >/dev/null
done
for steps in 'frob' 'set x y' 'set 65536 y' 'select 1007 -1' 'set 1009 "a' 'set 1009 a\\q' 'answer maybe' 'next 3' 'expect' \
  'set 1009 \xff' 'set 1009 \xe2\x82\xac' 'a\0'; do
  wrong 2 2 "# only a comment\r\n$steps\n"
done
wrong 2 2 'expect result 1\nnext\n'
wrong 1 1 'finish\n'
wrong 1 1 'set 4242 x\n'
wrong 1 1 'answer ok\n'
wrong 1 1 'select 1007 1\n'
wrong 1 2 'next\nset 2005 x\n'
wrong 1 2 'cancel\nnext\nanswer yes\n'
wrong 1 3 'cancel\nanswer yes\nnext\n'
wrong 1 3 'cancel\nanswer yes\nexpect result 0\n'
wrong 1 4 'next\n\n# and no more\n\n'

[ "$failed" -eq 0 ] || exit 1
echo "wizard scripts ran $runs times"
if [ -n "$windows" ]; then
  left=$(cd "$here/scripts" && grep -lx '# platform: native' -- * || true)
  echo "they ran the same on both platforms, but NOT ON WINDOWS: ${left:-none}"
fi
