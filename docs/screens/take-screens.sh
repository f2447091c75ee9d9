#!/usr/bin/env bash
# Takes the screenshots of this folder, as the headless driver renders them, at scale 1 and 2:
# every screen along the demo road and the restricted road of examples/, the structural screens
# of the structural road (from the choice of the route on), the model checks of the checks road
# and the joint tests it returns to, the forecast screen and the joint tests before it, the
# screens and boxes of extras.var,
# and lorvane's window as the GUI test of the whole road leaves it.
#   docs/screens/take-screens.sh [BUILD_FOLDER [SHOTS_FOLDER]]
# (default build/release, and this folder; the tests take them into a folder of the build)
# A screen is taken when the road is about to leave it, so that it shows its results.
set -euo pipefail
here="$(cd "$(dirname "$0")" && pwd)"
root="$(cd "$here/../.." && pwd)"
build="$(cd "${1:-$root/build/release}" && pwd)"
shots="${2:-$here}"
mkdir -p "$shots"
temp="$(mktemp -d)"
trap 'rm -rf "$temp"' EXIT

# ROAD NAME FIRST: the road examples/ROAD.var with a screenshot line before each line that
# leaves a screen, from the screen FIRST on (all when empty), and at its end; the pictures are
# NAME-NN-SCREEN@SCALEx.png.
with_shots() {
    awk -v out="$shots" -v name="$2" -v first="$3" -v scale="$scale" '
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
            on = first == ""
            for (i = 1; i <= n; i++) {
                split(lines[i], w, " ")
                here = screen(lines[i])
                on = on || here == first
                nextScreen = i < n ? screen(lines[i + 1]) : ""
                if (w[1] == "click" && nextScreen != "" && nextScreen != here && !(here in taken)) {
                    taken[here] = 1
                    if (on) {
                        printf "screenshot \"%s/%s-%02d-%s@%dx.png\"\n", out, name, ++shot, here,
                            scale
                    }
                }
                print lines[i]
            }
            if (on && here != "" && !(here in taken)) {
                printf "screenshot \"%s/%s-%02d-%s@%dx.png\"\n", out, name, ++shot, here, scale
            }
        }' "$root/examples/$1.var"
}

run() {
    local work="$temp/work-$1-$scale"
    "$build/app/import/lorvane-import" "$root/examples/e1.csv" "$work" >/dev/null
    QT_QPA_PLATFORM=offscreen QT_SCALE_FACTOR="$scale" \
        "$build/app/module/VAR" --script "$temp/$1-$scale.var" "$work" >/dev/null
}

rm -f "$shots"/*.png
for scale in 1 2; do
    with_shots demo demo "" > "$temp/demo-$scale.var"
    with_shots restricted restricted "" > "$temp/restricted-$scale.var"
    with_shots structural_ml structural VARSTR1 > "$temp/structural-$scale.var"
    with_shots checks checks VARCHECK > "$temp/checks-$scale.var"
    with_shots forecast forecast VWaldT2 > "$temp/forecast-$scale.var"
    sed -e "s|@SHOTS@|$shots|g" -e "s|@SCALE@|$scale|g" "$here/extras.var" > "$temp/extras-$scale.var"
    for road in demo restricted structural checks forecast extras; do
        run "$road"
    done
    QT_QPA_PLATFORM=offscreen QT_SCALE_FACTOR="$scale" \
        "$build/tests/gui/test_gui" LorvaneRoadTest >/dev/null
    cp "$build/tests/gui"/lorvane-0?-*@"$scale"x.png "$shots/"
done
ls "$shots"/*.png | wc -l | sed 's/$/ screenshots/'
