#!/usr/bin/env bash
# scripts/test goes on after an interruption: a toy tree of tests, interrupted and run again.
set -euo pipefail
repository=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)
toy=$(mktemp --directory)
trap 'rm -rf "$toy"' EXIT
cd "$toy"

complain() {
    printf '%s\n' "$1" >&2
    cat said ran >&2 || true
    exit 1
}

# has_exactly FILE LINE...: each of them, and no other, in any order.
has_exactly() {
    diff <(sort "$1") <(printf '%s\n' "${@:2}" | sort) >/dev/null
}

# run: what scripts/test does with a tree that is built, in a session of its own.
run() {
    setsid --wait bash -c '
        set -euo pipefail
        echo $$ >session
        watched=(sources)
        as_owner() { "$@"; }
        source "$1/scripts/resume"
        run_tests tree' run "$repository" >said 2>&1
}

# interrupt_run CONDITION...: when the condition, a command, holds.
interrupt_run() {
    run &
    local runner=$!
    until "$@" 2>/dev/null; do
        kill -0 "$runner" || complain "the run ended by itself"
        sleep 0.05
    done
    pkill -KILL --session "$(cat session)"
    { wait "$runner" || true; } 2>/dev/null
}

three_have_passed() {
    has_exactly ran first second waiting last && (($(wc --lines <tree/Testing/Temporary/CTestCheckpoint.txt) == 3))
}

one_has_failed() {
    has_exactly ran first second waiting last && grep --quiet '^Test Failed' tree/Testing/Temporary/LastTest.log.tmp
}

mkdir tree sources
touch sources/one tree/.ninja_log ran
sleep 0.01
cat >tree/CTestTestfile.cmake <<TESTS
add_test(first sh -c "echo first >>$toy/ran")
add_test(second sh -c "echo second >>$toy/ran; test ! -e $toy/second-fails")
add_test(waiting sh -c "echo waiting >>$toy/ran; test -e $toy/go || sleep 600")
add_test(last sh -c "echo last >>$toy/ran")
TESTS

interrupt_run three_have_passed

: >ran
touch go
run || complain "what was left did not pass"
has_exactly ran waiting || complain "not just the test that was left ran"
grep --quiet 'Goes on where it was interrupted, after 3 tests' said || complain "it did not say how far it was"

: >ran
run || complain "a whole run did not pass"
has_exactly ran first second waiting last || complain "a whole run left tests out"

rm go
: >ran
interrupt_run three_have_passed
touch go
sleep 1.1 # the finest step in which some file systems tell the time
touch sources/one
: >ran
run || complain "a run after a change did not pass"
has_exactly ran first second waiting last || complain "tests from before a change counted after it"

rm go
touch second-fails
: >ran
interrupt_run one_has_failed
rm second-fails
touch go
: >ran
run || complain "a run after a failure did not pass"
has_exactly ran first second waiting last || complain "tests from before a failure counted after it"
