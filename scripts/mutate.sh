# shellcheck shell=bash
# help: mutate [N] [SEED] make N mistakes in the library, one at a time, and see whether the tests notice each

verb_mutate() {
    [ $# -le 2 ] || fail 'mutate takes how many mutants to try, and a seed'
    need python3 "${build_packages[@]}" "${test_packages[@]}"
    nice -n 19 python3 scripts/mutate.py "${1:-200}" "${2:-1}"
}
