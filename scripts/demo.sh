#!/usr/bin/env bash
# Sets everything up (dependencies and build, through scripts/setup.sh), then
# runs the main job on the bundled samples: every samples/*.xml is converted
# to Fast Infoset and back, and for each the XML size, the Fast Infoset size
# and whether the round trip kept the document are printed. The converted
# files are left in build/demo/ to look at.
# Usage: scripts/demo.sh [BUILD_DIR]   (default build)
set -euo pipefail
cd "$(dirname "$0")/.."

build_dir=${1:-build}
bash scripts/setup.sh "$build_dir"
tool=$build_dir/fastinfoset
demo=$build_dir/demo
mkdir -p "$demo"

echo
echo "== XML -> Fast Infoset -> XML for every bundled sample"
echo "   (kept = same elements, attributes, namespace declarations, text,"
echo "    comments, processing instructions and document type declaration)"
echo
status=0
"$tool" roundtrip samples/*.xml || status=$?

for xml in samples/*.xml; do
  name=$(basename "$xml" .xml)
  "$tool" encode "$xml" "$demo/$name.fi"
  "$tool" decode "$demo/$name.fi" "$demo/$name.xml"
done

echo
echo "== a look inside one of them: $tool inspect $demo/inventory.fi"
"$tool" inspect "$demo/inventory.fi"

echo
echo "Fast Infoset files and the XML written back from them are in $demo/."
exit "$status"
