#!/bin/bash
# SPDX-License-Identifier: GPL-3.0-or-later
# Checks the conventions of this code base that a program can check. Prints every violation, and fails if there is one.
set -uo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

violations=0
violation() {
    echo "$1"
    violations=$((violations + 1))
}

# Prints the files that match: the tracked ones, and new ones that are not ignored.
ours() { git -c safe.directory='*' ls-files --cached --others --exclude-standard -- "$@" | while read -r file; do [ -f "$file" ] && echo "$file"; done; }
if ! git -c safe.directory='*' rev-parse --git-dir >/dev/null 2>&1; then
    ours() { find . -path ./build -prune -o -type f -print | sed 's,^\./,,' | grep -E "$(printf '%s\n' "$@" | sed -e 's/[.]/\\./g' -e 's/\*/.*/g' -e 's/$/$/' | paste -sd'|')"; }
fi

mapfile -t sources < <(ours '*.cpp' '*.h' | sort -u)
[ ${#sources[@]} -gt 0 ] || violation "No source files were found: the check itself is broken."
mapfile -t qml < <(ours '*.qml' | sort -u)

# Layout of the code.
clang-format-19 --dry-run -Werror "${sources[@]}" || violation "clang-format: run clang-format-19 -i on the files above."

# Length: a longer file should be split.
for file in "${sources[@]}" "${qml[@]}"; do
    case $file in
    src/*)
        lines=$(wc -l <"$file")
        [ "$lines" -le 400 ] || violation "$file: $lines lines; files in src have at most 400."
        ;;
    esac
done

# Appearance: colours, sizes, spacing and durations are tokens in presentation/tokens. Widths below five pixels are allowed.
colour='"#[0-9a-fA-F]{3,8}"|Qt\.(rgba|hsla|hsva|darker|lighter|tint)\(|"(transparent|black|white)"|[cC]olor: *"[a-z]+"'
measure='(margins|Margin|[sS]pacing|[pP]adding|radius|pixelSize|pointSize): *-?([5-9]|[1-9][0-9])|(duration|delay): *[1-9]'
size='(size|[hH]eight|[wW]idth)(: *| *[<>]=? *)([^,"]*\? *)?([5-9]|[1-9][0-9]+)\b|: ([5-9]|[1-9][0-9]+)$|\bopacity: .*\b0\.'
for file in "${qml[@]}"; do
    literals=$(grep -nE "$colour|$measure|$size" "$file" | sed "s,^,$file:,")
    [ -z "$literals" ] || violation "$literals"$'\n'"$file: colours and measures must be tokens."
done

# QML is typed: a property that holds a model names its class. These files have a property with values of several types.
untyped='controls/(PrimaryFilledButtonStyle|SheetLoader)|dialogs/(BulkFilePickerView|RescueDialog)|dashboard/EnhancedEmptyStateView'
# A component in QML accesses its surroundings only by their ids, which the compiler checks. The Loader of Qt 6.4 cannot
# create such a component: use a Repeater with one item or none instead.
component='(delegate|sourceComponent): |(Component|Repeater|Instantiator) \{|^ *component '
for file in "${qml[@]}"; do
    [[ $file =~ $untyped ]] || ! grep -nE 'property (QtObject|var|variant) ' "$file" /dev/null ||
        violation "$file: the properties above must name a class."
    ! grep -qE "$component" "$file" || grep -q '^pragma ComponentBehavior: Bound' "$file" ||
        violation "$file: must begin with pragma ComponentBehavior: Bound."
    ! grep -qE '^ *Loader \{' "$file" || violation "$file: a Loader cannot create a bound component."
    for header in src/*/"$(basename "$file" .qml)".h src/*/*/"$(basename "$file" .qml)".h; do
        [ ! -f "$header" ] ||
            violation "$header: a class must not have the name of a QML file; name it $(basename "$file" .qml)Model."
    done
done

# Every file has a licence line.
while read -r file; do
    head -5 "$file" | grep -q 'SPDX-License-Identifier: ' || violation "$file: has no SPDX line."
done < <(printf '%s\n' "${sources[@]}" "${qml[@]}"; ours '*CMakeLists.txt' '*.cmake' '*.py' '*.sh' run test 'tools/*/run' 'fuzz/run')

# Every symbol that a QML file names has a drawing.
symbols=$(grep -hE '\b([sS]ymbol|icon): ' "${qml[@]}" | grep -oE '"[a-z0-9.]+"' | tr -d '"' | sort -u)
[ -n "$symbols" ] || violation "No names of symbols were found: the check itself is broken."
for symbol in $symbols; do
    [ -f "src/presentation/tokens/symbols/$symbol.svg" ] || violation "src/presentation/tokens/symbols/$symbol.svg: is missing."
done

# Tests: each is listed in a target, and none may be skipped. A test that cannot run fails.
while read -r file; do
    folder=$(dirname "$file")
    grep -qw -- "$(basename "${file%.*}")" "$folder"/CMakeLists.txt "$folder"/*/CMakeLists.txt 2>/dev/null ||
        violation "$file: no target in $folder/CMakeLists.txt lists it."
done < <(ours 'tests/*.cpp' 'tests/*_test.py' 'fuzz/*.cpp' 'bench/*.cpp')
skips='GTEST_SKIP|DISABLED_|QSKIP|unittest\.skip|SkipTest|skipTest|SKIP_RETURN_CODE'
skipped=$(grep -nE "$skips" $(ours 'tests/*.cpp' 'tests/*.h' 'tests/*.py' '*CMakeLists.txt' '*.cmake') /dev/null)
[ -z "$skipped" ] || violation "$skipped"$'\n'"Tests must not be skipped."

# Every shared() is defined in one file.
elsewhere=$(grep -nE '^[A-Za-z]+ &[A-Za-z]+::shared\(\)' $(ours 'src/*.cpp') /dev/null | grep -v '^src/SharedInstances.cpp')
[ -z "$elsewhere" ] || violation "$elsewhere"$'\n'"shared() must be defined in src/SharedInstances.cpp only."

# Every key of the settings is spelled in one place.
keys=$(grep -oE 'etting<[^;]*\{"[A-Za-z]+"' src/settings/Settings.h | grep -oE '[A-Za-z]+"$' | sort -u | paste -sd'|' | tr -d '"')
[ -n "$keys" ] || violation "src/settings/Settings.h: no keys were found."
spelled=$(grep -nE "Literal\(\"($keys)\"\)|QLatin1String\(\"($keys)\"\)" $(ours 'src/*.cpp' 'src/*.h') /dev/null | grep -vE '^src/(settings/Settings.h|autolock/SmartAutoLockRules.cpp)') # The rules have a field of the same name.
[ -z "$spelled" ] || violation "$spelled"$'\n'"Keys of the settings must be spelled in src/settings/Settings.h only."

[ $violations -eq 0 ] || { echo "$violations violations of the conventions."; exit 1; }
echo "All conventions are met in ${#sources[@]} C++ and ${#qml[@]} QML files."
