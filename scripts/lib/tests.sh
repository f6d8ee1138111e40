# shellcheck shell=bash
# Runs all tests of a build quickly. ctest starts a process for each test, which takes most of the time where processes start
# slowly (emulators, sanitizers).

# tests_of FOLDER: the number and command of each test in ctest.
tests_of() {
    local listing commands
    listing=$(ctest --test-dir "$1" --show-only --verbose) || fail "ctest finds no tests in $1"
    commands=$(sed -nE 's/^([0-9]+): Test command: /\1 /p' <<<"$listing")
    if ! grep -q -- '"--gtest_filter=' <<<"$commands" ||
        [ "$(wc -l <<<"$commands")" -ne "$(grep -cE '^ +Test +#[0-9]+: ' <<<"$listing")" ]; then
        printf '%s\n' "$listing" >&2
        fail 'ctest does not list the command of each test'
    fi
    printf '%s\n' "$commands"
}

# failures_in LOG: what failed, without the reports of tests that passed.
failures_in() {
    grep -E -A 12 ': Failure$|ERROR: |runtime error: ' "$1" | head -n 400
    tail -n 20 "$1"
}

# whole_program COMMAND LOG: runs a GoogleTest program in two parts for each processor, because one part may take longer
# than another. The command is quoted.
whole_program() {
    local command=$1 log=$2 count=$((2 * jobs)) part parts=() status=0
    for ((part = 0; part < count; part++)); do
        # xargs removes the quotes.
        GTEST_TOTAL_SHARDS=$count GTEST_SHARD_INDEX=$part xargs timeout 1200 env <<<"$command --gtest_brief=1" \
            >"$log.$part" 2>&1 &
        parts+=($!)
    done
    for part in "${!parts[@]}"; do
        wait "${parts[part]}" || { failures_in "$log.$part" >&2 && status=1; }
    done
    return "$status"
}

# whole_count LOG...: the numbers of tests and of skipped tests in these logs.
whole_count() {
    awk '/^\[=+\] [0-9]+ tests? from / { ran += $2 } /^\[  SKIPPED \] [0-9]+ tests?/ { skipped += $4 }
        /^\[  FAILED  \] [0-9]+ tests?, listed below/ { failed += $4 }
        END { printf "%d tests%s%s", ran, skipped ? sprintf(", %d skipped", skipped) : "",
            failed ? sprintf(", %d FAILED", failed) : "" }' "$@"
}

# test_whole FOLDER [EXCLUDED]: runs whole GoogleTest programs, and the other tests of ctest that are not excluded.
test_whole() {
    local folder=$1 excluded=${2-^$} commands program programs others status=0
    commands=$(tests_of "$folder") || return 1
    rm -rf "$folder/whole"
    mkdir -p "$folder/whole"
    mapfile -t programs < <(sed -nE 's/^[0-9]+ (.*) "--gtest_filter=.*/\1/p' <<<"$commands" | sort -u)
    for program in "${!programs[@]}"; do
        whole_program "${programs[program]}" "$folder/whole/program.$program" || status=1
    done
    echo "$(whole_count "$folder"/whole/program.*) in ${#programs[@]} programs"
    others=$(sed -E '/"--gtest_filter=/d; s/ .*//' <<<"$commands" | paste -sd,)
    if [ -n "$others" ]; then
        ctest --test-dir "$folder" --output-on-failure --timeout 600 --parallel "$jobs" -I "0,0,0,$others" \
            --exclude-regex "$excluded" >"$folder/whole/others" 2>&1 || { grep -vE "$passing" "$folder/whole/others" >&2 && status=1; }
        # Without times and names.
        echo "others: $(sed -nE '/^[0-9]+% tests passed/p' "$folder/whole/others")"
        sed -nE 's/^\t[0-9]+ - (.* \(Skipped\))/others: \1/p' "$folder/whole/others"
    fi
    return "$status"
}
