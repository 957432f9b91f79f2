# Read by every shell that a test starts while the counts are taken: a program whose files may not grow would write a part
# of them and so spoil the whole. It writes its own elsewhere.
ulimit() {
    builtin ulimit "$@" && if [[ $1 == -f ]]; then export GCOV_PREFIX=$LIMITED_COUNTS; fi
}
