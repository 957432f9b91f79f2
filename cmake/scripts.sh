# Sourced by run, test and fuzz, which stand in the project's folder then: the Debian packages they need, how to get
# them, and how to build a preset.

# shellcheck disable=SC2034  # the lists are for the scripts that source this file
core_packages=(cmake ninja-build g++ libcli11-dev nlohmann-json3-dev)
# shellcheck disable=SC2034
build_packages=("${core_packages[@]}" qt6-base-dev qt6-svg-dev libx11-dev fonts-dejavu-core)
# shellcheck disable=SC2034
test_packages=(libgtest-dev python3 clang-format cmark-gfm groff desktop-file-utils appstream shared-mime-info
               librsvg2-bin git jq tidy poppler-utils)
# shellcheck disable=SC2034
package_packages=(dpkg-dev lintian mmdebstrap)
# shellcheck disable=SC2034
windows_packages=(g++-mingw-w64-x86-64-posix googletest)
# shellcheck disable=SC2034
drawing_packages=(librsvg2-bin icoutils)
# shellcheck disable=SC2034
toolkit_packages=(cmake ninja-build g++ g++-mingw-w64-x86-64-posix qt6-base-dev qt6-base-dev-tools dpkg-dev util-linux)
# shellcheck disable=SC2034
windows_program_packages=("${toolkit_packages[@]}" libcli11-dev nlohmann-json3-dev python3 cmark-gfm librsvg2-bin icoutils zip nsis)
# shellcheck disable=SC2034
wine_packages=(wine wine64)
wine_window_packages=("${wine_packages[@]}" xvfb openbox xdotool)
# shellcheck disable=SC2034
windows_program_test_packages=("${wine_window_packages[@]}" python3 nsis unzip icoutils binutils-mingw-w64-x86-64 poppler-utils)
# shellcheck disable=SC2034
windows_window_test_packages=("${wine_window_packages[@]}" "${windows_packages[@]}" imagemagick fonts-dejavu-core)
# shellcheck disable=SC2034
fuzz_packages=(clang libclang-rt-dev llvm)
# shellcheck disable=SC2034
picture_packages=(xvfb openbox xdotool x11-utils imagemagick dbus at-spi2-core python3-pyatspi)

# Prints those of the packages named that are not installed. Asks only dpkg, so it takes a few milliseconds.
missing_packages() {
    local installed package
    # dpkg-query answers with an error when it has never heard of one of them: that one is missing, too.
    installed=$(dpkg-query --show --showformat '${db:Status-Status} ${Package}\n' "$@" 2>/dev/null || true)
    for package in "$@"; do
        grep --quiet --line-regexp --fixed-strings "installed $package" <<<"$installed" || echo "$package"
    done
}

# Installs those of the packages named that are missing. Without apt it names what is needed, and goes on when the tools
# seem to be there all the same.
ensure_packages() {
    if ! command -v apt-get >/dev/null || ! command -v dpkg-query >/dev/null; then
        echo "No apt-get here. Vantor needs what Debian calls: $*" >&2
        if command -v cmake >/dev/null && command -v ninja >/dev/null && has_qt6; then
            echo "CMake, Ninja and Qt 6 are there: going on." >&2
            return 0
        fi
        echo "Install them with your system's package manager, then try again." >&2
        return 1
    fi

    local missing root=()
    mapfile -t missing < <(missing_packages "$@")
    ((${#missing[@]})) || return 0

    echo "Installing: ${missing[*]}" >&2
    if ((EUID != 0)); then
        if ! command -v sudo >/dev/null; then
            echo "That needs root, and there is no sudo. As root: apt-get install ${missing[*]}" >&2
            return 1
        fi
        root=(sudo)
    fi
    root+=(env DEBIAN_FRONTEND=noninteractive apt-get --quiet --yes)
    # A list that cannot be brought up to date may still do; the install tells.
    "${root[@]}" update >&2 || echo "apt-get update failed; trying with the package lists as they are." >&2
    if ! "${root[@]}" install --no-install-recommends "${missing[@]}" >&2; then
        echo "apt-get could not install: ${missing[*]}" >&2
        echo "Its own messages are above. Is the network there, and are Debian's packages among apt's sources?" >&2
        return 1
    fi
}

has_qt6() {
    command -v qmake6 >/dev/null || command -v qtpaths6 >/dev/null || pkg-config --exists Qt6Widgets 2>/dev/null
}

# Configures the preset named when that has not been done yet, and builds what changed: all, or the targets named after
# it. Prints to standard error only.
build_preset() {
    local preset=$1 target=(--target "${@:2}")
    (($# > 1)) || target=()
    # --fresh, because what is there without this file was left by a configuration that failed or by other tools.
    if [[ ! -f build/$preset/build.ninja ]]; then
        cmake --fresh --preset "$preset" >&2
    fi
    cmake --build --preset "$preset" "${target[@]}" >&2
}

# Of the programs.
project_version() {
    sed --quiet 's/^project(Vantor VERSION \([0-9.]*\).*/\1/p' CMakeLists.txt
}

# Where the window toolkit for Windows is built, or was.
windows_toolkit_folder() {
    realpath --canonicalize-missing "${VANTOR_WINDOWS_TOOLKIT:-build/windows-toolkit}"
}
