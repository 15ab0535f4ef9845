#!/usr/bin/env python3
"""The contracts of public headers, as Doxygen reads them: unknown parameters, commands and links are faults
everywhere, declarations without any words where plugin authors look first. Writes the pages to build/docs.
"""
import re
import shutil
import subprocess
import sys
from pathlib import Path

from check_sources import ROOT, report

COMPLETE = ("app/api", "uawidgets", "monitoring")
UNDOCUMENTED = re.compile(r" is not documented\.$")
# Doxygen 1.9.4 about std::hash of a class of ours: it takes the specialisation for a class of its own.
MISREAD = re.compile(r"Internal inconsistency: scope for class std::hash<")
NOT_THERE = re.compile(r"tag INPUT: input source .* does not exist")


def configuration(root, output):
    """The Doxyfile with the places of this run, and only the folders that are there."""
    text = (root / "docs/Doxyfile").read_text(encoding="utf-8").replace("\\\n", " ")
    inputs = re.search(r"^INPUT\s*=(.*)$", text, re.M)[1].split()
    there = [name for name in inputs if (root / name).exists()]
    return f"{text}\nINPUT = {' '.join(there)}\nOUTPUT_DIRECTORY = {output}\n"


def is_fault(line):
    if MISREAD.search(line):
        return False
    return not UNDOCUMENTED.search(line) or line.startswith(tuple(f"{folder}/" for folder in COMPLETE))


def check(root, output):
    """Makes the pages; every line of Doxygen's that is a fault, once."""
    root = Path(root).resolve()
    shutil.rmtree(output, ignore_errors=True)  # pages of what is gone
    Path(output).mkdir(parents=True)
    run = subprocess.run(
        ["doxygen", "-"],
        cwd=root,
        input=configuration(root, output),
        capture_output=True,
        text=True,
        check=True,
    )
    lines = run.stderr.replace(f"{root}/", "").splitlines()
    return sorted({line for line in lines if line.strip() and is_fault(line)})


if __name__ == "__main__":
    sys.exit(report(check(ROOT, ROOT / "build/docs"), "contracts are Doxygen's: /// above, ///< behind"))
