# What building for Windows needs beside scripts/setup: to be sourced, after debian.sh.

readonly windows_deps=.deps/windows
readonly windows_compiler=x86_64-w64-mingw32

# The compiler, the test library's source, the installer's maker, and what the
# libraries' sources arrive in.
readonly windows_packages=(
    g++-mingw-w64-x86-64-posix cmake ninja-build googletest
    nsis zip librsvg2-bin
    dpkg-dev xz-utils debian-archive-keyring
)

# build_with_cmake SOURCE OPTION...: into windows_deps.
build_with_cmake() {
    local source=$1 root=$PWD
    shift
    cmake -G Ninja -S "$source" -B "$scratch/build-${source##*/}" -Wno-dev \
        -DCMAKE_TOOLCHAIN_FILE="$root/cmake/mingw-w64.cmake" -DCMAKE_BUILD_TYPE=Release \
        -DCMAKE_POLICY_VERSION_MINIMUM=3.5 -DBUILD_SHARED_LIBS=OFF \
        -DCMAKE_INSTALL_PREFIX="$root/$windows_deps" "$@" &&
        cmake --build "$scratch/build-${source##*/}" &&
        cmake --install "$scratch/build-${source##*/}"
}

build_glfw() {
    build_with_cmake "$1" -DGLFW_BUILD_EXAMPLES=OFF -DGLFW_BUILD_TESTS=OFF -DGLFW_BUILD_DOCS=OFF
}

build_glew() {
    mv "$1/build/cmake" "$1/build/glew" &&
        build_with_cmake "$1/build/glew" -DBUILD_UTILS=OFF
}

# Its own makefile knows no cross-compiler.
build_lua() {
    (
        cd "$1/src" && rm -f lua.c luac.c &&
            "$windows_compiler-gcc-posix" -O2 -c ./*.c &&
            "$windows_compiler-ar" rcs liblua5.4.a ./*.o
    ) &&
        install -D -m 644 -t $windows_deps/lib "$1/src/liblua5.4.a" &&
        install -D -m 644 -t $windows_deps/include/lua5.4 "$1"/src/{lua,luaconf,lualib,lauxlib}.h \
            "$1/src/lua.hpp"
}

build_googletest() {
    build_with_cmake "$1" -DBUILD_GMOCK=OFF
}

# Debian's source packages of one release, so that all builds have the same.
fetch_windows_sources() {
    local work=$1
    mkdir -p "$work"
    private_apt "$work" bookworm
    (
        cd "$work" && export APT_CONFIG=$work/apt.conf &&
            apt-get -qq update && apt-get -qq source glfw3 glew lua5.4
    ) >"$work/log" 2>&1 || {
        cat "$work/log" >&2
        fail "the libraries' sources could not be fetched from Debian 12"
    }
}

build_windows_library() {
    local name=$1 library=$windows_deps/lib/$2 source=$3
    echo "${0##*/}: building $name for Windows"
    if ! "build_$name" "${source%/}" >"$scratch/$name.log" 2>&1 || [ ! -s "$library" ]; then
        tail -n 30 "$scratch/$name.log" >&2
        fail "$name could not be built for Windows"
    fi
    # What is linked in goes with its terms.
    [ ! -e "$source/debian/copyright" ] ||
        install -D -m 644 "$source/debian/copyright" "$windows_deps/licences/$name"
}

# Installs packages and builds libraries where they are missing. What is built lies in
# .deps/windows, which git ignores.
set_up_windows() {
    install_packages "${windows_packages[@]}"
    [ ! -e $windows_deps/complete ] || return 0
    rm -rf $windows_deps
    local scratch
    scratch=$(mktemp -d)
    fetch_windows_sources "$scratch/sources"
    build_windows_library glfw libglfw3.a "$scratch"/sources/glfw3-*/
    build_windows_library glew libglew32.a "$scratch"/sources/glew-*/
    build_windows_library lua liblua5.4.a "$scratch"/sources/lua5.4-*/
    build_windows_library googletest libgtest.a /usr/src/googletest
    rm -rf "$scratch"
    # The compiler's threads are linked in too.
    install -m 644 /usr/share/doc/mingw-w64-common/copyright $windows_deps/licences/mingw-w64
    touch $windows_deps/complete
}
