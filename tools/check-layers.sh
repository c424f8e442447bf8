#!/usr/bin/env bash
# Fails when a source file includes a header of a higher layer. The layers,
# lowest first: value, runtime, render, engine, bridge, and check (the
# template checker, which reads the engine's tables and nothing reads). A file may include
# its own layer's headers and those below it, never those above.
# Usage: check-layers.sh [SOURCE_DIR] (default: the project's src/).
set -euo pipefail
cd "${1:-$(dirname "${BASH_SOURCE[0]}")/../src}"

rank() {
    case "$1" in
    value) echo 0 ;;
    runtime) echo 1 ;;
    render) echo 2 ;;
    engine) echo 3 ;;
    bridge) echo 4 ;;
    check) echo 5 ;;
    *) echo -1 ;;
    esac
}

violations=0
files=0
while IFS= read -r file; do
    files=$((files + 1))
    own=$(rank "${file%%/*}")
    while IFS= read -r included; do
        layer=${included%%/*}
        theirs=$(rank "$layer")
        if [ "$theirs" -gt "$own" ]; then
            echo "$file includes $included, a header of a higher layer ($layer)"
            violations=$((violations + 1))
        fi
    done < <(sed -n 's/^#include "\([^"]*\)".*/\1/p' "$file")
done < <(for layer in value runtime render engine bridge check; do
    [ -d "$layer" ] && find "$layer" -name '*.h' -o -name '*.cpp'
done | sort)

if [ "$violations" -gt 0 ]; then
    echo "layers: $violations includes point up across $files files"
    exit 1
fi
echo "layers: value < runtime < render < engine < bridge < check, $files files, no include points up"
