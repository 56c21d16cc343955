# Qt for Windows, static, from Debian's sources of the version that this Debian has. Sourced after tools/build.sh.
#
# What is downloaded and built lies in $XDG_CACHE_HOME/telvox/windows and is made once for a version and its options.

qt_version=6.4.2
# What the programs do not use; direct2d, directwrite3 and tabletevent also take headers that mingw-w64 lacks.
qt_options=(-DCMAKE_BUILD_TYPE=Release -DBUILD_SHARED_LIBS=OFF
    -DQT_HOST_PATH=/usr -DQT_HOST_PATH_CMAKE_DIR=/usr/lib/x86_64-linux-gnu/cmake -DQT_QMAKE_TARGET_MKSPEC=win32-g++
    -DQT_BUILD_EXAMPLES=OFF -DQT_BUILD_TESTS=OFF -DINPUT_opengl=no)
for feature in sql dbus xml concurrent printsupport ssl schannel vulkan direct2d directwrite3 tabletevent jpeg gif icu zstd \
    system_zlib system_png system_freetype system_harfbuzz system_pcre2; do
    qt_options+=("-DFEATURE_$feature=OFF")
done
# Archives that are taken: checksum, Debian's source package, file. Of a package any one will do.
qt_archives="
4f14b89a9463a540fd84a6718b8519a2297119b454ef547721015a9e9019ae9e qt6-base qt6-base_6.4.2+dfsg.orig.tar.xz
336d95919037800184b3c3de8ccb6f62954b20f3756c05adce8d5010504340fa qt6-serialport qt6-serialport_6.4.2.orig.tar.xz
a9351e823713553a3a9f7a64fd3e2441966b3d45f7bfc636d3aad6ac919e2976 qt6-serialport qtserialport-6.4.2.tar.xz"
qt_needs=(g++-mingw-w64-x86-64-posix cmake ninja-build qt6-base-dev qt6-serialport-dev dpkg-dev xz-utils)

fail() { printf '%s\n' "$*" >&2; exit 1; }

# qt_find: sets `qt` to the folder of Qt for Windows and says whether it is complete there. TELVOX_QT_WINDOWS names
# another one, for those who link their own.
qt_find() {
    qt_cache=${XDG_CACHE_HOME:-$HOME/.cache}/telvox/windows
    if [ -n "${TELVOX_QT_WINDOWS:-}" ]; then
        qt=$TELVOX_QT_WINDOWS
        [ -f "$qt/lib/cmake/Qt6/Qt6Config.cmake" ]
        return
    fi
    local key
    key=$({ x86_64-w64-mingw32-g++-posix -dumpfullversion && printf '%s\n' "${qt_options[@]}"; } 2>&1 | sha256sum)
    qt=$qt_cache/qt-$qt_version-${key:0:12}
    [ -f "$qt/complete" ]
}

# What apt is told, so that it reads source packages from the mirrors it knows without a change to the system.
qt_apt() {
    local apt=$qt_cache/apt
    apt-get -o Dir::Etc::SourceList="$apt/sources.list" -o Dir::Etc::SourceParts="$apt/parts" \
        -o Dir::State::Lists="$apt/lists" -o Dir::Cache="$apt/cache" "$@"
}

qt_apt_update() {
    local apt=$qt_cache/apt file
    mkdir -p "$apt/parts" "$apt/lists/partial" "$apt/cache/archives/partial"
    : >"$apt/sources.list"
    for file in /etc/apt/sources.list /etc/apt/sources.list.d/*.list; do
        [ ! -f "$file" ] || sed -n 's/^deb /deb-src /p' "$file" >>"$apt/sources.list"
    done
    for file in /etc/apt/sources.list.d/*.sources; do
        [ ! -f "$file" ] || sed 's/^Types:.*/Types: deb-src/' "$file" >"$apt/parts/${file##*/}"
    done
    qt_apt update
}

# qt_archive PACKAGE: the archive of a package that is at hand, from the cache; nothing if there is none.
qt_archive() {
    local sum package file
    while read -r sum package file; do
        [ "$package" = "$1" ] && [ -f "$qt_cache/sources/$file" ] || continue
        if [ "$(sha256sum <"$qt_cache/sources/$file")" != "$sum  -" ]; then
            rm -f "$qt_cache/sources/$file"
            fail "The archive $file has a wrong checksum and is not used; a new call gets it again."
        fi
        echo "$file"
        return
    done <<<"$qt_archives"
}

# qt_source PACKAGE FOLDER: the unpacked sources of a package, with Debian's corrections where they came from Debian.
qt_source() {
    local package=$1 folder=$2 archive sources=$qt_cache/sources
    [ ! -d "$folder" ] || return 0
    mkdir -p "$sources"
    if [ -n "${TELVOX_SOURCES:-}" ]; then
        [ -d "$TELVOX_SOURCES" ] || fail "TELVOX_SOURCES: there is no folder $TELVOX_SOURCES."
        find "$TELVOX_SOURCES" -maxdepth 1 -type f \( -name "${package}_*" -o -name "${package/qt6-/qt}-$qt_version.tar.xz" \) \
            -exec cp -t "$sources" {} +
    fi
    archive=$(qt_archive "$package")
    if [ -z "$archive" ]; then
        say "getting the sources of $package"
        (qt_apt_update; cd "$sources" && qt_apt source --download-only "$package") >"$qt_log" 2>&1 || true
        archive=$(qt_archive "$package")
        [ -n "$archive" ] || fail "The sources of $package $qt_version could not be got ($(grep -m1 -E '^[EW]:.*(resolve|connect|fetch)' "$qt_log" ||
            echo 'no network?')). A folder with $(awk -v p="$package" '$2 == p {f = f s $3; s = " or "} END {print f}' \
            <<<"$qt_archives") may be named by TELVOX_SOURCES."
    fi
    say "unpacking $archive"
    rm -rf "$folder.new"
    if [[ $archive == *.orig.* && -f $(echo "$sources/${package}_"*.dsc) ]]; then
        dpkg-source --no-check -x "$sources/${package}_"*.dsc "$folder.new" >"$qt_log" 2>&1
    else
        mkdir "$folder.new" && tar -xf "$sources/$archive" --strip-components=1 -C "$folder.new" 2>"$qt_log"
    fi || qt_stopped "$archive could not be unpacked"
    mv "$folder.new" "$folder"
}

