# Shared by the scripts: the repository root, the build step and a virtual display.

root="$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)"
jobs="$(nproc 2>/dev/null || echo 2)"

# configure_and_build BUILD_DIR [CMAKE_ARGS...]: the build's output goes to BUILD_DIR/build.log
# and is shown only when something fails. Builds everything, or only the targets in the array
# build_targets when it is set.
build_targets=()
configure_and_build() {
    local dir="$1"
    shift
    mkdir -p "$dir"
    echo "Building in $dir (log: $dir/build.log)"
    if ! { cmake -S "$root" -B "$dir" -DCMAKE_BUILD_TYPE=RelWithDebInfo "$@" &&
           cmake --build "$dir" -j "$jobs" ${build_targets[@]+--target "${build_targets[@]}"}; } \
            >"$dir/build.log" 2>&1; then
        tail -n 80 "$dir/build.log"
        echo "Build failed; the whole log is $dir/build.log" >&2
        return 1
    fi
}

# start_virtual_display: starts Xvfb on a free display when none is set, and stops it on exit.
# -noreset: by default the server resets when its last client leaves and turns new connections
# away meanwhile, which fails test programs that start while another one ends.
start_virtual_display() {
    [ -n "${DISPLAY:-}" ] && return 0
    local n=90
    while [ -e "/tmp/.X${n}-lock" ] || [ -e "/tmp/.X11-unix/X${n}" ]; do n=$((n + 1)); done
    Xvfb ":${n}" -screen 0 1280x1024x24 -nolisten tcp -noreset >/dev/null 2>&1 &
    xvfb_pid=$!
    trap 'kill "$xvfb_pid" 2>/dev/null || true' EXIT
    for _ in $(seq 1 100); do
        [ -e "/tmp/.X11-unix/X${n}" ] && break
        sleep 0.1
    done
    export DISPLAY=":${n}"
}
