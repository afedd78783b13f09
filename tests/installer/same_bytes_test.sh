#!/usr/bin/env bash
# The same commit gives the same bytes: same_bytes_test.sh BUILD PACKAGE links the products of BUILD once more and makes
# a second package, which is to be what PACKAGE has.
set -euo pipefail

build=${1:?usage: same_bytes_test.sh BUILD PACKAGE}
package=${2:?}
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)
again=$(mktemp -d)
trap 'rm -rf "$again"' EXIT

for file in "$package"/content/bin/*; do
    rm "$build/bin/${file##*/}"
done
ninja -C "$build" nelva_products >/dev/null
"$root/packaging/build" "$build" "$again"
failures=0
for file in "$package"/nelva-*.exe "$package"/nelva-*.zip; do
    cmp "$file" "$again/${file##*/}" || failures=$((failures + 1))
done
((failures == 0))