# qt_stopped WHAT: ends with one line, after the last lines of the log (`qt_log`) where they are needed.
qt_stopped() {
    local free
    free=$(df --output=avail -m "$(dirname "$qt_log")" | tail -n 1)
    if [ "$free" -lt 100 ] || grep -q 'No space left' "$qt_log"; then
        fail "$1: the disk is full. A new call goes on from here."
    fi
    tail -n 15 "$qt_log" >&2
    fail "$1; the log is $qt_log. A new call goes on from here."
}

# qt_module NAME SOURCE BUILD [OPTION...]: builds a module and installs it. The prefix that Qt writes into every program
# says nothing of this machine.
qt_module() {
    local name=$1 source=$2 build=$3
    shift 3
    if [ ! -f "$build/build.ninja" ]; then
        say "configuring $name for Windows"
        cp tools/mingw.cmake "$build.cmake" # this clone may be gone when an interrupted build goes on
        cmake -S "$source" -B "$build" -G Ninja -DCMAKE_TOOLCHAIN_FILE="$build.cmake" \
            -DCMAKE_INSTALL_PREFIX=/qt "$@" >"$qt_log" 2>&1 || qt_stopped "$name could not be configured"
    fi
    say "building $name for Windows (once; half an hour on two cores for all of it)"
    NINJA_STATUS='%f %t ' cmake --build "$build" 2>&1 | tee "$qt_log" | awk -v name="$name" '
        $1 ~ /^[0-9]+$/ && $2 ~ /^[0-9]+$/ && (part = int(20 * $1 / $2)) != last {
            last = part
            printf "   %s: %d of %d steps\n", name, $1, $2
            fflush()
        }' || qt_stopped "$name could not be built"
    cmake --install "$build" --prefix "$qt" >"$qt_log" 2>&1 || qt_stopped "$name could not be installed"
}

# What those ask for whose work is linked in.
qt_licences() {
    local from=$1 to=$qt/lizenzen part file
    mkdir -p "$to"
    cp "$from"/qtbase/LICENSES/{LGPL-3.0-only,GPL-3.0-only,BSD-3-Clause}.txt "$to"
    for part in blake2 double-conversion easing freetype harfbuzz-ng libpng libpsl md4c pcre2 rfc6234 sha3 tinycbor zlib; do
        for file in "$from"/qtbase/src/3rdparty/"$part"/{,src/}*{LICEN[CS]E,COPYING}*; do
            [ ! -f "$file" ] || cp "$file" "$to/$part-$(basename "$file" .txt).txt"
        done
    done
    for part in mingw-w64-common gcc-mingw-w64-base; do
        cp "/usr/share/doc/$part/copyright" "$to/$part.txt"
    done
}

# qt_make: builds Qt for Windows where it is missing. Leaves its folder in `qt`.
qt_make() {
    need "${qt_needs[@]}"
    ! qt_find || return 0
    [ -z "${TELVOX_QT_WINDOWS:-}" ] || fail "TELVOX_QT_WINDOWS: there is no Qt in $qt."
    local here work=$qt_cache/build-${qt##*/qt-} free
    here=$(dpkg-query -W -f='${Version}' qt6-base-dev)
    [[ $here == "$qt_version"[+-]* ]] || fail "Qt $qt_version is built for Windows with the tools of Qt $here, which do not fit."
    mkdir -p "$work" || fail "The cache $qt_cache cannot be written."
    exec 9>"$qt_cache/lock"
    flock -n 9 || { say "waiting for another call that builds Qt"; flock 9; }
    ! qt_find || return 0
    free=$(($(df --output=avail -m "$qt_cache" | tail -n 1)))
    [ -d "$work/qtbase-build" ] || [ "$free" -gt 3000 ] ||
        fail "Building Qt takes 3,000 MB in $qt_cache; $free MB are free."
    qt_log=$qt_cache/log
    qt_source qt6-base "$work/qtbase"
    qt_source qt6-serialport "$work/qtserialport"
    qt_module qtbase "$work/qtbase" "$work/qtbase-build" "${qt_options[@]}"
    qt_module qtserialport "$work/qtserialport" "$work/qtserialport-build" -DCMAKE_BUILD_TYPE=Release \
        -DTELVOX_QT_WINDOWS="$qt" -DQT_HOST_PATH=/usr -DQT_HOST_PATH_CMAKE_DIR=/usr/lib/x86_64-linux-gnu/cmake
    qt_licences "$work"
    touch "$qt/complete"
    rm -rf "$work"
}

# qt_build PRESET: builds a preset against Qt for Windows; one that was made with another Qt is made anew.
qt_build() {
    if [ -f "build/$1/CMakeCache.txt" ] && ! grep -qF "TELVOX_QT_WINDOWS:PATH=$qt" "build/$1/CMakeCache.txt"; then
        rm -rf "build/$1"
    fi
    build "$1" -DTELVOX_QT_WINDOWS:PATH="$qt"
}
