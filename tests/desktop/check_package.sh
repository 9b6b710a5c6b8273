#!/bin/bash
# The Debian package as cpack builds it from this build folder: named for the project's
# version, holding the game, its menu entry, icons, metainfo and manual page where the
# desktop looks for them, and with no error or warning from lintian.
#
# usage: check_package.sh BUILD_DIR APP_ID VERSION
set -u
build=$1 id=$2 version=$3
for tool in cpack dpkg-deb dpkg-shlibdeps lintian; do
    command -v "$tool" >/dev/null || { echo "SKIP: $tool is not installed (Debian: lintian, dpkg-dev)"; exit 77; }
done
out=$(mktemp -d /tmp/quillop-package.XXXXXX)
trap 'rm -rf "$out"' EXIT
cpack --config "$build/CPackConfig.cmake" -G DEB -B "$out" >"$out/cpack.log" 2>&1 || { cat "$out/cpack.log"; exit 1; }
deb=$out/quillop_${version}_$(dpkg --print-architecture).deb
[ -f "$deb" ] || { echo "FAIL - no $(basename "$deb"): $(ls "$out")"; exit 1; }
echo "ok   - built $(basename "$deb")"
fails=0
contents=$(dpkg-deb -c "$deb" | awk '{print $6}')
for path in usr/games/Quillop2 "usr/share/applications/$id.desktop" "usr/share/metainfo/$id.metainfo.xml" \
            "usr/share/icons/hicolor/scalable/apps/$id.svg" "usr/share/icons/hicolor/48x48/apps/$id.png" \
            usr/share/man/man6/Quillop2.6.gz usr/share/doc/quillop/copyright; do
    if grep -qx "./$path" <<<"$contents"; then echo "ok   - holds /$path"; else echo "FAIL - no /$path"; fails=$((fails + 1)); fi
done
# lintian refuses nothing to root but says so on every run.
lintian --fail-on error,warning "$deb" 2>&1 | grep -v 'running with root privileges'
rc=${PIPESTATUS[0]}
if [ "$rc" -eq 0 ]; then echo "ok   - lintian: no error, no warning"; else echo "FAIL - lintian (exit $rc)"; fails=$((fails + 1)); fi
exit $((fails > 0))
