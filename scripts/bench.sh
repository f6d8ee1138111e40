# shellcheck shell=bash
# help: bench [WHAT]      measure queries: time, --instructions, --functions CASE, --memory, --size; the tool: --check, --adversarial

bench_folder=build/bench

# bench_configure FOLDER [CMAKE-ARGUMENT...]
bench_configure() {
    local folder=$1 key="$root|${CC-}|${CXX-}" known=
    shift
    need "${build_packages[@]}"
    # CMake keeps the folder and the compiler of its first run: with others, start from scratch.
    [ ! -f "$folder/configured-for" ] || known=$(<"$folder/configured-for")
    if [ "$known" != "$key" ]; then
        rm -rf "$folder"
    fi
    quietly cmake -S . -B "$folder" -G Ninja -DDCM_BUILD_TESTS=OFF -DDCM_BUILD_TOOL=OFF "$@" ||
        fail "cannot configure $folder"
    printf '%s\n' "$key" >"$folder/configured-for"
}

# bench_compile FOLDER TARGET...
bench_compile() {
    local folder=$1
    shift
    say "Building ($folder)"
    quietly cmake --build "$folder" --parallel "$jobs" --target "$@" || fail 'the build failed'
}

# bench_build TARGET...: with the options of a release.
bench_build() {
    bench_configure "$bench_folder" -DCMAKE_BUILD_TYPE=RelWithDebInfo -DDCM_BUILD_BENCHMARKS=ON
    bench_compile "$bench_folder" "$@"
}

# The arguments are those of Google Benchmark, where the last one of an option counts.
bench_time() {
    need libbenchmark-dev libpugixml-dev libexpat1-dev
    bench_build dcm_bench
    say 'Measuring for some minutes, during which the machine should be idle'
    "$bench_folder/bench/dcm_bench" --benchmark_repetitions=9 --benchmark_enable_random_interleaving=true \
        --benchmark_out="$bench_folder/bench.json" --benchmark_out_format=json "$@"
    echo "all figures: $bench_folder/bench.json"
}

# bench_callgrind [CASE]: writes a file for each section of each case.
bench_callgrind() {
    need valgrind
    bench_build dcm_bench_instructions
    rm -rf "$bench_folder/callgrind"
    mkdir -p "$bench_folder/callgrind"
    say 'Counting instructions'
    quietly valgrind --quiet --tool=callgrind --instr-atstart=no \
        --callgrind-out-file="$bench_folder/callgrind/out" "$bench_folder/bench/dcm_bench_instructions" "$@" ||
        fail 'the count failed'
}

# bench_add_up AWK-FILE: processes the files in the order in which they were written.
bench_add_up() {
    local files=()
    mapfile -t files < <(printf '%s\n' "$bench_folder"/callgrind/out.* | sort -V)
    awk -f "$1" "${files[@]}"
}

bench_instructions() {
    bench_callgrind
    bench_add_up bench/instructions.awk
}

# bench_functions CASE
bench_functions() {
    bench_callgrind "$1"
    bench_add_up bench/functions.awk | sed -n '1,25p'
}

