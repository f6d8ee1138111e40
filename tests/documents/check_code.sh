#!/usr/bin/env bash
# Compiles each ```c block in the documents, as statements or declarations of a function. Usage: check_code.sh SOURCE_FOLDER CC
set -euo pipefail

source=$1
shift
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT

# Each block becomes one file, $folder/N.c.
awk -v folder="$folder" '
    /^```c$/ {
        file = folder "/" ++count ".c"
        print "#include <dcm.h>\n#include <stdio.h>\nvoid example(void);\nvoid example(void)\n{" >file
        printf "#line %d \"%s\"\n", FNR + 1, FILENAME >file
        next
    }
    file && /^```$/ { print "}" >file; close(file); file = ""; next }
    file { print >file }' "$source"/*.md "$source"/docs/*.md "$source"/docs/api/*.md

count=0
for file in "$folder"/*.c; do
    "$@" -std=c11 -Wall -Wextra -Wno-unused-variable -Werror -fsyntax-only "-I$source/include" "$file"
    count=$((count + 1))
done
[ "$count" -ge 3 ] || { echo "only $count blocks" && exit 1; }
