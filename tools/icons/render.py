#!/usr/bin/env python3
"""Renders the PNG files that the resource files (.qrc) list from the SVG sources.

The resource files are the list of what is needed: images/NAME.png comes from app/resources/svg/NAME.svg at
the size that the SVG states, images/NAME@2x.png from the same file at twice that size. Needs rsvg-convert
(Debian package librsvg2-bin).

  render.py            render everything
  render.py NAME...    render these pictures only
  render.py --check    render nothing; report what is missing, unused or of the wrong size (exit code 1)
"""
import struct
import subprocess
import sys
import xml.etree.ElementTree as ElementTree
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]
SVG = ROOT / "app/resources/svg"
QRC = [
    "app/resources/tavelin.qrc",
    "uawidgets/resources/uawidgets.qrc",
    "plugins/attributes/attributeplugin.qrc",
    "plugins/devices/devicesplugin.qrc",
    "plugins/events/eventplugin.qrc",
    "plugins/gds/gdsplugin.qrc",
    "plugins/methods/methodplugin.qrc",
]
# The application icon in the sizes that desktops ask for; the smallest two have a drawing of their own.
SIZES = {
    "tavelin_16": ("tavelin_small", 16),
    "tavelin_32": ("tavelin_small", 32),
    "tavelin_48": ("tavelin", 48),
    "tavelin_128": ("tavelin", 128),
    "tavelin_256": ("tavelin", 256),
}


def resources():
    """Yields (resource file, resource name, path of the PNG) for every entry of every resource file."""
    for name in QRC:
        qrc = ROOT / name
        for block in ElementTree.parse(qrc).getroot().iter("qresource"):
            for entry in block.iter("file"):
                alias = entry.get("alias", entry.text)
                yield name, f"{block.get('prefix', '/').rstrip('/')}/{alias}", (
                    qrc.parent / entry.text
                ).resolve()


def source(png):
    """The SVG file of a PNG and the width in pixels at which it is rendered."""
    stem = png.stem
    if stem in SIZES:
        drawing, width = SIZES[stem]
        return SVG / f"{drawing}.svg", width
    scale = 2 if stem.endswith("@2x") else 1
    svg = SVG / f"{stem.removesuffix('@2x')}.svg"
    if not svg.exists():
        return svg, 0
    return svg, int(ElementTree.parse(svg).getroot().get("width")) * scale


def png_width(png):
    with png.open("rb") as file:
        head = file.read(24)
    return struct.unpack(">I", head[16:20])[0] if head[:8] == b"\x89PNG\r\n\x1a\n" and len(head) == 24 else -1


def check():
    faults = []
    owners = {}
    entries = list(resources())
    pngs = {png for _, _, png in entries}
    for qrc, name, png in entries:
        if name in owners:
            faults.append(f"{name}: both in {owners[name]} and in {qrc}")
        owners[name] = qrc
    for name in owners:
        stem = Path(name).stem
        if not stem.endswith("@2x") and stem not in SIZES and name.replace(".png", "@2x.png") not in owners:
            faults.append(f"{name}: no @2x picture beside it")
    for png in sorted(pngs):
        svg, width = source(png)
        if not svg.exists():
            faults.append(f"{png.relative_to(ROOT)}: no source {svg.relative_to(ROOT)}")
        elif not png.exists():
            faults.append(f"{png.relative_to(ROOT)}: missing")
        elif png_width(png) != width:
            faults.append(f"{png.relative_to(ROOT)}: {png_width(png)} pixels wide, not {width}")
    used = {source(png)[0] for png in pngs}
    faults += [
        f"{svg.relative_to(ROOT)}: no resource file lists a picture of it"
        for svg in sorted(SVG.glob("*.svg"))
        if svg not in used
    ]
    folders = {png.parent for png in pngs}
    faults += [
        f"{png.relative_to(ROOT)}: in no resource file"
        for folder in sorted(folders)
        for png in sorted(folder.glob("*.png"))
        if png not in pngs
    ]
    for fault in faults:
        print(fault)
    size = sum(png.stat().st_size for png in pngs if png.exists())
    print(f"{len(pngs)} pictures, {size} bytes, {len(faults)} faults")
    return 1 if faults else 0


def render(names):
    pngs = {png for _, _, png in resources()}
    unknown = set(names) - {png.stem.removesuffix("@2x") for png in pngs}
    if unknown:
        sys.exit(f"no resource file lists: {', '.join(sorted(unknown))}")
    for png in sorted(pngs):
        if names and png.stem.removesuffix("@2x") not in names:
            continue
        svg, width = source(png)
        if not width:
            sys.exit(f"{png.relative_to(ROOT)}: no source {svg.relative_to(ROOT)}")
        png.parent.mkdir(parents=True, exist_ok=True)
        subprocess.run(["rsvg-convert", "--keep-aspect-ratio", "-w", str(width), "-o", png, svg], check=True)
    return 0


if __name__ == "__main__":
    arguments = sys.argv[1:]
    if any(argument.startswith("-") for argument in arguments) and arguments != ["--check"]:
        sys.exit(__doc__)
    sys.exit(check() if arguments == ["--check"] else render(arguments))
