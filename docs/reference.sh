#!/bin/bash
# Makes the reference of headers and documents, in build/reference/html. A warning is an error.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
mkdir -p build/reference
{ cat docs/Doxyfile; echo "OUTPUT_DIRECTORY = build/reference"; } | doxygen -
