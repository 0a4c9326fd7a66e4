#!/usr/bin/env bash
# The Debian package: CPack makes it into a temporary folder, dpkg -x unpacks
# it into a scratch root, and the CLI runs from there on the Debian libraries.
# Usage: package_test.sh BUILD. Exit 77 is a skip (no dpkg tools).
set -euo pipefail
export LC_ALL=C.UTF-8
unset BRINDLESEE_RESOURCES

fail() { echo "FAIL: $*" >&2; exit 1; }
for tool in dpkg-deb dpkg-shlibdeps cpack; do
  command -v $tool >/dev/null 2>&1 || { echo "SKIP: $tool is not installed"; exit 77; }
done

build=$(realpath "$1")
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT

cpack --config "$build/CPackConfig.cmake" -B "$scratch/out" >"$scratch/cpack.log" 2>&1 ||
  { cat "$scratch/cpack.log" >&2; fail "cpack failed"; }
debs=("$scratch"/out/brindlesee_*_*.deb)
[[ ${#debs[@]} -eq 1 && -f ${debs[0]} ]] || fail "no single package in $(ls "$scratch/out")"
deb=${debs[0]}
version=$(dpkg-deb -f "$deb" Version)
[[ $(basename "$deb") == "brindlesee_${version}_$(dpkg --print-architecture).deb" ]] || fail "name $(basename "$deb")"

[[ $(dpkg-deb -f "$deb" Package) == brindlesee ]] || fail "package name"
[[ $(dpkg-deb -f "$deb" Section) == graphics ]] || fail "section"
[[ $(dpkg-deb -f "$deb" Maintainer) == *"<"*"@"*">" ]] || fail "maintainer"
depends=$(dpkg-deb -f "$deb" Depends)
# dpkg-shlibdeps found the linked libraries; the rest is declared by hand.
for dep in libqt6widgets6 libqt6multimedia6 libturbojpeg0 libfreeimage3 libzip4 libexiv2 libsane1 libavformat \
           qt6-translations-l10n fonts-liberation2 xdg-utils; do
  [[ $depends == *"$dep"* ]] || fail "Depends lacks $dep: $depends"
done
[[ $(dpkg-deb -f "$deb" Description) == *"HTML"* ]] || fail "description"

root=$scratch/root
dpkg-deb -x "$deb" "$root"
for f in usr/bin/brindlesee usr/bin/brindlesee-cli usr/share/brindlesee/Album.vor \
         usr/share/applications/org.brindlesee.Brindlesee.desktop usr/share/metainfo/org.brindlesee.Brindlesee.metainfo.xml \
         usr/share/mime/packages/org.brindlesee.Brindlesee.xml usr/share/icons/hicolor/256x256/apps/org.brindlesee.Brindlesee.png; do
  [[ -e $root/$f ]] || fail "not in the package: $f"
done
# Stripped: no debugging sections left in the programs.
for exe in brindlesee brindlesee-cli; do
  ! grep -qF ".debug_info" "$root/usr/bin/$exe" || fail "$exe is not stripped"
done

export BRINDLESEE_HOME=$scratch/home/ HOME=$scratch/user XDG_DATA_HOME=$scratch/xdg
[[ $("$root/usr/bin/brindlesee-cli" --version) == "brindlesee-cli $version" ]] || fail "--version"
cp -r "$root/usr/share/brindlesee/Beispielalbum" "$scratch/album"
"$root/usr/bin/brindlesee-cli" html "$scratch/album/Beispielalbum.apr" "$scratch/html" --overwrite all >/dev/null
cmp "$root/usr/share/brindlesee/Menü/mtmcode.js" "$scratch/html/mtmcode.js" || fail "web files not from the package"
echo "package $(basename "$deb") checked"
