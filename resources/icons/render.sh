#!/bin/sh
# Renders every picture of the resource collection from its SVG source, at its own size and at
# twice that size (@2x). The same sources give the same files, byte for byte, with the same
# rsvg-convert and Roboto. Needs: librsvg2-bin, fonts-roboto.
set -eu
cd "$(dirname "$0")"

# render SOURCE TARGET WIDTH HEIGHT
render() {
    rsvg-convert --width "$3" --height "$4" --output "$2" "$1"
}

# both SOURCE TARGET: width and height are those of the source's view box
both() {
    size=$(sed -n 's/.* viewBox="0 0 \([0-9]*\) \([0-9]*\)".*/\1 \2/p' "$1" | head -n 1)
    width=${size% *}
    height=${size#* }
    render "$1" "$2.png" "$width" "$height"
    render "$1" "$2@2x.png" $((2 * width)) $((2 * height))
}

mkdir -p ../res ../appicon
for source in *.svg; do
    name=${source%.svg}
    case $name in
    logo | separator | splash) both "$source" "../$name" ;;
    zelvora | zelvora-batch | zelvora-small) ;;
    *) both "$source" "../res/$name" ;;
    esac
done

# The application's icon: as a resource, and in the sizes that desktops ask for.
render zelvora.svg ../res/zelvora.png 128 128
render zelvora.svg ../res/zelvora@2x.png 256 256
for size in 16 24 32; do
    render zelvora-small.svg "../appicon/zelvora-$size.png" "$size" "$size"
done
for size in 48 64 128 256; do
    render zelvora.svg "../appicon/zelvora-$size.png" "$size" "$size"
done

# That of the batch window, plain enough for every size.
render zelvora-batch.svg ../res/zelvora-batch.png 128 128
render zelvora-batch.svg ../res/zelvora-batch@2x.png 256 256
for size in 16 24 32 48 64 128 256; do
    render zelvora-batch.svg "../appicon/zelvora-batch-$size.png" "$size" "$size"
done
