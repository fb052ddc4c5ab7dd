#!/usr/bin/env bash
# Installs what is missing, builds, and opens Orvelle. Arguments are folders to import at start.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
"$root/scripts/deps.sh"
"$root/scripts/build.sh" "$root/build" -- orvelle
exec "$root/build/src/orvelle" "$@"
