#!/bin/bash
# host.sh BUILD: what the host program does to a machine that other processes use too, or in an unusual environment.
set -euo pipefail
host=$(realpath "$1/acctkit")
samples=$(cd "$(dirname "$0")/../../host/samples" && pwd)
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
fail() { echo "FAILED: $*" >&2; exit 1; }
new_machine() {
  rm -rf "$work/machine"
  ACCTKIT_MACHINE=$work/machine "$host" machine new "$@" >/dev/null
}
acctkit() { ACCTKIT_MACHINE=$work/machine "$host" "$@"; }

# Whichever standard streams are open, the output never goes into a file of the machine.
for closed in '<&- >&-' '>&- 2>&-' '<&- >&- 2>&-'; do
  new_machine
  eval "acctkit signup '$samples/signup.txt' $closed" 2>/dev/null || true
  acctkit accounts | grep -F 'taro@mail.zuvio.example' >/dev/null || fail "a sign-up with $closed left no sound registry"
done

# An invalid record changes nothing.
new_machine
acctkit accounts >"$work/before"
for record in / /dev/null <(echo mailAddress=a@b.example); do
  ! acctkit signup "$record" >/dev/null 2>&1 || fail "took $record for a sign-up"
done
acctkit accounts | diff "$work/before" - || fail "a refused sign-up wrote something"
said=$(acctkit signup <(printf 'a\rb\e=1') 2>&1) || true
[[ $said == *'there is no field "a\rb\x1B"' ]] || fail "a refusal with control characters: $said"

# A text that would break Communicator's preference file is refused by the name of its field, with nothing written. A text
# that would only be read back garbled brings a warning.
sign_up_as() {
  sed "s|^senderName=.*|senderName=${1//\\/\\\\}|" "$samples/signup.txt" >"$work/signup"
  acctkit signup "$work/signup"
}
news_set() { acctkit news set --client communicator --user u --name n --title t --address a@b "$@"; }
mail_set_as() { acctkit mail set --client communicator --kerm --user u --smtp s --pop p --address a@b --name "$1"; }
judged() { # LINES STATUS NAME COMMAND...
  local lines=$1 expected=$2 name=$3 status=0
  "${@:4}" >/dev/null 2>"$work/said" || status=$?
  [[ $status -eq $expected && $(grep -cF -e "$name " "$work/said") -eq $lines ]] ||
    fail "${*:4}: $status, $(<"$work/said")"
}
new_machine
acctkit accounts >"$work/before"
for text in 'a"b' 'a\"b' $'a\tb' $'a\x7fb' 'C:\' 'a\\\' '山田 花能'; do
  judged 1 2 --name mail_set_as "$text"
  judged 1 2 "$work/signup: senderName" sign_up_as "$text"
done
judged 1 2 --host news_set --server-name s --host 'h."'
judged 1 2 URL acctkit start-page --client communicator 'http://a.example/"'
acctkit accounts | diff "$work/before" - || fail "a refused text wrote something"
for text in 'a\\' '表示'; do
  judged 1 0 'warning: --name' mail_set_as "$text"
done
judged 0 0 warning mail_set_as '山田 花子'
judged 0 0 : news_set --server-name 's"' --host h.example
new_machine --with oe5,mailer
judged 0 0 : sign_up_as 'a"能'

# A plug-in that only Windows can load is reported.
new_machine
plugin="$work/machine/drive_c/Program Files/Harveld/SampleMailer/sample_mailer.dll"
printf 'MZ' >"$plugin"
for command in status 'signup signup.txt' completed; do
  (cd "$samples" && acctkit $command >/dev/null 2>"$work/err") || true
  [ "$(cat "$work/err")" = "acctkit: $plugin: a Windows library, which can't be loaded here" ] ||
    fail "$command with a Windows plug-in: $(cat "$work/err")"
done
acctkit status 2>/dev/null | grep -E '^External mailer +\? +no$' >/dev/null || fail "status knows of a plug-in that it can't ask"

