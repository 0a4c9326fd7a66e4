#!/usr/bin/env bash
# The installed program, away from the build tree. Usage:
#   install_test.sh stage BUILD STAGEFILE    install, then move the tree elsewhere
#   install_test.sh clean STAGEFILE          remove the staged tree
#   install_test.sh CHECK STAGEFILE BUILD    one check on the staged tree
# Exit 77 is a skip: a tool the check needs is not installed.
set -euo pipefail
export LC_ALL=C.UTF-8
unset BRINDLESEE_RESOURCES BRINDLESEE_HOME

fail() { echo "FAIL: $*" >&2; exit 1; }
need() { command -v "$1" >/dev/null 2>&1 || { echo "SKIP: $1 is not installed ($2)"; exit 77; }; }

# A fresh program directory and XDG folders, so nothing of the user's counts.
fresh_env() {
  scratch=$(mktemp -d)
  trap 'rm -rf "$scratch"' EXIT
  export BRINDLESEE_HOME="$scratch/home/" XDG_DATA_HOME="$scratch/xdg-data" XDG_CONFIG_HOME="$scratch/xdg-config"
  export HOME="$scratch/user"
  mkdir -p "$HOME"
}

stage() {
  local build=$1 file=$2 first second
  first=$(mktemp -d)
  cmake --install "$build" --prefix "$first/usr" --strip >/dev/null
  # Moved after installing: nothing may depend on the prefix it was installed to.
  second=$(mktemp -d)
  mv "$first/usr" "$second/usr"
  rmdir "$first"
  echo "$second" > "$file"
}

check_layout() {
  local usr=$1
  for f in bin/brindlesee bin/brindlesee-cli share/brindlesee/Album.vor share/brindlesee/Menü/mtmcode.js \
           share/brindlesee/Beispielalbum/Beispielalbum.apr \
           share/applications/org.brindlesee.Brindlesee.desktop \
           share/metainfo/org.brindlesee.Brindlesee.metainfo.xml \
           share/mime/packages/org.brindlesee.Brindlesee.xml \
           share/icons/hicolor/scalable/apps/org.brindlesee.Brindlesee.svg; do
    [[ -e $usr/$f ]] || fail "not installed: $f"
  done
  for size in 16 24 32 48 64 128 256; do
    local png=$usr/share/icons/hicolor/${size}x${size}/apps/org.brindlesee.Brindlesee.png
    [[ -f $png ]] || fail "no PNG icon of $size"
    # The PNG head, then width and height from the IHDR chunk.
    [[ $(od -An -tx1 -N8 "$png" | tr -d ' \n') == 89504e470d0a1a0a ]] || fail "$png is no PNG"
    [[ $(od -An -tu1 -j16 -N8 "$png" | awk '{print $3*256+$4 "x" $7*256+$8}') == "${size}x${size}" ]] ||
      fail "$png is not $size x $size"
  done
  for type in album page template template-exchange print-layout; do
    [[ -f $usr/share/icons/hicolor/scalable/mimetypes/application-x-brindlesee-$type.svg ]] || fail "no icon for $type"
  done
}

check_no_build_path() {
  local usr=$1 build=$2 hits
  check_layout "$usr"
  hits=$(grep -rlF "$(realpath "$build")" "$usr" || true)
  [[ -z $hits ]] || fail "the build path $(realpath "$build") is in: $hits"
  hits=$(grep -rlF "$(realpath "$build/..")/src" "$usr" || true)
  [[ -z $hits ]] || fail "the source path is in: $hits"
}

