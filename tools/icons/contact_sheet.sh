#!/bin/sh
# Renders one sheet with every picture of app/resources/svg, on light and on dark ground, to look at after a
# change: enlarged, at 24 pixels and at the 16 pixels of trees and menus.
#   contact_sheet.sh [FILE.png [NAME...]]
set -eu
cd "$(dirname "$0")/../.."
out=${1:-contact_sheet.png}
[ $# -gt 0 ] && shift
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

columns=5 cell_width=290 cell_height=96
if [ $# -eq 0 ]; then
    for file in app/resources/svg/*.svg; do
        case $file in
            *splash*) ;;
            *) set -- "$@" "$(basename "$file" .svg)" ;;
        esac
    done
fi
rows=$((($# + columns - 1) / columns))

image() { # name pixels x y shown-size
    rsvg-convert --keep-aspect-ratio -w "$2" "app/resources/svg/$1.svg" -o "$work/i.png"
    printf '<image x="%s" y="%s" width="%s" height="%s" xlink:href="data:image/png;base64,' "$3" "$4" "$5" "$5"
    base64 -w0 "$work/i.png"
    printf '"/>\n'
}

{
    printf '<svg xmlns="http://www.w3.org/2000/svg" xmlns:xlink="http://www.w3.org/1999/xlink" width="%d" height="%d">\n' \
        $((columns * cell_width)) $((rows * cell_height))
    i=0
    for name in "$@"; do
        # shellcheck disable=SC2017 # whole rows are what is wanted
        x=$((i % columns * cell_width)) y=$((i / columns * cell_height))
        half=$((cell_width / 2))
        printf '<rect x="%d" y="%d" width="%d" height="%d" fill="#fff"/>\n' $x $y $half $cell_height
        printf '<rect x="%d" y="%d" width="%d" height="%d" fill="#2d2d2d"/>\n' $((x + half)) $y $half $cell_height
        for left in $((x + 6)) $((x + half + 6)); do
            image "$name" 72 $left $((y + 4)) 72
            image "$name" 24 $((left + 84)) $((y + 6)) 24
            image "$name" 24 $((left + 88)) $((y + 44)) 16
        done
        printf '<text x="%d" y="%d" font-family="sans-serif" font-size="11" fill="#555">%s</text>\n' $((x + 6)) $((y + 90)) "$name"
        i=$((i + 1))
    done
    printf '</svg>\n'
} >"$work/sheet.svg"
rsvg-convert --unlimited "$work/sheet.svg" -o "$out"
echo "$out"
