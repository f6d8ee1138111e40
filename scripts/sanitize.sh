# shellcheck shell=bash
# help: sanitize [PRESET] test with asan-ubsan (addresses, leaks, undefined behaviour) and tsan (data races of threads)

source scripts/lib/tests.sh

# What is left out does not run the code of this build, or is about shells and browsers.
test_sanitized() {
    local options=detect_leaks=1:detect_stack_use_after_return=1:strict_string_checks=1:check_initialization_order=1
    ASAN_OPTIONS=$options UBSAN_OPTIONS=print_stacktrace=1 \
        LSAN_OPTIONS=print_suppressions=0:suppressions=$root/tests/sanitizers/leaks.txt \
        test_whole build/asan-ubsan '^(Completion|Document|Header|Install|Man|Messages|Page|Release|Types)\.'
}

# sanitize [PRESET...]
verb_sanitize() {
    [ $# -gt 0 ] || set -- asan-ubsan tsan
    need "${build_packages[@]}" "${test_packages[@]}"
    local preset status=0
    for preset in "$@"; do
        case $preset in
        asan-ubsan | tsan) ;;
        *) fail "no sanitizer preset: $preset" ;;
        esac
        if [ "$preset" = tsan ]; then
            configure tsan
            # Tests with one thread have no races. The names of the others show that they have several.
            compile tsan dcm_reliability_tests dcm_loader dcm_shared dcm_tool
            run_tests tsan --tests-regex 'Concurrency|Thread|SideEffects|_jobs' || status=1
        else
            # With Clang, so that each test runs with the libraries and the tool of both compilers.
            need clang libclang-rt-14-dev
            CC=clang CXX=clang++ configure asan-ubsan
            compile asan-ubsan
            say 'Testing (asan-ubsan)'
            test_sanitized || status=1
        fi
    done
    return "$status"
}
