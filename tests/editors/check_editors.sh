#!/usr/bin/env bash
# The recipes of docs/editors.md work as they are written there. Usage: check_editors.sh DCM SOURCE_FOLDER CASE
set -euo pipefail

dcm=$(realpath "$1")
source=$(realpath "$2")
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
cd "$folder"
mkdir bin home
ln -s "$dcm" bin/dcm
export PATH=$folder/bin:$PATH HOME=$folder/home XDG_CONFIG_HOME=$folder/home TERM=dumb

# One finding of each severity that is an error or a warning.
printf '<device>\n  <card typeid="010"/>\n  <card typeid="1"><muxctrl>maybe</muxctrl></card>\n</device>\n' >device.xml

fail() {
    echo "$*"
    exit 1
}

# need PROGRAM...: ctest takes this status for a test that does not run.
need() {
    local program
    for program in "$@"; do
        command -v "$program" >/dev/null || { echo "skipped: there is no $program" && exit 77; }
    done
}

# recipe LANGUAGE [NUMBER]: a block of the document.
recipe() {
    awk -v fence="\`\`\`$1" -v wanted="${2-1}" '
        $0 == fence && !inside { inside = 1; count++; next }
        /^```/ { inside = 0 }
        inside && count == wanted' "$source/docs/editors.md" >recipe
    [ -s recipe ] || fail "there is no block $1 in docs/editors.md"
    cat recipe
}

# is EXPECTED: the file "found" has these lines.
is() {
    diff - found || fail 'that is not what is found'
}

write_list='call writefile(map(getqflist(), {_, e -> bufname(e.bufnr) . " " . e.lnum . " " . e.col . " " . e.type . " " . e.text[-14:]}), "found")'

# fills_the_list EDITOR...
fills_the_list() {
    recipe vim >rc.vim
    timeout 60 "$@" -u rc.vim device.xml -c 'silent make!' -c "$write_list" -c 'qa!' >log 2>&1 </dev/null || fail "$(cat log)"
    is <<'TEXT'
device.xml 2 17 w [octal-number]
device.xml 3 29 e  [query-fails]
TEXT
}

vim_lists_findings() {
    need vim
    fills_the_list vim -N -es
}

neovim_lists_findings() {
    need nvim
    fills_the_list nvim --headless
}

emacs_marks_findings() {
    need emacs
    recipe elisp >recipe.el
    cat >test.el <<'LISP'
(load (expand-file-name "recipe.el"))
(find-file "device.xml")
(nxml-mode)
(unless (memq 'dcm-flymake flymake-diagnostic-functions) (error "not added"))
(goto-char (point-max))
(insert "<!-- changed and not saved -->")
(let (done)
  (dcm-flymake
   (lambda (found)
     (with-temp-file "found"
       (dolist (one found)
         (let ((text (flymake-diagnostic-text one)))
           (insert (format "%s %s %s\n" (with-current-buffer "device.xml" (line-number-at-pos (flymake-diagnostic-beg one)))
                           (flymake-diagnostic-type one) (substring text -14))))))
     (setq done t)))
  (with-timeout (30 (error "no answer"))
    (while (not done) (accept-process-output nil 0.1))))
LISP
    timeout 60 emacs -Q --batch -l test.el >log 2>&1 </dev/null || fail "$(cat log)"
    is <<'TEXT'
2 :warning [octal-number]
3 :error  [query-fails]
TEXT
}

emacs_follows_lines_of_compile() {
    need emacs
    cat >test.el <<'LISP'
(require 'compile)
(let ((buffer (compile "dcm check --format gcc ." )))
  (while (get-buffer-process buffer) (accept-process-output nil 0.1))
  (with-temp-file "found"
    (insert (with-current-buffer buffer
      (let (lines)
        (goto-char (point-min))
        (condition-case nil
            (while t
              (compilation-next-error 1)
              (push (number-to-string (cadr (compilation--message->loc (compilation-next-error 0)))) lines))
          (error nil))
        (mapconcat #'identity (nreverse lines) "\n"))) "\n")))
LISP
    timeout 60 emacs -Q --batch -l test.el >log 2>&1 </dev/null || fail "$(cat log)"
    is <<'TEXT'
2
3
TEXT
}

vs_code_matches_each_line() {
    need python3
    recipe json >tasks.json
    python3 - >found <<'PYTHON'
import json, re, subprocess
[task] = json.load(open("tasks.json"))["tasks"]
pattern = task["problemMatcher"]["pattern"]
output = subprocess.run([task["command"], *task["args"]], stdout=subprocess.PIPE, text=True).stdout
for line in output.splitlines():
    match = re.match(pattern["regexp"], line)
    print(*(match.group(pattern[part]) for part in ("file", "line", "column", "severity", "code")))
PYTHON
    is <<'TEXT'
device.xml 2 17 warning octal-number
device.xml 3 29 error query-fails
TEXT
}

gitlab_gets_a_report() {
    need jq
    recipe jq >quality.jq
    dcm check --format sarif . >dcm.sarif || test $? -le 2
    jq -r -f quality.jq dcm.sarif >quality.json
    jq -r '.[] | "\(.location.path) \(.location.lines.begin) \(.severity) \(.check_name)"' quality.json >found
    is <<'TEXT'
device.xml 2 minor octal-number
device.xml 3 critical query-fails
TEXT
    [ "$(jq '[.[].fingerprint] | unique | length' quality.json)" = 2 ] || fail 'findings have the same fingerprint'
}

write_repository() {
    need git
    git init -q -b main .
    git config user.name test
    git config user.email test@example
}

a_git_hook_refuses_faulty_files() {
    write_repository
    recipe sh >.git/hooks/pre-commit
    chmod +x .git/hooks/pre-commit
    git add device.xml
    ! git commit -qm faulty >log 2>&1 || fail 'a faulty file was committed'
    grep -qF '[query-fails]' log || fail "the hook did not say why: $(cat log)"
    echo '<device/>' >device.xml
    git add device.xml
    git commit -qm correct >log 2>&1 || fail "a correct file was not committed: $(cat log)"
}

# The hooks of the repository, with pre-commit where it is installed, else each by itself.
pre_commit_runs_the_hooks() {
    local entries entry
    entries=$(sed -n 's/^  entry: //p' "$source/.pre-commit-hooks.yaml")
    [ "$(wc -l <<<"$entries")" = 3 ] || fail 'there are not three hooks'
    grep -qF -e '- id: dcm-check' <(recipe yaml) || fail 'the document names no hook of the repository'
    printf '<device>\n<card  typeid="1" Name="x" abbrname="x"/></device>\n' >fixable.xml
    while read -r entry; do
        $entry fixable.xml >log || [ $? -le 2 ] || fail "does not run: $entry"
    done <<<"$entries"
    grep -qF '  <card typeid="1" name="x" abbrname="x"/>' fixable.xml || fail "not fixed and formatted: $(cat fixable.xml)"
    command -v pre-commit >/dev/null || return 0
    mkdir hooks
    cp "$source/.pre-commit-hooks.yaml" hooks
    (cd hooks && write_repository && git add . && git commit -qm hooks)
    write_repository
    git add device.xml
    status=0
    pre-commit try-repo ./hooks dcm-check --files device.xml >log 2>&1 || status=$?
    [ "$status" -ne 0 ] || fail 'the hook found nothing'
    grep -qF '[query-fails]' log || fail "$(cat log)"
}

"$3"
