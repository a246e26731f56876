"""Drives interactive shells as a person does: types a line and presses the tabulator."""

import os
import pty
import re
import select
import subprocess
import tempfile
import unittest
from pathlib import Path

COMPLETIONS = Path(__file__).resolve().parents[2] / "packaging" / "completions"
PATIENCE = 60  # seconds until a shell is taken for stuck
PROMPT = "now> "

BASH_SETUP = """
PS1='{prompt}'
bind 'set show-all-if-ambiguous on'
bind 'set completion-query-items 0'
bind 'set page-completions off'
bind 'set enable-bracketed-paste off'
source /usr/share/bash-completion/bash_completion
source {completions}/krel.bash
source {completions}/krelcc.bash
"""

# Every match that is added to the list goes to the file as well.
ZSH_SETUP = """
PS1='{prompt}'
fpath=({completions} $fpath)
autoload -Uz compinit && compinit -D -u
setopt auto_list no_list_beep
LISTMAX=1000
compadd() {{
    if [[ ${{@[1,(i)(-|--)]}} != *-(O|A|D)\\ * ]]; then
        local -a found
        builtin compadd -A found "$@"
        (( $#found )) && print -rl -- $found >>{matches}
    fi
    builtin compadd "$@"
}}
"""


class Terminal:
    """A shell on a terminal of its own, which ends with the block."""

    def __init__(self, command, directory, environment):
        try:
            self.master, slave = pty.openpty()
        except OSError as fault:
            raise unittest.SkipTest(f"there are no terminals here: {fault}") from fault
        self.shell = subprocess.Popen(
            command, stdin=slave, stdout=slave, stderr=slave, cwd=directory,
            env=environment, start_new_session=True)
        os.close(slave)

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.shell.kill()
        self.shell.wait()
        os.close(self.master)

    def type(self, keys):
        os.write(self.master, keys.encode())

    def wait_for_prompt(self):
        """From the prompt on, it is the shell's editor that reads the keys."""
        self.type("echo RE''ADY\n")
        if PROMPT not in self.read_until("READY").split("READY")[-1]:
            self.read_until(PROMPT)

    def read_until(self, end):
        """What the shell shows up to that text."""
        shown = b""
        while end.encode() not in shown:
            ready, _, _ = select.select([self.master], [], [], PATIENCE)
            if not ready:
                raise TimeoutError(f"the shell is stuck; it has shown {shown!r}")
            shown += os.read(self.master, 65536)
        return shown.decode(errors="replace")


def environment_with(tools):
    return {"PATH": f"{tools}:/usr/bin:/bin", "TERM": "dumb", "LC_ALL": "C", "HOME": "/nonexistent",
            "HISTFILE": "/dev/null"}


def words_in(text):
    plain = re.sub(r"\x1b\[[0-9;?]*[A-Za-z]|[\r\a]", " ", text)
    return set(plain.split())


def complete_in_bash(line, tools, directory):
    """The words that bash shows for a line."""
    with tempfile.TemporaryDirectory() as place:
        setup = Path(place) / "bashrc"
        setup.write_text(BASH_SETUP.format(completions=COMPLETIONS, prompt=PROMPT))
        with Terminal(["bash", "--rcfile", str(setup), "-i"], directory,
                      environment_with(tools)) as terminal:
            terminal.wait_for_prompt()
            # The end of the line is killed by hand, and what was completed is shown by the echo.
            terminal.type(line + "\t\x01echo '\x05'DO''NE\n")
            return words_in(terminal.read_until("'DO''NE").replace("'DO''NE", " "))


def complete_in_zsh(line, tools, directory):
    """The words that zsh has for a line."""
    with tempfile.TemporaryDirectory() as place:
        matches = Path(place) / "matches"
        matches.write_text("")
        (Path(place) / ".zshrc").write_text(
            ZSH_SETUP.format(completions=COMPLETIONS, prompt=PROMPT, matches=matches))
        environment = environment_with(tools) | {"ZDOTDIR": place}
        with Terminal(["zsh", "-d", "-i"], directory, environment) as terminal:
            terminal.wait_for_prompt()
            terminal.type(line + "\t\x15echo DO''NE\n")
            terminal.read_until("DONE")
        return set(matches.read_text().split("\n")) - {""}


def complete_in_fish(line, tools, directory):
    """The words that fish has for a line."""
    with tempfile.TemporaryDirectory() as home:
        files = " ".join(f"source {COMPLETIONS}/{name}.fish;" for name in ("krel", "krelcc"))
        run = subprocess.run(
            ["fish", "-N", "-c", f"{files} complete -C '{line}'"], cwd=directory, check=True,
            env=environment_with(tools) | {"HOME": home}, capture_output=True, text=True,
            timeout=PATIENCE)
        return {row.split("\t")[0] for row in run.stdout.splitlines()}


SHELLS = {"bash": complete_in_bash, "zsh": complete_in_zsh, "fish": complete_in_fish}