# A dry run has the command's exit status, tells what would change, and leaves the machine as it is, byte for byte. An undo
# takes the command back. What a plug-in does is in neither.
same() { # WHAT [EXCLUDED...]
  diff -r "${@:2}" "$work/before" "$work/machine" >"$work/difference" || fail "$1: $(<"$work/difference")"
}
rehearsed() { # STATUS LINE COMMAND...
  local expected=$1 line=$2 status=0 dry=0
  rm -rf "$work/before" && cp -a "$work/machine" "$work/before"
  acctkit --dry-run ${json-} "${@:3}" >"$work/told" || dry=$?
  grep -F -e "$line" "$work/told" >/dev/null || fail "the dry run of ${*:3}: $(<"$work/told")"
  ! grep -iE 'password.*(true|[0-9])' "$work/told" >/dev/null || fail "the dry run of ${*:3} shows what a password has"
  same "the dry run of ${*:3}"
  acctkit "${@:3}" >/dev/null || status=$?
  [[ $dry -eq $expected && $status -eq ${real:-$expected} ]] || fail "${*:3}: $status, dry $dry"
  [[ $line == 'nothing would change' ]] || acctkit undo >"$work/told" || fail "undo of ${*:3}: $(<"$work/told")"
  same "the undo of ${*:3}" --exclude=.acctkit --exclude=settings.txt
}
new_machine --with oe5,communicator,netscape6
rehearsed 1 '+ POP3 User Name = "ABC01234"' signup "$samples/signup.txt"
rehearsed 0 '+ 8: user_pref("mail.remember_password", (not shown));' mail set --client communicator --kerm --user u \
  --name n --smtp s --pop p --address a@b
json=--json rehearsed 0 '"name": "NNTP Server",' news set --client oe --user u --name n --title t --address a@b --host h \
  --server-name s
rehearsed 0 '- 4: user_pref("browser.startup.homepage", "http://old.example/");' start-page --client communicator \
  --profile home http://new.example/
rehearsed 0 '- Connection Type = 2' outlook-disable
rehearsed 1 'nothing would change' completed
rm -rf "$work/machine" && mkdir -p "$work/machine/drive_c/windows"
rehearsed 0 '+ ProgramName = "sample_mailer.dll"' machine new --with mailer
new_machine
real=0 rehearsed 1 'not loaded in a dry run, but the command would ask it' signup "$samples/signup.txt"
judged 1 1 'there is no change to take' acctkit undo
acctkit outlook-disable >/dev/null
echo '# of another program' >>"$work/machine/user.reg"
judged 1 1 user.reg: acctkit undo
for command in '--dry-run accounts' '--dry-run undo' '--json outlook-disable'; do
  judged 1 2 acctkit: acctkit $command
done

# A command whose data the disk didn't take doesn't report success.
if said=$(trap '' XFSZ; ulimit -f 0; acctkit signup "$samples/signup.txt" 2>&1); then fail "a full disk: $said"; fi
[[ $said == *'File too large' && $said != *done* ]] || fail "a full disk: $said"

# Nobody waits for a pipe, and what has the place of a file or a folder is named, in one line.
limited() { ACCTKIT_MACHINE=$work/machine timeout 10 "$host" "$@"; }
with_little_memory() { (ulimit -v 100000; limited "$@"); }
new_machine
rm "$plugin"
mkfifo "$plugin" "$work/machine/wineserver"
for command in status completed 'signup signup.txt'; do
  (cd "$samples" && judged 1 1 'sample_mailer.dll: this is no file of the' limited $command)
done
truncate -s 200M "$work/machine/user.reg"
judged 1 1 "acctkit: there isn't enough" with_little_memory accounts
touch "$work/file"
ln -s nowhere "$work/link"
judged 1 1 "acctkit: $work/file: this is no" acctkit --machine "$work/file/machine" machine new
judged 1 1 "acctkit: $work/link: this link leads" acctkit --machine "$work/link" machine new
if unshare -m true 2>/dev/null; then
  judged 0 0 : unshare -m sh -c 'mount -t tmpfs none /proc && exec "$@"' sh "$host" --machine "$work/new" machine new
fi

# Two wizards that are finished at the same moment write both accounts.
finish() {
  printf '%s\n' "set 1009 user$1" next next "set 1009 user$1@own$1.example" "set 1010 User $1" next \
    "set 1009 pop$1.example" "set 1010 smtp$1.example" next finish 'answer ok' >"$work/script$1"
  acctkit wizard original --script "$work/script$1" >/dev/null
}
for round in $(seq 10); do
  client=$([ $((round % 2)) -eq 0 ] && echo oe5 || echo netscape6)
  new_machine --with "$client"
  finish 1 & finish 2 & wait
  for number in 1 2; do
    acctkit accounts | grep -F "user$number@own$number.example" >/dev/null || fail "account $number in $client is lost"
  done
done
echo "the host program keeps the machine sound"
