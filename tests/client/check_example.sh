#!/usr/bin/env bash
# The example program prints the expected ports, capabilities and LEDs. Usage: check_example.sh PROGRAM SOURCE_FOLDER
set -euo pipefail

program=$1
source=$2

# DCM_EMULATOR runs programs that were built for another machine.
run() { ${DCM_EMULATOR:+"$DCM_EMULATOR"} "$program" "$@"; }

diff "$source/tests/install/card_ports.txt" <(run "$source/examples/device.xml" 0x0301)

status=0
output=$(run "$source/examples/device.xml" 0x0399 2>/dev/null) || status=$?
if [ "$status" -ne 1 ] || [[ $output != *'can not find card with typeid=921, mode=0.'* ]]; then
    printf 'expected: a card that does not exist is reported, and the exit status is 1\n'
    exit 1
fi
