"""What the checks share: the project's files, C++ text without comments, the report."""
import re
import subprocess
import sys
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent


def project_files(root, *patterns):
    """Tracked and new files of the project, as paths relative to root."""
    listing = subprocess.run(
        ["git", "ls-files", "-z", "--cached", "--others", "--exclude-standard", "--", *patterns],
        cwd=root,
        capture_output=True,
        check=True,
        text=True,
    ).stdout
    return sorted({Path(name) for name in listing.split("\0") if name and (Path(root) / name).is_file()})


def is_generated(path):
    return "generated" in path.parts


_LEXEMES = re.compile(
    r"""//(?:\\\n|[^\n])*|/\*.*?\*/
    |R"([^()\\\s]{0,16})\(.*?\)\1"
    |"(?:\\.|[^"\\\n])*"
    |(?<![0-9A-Fa-f])'(?:\\.|[^'\\\n])*\'""",
    re.S | re.X,
)


def without_comments(text, keep_strings=False):
    """The text with comments and, unless asked otherwise, insides of literals blanked; line numbers stay."""

    def blank(match):
        lexeme = match[0]
        if keep_strings and lexeme[0] != "/":
            return lexeme
        return re.sub(r"[^\n]", " ", lexeme)

    return _LEXEMES.sub(blank, text)


def report(problems, summary):
    """Prints every problem, a line each; the exit code of the check."""
    for problem in problems:
        print(problem, file=sys.stderr)
    if problems:
        print(f"{len(problems)} problems; {summary}", file=sys.stderr)
    return 1 if problems else 0
