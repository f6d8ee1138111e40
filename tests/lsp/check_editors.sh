#!/usr/bin/env bash
# Editors with "dcm lsp", without a screen. Usage: check_editors.sh DCM EDITOR
set -euo pipefail

dcm=$(readlink -f "$1")
editor=$2
folder=$(dirname "$(readlink -f "$0")")

skip() {
    printf 'skipped: %s\n' "$1"
    exit 77
}

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
export DCM=$dcm DESCRIPTION=$work/device.xml HOME=$work XDG_CONFIG_HOME=$work XDG_DATA_HOME=$work
write() {
    cat <<EOF
<device>
  <card typeid="0x0310" name="Line card" abbrname="LC">
    <occupyslotnum>1</occupyslotnum>
    <panel-port num="1" startportid="1" maxportid="1">
      <port id="1"><portid>1</portid><phytype>$1</phytype><driver>cdl</driver></port>
    </panel-port>
  </card>
</device>
EOF
}
write 10gex >"$DESCRIPTION"

case $editor in
neovim)
    command -v nvim >/dev/null || skip 'nvim is not installed (Debian: neovim)'
    timeout 100 nvim --headless -u NONE -i NONE -n -c "luafile $folder/neovim.lua" </dev/null
    ;;
emacs)
    command -v emacs >/dev/null || skip 'emacs is not installed (Debian: emacs-nox)'
    emacs --batch --eval "(unless (require 'eglot nil t) (kill-emacs 1))" 2>/dev/null ||
        skip 'emacs has no eglot (from Emacs 29 on, or Debian: elpa-eglot)'
    timeout 100 emacs --batch -l "$folder/emacs.el" </dev/null
    ;;
esac

write 10ge | diff - "$DESCRIPTION" || {
    printf 'the fix has not been applied as expected\n'
    exit 1
}
