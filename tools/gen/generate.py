#!/usr/bin/env python3
"""Writes the stack's generated files, or with --check tells whether those checked in are up to date."""

import argparse
import sys
from pathlib import Path

import emit_ids
import emit_services
import emit_types
from schema import Schema

REPOSITORY = Path(__file__).resolve().parents[2]
OUTPUT = REPOSITORY / "stack" / "generated"

FILES = {
    "include/opcua/opcua_types.h": emit_types.types_header,
    "include/opcua/opcua_statuscodes.h": emit_ids.status_header,
    "include/opcua/opcua_identifiers.h": emit_ids.identifiers_header,
    "include/opcua/opcua_attributes.h": emit_ids.attributes_header,
    "include/opcua/opcua_clientapi.h": emit_services.services_header,
    "opcua_types.c": emit_types.types_source,
    "opcua_statuscodes.c": emit_ids.status_source,
    "opcua_attributes.c": emit_ids.attributes_source,
    "opcua_clientapi.c": emit_services.services_source,
}


def check(contents):
    for name, text in contents.items():
        path = OUTPUT / name
        if not path.is_file() or path.read_text(encoding="utf-8") != text:
            print(f"{path.relative_to(REPOSITORY)} is not what tools/gen/generate.py writes", file=sys.stderr)
            return 1
    return 0


def write(contents):
    for name, text in contents.items():
        path = OUTPUT / name
        if path.is_file() and path.read_text(encoding="utf-8") == text:
            continue  # keeps its time, so that nothing is built again
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_text(text, encoding="utf-8")
        print(path.relative_to(REPOSITORY))
    return 0


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--check", action="store_true", help="compare only; exit 1 at the first difference")
    parser.add_argument(
        "--modules",
        type=Path,
        default=REPOSITORY / "demoserver" / "node_modules",
        help="folder with the npm packages that hold the schema",
    )
    arguments = parser.parse_args()
    schema = Schema(arguments.modules)
    contents = {name: emit(schema) for name, emit in FILES.items()}
    return check(contents) if arguments.check else write(contents)


if __name__ == "__main__":
    sys.exit(main())
