# Sourced by ./run, ./test and the scripts beside this file: where the tree is, and how long
# steps are shown.
set -euo pipefail

root="$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)"
cd "$root"

fail() {
    echo "$*" >&2
    exit 1
}

# The project's own files that match, whoever owns the checkout. In an archive of the tree, which has
# no Git, all but what builds leave.
tracked_files() {
    if [[ -e .git ]]; then
        git -c safe.directory="$root" ls-files -- "$@"
        return
    fi
    local pattern matches=()
    for pattern; do
        matches+=(-o -path "./$pattern")
    done
    find . -path ./build -prune -o -type f \( "${matches[@]:1}" \) -printf '%P\n' | sort
}

step() {
    printf '\n\033[1m== %s\033[0m\n' "$*"
}

# Configures and builds a preset; any further arguments are its targets. Ninja shows the progress.
build() {
    local preset=$1
    shift
    cmake --preset "$preset" -Wno-dev --log-level=WARNING &&
        NINJA_STATUS='[%f/%t] ' cmake --build --preset "$preset" ${1:+--target "$@"}
}
