# shellcheck shell=bash
# help: coverage          run all tests and show which lines and branches of the library they reach

source scripts/lib/tests.sh

coverage_folder=build/coverage

# coverage_share WHAT: in percent, from the summary.
coverage_share() {
    sed -nE "s/^$1: ([0-9.]+)% .*/\1 %/p" "$coverage_folder/summary.txt"
}

verb_coverage() {
    local status=0
    # The tool that reads the counts is GCC's, too.
    unset CC CXX
    need g++ gcovr "${build_packages[@]}" "${test_packages[@]}"
    configure coverage
    compile coverage
    find "$coverage_folder" -name '*.gcda' -delete
    # Those left out look at the library as it ships, without counters.
    say 'Testing (coverage)'
    test_whole "$coverage_folder" '^(Abi|Header|Install|Man|Messages|Release)\.' || fail 'tests fail, fix them first'
    say 'Adding up'
    mkdir -p "$coverage_folder/html"
    gcovr --config tests/coverage/gcovr.cfg --root . --object-directory "$coverage_folder" --print-summary \
        --txt "$coverage_folder/coverage.txt" --json "$coverage_folder/coverage.json" \
        --html-details "$coverage_folder/html/index.html" --fail-under-line 99 --fail-under-branch 95 \
        >"$coverage_folder/summary.txt" || status=1
    echo "coverage: lines $(coverage_share lines), branches $(coverage_share branches);" \
        "all of it in $coverage_folder/html/index.html"
    [ "$status" -eq 0 ] || fail 'the tests must reach 99 % of the lines and 95 % of the branches'
}
