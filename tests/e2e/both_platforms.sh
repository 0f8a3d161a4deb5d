#!/bin/bash
# both_platforms.sh NATIVE WINDOWS win32|win64: makes one Wine prefix, of a 32-bit or a 64-bit system, and enters the
# clients through Wine itself. The host program and the sequence of the native build work on it, those of the Windows build
# on a copy. Then Wine must read the same from both, and what was there before must still be there. NATIVE and WINDOWS are
# the build folders.
#
# The native build sees the registry of a 64-bit system as the win32 build does. For the comparison with win64 the
# architecture line of its hives is commented out.
set -euo pipefail
native=$(realpath "$1/acctkit")
native_sequence=$(realpath "$1/tests/sequence")
build=$(basename "$2")
windows=$(realpath "$2/acctkit.exe")
windows_sequence=$(realpath "$2/tests/sequence.exe")
native_keys=$(realpath "$1/tests/keys")
windows_keys=$(realpath "$2/tests/keys.exe")
# The program that enters the clients, the folder of their programs, and the registry view that Wine's own programs use.
case "$build-$3" in
win32-win32) reg=reg.exe programs='Program Files' view=/reg:32 ;;
win32-win64) reg='C:\windows\syswow64\reg.exe' programs='Program Files (x86)' view=/reg:32 ;;
win64-win64) reg=reg.exe programs='Program Files' view=/reg:64 ;;
*) echo "usage: both_platforms.sh NATIVE WINDOWS win32|win64" >&2; exit 2 ;;
esac
export WINEARCH=$3
here=$(cd "$(dirname "$0")" && pwd)
. "$here/../../cmake/packages.sh"
command -v wine >/dev/null || { echo "no wine here" >&2; exit 1; }

work=$(mktemp -d)
finish() {
  for prefix in "$work"/a/prefix "$work"/b/prefix; do
    WINEPREFIX=$prefix wineserver -k 2>/dev/null || true
  done
  rm -rf "$work"
}
trap finish EXIT
fail() { echo "FAILED: $*" >&2; exit 1; }
use() { export WINEPREFIX=$work/$1/prefix; }
settle() { wineserver -w; }
# natively COMMAND...: runs a command of the native build, on hives as the Windows build sees them.
natively() {
  local status=0
  [ "$build" = win32 ] || sed -i 's/^#arch=/;&/' "$WINEPREFIX"/{system,user}.reg
  ACCTKIT_MACHINE=$WINEPREFIX "$@" || status=$?
  sed -i 's/^;#arch=/#arch=/' "$WINEPREFIX"/{system,user}.reg
  return $status
}

# The keys and files of the clients, entered by Wine's own programs.
wine_environment "$work/a"
fresh_wine_prefix
add() { wine "$reg" add "$1" /f ${2:+"${@:2}"} "$view" >/dev/null; }
oe='HKLM\Software\Microsoft\Outlook Express'
paths='HKLM\Software\Microsoft\Windows\CurrentVersion\App Paths'
navigator='Software\Netscape\Netscape Navigator'
folder="C:\\$programs\\Netscape\\Communicator"
add "$oe" /v MediaVer /d 5,50,4522,1200
add "$paths\\msimn.exe" /ve /d '%ProgramFiles%\Outlook Express\msimn.exe'
add "$paths\\NETSCAPE.EXE" /ve /d "$folder\\Program\\NETSCAPE.EXE"
add "HKLM\\$navigator" /v CurrentVersion /d 4.75
add "HKCU\\$navigator\\Main" /v 'Install Directory' /d "$folder"
add 'HKCU\Identities' /v 'Default User ID' /d '{12345678-1234-1234-1234-123456789ABC}'
add 'HKCU\Software\Microsoft\Internet Explorer\Main'
add 'HKCU\Software\Microsoft\Internet Account Manager' /v 'Account Name' /t REG_DWORD /d 9
add 'HKCU\Software\Microsoft\Internet Account Manager\Accounts\00000008' /v 'Account Name' /d '会社 "表"\'
add 'HKCU\Software\Microsoft\Internet Account Manager\Accounts\00000008' /v 'Connectoid' /d '@zuvioダイヤラ'
add 'HKCU\Software\Microsoft\Internet Account Manager\Accounts\00000008' /v 'Connection Type' /t REG_DWORD /d 2
add 'HKLM\Software\Netscape\Netscape 6' /v CurrentVersion /d '6.2 (ja)'
add "$paths\\Netscp6.exe" /ve /d "C:\\$programs\\Netscape\\Netscp6.exe"
add 'HKCU\Software\Unrelated' /v Binary /t REG_BINARY /d 000102ff

# A running server has the registry in its memory, so nobody else may write it.
if "$native" --machine "$WINEPREFIX" outlook-disable 2>"$work/refused"; then fail "wrote below a running Wine server"; fi
grep -q 'a Wine server is running' "$work/refused" || fail "said nothing of the running server: $(cat "$work/refused")"
settle
drive=$WINEPREFIX/drive_c
mkdir -p "$drive/$programs/Outlook Express" "$drive/$programs/Netscape/Communicator/Program"
touch "$drive/$programs/Outlook Express/msimn.exe" "$drive/$programs/Netscape/Communicator/Program/NETSCAPE.EXE"
touch "$drive/$programs/Netscape/Netscp6.exe"
mozilla=$drive/users/$(whoami)/AppData/Roaming/Mozilla
mkdir -p "$mozilla/Users50"
cp "$here/../samples/profiles-ja.dat" "$mozilla/registry.dat"
# The files of Windows itself, which nobody here writes, exist only once on the disk.
mkdir -p "$work/b/prefix/drive_c"
cp -al "$drive/windows" "$work/b/prefix/drive_c/windows"
cp -an "$work/a/prefix" "$work/b"
cp "$WINEPREFIX"/{system,user}.reg "$work"

