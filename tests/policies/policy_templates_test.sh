#!/usr/bin/env bash
# The administrative templates against the sources: well-formed XML, every reference resolved in
# both languages, every policy on the suite's own key, and the policies naming exactly the values
# that the programs read from that key (with the same machine/user split). A value that the code
# starts to read, or stops reading, makes this fail until the templates (or the short list of
# values that are deliberately no policy) say so too.
#
# usage: policy_templates_test.sh SOURCE_DIR
set -uo pipefail
src="${1:?usage: $0 SOURCE_DIR}"
admx="$src/data/windows/policies/Paperlark.admx"
admls=("$src/data/windows/policies/en-US/Paperlark.adml" "$src/data/windows/policies/de-DE/Paperlark.adml")
key='Software\tobrin\PaperlarkXP'

# Values the programs read from their keys that are deliberately not offered as policies, each with
# the reason. Every name here must still be read by the code.
not_policies=(
    OpenPdf       # the user's last choice in the dialog, remembered by the assistant
    LastDir       # the last folder saved to, remembered by the assistant
    PDFJoinSize   # the size of the sort dialog, remembered by the assistant
    plDir         # the suite folder, written by the installer
    gswin32c      # Ghostscript, chosen when installing
    Version Build # written by the installer, quoted in error reports
    language LanFile # the user's language, chosen in the configuration program
    DisableFCN    # kept for older installations; nothing consults it
    Support       # the vendor's support line in the dialog
    Desktop       # a desktop folder of the suite's own, for installations that redirect it
)

failures=0
fail() {
    echo "FAIL: $*"
    failures=$((failures + 1))
}
xp() { xmllint --xpath "$2" "$1" 2>/dev/null; }
lower() { tr '[:upper:]' '[:lower:]'; }

for file in "$admx" "${admls[@]}"; do
    xmllint --noout "$file" || fail "$file is not well-formed XML"
done
((failures == 0)) || exit 1

# --- the templates' own consistency -------------------------------------------------------------
policy() { echo "(//*[local-name()='policy'])[$1]"; }
count=$(xp "$admx" "count(//*[local-name()='policy'])")
((count > 0)) || fail "no policy in $admx"
template_pairs=()
for ((i = 1; i <= count; i++)); do
    p=$(policy "$i")
    name=$(xp "$admx" "string($p/@name)")
    [ "$(xp "$admx" "string($p/@key)")" = "$key" ] || fail "policy $name does not write to $key"
    values=$(xp "$admx" "count($p/@valueName | $p//*/@valueName)")
    [ "$values" = 1 ] || fail "policy $name names $values values, not one"
    value=$(xp "$admx" "string(($p/@valueName | $p//*/@valueName)[1])")
    case "$(xp "$admx" "string($p/@class)")" in
        Machine) template_pairs+=("Machine $value") ;;
        User) template_pairs+=("User $value") ;;
        Both) template_pairs+=("Machine $value" "User $value") ;;
        *) fail "policy $name has no class Machine, User or Both" ;;
    esac
    # The presentation's controls and the policy's elements name each other exactly.
    presentation=$(xp "$admx" "string($p/@presentation)" | sed -n 's/^\$(presentation\.\(.*\))$/\1/p')
    elements=$(xp "$admx" "$p/*[local-name()='elements']/*/@id" | grep -o '"[^"]*"' | tr -d '"' | sort)
    for adml in "${admls[@]}"; do
        refs=""
        [ -n "$presentation" ] &&
            refs=$(xp "$adml" "//*[local-name()='presentation'][@id='$presentation']/*/@refId" | grep -o '"[^"]*"' |
                tr -d '"' | sort)
        [ "$refs" = "$elements" ] || fail "policy $name: elements [$elements] but $(basename "$(dirname "$adml")") shows [$refs]"
    done
done

