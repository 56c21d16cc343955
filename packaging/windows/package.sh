#!/usr/bin/env bash
# Builds the Windows programs, their installer and the folder that runs from a stick. Installs what that takes; the
# paths of both files are printed last. The first call also builds Qt for Windows, see tools/windows_qt.sh.
source "$(dirname "$0")/../../tools/build.sh"
source tools/windows_qt.sh
need "${qt_needs[@]}" nsis icoutils qt6-translations-l10n
qt_make
qt_build windows-release

say "packing"
build=build/windows-release
made=build/package/windows
files=$made/telvox
mkdir -p build/package
qt_log=build/package/windows.log
exec 3>&2 2>$qt_log
trap 'exec 2>&3; qt_stopped "The Windows programs could not be packed"' ERR
version=$(sed -n 's/^CMAKE_PROJECT_VERSION:STATIC=//p' $build/CMakeCache.txt)
rm -rf "$made"
mkdir -p "$files"
cmake --install $build --prefix "$files" >/dev/null
cp -r share/hilfe "$files"
cp /usr/share/qt6/translations/qtbase_de.qm "$files"
# crlf FILE...: as a file for people is expected to end its lines there.
crlf() { sed -i 's/\r*$/\r/' "$@"; }
cp share/{SCN,FSN,gprsapn}.dat "$files"
sed "s/@VERSION@/$version/" packaging/windows/liesmich.txt >"$files/LIESMICH.txt"
crlf "$files"/*.dat "$files"/LIESMICH.txt
if [ -d "$qt/lizenzen" ]; then
    cp -r "$qt/lizenzen" "$files"
    crlf "$files"/lizenzen/*
else # one that somebody else built
    say "without the licences of what is linked in: there is no folder $qt/lizenzen"
fi

for file in "$files"/*.*; do
    echo "Delete \"\$INSTDIR\\${file##*/}\""
done >$made/installed.nsh
setup=build/package/telvox-$version-setup.exe
makensis -V2 -INPUTCHARSET UTF8 -NOCD -DVERSION="$version" -DFILES="$files" -DSIZE="$(du -sk "$files" | cut -f1)" \
    -DICON=$build/packaging/windows/telvox.ico -DINSTALLED=$made/installed.nsh -DTARGET="$made/telvox-setup.exe" \
    packaging/windows/telvox.nsi >>$qt_log

# Settings stay beside the program where a Com.ini stands there already.
: >"$files/Com.ini"
zip=build/package/telvox-$version-windows.zip
(cd $made && cmake -E tar cf telvox.zip --format=zip telvox)
mv $made/telvox-setup.exe "$setup"
mv $made/telvox.zip "$zip"
printf '%s\n' "$setup" "$zip"
