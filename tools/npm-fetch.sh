# Shared by the fetch scripts (sourced, not run): downloads one pinned package
# from the npm registry and checks it against its recorded integrity.
#
#   tool=NAME retry_hint="..." source tools/npm-fetch.sh
#   tarball=$(fetch_verified_package PACKAGE INTEGRITY WORK_DIR)
#
# On any failure it says why under the tool's name and exits 1.

fail() {
  echo "$tool: $*" >&2
  echo "$tool: nothing was cached; fix the cause and $retry_hint to retry." >&2
  exit 1
}

command -v npm >/dev/null || fail "npm is not installed (apt-get install npm)"
command -v node >/dev/null || fail "node is not installed (apt-get install nodejs)"

fetch_verified_package() {
  local package=$1 integrity=$2 work=$3
  echo "$tool: downloading $package from the npm registry" >&2
  if ! (cd "$work" && npm pack --silent "$package" >pack.out 2>pack.err); then
    cat "$work/pack.err" >&2 || true
    fail "npm pack $package failed (is the npm registry reachable?)"
  fi
  local tarball
  tarball="$work/$(tail -n 1 "$work/pack.out")"
  [ -f "$tarball" ] || fail "npm pack did not produce a tarball"
  local actual
  actual=$(node -e '
    const data = require("fs").readFileSync(process.argv[1]);
    process.stdout.write("sha512-" + require("crypto").createHash("sha512").update(data).digest("base64"));
  ' "$tarball")
  if [ "$actual" != "$integrity" ]; then
    fail "integrity mismatch for $package: expected $integrity, got $actual"
  fi
  echo "$tarball"
}
