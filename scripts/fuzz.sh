# shellcheck shell=bash
# help: fuzz SECONDS [T]  run all or the named fuzz targets one after another, for SECONDS in total

fuzz_targets=(frame slot card vm description trees check format fix lsp str2bitlist str2array strmatch bitlist2str name-to-ett led-name)

fuzz_build() {
    need clang libclang-rt-14-dev llvm libxml2-dev nlohmann-json3-dev cmake ninja-build pkg-config
    quietly env -u CC -u CXX -u CFLAGS -u CXXFLAGS cmake -S . -B build/fuzz -G Ninja \
        -DCMAKE_EXPORT_COMPILE_COMMANDS=ON -DCMAKE_C_COMPILER=clang -DCMAKE_CXX_COMPILER=clang++ \
        -DCMAKE_BUILD_TYPE=Debug -DCMAKE_C_FLAGS_DEBUG='-O1 -g1' -DCMAKE_CXX_FLAGS_DEBUG='-O1 -g1' -DDCM_UNITE=ON \
        -DDCM_SANITIZE=address,undefined -DDCM_BUILD_FUZZERS=ON -DDCM_BUILD_TESTS=OFF -DDCM_BUILD_TOOL=OFF ||
        fail 'cannot configure build/fuzz'
    say 'Building (fuzz)'
    quietly cmake --build build/fuzz --parallel "$jobs" --target dcm_fuzz || fail 'the build failed'
}

# fuzz_count FOLDER NAME: the number of files whose names begin with NAME.
fuzz_count() {
    find "$1" -type f -name "$2*" | wc -l
}

# fuzz_target NAME SECONDS: adds to the totals of verb_fuzz; returns 1 after a finding.
fuzz_target() {
    local target=$1 folder=build/fuzz log=build/fuzz/$1.log status=0 before new executed edges known options=() seeds
    seeds=("$folder/fuzz/seeds/$target")
    # Every target accepts the inputs of these targets.
    [ "$target" != trees ] || seeds=("$folder"/fuzz/seeds/{description,frame,slot,card})
    [[ $target != format && $target != fix ]] || seeds=("$folder"/fuzz/seeds/{check,description})
    mkdir -p "$folder/corpus/$target" "$folder/findings"
    before=$(fuzz_count "$folder/findings" "$target-")
    case $target in
    frame | slot | card | vm | trees | check | format | fix | lsp | name-to-ett | led-name) options+=("-dict=$folder/fuzz/description.dict") ;;
    esac
    ASAN_OPTIONS=quarantine_size_mb=16:detect_stack_use_after_return=1 UBSAN_OPTIONS=print_stacktrace=1 \
        "$folder/fuzz/fuzz-$target" "-max_total_time=$2" -timeout=20 -rss_limit_mb=2048 -print_final_stats=1 \
        "-artifact_prefix=$folder/findings/$target-" "${options[@]}" "$folder/corpus/$target" \
        "${seeds[@]}" >"$log" 2>&1 </dev/null || status=1

    executed=$(sed -n 's/^stat::number_of_executed_units: *//p' "$log")
    edges=$(sed -nE 's/^#[0-9]+.* cov: ([0-9]+) .*/\1/p' "$log" | tail -n 1)
    known=$(sed -nE 's/^INFO: Loaded 1 modules +\(([0-9]+) inline 8-bit counters\).*/\1/p' "$log")
    new=$(($(fuzz_count "$folder/findings" "$target-") - before))
    # A target that ends early has a finding, even without a kept input.
    [ "$status" -eq 0 ] || [ "$new" -gt 0 ] || new=1
    printf '%-12s %10d executions, %4d of %d edges, %d findings\n' \
        "$target" "${executed:-0}" "${edges:-0}" "${known:-0}" "$new"
    fuzz_executions=$((fuzz_executions + ${executed:-0}))
    fuzz_findings=$((fuzz_findings + new))
    [ "$new" -gt 0 ] || return 0
    grep -m 1 -A 30 -E 'ERROR: |runtime error: |does not hold: ' "$log" || tail -n 30 "$log"
    grep -E '^artifact_prefix=' "$log" || true
    return 1
}

verb_fuzz() {
    local seconds=${1-} targets target share fuzz_executions=0 fuzz_findings=0
    [[ $seconds =~ ^[1-9][0-9]*$ ]] || fail 'usage: ./dev fuzz SECONDS [TARGET...]'
    shift
    targets=("$@")
    [ $# -gt 0 ] || targets=("${fuzz_targets[@]}")
    for target in "${targets[@]}"; do
        [[ " ${fuzz_targets[*]} " == *" $target "* ]] || fail "no such target: $target (${fuzz_targets[*]})"
    done
    fuzz_build
    # Comparing trees gets half of the time, since each input needs twelve queries.
    share=$((seconds / ${#targets[@]}))
    if [ "${#targets[@]}" -gt 1 ] && [[ " ${targets[*]} " == *' trees '* ]]; then
        share=$((seconds / (2 * (${#targets[@]} - 1))))
    fi
    [ "$share" -gt 0 ] || share=1
    say "Fuzzing ${#targets[@]} targets, most for $share seconds each"
    for target in "${targets[@]}"; do
        if [ "$target" = trees ] && [ "${#targets[@]}" -gt 1 ]; then
            fuzz_target "$target" "$((seconds / 2))" || true
        else
            fuzz_target "$target" "$share" || true
        fi
    done
    printf '%-12s %10d executions, %d findings\n' total "$fuzz_executions" "$fuzz_findings"
    [ "$fuzz_findings" -eq 0 ] || fail "the inputs of the findings are in build/fuzz/findings"
}
