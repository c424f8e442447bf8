#!/usr/bin/env bash
# Renders example cards with the previewer: every folder of examples/cards
# (or only the named ones) into OUT_DIR/<card>/, as step-NN.png and
# step-NN.tree.json. Each card passes its data.json, scenario.json and
# bridge.json when it has them, and runs with --strict, so a card whose
# script reports an error fails the run.
#
#   tools/render-examples.sh OUT_DIR [CARD ...]
#
# The build folder is $MERO_BUILD (default build/), as for tools/mero-preview.
set -euo pipefail

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
out=${1:?usage: tools/render-examples.sh OUT_DIR [CARD ...]}
shift
cards=("$@")
if [ ${#cards[@]} -eq 0 ]; then
  for folder in "$root"/examples/cards/*/; do
    [ -f "$folder/template.json" ] && cards+=("$(basename "$folder")")
  done
fi

started=$(date +%s%N)
for card in "${cards[@]}"; do
  folder="$root/examples/cards/$card"
  args=("$folder/template.json")
  for option in data scenario bridge; do
    [ -f "$folder/$option.json" ] && args+=("--$option" "$folder/$option.json")
  done
  rm -rf "${out:?}/$card"
  "$root/tools/mero-preview" "${args[@]}" --strict --out "$out/$card"
done

pictures=$(find "$out" -name 'step-*.png' | wc -l)
elapsed=$(( ($(date +%s%N) - started) / 1000000 ))
printf 'Rendered %d cards, %d pictures, into %s in %d.%03d s\n' \
  "${#cards[@]}" "$pictures" "$out" $((elapsed / 1000)) $((elapsed % 1000))