check_cli() {
  local usr=$1 out
  fresh_env
  out=$("$usr/bin/brindlesee-cli" --version)
  [[ $out =~ ^brindlesee-cli\ [0-9]+\.[0-9]+\.[0-9]+$ ]] || fail "--version said: $out"
  cp -r "$usr/share/brindlesee/Beispielalbum" "$scratch/album"
  "$usr/bin/brindlesee-cli" html "$scratch/album/Beispielalbum.apr" "$scratch/html" --overwrite all >/dev/null
  # The web files come from the installed share folder through the program directory.
  cmp "$usr/share/brindlesee/Menü/mtmcode.js" "$scratch/html/mtmcode.js" || fail "mtmcode.js not from the installation"
  cmp "$usr/share/brindlesee/suchscr.js" "$BRINDLESEE_HOME/suchscr.js" || fail "program directory not seeded"
  [[ -f $scratch/html/menu-images/menu_tee.gif ]] || fail "menu pictures missing from the HTML album"
  ls "$scratch/html"/*.htm >/dev/null || fail "no pages generated"
  # The pictures are found beside the moved album, not at a recorded path.
  ls "$scratch/html" | grep -qi "abendrot.*\.jpg$" || fail "the pictures of the album are missing: $(ls "$scratch/html")"
}

check_gui() {
  local usr=$1 pid log i
  fresh_env
  mkdir -p "$BRINDLESEE_HOME"
  touch "$BRINDLESEE_HOME/testmodus.txt"
  log=$BRINDLESEE_HOME/Brindt.txt
  QT_QPA_PLATFORM=offscreen "$usr/bin/brindlesee" "$usr/share/brindlesee/Beispielalbum/Beispielalbum.apr" \
    >"$scratch/gui.out" 2>&1 &
  pid=$!
  for ((i = 0; i < 600; i++)); do
    grep -q "^MDILoad case apr Command=$usr/share/brindlesee/Beispielalbum/Beispielalbum.apr$" "$log" 2>/dev/null && break
    kill -0 "$pid" 2>/dev/null || { cat "$scratch/gui.out" >&2; fail "the program ended before its main window loaded"; }
    sleep 0.1
  done
  if ! kill -0 "$pid" 2>/dev/null; then cat "$scratch/gui.out" >&2; fail "the program ended"; fi
  kill "$pid"
  wait "$pid" || true
  grep -q "^IDE = False$" "$log" || fail "the main window did not load: $(cat "$log")"
  grep -q "^MDILoad case apr" "$log" || fail "the album was not opened: $(cat "$log")"
  for f in Album.vor Menü/mtmcode.js Beispielalbum/Beispielalbum.apr; do
    cmp "$usr/share/brindlesee/$f" "$BRINDLESEE_HOME/$f" || fail "$f not seeded from the installation"
  done
}

check_desktop_files() {
  local usr=$1
  need desktop-file-validate desktop-file-utils
  need appstreamcli appstream
  desktop-file-validate "$usr/share/applications/org.brindlesee.Brindlesee.desktop" || fail "desktop entry invalid"
  appstreamcli validate --no-net "$usr/share/metainfo/org.brindlesee.Brindlesee.metainfo.xml" || fail "metainfo invalid"
  grep -qx "Exec=brindlesee %F" "$usr/share/applications/org.brindlesee.Brindlesee.desktop" || fail "Exec"
  grep -qx "Icon=org.brindlesee.Brindlesee" "$usr/share/applications/org.brindlesee.Brindlesee.desktop" || fail "Icon"
}

check_mime() {
  local usr=$1 type
  need update-mime-database shared-mime-info
  need xdg-mime xdg-utils
  need mimetype libfile-mimeinfo-perl
  fresh_env
  cp -r "$usr/share" "$scratch/share"
  update-mime-database "$scratch/share/mime"
  export XDG_DATA_DIRS="$scratch/share" XDG_CURRENT_DESKTOP=X-Generic
  unset KDE_FULL_SESSION GNOME_DESKTOP_SESSION_ID DESKTOP_SESSION
  cd "$scratch"
  # An album's head: the u16 length, then the format string.
  printf '\x2a\x00Album Projekt: Brindlesee Pro, Version 1.0' > x.apr
  printf '\x28\x00Album Seite: Brindlesee Pro, Version 1.0' > x.apg
  cp x.apr x.vor
  printf '12\r\n' > x.bsp
  printf 'PK\x03\x04' > x.bsv
  cp x.apr ohne-endung
  while read -r file want; do
    type=$(xdg-mime query filetype "$file")
    [[ $type == "$want" ]] || fail "$file is $type, not $want"
  done <<LIST
x.apr application/x-brindlesee-album
x.apg application/x-brindlesee-page
x.vor application/x-brindlesee-template
x.bsv application/x-brindlesee-template-exchange
x.bsp application/x-brindlesee-print-layout
ohne-endung application/x-brindlesee-album
LIST
  grep -q 'Brindlesee-Fotoalbum' "$scratch/share/mime/application/x-brindlesee-album.xml" || fail "no German comment"
}

cmd=$1
shift
case $cmd in
  stage) stage "$@" ;;
  clean) [[ -f $1 ]] && rm -rf "$(cat "$1")" "$1" ;;
  layout) check_layout "$(cat "$1")/usr" ;;
  no-build-path) check_no_build_path "$(cat "$1")/usr" "$2" ;;
  cli) check_cli "$(cat "$1")/usr" ;;
  gui) check_gui "$(cat "$1")/usr" ;;
  desktop-files) check_desktop_files "$(cat "$1")/usr" ;;
  mime) check_mime "$(cat "$1")/usr" ;;
  *) fail "unknown check $cmd" ;;
esac
