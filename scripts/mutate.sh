# shellcheck shell=bash
# help: mutate [N] [SEED] make N changes to the library, one at a time, and run the tests on each

verb_mutate() {
    [ $# -le 2 ] || fail 'usage: ./dev mutate [N] [SEED]'
    need python3 "${build_packages[@]}" "${test_packages[@]}"
    nice -n 19 python3 scripts/mutate.py "${1:-200}" "${2:-1}"
}
