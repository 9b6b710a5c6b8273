#!/bin/bash
# The desktop entry and the AppStream metainfo as the desktop's tools read them: no error
# and no warning, one id throughout, and the project's version as the newest release.
#
# usage: check_metadata.sh DESKTOP_FILE METAINFO_FILE APP_ID VERSION
set -u
desktop=$1 metainfo=$2 id=$3 version=$4
for tool in desktop-file-validate appstreamcli; do
    command -v "$tool" >/dev/null || { echo "SKIP: $tool is not installed (Debian: desktop-file-utils, appstream)"; exit 77; }
done
fails=0
# check WHAT COMMAND...
check() { local what=$1; shift; if "$@"; then echo "ok   - $what"; else echo "FAIL - $what"; fails=$((fails + 1)); fi; }
# COMMAND... succeeds and says nothing that matches PATTERN (all it says is shown)
says_none() { local bad=$1 out rc; shift; out=$("$@" 2>&1); rc=$?; echo "$out"; [ $rc -eq 0 ] && ! grep -qE "$bad" <<<"$out"; }
check "desktop-file-validate: nothing to report" says_none . desktop-file-validate "$desktop"
# appstreamcli 0.16 reports <developer>, which it predates, as an unknown tag: an info, not
# a warning; anything worse fails.
check "appstreamcli validate: no error, no warning" says_none '^(W|E): ' appstreamcli validate --no-net --explain "$metainfo"
check "desktop entry's icon is the id" grep -qx "Icon=$id" "$desktop"
check "metainfo launches $id.desktop" grep -q "<launchable type=\"desktop-id\">$id.desktop</launchable>" "$metainfo"
check "metainfo's newest release is $version" grep -q "<release version=\"$version\"" "$metainfo"
# the screenshot the software centres show is a file of this tree
shot=$(sed -n 's|.*<image>[^<]*/main/\([^<]*\)</image>.*|\1|p' "$metainfo")
check "metainfo's screenshot ${shot:-(none)} is in the tree" test -n "$shot" -a -f "$(dirname "$desktop")/../$shot"
exit $((fails > 0))
