#!/usr/bin/env bash
# Builds the editor and opens the bundled sample. Without a display it runs under a virtual one,
# saves a screenshot and exits.
set -euo pipefail
cd "$(dirname "$0")/.."

bash scripts/bootstrap.sh
cmake --preset release >/dev/null
cmake --build --preset release --target quirnel

sample="$PWD/examples/sample.csv"
editor="$PWD/build/release/app/quirnel"

if [ -n "${DISPLAY:-}" ] || [ -n "${WAYLAND_DISPLAY:-}" ]; then
    exec "$editor" "$sample"
fi

export XDG_RUNTIME_DIR="${XDG_RUNTIME_DIR:-$(mktemp -d)}"
mkdir -p screenshots
shot="$PWD/screenshots/quirnel.png"
export QUIRNEL_SCREENSHOT_DELAY_MS="${QUIRNEL_SCREENSHOT_DELAY_MS:-3000}"
xvfb-run -a -s "-screen 0 1280x800x24" bash -c '
    "$1" "$2" &
    pid=$!
    sleep $(( QUIRNEL_SCREENSHOT_DELAY_MS / 1000 ))
    import -window root "$3"
    kill "$pid" 2>/dev/null || true
    wait "$pid" 2>/dev/null || true
' _ "$editor" "$sample" "$shot"
echo "No display: ran the editor under a virtual display; screenshot saved to $shot"
