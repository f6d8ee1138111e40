#!/usr/bin/env python3
"""What a shell offers at the end of a line, asked of the shell itself. Usage: check_shell.py SHELL DCM SOURCE_FOLDER

The shell runs on a terminal with the installed script and gets the line and the key as from a user. Exits with 77 where
there is no such shell.
"""
import os
import pty
import re
import select
import shutil
import subprocess
import sys
import tempfile
import time

shell, dcm, source = sys.argv[1], os.path.abspath(sys.argv[2]), os.path.abspath(sys.argv[3])
example = source + "/examples/device.xml"
TYPES = {"0x0401", "0x0402", "0x0403"}

# Lines behind "dcm", and what is offered: exactly these words, or, where ... is among them, these and others.
CASES = [
    ("che", {"check"}),
    ("", {"check", "list", "card", "help", ...}),
    ("export ", {"frame", "slot", "card"}),
    ("check --for", {"--format"}),
    ("check --format ", {"text", "gcc", "github", "checkstyle", "json", "sarif"}),
    ("check --format=j", {"--format=json"}),
    ("check --explain octal", {"octal-number"}),
    ("check -W no-octal", {"no-octal-number"}),
    ("check -W error=octal", {"error=octal-number"}),
    ("help expo", {"export"}),
    ("new fr", {"frame"}),
    ("words phy", {"phy-type"}),
    ("explain card@ty", {"card@typeid"}),
    ("explain card@", {"card@typeid", "card@mode", "card@name", "card@abbrname"}),
    (f"card -f {example} 0x04", TYPES),
    (f"card --file={example} 0x04", TYPES),
    (f"card -f {example} 0x0402 ", {"0", "1"}),
    (f"card --file={source}/examples/dev", {f"--file={example}", ...}),
    (f"list {source}/examples/dev", {example, ...}),
    ("frame -f 'a folder/device.xml' ", {"7"}),
    ("frame -f a\\ folder/device.xml ", {"7"}),
    ("frame -f ~/device.xml ", {"8"}),
    ("vm --root fold", {"folder"}),
]


class Terminal:
    """A shell on a terminal."""

    def __init__(self, command, environment):
        self.child, self.master = pty.fork()
        if self.child == 0:
            os.execvpe(command[0], command, environment)
        self.text = ""

    def wait(self, pattern, seconds=120):
        """Waits until the shell has printed what matches, and takes it."""
        end = time.monotonic() + seconds
        while True:
            match = re.search(pattern, self.text, re.DOTALL)
            if match:
                self.text = self.text[match.end():]
                return match
            ready, _, _ = select.select([self.master], [], [], max(0.0, end - time.monotonic()))
            if not ready:
                sys.exit(f"{shell}: waited for {pattern!r}, got {self.text!r}")
            self.text += os.read(self.master, 65536).decode("utf-8", "replace")

    def send(self, text):
        os.write(self.master, text.encode())


def offered_by_bash(folder, lines):
    # All that is offered is put into the line, which is then written to a file.
    with open(folder + "/rc", "w") as rc:
        rc.write(f"""PS1='ready> '
source {source}/completions/dcm
PATH={os.path.dirname(dcm)}:$PATH
bind 'set enable-bracketed-paste off' '"\\e*": insert-completions' 2>/dev/null
show() {{ printf '%s' "$READLINE_LINE" >{folder}/line; READLINE_LINE= READLINE_POINT=0; echo shown; }}
bind -x '"\\C-t": show'
""")
    terminal = Terminal(["bash", "--noprofile", "--rcfile", folder + "/rc", "-i"], os.environ)
    for line in lines:
        terminal.wait("ready> ")
        terminal.send(f"dcm {line}\x1b*\x14")
        terminal.wait("shown\r\n")
        with open(folder + "/line") as file:
            text = file.read()
        before = len("dcm " + line) - len(re.split(r"(?<!\\)[ =@]", line)[-1])
        whole = "dcm " + line[:line.rfind(" ") + 1]
        # Readline leaves a word's beginning up to "=" where it is, or that in front of "@".
        head = text[len(whole):before]
        offered = {head + word.lstrip("@") for word in text[before:].split(" ") if word}
        # Nothing was offered: the line is as it was.
        yield set() if text == "dcm " + line else offered
        terminal.send("\n")


def offered_by_zsh(folder, lines):
    # What would be added to the list of matches is written to a file.
    with open(folder + "/.zshrc", "w") as rc:
        rc.write(f"""PS1='ready> '
fpath=({source}/completions $fpath)
PATH={os.path.dirname(dcm)}:$PATH
autoload -U compinit
compinit -u -d {folder}/zcompdump
compadd() {{
    local -a offered
    builtin compadd -O offered "$@"
    print -rl -- $IPREFIX$^offered >>{folder}/offered
    builtin compadd "$@"
}}
finish() {{ BUFFER= ; print shown; zle reset-prompt }}
zle -N finish
bindkey '^T' finish
bindkey '^I' complete-word
""")
    environment = dict(os.environ, ZDOTDIR=folder)
    terminal = Terminal(["zsh", "-d", "-i"], environment)
    for line in lines:
        open(folder + "/offered", "w").close()
        terminal.wait("ready> ")
        terminal.send(f"dcm {line}\t\x14")
        terminal.wait("shown")
        with open(folder + "/offered") as file:
            yield {word for word in file.read().split("\n") if word}
        terminal.send("\n")


def offered_by_fish(folder, lines):
    environment = dict(os.environ, PATH=os.path.dirname(dcm) + ":" + os.environ["PATH"], XDG_CONFIG_HOME=folder,
                       XDG_DATA_HOME=folder)
    for line in lines:
        script = f"set fish_complete_path {source}/completions; complete -C \"$argv[1]\""
        ran = subprocess.run(["fish", "--no-config", "-c", script, "dcm " + line], env=environment, check=True,
                             stdout=subprocess.PIPE, text=True)
        yield {offer.split("\t")[0] for offer in ran.stdout.split("\n") if offer}


def without_folder(word):
    """Without the folder of a path, which zsh has apart, and the "/" that some shells show behind a folder."""
    return re.sub(r"^([^/=]*=)?.*/", r"\1", word.rstrip("/"))


def main():
    if shutil.which(shell) is None:
        print(f"skipped: there is no {shell}")
        return 77
    with tempfile.TemporaryDirectory() as folder:
        os.chdir(folder)
        os.environ["HOME"] = folder
        os.environ["TERM"] = "dumb"
        os.mkdir("a folder")
        os.mkdir("folder")
        for name, number in ("a folder/device.xml", 7), ("device.xml", 8):
            with open(name, "w") as file:
                file.write(f'<device><frame typeid="{number}"/></device>')
        offers = {"bash": offered_by_bash, "zsh": offered_by_zsh, "fish": offered_by_fish}[shell]
        failures = 0
        for (line, expected), offered in zip(CASES, offers(folder, [line for line, _ in CASES])):
            wanted = {without_folder(word) for word in expected - {...}}
            offered = {without_folder(word) for word in offered}
            begun = {word for word in offered if ... not in expected or word in wanted}
            if begun != wanted:
                print(f"{shell}: not so: 'dcm {line}' offers {wanted}: it offers {offered}")
                failures += 1
    return 1 if failures else 0


sys.exit(main())
