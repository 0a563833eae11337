#!/bin/bash
# demo TOOL: the demo runs through, and the transcripts of the README and of the manual page are what it shows.
set -euo pipefail

HERE=$(dirname "$(readlink -f "${BASH_SOURCE[0]}")")
ROOT=$HERE/../..
ZELFLAB_DIR=$(mktemp -d)/lab
export ZELFLAB_DIR ZELFHOME=$1 ZELFLAB_WAIT=60
trap 'rm -rf "${ZELFLAB_DIR%/*}"' EXIT

"$ROOT/lab/demo" >"${ZELFLAB_DIR%/*}/demo.out"
for text in README.md docs/zelfhome.8; do
    echo "$text:"
    bash "$HERE/transcripts.bash" "${ZELFLAB_DIR%/*}/demo.out" <"$ROOT/$text"
done
