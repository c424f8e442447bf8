#!/usr/bin/env bash
# Downloads the pinned package from the npm registry, checks it against the
# integrity recorded in cmake/yoga.lock and extracts only Yoga's C++ sources.
#
#   tools/fetch-yoga.sh DEST_DIR
#
# DEST_DIR receives yoga/ (the sources, with Yoga.h under yoga/yoga/).
# Nothing is left behind on failure, so running the build again retries.
set -euo pipefail

here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
lock="$here/../cmake/yoga.lock"
dest=${1:?usage: fetch-yoga.sh DEST_DIR}

# shellcheck source=/dev/null
source <(grep -E '^YOGA_NPM_(PACKAGE|INTEGRITY)=' "$lock")

tool=fetch-yoga retry_hint="run the build again"
# shellcheck source=tools/npm-fetch.sh
source "$here/npm-fetch.sh"

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
tarball=$(fetch_verified_package "$YOGA_NPM_PACKAGE" "$YOGA_NPM_INTEGRITY" "$work")

mkdir -p "$work/out"
tar -xzf "$tarball" -C "$work/out" --strip-components=3 package/ReactCommon/yoga/yoga \
  || fail "the tarball has no ReactCommon/yoga sources"
[ -f "$work/out/yoga/Yoga.h" ] || fail "Yoga.h missing from the extracted sources"

mkdir -p "$(dirname "$dest")"
rm -rf "$dest.partial"
mkdir -p "$dest.partial"
mv "$work/out/yoga" "$dest.partial/yoga"
rm -rf "$dest"
mv "$dest.partial" "$dest"
echo "fetch-yoga: Yoga sources cached in $dest" >&2
