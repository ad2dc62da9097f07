# Read by the other scripts: how they build. Runs nothing by itself.
# shellcheck shell=sh disable=SC2034

jobs=$(nproc 2>/dev/null || echo 2)

# ninja where there is one; a build folder keeps the generator that it was made with.
if [ -z "${CMAKE_GENERATOR:-}" ] && command -v ninja >/dev/null; then
    export CMAKE_GENERATOR=Ninja
fi

# build PRESET: configures and builds all of it.
build() {
    cmake --preset "$1" && cmake --build --preset "$1" -j "$jobs"
}

# build_program: the release build of the program alone.
build_program() {
    # The tests need more than the program does: they stay in the build folder only if they can be built.
    tests=OFF
    if sh scripts/setup -n test >/dev/null; then
        tests=ON
    fi
    cmake --preset release -DVEXBIND_TESTS=$tests
    cmake --build --preset release -j "$jobs" --target vexbind
}
