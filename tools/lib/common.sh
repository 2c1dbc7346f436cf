# shellcheck shell=bash
# Shared by the tools: the project's folder, its packages and its builds.

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)

say() { printf '%s\n' "$*" >&2; }

die() {
    say "${0##*/}: $*"
    exit 1
}

# step TEXT: reports a new step and the time since the first tool started.
step() {
    export VANDREL_STARTED=${VANDREL_STARTED:-$EPOCHSECONDS}
    local seconds=$((EPOCHSECONDS - VANDREL_STARTED))
    say "[$((seconds / 60)):$(printf %02d $((seconds % 60)))] $*"
}

# missing_packages GROUP...: the packages of these groups that are not installed.
missing_packages() {
    local group name status
    while read -r group name; do
        [[ -n $name && " $* " == *" $group "* ]] || continue
        status=$(dpkg-query -W -f='${db:Status-Status}' "$name" 2>/dev/null) || true
        [[ $status == installed ]] || printf '%s\n' "$name"
    done < <(grep -v '^#' "$root/tools/lib/packages") | sort -u
}

# need_packages GROUP...: installs the missing packages of these groups.
need_packages() {
    if ! command -v dpkg-query >/dev/null || ! command -v apt-get >/dev/null; then
        say "Not a Debian system: taking for granted what tools/lib/packages lists for: $*."
        return
    fi
    local missing as_root=()
    mapfile -t missing < <(missing_packages "$@")
    ((${#missing[@]})) || return 0
    if ((EUID != 0)); then
        command -v sudo >/dev/null ||
            die "these packages are missing and only root can install them: ${missing[*]}"
        as_root=(sudo)
    fi
    step "Installing ${missing[*]}"
    local apt=("${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get -qq -o DPkg::Lock::Timeout=300)
    "${apt[@]}" update >&2 || die "cannot fetch the package lists"
    "${apt[@]}" install -y --no-install-recommends "${missing[@]}" >&2 ||
        die "cannot install: ${missing[*]}"
}

# build PRESET [TARGET...]: configures and builds, on all cores.
build() {
    local preset=$1 targets=()
    shift
    (($#)) && targets=(--target "$@")
    step "Building ($preset)"
    cmake -S "$root" --preset "$preset" >&2
    cmake --build "$root/build/$preset" --parallel "$(nproc)" "${targets[@]}" >&2
}
