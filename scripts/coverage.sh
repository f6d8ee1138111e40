# shellcheck shell=bash
# help: coverage          run all tests and show which lines and branches of the library they reach

source scripts/lib/tests.sh

coverage_folder=build/coverage
# The tests of the library; the others test the tool, or the library as it is installed.
coverage_programs=(dcm_tests reliability/dcm_reliability_tests)

# coverage_share WHAT: in percent, from the summary.
coverage_share() {
    sed -nE "s/^$1: ([0-9.]+)% .*/\1 %/p" "$coverage_folder/summary.txt"
}

verb_coverage() {
    local status=0 program
    # The tool that reads the counts is GCC's, too.
    unset CC CXX
    need g++ gcovr "${build_packages[@]}" "${test_packages[@]}"
    configure coverage
    compile coverage "${coverage_programs[@]##*/}"
    find "$coverage_folder" -name '*.gcda' -delete
    say 'Testing (coverage)'
    for program in "${coverage_programs[@]}"; do
        whole_program "$coverage_folder/tests/$program" "$coverage_folder/${program##*/}.log" ||
            fail 'tests fail, fix them first'
    done
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
