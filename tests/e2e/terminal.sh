#!/bin/bash
# terminal.sh NATIVE: runs wizards in a terminal, by sending keys to it and reading its screen. The argument is the build
# folder.
set -euo pipefail
host=$(realpath "$1/acctkit")
command -v tmux >/dev/null || { echo "no tmux here" >&2; exit 1; }

work=$(mktemp -d)
export LC_ALL=C.UTF-8 ACCTKIT_MACHINE=$work/machine
terminals=0
tmux() { command tmux -u -S "$work/socket$terminals" -f /dev/null "$@"; }
finish() {
  tmux kill-server 2>/dev/null || true
  rm -rf "$work"
}
trap finish EXIT
screen() { tmux capture-pane -p; }
fail() {
  echo "FAILED: $*" >&2
  screen >&2 || true
  exit 1
}

# open COMMAND...: runs only the command in a new terminal, which then shows its exit status, and whether it restored the
# terminal's modes.
cat >"$work/pane" <<'PANE'
before=$(stty -g)
bash -c 'echo $$ >"$0"; exec "$@"' "$PIDFILE" "$@"
echo "EXIT $?"
[ "$before" = "$(stty -g)" ] && echo SANE
exec sleep 600
PANE
open() {
  tmux kill-server 2>/dev/null || true
  terminals=$((terminals + 1))
  PIDFILE=$work/pid tmux new-session -d -x 80 -y 24 bash "$work/pane" "$@"
}
start() { open "$host" wizard "$@"; }
keys() { tmux send-keys "$@"; }
type_text() { tmux send-keys -l "$1"; }
size() { tmux resize-window -x "$1" -y "$2"; }
# see TEXT...: waits until the terminal shows all of them.
see() {
  local text try shown
  for text in "$@"; do
    for try in {1..150}; do
      shown=$(screen)
      [[ $shown != *"$text"* ]] || continue 2
      sleep 0.1
    done
    fail "the terminal never showed: $text"
  done
}
ended() {
  see "EXIT $1" SANE
  [ "$(tmux display -p '#{alternate_on} #{cursor_flag}')" = "0 1" ] || fail "the screen isn't as it was"
}
hives() { sha256sum "$ACCTKIT_MACHINE"/*.reg; }

"$host" machine new >/dev/null

# From the first page to the account.
start mailer --id ABC01234 --ids ABC01234,DEF56789
see 'メーラー設定 (1/4)' 'ABC01234' '[ 次へ(N) > ]'
keys F4 && see '一覧を閉じる' 'DEF56789'
keys Down Enter && see 'F4 一覧'
keys Enter && see 'メーラー設定 (2/4)'
keys Down && see 'OutlookExpress'
keys M-n && see 'メーラー設定 (3/4)' 'DEF56789' '一覧を閉じる' 'legacy.zuvio.example'
keys Enter && see 'F4 一覧'
keys Enter && see 'ドメインが選択されていません。' '[ OK ]'
keys Enter && see 'F4 一覧'
keys Down && see 'mail.zuvio.example   '
keys M-u && type_text '山田　ｱｲ😀' && see '山田　ｱｲ ' 'この文字は使えません: 😀'
type_text 'ヴ' && keys Left Left BSpace End && see '山田　ｲヴ'
keys M-a && type_text 'taro.yamada.of.the.mail.services' && see 'mail.services'
type_text 'x' && see 'これ以上は入力できません。'
keys C-u && type_text 'taro' && keys M-n && see 'メーラー設定 (4/4)' 'taro@mail.zuvio.example' '差出人名 ： 山田　ｲヴ'
size 60 18 && see 'v │' && keys PageDown && see '^ │' 'smtp.zuvio.example'
size 50 18 && see '端末が小さすぎます。'
size 100 30 && see 'OutlookExpress (Microsoft)' '[ 完了 ]'
keys Enter && see '設定が完了しました。'
keys Enter && ended 0
accounts=$("$host" accounts)
[[ $accounts == *'@zuvio(DEF56789)'* && $accounts == *'山田　ｲヴ'* ]] || fail "the account isn't there: $accounts"

# The news page's check boxes, using only the keyboard.
start news --id ABC01234 --ids ABC01234
see '(1/5)' && keys Enter && see '(2/5)' && keys Enter && see '(3/5)' '一覧を閉じる'
keys Down Enter Tab Tab && type_text 'Taro' && keys Enter && see '(4/5)' '[*] フォーラム会議室'
keys Space && see '[ ] フォーラム会議室' '[*] カモメ'

# Cancelling changes nothing.
before=$(hives)
start short --id ABC01234
see '(1/2)' && keys Escape && see 'よろしいですか？' '[ はい(Y) ]'
type_text n && see 'F1 ヘルプ' && keys Enter && see '(2/2)' '一覧を閉じる'
keys Escape && see 'F4 一覧' && keys Escape && see 'よろしいですか？'
keys Left Right && type_text y && ended 0
start original
see '(1/5)' && type_text 'half' && see 'half' && keys C-c && ended 1
for end in 'TERM 143' 'HUP 129' 'PIPE 141' 'SEGV 139'; do
  start original
  see '(1/5)' && kill -s "${end% *}" "$(cat "$work/pid")" && ended "${end#* }"
done
[ "$before" = "$(hives)" ] || fail "a wizard that was left has written something"

# Help, with the service's file.
touch "$ACCTKIT_MACHINE/drive_c/Program Files/Zuvio/kantan.hlp"
start second
see '(1/4)' && keys F1 && see 'kantan.hlp' 'トピック 5'

# Keys that a terminal's description doesn't name.
for terminal in linux vt100; do
  open env TERM=$terminal "$host" wizard mailer --id ABC01234
  see '(1/4)' && keys M-Down && see '一覧を閉じる' && keys Escape && see 'F4 一覧'
  keys Tab BTab F4 && see '一覧を閉じる'
done

# Where there is no screen, a line says so.
refused() { # NAMED COMMAND...
  local said
  if said=$("${@:2}" 2>&1 </dev/null); then fail "a wizard ran: ${*:2}"; else [ $? -eq 2 ] || fail "other status"; fi
  [[ $said == *"$1"* && $said != *$'\n'* ]] || fail "it said: $said"
}
refused 'needs a terminal' "$host" wizard second
for setting in TERM=dumb TERM=no-such-terminal LC_ALL=C; do
  open env "$setting" "$host" wizard second
  ended 2
  [[ $(screen) == *acctkit:* ]] || fail "$setting: nothing was said"
done
echo "the wizards run in a terminal"