bench_memory() {
    need valgrind
    bench_build dcm_bench_memory dcm_bench_stack
    local status=0 source frames=()
    say 'Counting allocations'
    "$bench_folder/bench/dcm_bench_memory" || status=1

    say 'Adding up stack frames'
    for source in {common,frame,slot,card,led,vm}/*.cpp; do
        frames+=("$bench_folder/CMakeFiles/dcm_objects.dir/$source.ci")
    done
    [ -f "${frames[0]}" ] || fail 'only GCC writes the sizes of stack frames'
    valgrind --quiet --tool=callgrind --demangle=no --separate-callers=40 \
        --callgrind-out-file="$bench_folder/callgrind.stack" "$bench_folder/bench/dcm_bench_stack" \
        >"$bench_folder/roots" || fail 'the run failed'
    # 2,048 bytes, and the stack protectors of 16 bytes in the eight frames with arrays of a hardened build.
    awk -v limit=2176 -f bench/stack.awk "$bench_folder/roots" "${frames[@]}" "$bench_folder/callgrind.stack" ||
        status=1
    return "$status"
}

# bench_size_of TYPE FOLDER: the section sizes of the shared library, without debug information.
bench_size_of() {
    local type=$1 folder=$2 library=$2/libdcm.stripped.so limit=$((64 * 1024)) status=0 size
    bench_compile "$folder" dcm_shared dcm_static
    strip --strip-unneeded -o "$library" "$folder/libdcm.so"
    size=$(size -A "$library" | awk '$1 == ".text" || $1 == ".rodata" { sum += $2 } END { print sum }')
    say "Size of a build of type $type"
    size -A "$library" |
        awk '$1 ~ /^\.(text|rodata|data\.rel\.ro|data|bss|eh_frame)$|^dcm_keywords$/ { printf "%-14s %7d\n", $1, $2 }'
    printf '%-14s %7d of at most %d\n' '.text+.rodata' "$size" "$limit"
    printf '%-14s %7d\n' 'whole file' "$(stat --format=%s "$library")"
    if [ "$size" -ge "$limit" ]; then
        echo 'too large'
        status=1
    fi
    # A shared library has one entry of the compiler there, so check the objects.
    if readelf --wide --sections "$folder/libdcm.a" | grep -E '\.(init_array|ctors|preinit_array)'; then
        echo 'runs code when it is loaded'
        status=1
    fi
    if readelf --wide --dynamic "$library" | grep TEXTREL; then
        echo 'has relocations in what is read-only'
        status=1
    fi
    # The exported keyword tables have a section of their own: they are all that may be written.
    if objdump --syms "$folder/libdcm.so" |
        awk 'NF > 4 && $(NF - 2) == ".data" && $(NF - 1) !~ /^0+$/ { print $NF }' | c++filt | grep .; then
        echo 'has tables that can be written'
        status=1
    fi
    readelf --wide --relocs "$library" |
        awk '$3 ~ /_RELATIVE$/ { count++ } END { printf "%-14s %7d\n", "pointers", count }'
    return "$status"
}

bench_size() {
    need binutils
    local status=0
    bench_configure "$bench_folder" -DCMAKE_BUILD_TYPE=RelWithDebInfo -DDCM_BUILD_BENCHMARKS=ON
    bench_size_of RelWithDebInfo "$bench_folder" || status=1
    # As the README installs it, and as small as it gets.
    bench_configure "$bench_folder-release" -DCMAKE_BUILD_TYPE=Release
    bench_size_of Release "$bench_folder-release" || status=1
    bench_configure "$bench_folder-small" -DCMAKE_BUILD_TYPE=MinSizeRel
    bench_size_of MinSizeRel "$bench_folder-small" || status=1
    return "$status"
}

# bench_large FILE: the cards of the example over and over under types and names of their own, 5 MB of them, without frames,
# which would not list them.
bench_large() {
    awk -v size=5000000 '
        /^  <card / { inCard = 1 }
        inCard { text = text $0 "\n" }
        /^  <\/card>/ { cards[++count] = text; inCard = 0; text = "" }
        END {
            print "<device>"
            for (number = 1; written < size; number++) {
                card = cards[(number - 1) % count + 1]
                sub(/typeid="[^"]*"/, "typeid=\"" 10000 + number "\"", card)
                sub(/ name="/, "&" number " ", card)
                sub(/ abbrname="/, "&" number " ", card)
                printf "%s", card
                written += length(card)
            }
            print "</device>"
        }' examples/device.xml >"$1"
}

# bench_microseconds COMMAND...: how long one run takes.
bench_microseconds() {
    local start=${EPOCHREALTIME/[.,]/}
    "$@" >/dev/null 2>&1 || true
    echo $((${EPOCHREALTIME/[.,]/} - start))
}

# What checking a large description costs beside xmllint, whole processes in turn: medians of so many rounds.
bench_check() {
    need libxml2-utils nlohmann-json3-dev
    bench_configure "$bench_folder-tool" -DCMAKE_BUILD_TYPE=RelWithDebInfo -DDCM_BUILD_TOOL=ON
    bench_compile "$bench_folder-tool" dcm_tool dcm_reference
    local file=$bench_folder-tool/large.xml rounds=21 round name
    local -A commands=(
        [check]="$bench_folder-tool/dcm check $file"
        [noout]="xmllint --noout $file"
        [relaxng]="xmllint --noout --relaxng $bench_folder-tool/schema/dcm-description.rng $file"
    )
    bench_large "$file"
    "$bench_folder-tool/dcm" check "$file" >"$bench_folder-tool/findings" ||
        fail "the large description has findings: $bench_folder-tool/findings"
    rm -f "$bench_folder-tool"/times.*
    for ((round = 0; round < rounds; round++)); do
        for name in check noout relaxng; do
            # shellcheck disable=SC2086 # words of a command
            bench_microseconds ${commands[$name]} >>"$bench_folder-tool/times.$name"
        done
    done
    say "Checking $(stat --format=%s "$file") bytes, median of $rounds runs"
    for name in check noout relaxng; do
        sort -n "$bench_folder-tool/times.$name" | sed -n "$((rounds / 2 + 1))p" >"$bench_folder-tool/median.$name"
    done
    awk '{ median[FNR == 1 ? ++count : count] = $1 } END {
        printf "dcm check              %8.1f ms\n", median[1] / 1000
        printf "xmllint --noout        %8.1f ms  %.2f times as long takes dcm check\n", median[2] / 1000, median[1] / median[2]
        printf "xmllint --relaxng      %8.1f ms  %.2f times as long takes dcm check\n", median[3] / 1000, median[1] / median[3]
    }' "$bench_folder-tool"/median.{check,noout,relaxng}
}

# bench_adversarial [KILOBYTES...]: the tool, as "./dev build" makes it, on files that are made to cost it much.
bench_adversarial() {
    build
    configure release -DDCM_BUILD_BENCHMARKS=ON
    compile release dcm_bench_adversarial
    say 'Measuring for some minutes'
    build/release/bench/dcm_bench_adversarial build/release/dcm "$@"
}

verb_bench() {
    case ${1-} in
    --instructions) bench_instructions ;;
    --functions) bench_functions "${2-one large card}" ;;
    --memory) bench_memory ;;
    --size) bench_size ;;
    --adversarial) bench_adversarial "${@:2}" ;;
    --check) bench_check ;;
    *) bench_time "$@" ;;
    esac
}
