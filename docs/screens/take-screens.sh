#!/usr/bin/env bash
# Takes the screenshots of this folder: every screen along the demo road and the restricted road
# of examples/, at scale 1 and 2, as the headless driver renders them.
#   docs/screens/take-screens.sh [BUILD_FOLDER]    (default build/release)
# A screen is taken when the road is about to leave it, so that it shows its results.
set -euo pipefail
here="$(cd "$(dirname "$0")" && pwd)"
root="$(cd "$here/../.." && pwd)"
build="$(cd "${1:-$root/build/release}" && pwd)"
temp="$(mktemp -d)"
trap 'rm -rf "$temp"' EXIT

for road in demo restricted; do
    for scale in 1 2; do
        work="$temp/$road-$scale"
        "$build/app/import/lorvane-import" "$root/examples/e1.csv" "$work" >/dev/null
        # The road with a screenshot line before each line that leaves its screen, and at its end.
        awk -v out="$here" -v road="$road" -v scale="$scale" '
            function screen(line,    w) {
                split(line, w, " ")
                if (w[1] == "expect-screen") return w[2]
                if (w[1] == "answer" || w[1] == "input" || w[1] == "seed" || w[2] == "") return ""
                sub(/\..*/, "", w[2])
                return w[2]
            }
            /^[[:space:]]*(#|$)/ { next }
            { lines[++n] = $0 }
            END {
                for (i = 1; i <= n; i++) {
                    split(lines[i], w, " ")
                    here = screen(lines[i])
                    nextScreen = i < n ? screen(lines[i + 1]) : ""
                    if (w[1] == "click" && nextScreen != "" && nextScreen != here && !(here in taken)) {
                        taken[here] = 1
                        printf "screenshot \"%s/%s-%02d-%s@%dx.png\"\n", out, road, ++shot, here, scale
                    }
                    print lines[i]
                }
                if (here != "" && !(here in taken)) {
                    printf "screenshot \"%s/%s-%02d-%s@%dx.png\"\n", out, road, ++shot, here, scale
                }
            }' "$root/examples/$road.var" > "$temp/$road-$scale.var"
        QT_QPA_PLATFORM=offscreen QT_SCALE_FACTOR="$scale" \
            "$build/app/module/VAR" --script "$temp/$road-$scale.var" "$work" >/dev/null
    done
done
ls "$here"/*.png | wc -l | sed 's/$/ screenshots/'