# Every $(string.X) and $(presentation.X) of the ADMX is in each language, and both languages hold
# the same strings.
for kind in string presentation; do
    refs=$(grep -o "\$($kind\.[A-Za-z0-9_]*)" "$admx" | sed "s/^\$($kind\.\(.*\))$/\1/" | sort -u)
    for adml in "${admls[@]}"; do
        for ref in $refs; do
            [ "$(xp "$adml" "count(//*[local-name()='$kind'][@id='$ref'])")" = 1 ] ||
                fail "$(basename "$(dirname "$adml")") lacks $kind $ref"
        done
    done
done
ids() { xp "$1" "//*[local-name()='string']/@id" | grep -o '"[^"]*"' | sort; }
[ "$(ids "${admls[0]}")" = "$(ids "${admls[1]}")" ] || fail "the two languages hold different strings"

# --- what the code reads --------------------------------------------------------------------------
# Each source file as one line, so that a call broken over lines is still one match.
code=$(find "$src/src" "$src/converter" -name '*.cpp' -o -name '*.h' | sort | while read -r f; do
    tr '\n' ' ' <"$f"
    echo
done)
# Names held in constants ("SupportMailValue = "SupportMail"").
declare -A constants
while read -r constant value; do
    constants[$constant]=$value
done < <(grep -oP '\b\w+Value\s*=\s*"\w+"' <<<"$code" | sed -E 's/^(\w+)\s*=\s*"(\w+)"$/\1 \2/')
resolve() {
    case "$1" in
        \"*) tr -d '"' <<<"$1" ;;
        *) echo "${constants[$1]:-}" ;;
    esac
}
code_pairs=()
# A read names the key and then the value: (UserKey, "X") or {MachineKey, X}; a variable `key` stands
# for either key (loops over both).
while read -r which name; do
    value=$(resolve "$name")
    [ -n "$value" ] || continue
    case "$which" in
        *User*) code_pairs+=("User $value") ;;
        *Machine*) code_pairs+=("Machine $value") ;;
        *) code_pairs+=("Either $value") ;;
    esac
done < <(grep -oP '\b(k?(Suite)?(User|Machine)Key|key)\s*,\s*("\w+"|\w+Value)\s*[)}]' <<<"$code" |
    sed -E 's/^(\w+)\s*,\s*("?\w+"?)\s*[)}]$/\1 \2/')
while read -r name; do
    code_pairs+=("User $name" "Machine $name")
done < <(grep -oP 'userThenMachine\([^;]*?,\s*"\w+"\s*\)' <<<"$code" | sed -E 's/.*"(\w+)"\s*\)$/\1/')
((${#code_pairs[@]} > 20)) || fail "found only ${#code_pairs[@]} registry reads in the sources; the search is broken"

has() { # has PAIR LIST...: case-blind, as registry names are
    local wanted=${1,,} item
    shift
    for item in "$@"; do [ "${item,,}" = "$wanted" ] && return 0; done
    return 1
}
code_names=$(printf '%s\n' "${code_pairs[@]}" | cut -d' ' -f2 | lower | sort -u)
template_names=$(printf '%s\n' "${template_pairs[@]}" | cut -d' ' -f2 | lower | sort -u)
excluded=$(printf '%s\n' "${not_policies[@]}" | lower | sort -u)

for pair in "${template_pairs[@]}"; do
    has "$pair" "${code_pairs[@]}" || has "Either ${pair#* }" "${code_pairs[@]}" ||
        fail "the templates set $pair, which the code never reads there"
done
for pair in "${code_pairs[@]}"; do
    name=${pair#* }
    name=${name,,}
    grep -qxF "$name" <<<"$excluded" && continue
    grep -qxF "$name" <<<"$template_names" || { fail "the code reads ${pair#* }, which no template sets"; continue; }
    case "$pair" in
        Either*) ;;
        *) has "$pair" "${template_pairs[@]}" || fail "the code reads $pair, which no template sets there" ;;
    esac
done
for name in $excluded; do
    grep -qxF "$name" <<<"$code_names" || fail "$name is listed as no policy but the code does not read it"
    grep -qxF "$name" <<<"$template_names" && fail "$name is both a policy and listed as no policy"
done

# POLICY_TEST_VERBOSE=1 lists what was found in the sources.
[ -n "${POLICY_TEST_VERBOSE:-}" ] && printf "%s\n" "${code_pairs[@]}" | sort -u
echo "$count policies, $(wc -l <<<"$template_names") values, $(wc -l <<<"$code_names") values read by the code"
((failures == 0))
