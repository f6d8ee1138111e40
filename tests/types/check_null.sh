#!/usr/bin/env bash
# The header lets a compiler refuse NULL where it is not allowed, and only there. Usage: check_null.sh SOURCE_FOLDER COMPILER...
set -euo pipefail

source=$1
shift
compiler=("$@")

# compiles CALL
compiles() {
    printf '#include <dcm.h>\n#include <stddef.h>\n%s\nvoid example(void);\nvoid example(void)\n{\n    (void)%s;\n}\n' \
        'static uint32_t value; static uint8_t byte; static char text[64]; static DcmLedInfo led; static DcmCardInfo card;' \
        "$1" | "${compiler[@]}" -std=c11 -Wall -Wno-unused-variable -Werror -fsyntax-only -I"$source/include" -x c - 2>/dev/null
}

count=0
while read -r verdict call; do
    count=$((count + 1))
    if compiles "$call"; then
        [ "$verdict" = allowed ] || { echo "the compiler accepts $call" && exit 1; }
    else
        [ "$verdict" = refused ] || { echo "the compiler refuses $call" && exit 1; }
    fi
done <<'CALLS'
allowed dcmCardInfoGet(NULL, 1, 0, &card)
refused dcmFrameInfoGet("", 1, NULL)
refused dcmSlotInfoGet("", 1, NULL)
refused dcmCardInfoGet("", 1, 0, NULL)
refused dcmVmPortInfoGet(1, NULL)
allowed dcmFrameInfoShowFilename(NULL, 1)
refused dcmFrameInfoPrint(NULL)
refused dcmSlotInfoPrint(NULL)
refused dcmCardInfoPrint(NULL)
refused dcmVmPortInfoShow("", NULL)
allowed dcmLedInfoPrint(NULL, 0)
refused _dcmLedInfoPrint(NULL)
refused dcmLedMapPrint(NULL)
refused dcmDecodeTemperatureEntity(NULL, card.temperature, &byte)
refused dcmLedDecodeEntity(NULL, &led, 1, 0, 0, &byte)
refused dcmLedDecodeEntity((struct _xmlNode *)text, &led, 1, 0, 0, NULL)
allowed dcmLedDecodeEntity((struct _xmlNode *)text, NULL, 1, 0, 0, &byte)
refused dcmLedDecodeMap(NULL, &card.ledMap)
allowed dcmStrMatch(1, NULL)
allowed dcmStr2BitList(NULL, 1, 8, &byte, 1)
refused dcmStr2BitList("1", 1, 8, NULL, 1)
refused dcmBitList2Str(&byte, 1, NULL, 10)
allowed dcmYesNoStr2Val(NULL, &value)
refused dcmYesNoStr2Val((const unsigned char *)text, NULL)
refused dcmPhyTypeStr2Val((const unsigned char *)text, &value, NULL)
allowed dcmLedStateStr2Val(1, NULL, &value)
refused dcmLedStateStr2Val(1, (const unsigned char *)text, NULL)
refused dcmNameToEttInfo("", NULL)
CALLS
[ "$count" -ge 25 ]
