#!/usr/bin/env bash
# Draws the pictures of the documentation. Usage: pictures.sh DCM SOURCE_FOLDER FOLDER
set -euo pipefail

dcm=$1
example=$2/examples/device.xml
folder=$3

draw() { ${DCM_EMULATOR:+"$DCM_EMULATOR"} "$dcm" draw --file "$example" "$@"; }

draw card 0x0302 -o "$folder/card-0x0302.svg"
# One card is refused, which fails.
draw frame 1 -o "$folder/frame-1.svg" --fit 17=0x0701 --fit 1=0x0401 --fit 3=0x0302 --fit 4=0x0501 --fit 5=0x0303 \
    --fit 5=0x0301 --fit 7=0x0101 --fit 8=0x0302 --fit 9=0x0201 --fit 10=0x0201 --fit 11=0x0402 --fit 11=0x0402:1 \
    --fit 13=0x0403 --fit 15=0x0302 --fit 15=0x0302 2>/dev/null || [ $? -eq 1 ]
