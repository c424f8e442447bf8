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

fail() {
  echo "fetch-yoga: $*" >&2
  echo "fetch-yoga: nothing was cached; fix the cause and run the build again to retry." >&2
  exit 1
}

command -v npm >/dev/null || fail "npm is not installed (apt-get install npm)"
command -v node >/dev/null || fail "node is not installed (apt-get install nodejs)"

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

echo "fetch-yoga: downloading $YOGA_NPM_PACKAGE from the npm registry" >&2
if ! (cd "$work" && npm pack --silent "$YOGA_NPM_PACKAGE" >pack.out 2>pack.err); then
  cat "$work/pack.err" >&2 || true
  fail "npm pack $YOGA_NPM_PACKAGE failed (is the npm registry reachable?)"
fi
tarball="$work/$(tail -n 1 "$work/pack.out")"
[ -f "$tarball" ] || fail "npm pack did not produce a tarball"

actual=$(node -e '
  const data = require("fs").readFileSync(process.argv[1]);
  process.stdout.write("sha512-" + require("crypto").createHash("sha512").update(data).digest("base64"));
' "$tarball")
if [ "$actual" != "$YOGA_NPM_INTEGRITY" ]; then
  fail "integrity mismatch for $YOGA_NPM_PACKAGE: expected $YOGA_NPM_INTEGRITY, got $actual"
fi

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
