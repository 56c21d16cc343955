#!/usr/bin/env bash
# A file includes only its own floor and those below; only the top floor includes Qt; the simulator knows nothing
# but the core. Prints what climbs and fails.
cd "$(dirname "$0")/.." || exit 1
climbs=0
report() { [ -z "$2" ] || { printf '%s:\n%s\n' "$1" "$2"; climbs=1; }; }

above=""
for floor in operation telvox ui dialogues net sequencer link core; do
    [ -z "$above" ] || report "$floor includes a floor above" \
        "$(grep -rnE "#include \"(${above#|})[/.]" src/"$floor"*)"
    above="$above|$floor"
done
report "below the desktop nothing includes Qt or the desktop" \
    "$(grep -rnE '#include (<Q|"desktop/|"cli/|"ports/)' src/{core,link,sequencer,net,ui,dialogues,operation,simulator} src/telvox.*)"
report "the simulator includes more than the core" \
    "$(grep -rnE '#include "' src/simulator | grep -vE '#include "(simulator|core)/')"
exit $climbs
