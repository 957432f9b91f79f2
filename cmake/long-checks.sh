# Sourced by test, after cmake/scripts.sh: the checks that take long. Each runs whole suites, not one test at a time as
# CTest does, since starting a program is what takes the time under these tools.

# Runs those suites of a preset whose names match, after the words of a command if there are any: all of them, and says no
# at the end when one failed.
run_suites() {
    local preset=$1 suites=$2 failed=0 program
    shift 2
    for program in "build/$preset"/bin/vantor_{*_tests,fuzz_replay}; do
        [[ ${program##*/vantor_} =~ ^($suites)$ ]] || continue
        echo "${program##*/}" >&2
        "$@" "$program" --gtest_brief=1 || failed=1
    done
    return "$failed"
}

# What clang-tidy says of the sources that changed since a commit, or since the last release when none is named. A
# header is looked at with the source file beside it.
check_tidy() {
    ensure_packages clang-tidy
    local base=${1:-} changed
    [[ -n $base ]] || base=$(git log -1 --format=%H -G'^## \[[0-9]' -- CHANGELOG.md)
    changed=$(git diff --name-only --diff-filter=d "$base" -- '*.cpp' '*.h' | sed 's/h$/cpp/' | sort --unique |
        grep --extended-regexp '^(disk|text|model|library|files|changes|recovery|sheet|merge|document|print|controls|views|app|cli|sheetcli)/' |
        grep --invert-match 'Windows' | xargs --no-run-if-empty ls 2>/dev/null || true)
    [[ -n $changed ]] || return 0
    echo "clang-tidy: $(wc --lines <<<"$changed") files changed since ${base::8}" >&2
    # Built without common headers, which GCC makes and Clang cannot read; but with what the toolkit generates.
    build_preset release vantor_controls_autogen vantor_views_autogen vantor_app_autogen
    xargs --max-args=1 --max-procs="$(nproc)" clang-tidy -p build/release --quiet \
        --extra-arg=-Wno-unknown-warning-option 2>/dev/null <<<"$changed"
}

# What the tests take of the code, against what they are to take.
check_coverage() {
    ensure_packages gcovr
    build_preset coverage
    find build/coverage -name '*.gcda' -delete
    # Some tests run as another user for a while, whose counts are to be added, too.
    find build/coverage -name '*.gcno' -printf '%p\0' | sed --null-data 's/gcno$/gcda/' | xargs --null touch
    find build/coverage -name '*.gcda' -exec chmod a+rw {} +
    local limited
    limited=$(mktemp -d)
    # A message that these counts cannot be written in full is not output of that program.
    LIMITED_COUNTS=$limited BASH_ENV=$PWD/tests/coverage/limits.bash GCOV_ERROR_FILE=/dev/null \
        run_suites coverage '.*'
    rm -r "$limited"
    find build/coverage -name '*.gcda' -empty -delete
    gcovr --gcov-executable tests/coverage/gcov.py --root . build/coverage --exclude-throw-branches \
        --exclude-unreachable-branches --exclude 'tests/' --exclude 'build/' --json build/coverage/coverage.json
    python3 tests/coverage/check.py build/coverage/coverage.json
}

# The core changed in one small place at a time: which changes its tests notice. Names the files to change, all when none.
check_mutation() {
    build_preset core vantor_{disk,text,model,files,library,changes,document,ansi_table,merge,faults}_tests vantor-cli
    nice python3 tests/mutation/mutate.py "$@"
}

# All suites in languages whose numbers, letters and code pages differ.
check_locales() {
    ensure_packages locales
    build_preset dev
    local folder locale failed=0
    folder=$(mktemp -d)
    chmod a+rx "$folder"
    for locale in en_US de_DE tr_TR zh_CN; do
        localedef --inputfile "$locale" --charmap UTF-8 "$folder/$locale.UTF-8"
    done
    for locale in C en_US.UTF-8 de_DE.UTF-8 tr_TR.UTF-8 zh_CN.UTF-8; do
        echo "== $locale" >&2
        LOCPATH=$folder LC_ALL=$locale LANG=$locale run_suites dev '.*' || failed=1
    done
    rm -r "$folder"
    return "$failed"
}

# The core's suites in Valgrind's memory checker. The random paged files and the longest saves and lines are left to the
# sanitizers: here they would take most of an hour. A limit of memory is set by an operator new that Valgrind replaces.
check_valgrind() {
    ensure_packages valgrind
    build_preset core
    GTEST_FILTER='-Seeds/*:*SaveAsShown*:*LineOf*Mebibytes*:*LongStretch*:*WithoutMemory*:*LackOfMemory*' \
        run_suites core '(disk|text|model|files|library|changes|document|ansi_table|merge)_tests|fuzz_replay' \
        valgrind --quiet --error-exitcode=99 --leak-check=full --errors-for-leak-kinds=definite \
        --suppressions=cmake/valgrind.supp
}

# A user who does anything at random, under the sanitizers. Names the number of events and the seed.
check_random_events() {
    build_preset sanitize vantor_random_events_tests
    ASAN_OPTIONS=$ASAN_OPTIONS:handle_abort=1 \
        VANTOR_RANDOM_EVENTS=${1:-100000} VANTOR_RANDOM_SEED=${2:-1} build/sanitize/bin/vantor_random_events_tests
}