# The same commands on both; results and outputs are compared too.
cd "$work" # messages contain the file's name as given
cat >signup.txt <<'SIGNUP'
serviceId=ABC01234
senderName=表示 能力ソフト
mailAddress=taro@mail.zuvio.example
startPage=http://www.zuvio.example/
serviceKind=0
SIGNUP
commands() {
  run
  run frob
  run signup missing.txt
  run mail set --client oe
  run mail exists --client 7 --user tanaka
  run news set --client oe --user tanaka --name 田中 --title 能 --host n.example --address 'a@b' --key
  run wizard mailer --id ABC01234 --script missing.txt
  run mail set --client communicator --user 'a"b' --name n --title t --smtp s --pop p --address a@b.example
  run mail set --client communicator --user u --name 能 --title t --smtp s --pop p --address a@b.example
  run start-page --client communicator --profile default 'http://start.example/\'
  run status
  run signup "$1"
  run signup "$1"
  run mail exists --client oe --zuvio --user ABC01234
  run mail set --client oe --user tanaka --name 田中 --title 能 --smtp s.example --pop p.example --address t@example
  run mail set --client communicator --user tanaka --name 田中 --title 表 --smtp s.example --pop p.example --address t@example
  run mail exists --client communicator --title 表
  run mail set --client communicator --kerm --user info --name 店 --address i@own.example --smtp s.own --pop p.own --key 表
  run start-page --client communicator --profile 表 http://start.example/
  run start-page --client oe http://start.example/
  run outlook-disable
  run mail set --client communicator --user u --name "$(printf 'n%.0s' {1..300})" --title t --smtp s --pop p --address a
  run news set --client oe --zuvio --server 1 --user ABC01234 --name 表示 --address taro@mail.zuvio.example
  run news exists --client oe --zuvio --server 1 --user ABC01234
  run news set --client communicator --zuvio --server 2 --user ABC01234 --name 表示 --address taro@mail.zuvio.example
  run_sequence
  run accounts --json
}
use a
run() { "$native" "$@" || echo "status $?"; }
run_sequence() { "$native_sequence"; }
natively commands signup.txt >"$work/a/output" 2>&1
# Every other line of the hives is still there, at its old position.
allowed='"Account Name"=dword|Connection Type|Connectoid|Start Page|\(Apps\\\\Outlook|Default Mail'
for hive in system user; do
  lost=$(diff "$work/$hive.reg" "$WINEPREFIX/$hive.reg" | grep '^<' | grep -vE "$allowed" || true)
  [ -z "$lost" ] || fail "lines of $hive.reg are gone: $lost"
done
use b
run() { wine "$windows" "$@" 2>&1 | tr -d '\r' || echo "status ${PIPESTATUS[0]}"; }
run_sequence() { wine "$windows_sequence" | tr -d '\r'; }
commands signup.txt >"$work/b/output" 2>&1
settle
diff "$work/a/output" "$work/b/output" || fail "the two host programs said different things"

# read_registry NAME VIEW KEYS...: prints what Wine reads below keys of a prefix.
read_registry() {
  local key
  use "$1"
  for key in "${@:3}"; do
    wine reg query "$key" /s "$2" | tr -d '\r'
  done
  settle
}
for name in a b; do
  read_registry "$name" "$view" 'HKCU\Software\Microsoft' 'HKCU\Software\Netscape' 'HKCU\Identities' 'HKCU\Software\Unrelated' \
    'HKLM\Software\Netscape' "$oe" "$paths" >"$work/$name/registry"
done
grep -q 'abc01234@mail.zuvio.example' "$work/a/registry" || fail "Wine doesn't see what was written"
diff "$work/a/registry" "$work/b/registry" || fail "the registries differ"
written_files() {
  (cd "$work/$1/prefix/drive_c" && find "$programs/Netscape" users/*/AppData/Roaming/Mozilla -type f \
    -exec sha256sum {} + | sort -k 2) >"$work/$1/files"
}
written_files a
written_files b
[ "$(grep -cE 'prefs.js|registry.dat|fat$' "$work/a/files")" -ge 9 ] || fail "there are fewer files than expected"
diff "$work/a/files" "$work/b/files" || fail "the files differ"

# The native program also reads what the Windows one wrote.
use b
natively "$native" accounts --json >"$work/read"
sed -n '/^\[$/,$p' "$work/b/output" | diff - "$work/read" || fail "the native program reads something else"

# All ways to open a key; this is last, because they leave keys everywhere. A 64-bit process has no such ways.
if [ "$build" = win32 ]; then
  use a
  natively "$native_keys" >"$work/a/output"
  use b
  wine "$windows_keys" | tr -d '\r' >"$work/b/output"
  settle
  diff "$work/a/output" "$work/b/output" || fail "the two platforms have different keys"
  for name in a b; do
    read_registry "$name" /reg:64 'HKLM\Software' 'HKCU\Software' >"$work/$name/keys"
  done
  grep -q Mark "$work/a/keys" || fail "Wine doesn't see the keys that were made"
  diff "$work/a/keys" "$work/b/keys" || fail "the keys that were made differ"
fi
echo "both platforms wrote the same: $(wc -l <"$work/a/registry") lines of registry, $(wc -l <"$work/a/files") files"
