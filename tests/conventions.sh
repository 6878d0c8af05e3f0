#!/bin/bash
# SPDX-License-Identifier: GPL-3.0-or-later
# The rules of this code base that a program can check. Says every breach, and fails when there is one.
set -uo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

breaches=0
breach() {
    echo "$1"
    breaches=$((breaches + 1))
}

# Each file as ours: tracked, or new and not ignored.
ours() { git -c safe.directory='*' ls-files --cached --others --exclude-standard -- "$@" | while read -r file; do [ -f "$file" ] && echo "$file"; done; }
if ! git -c safe.directory='*' rev-parse --git-dir >/dev/null 2>&1; then
    ours() { find . -path ./build -prune -o -type f -print | sed 's,^\./,,' | grep -E "$(printf '%s\n' "$@" | sed -e 's/[.]/\\./g' -e 's/\*/.*/g' -e 's/$/$/' | paste -sd'|')"; }
fi

mapfile -t sources < <(ours '*.cpp' '*.h' | sort -u)
[ ${#sources[@]} -gt 0 ] || breach "No source files were found: the check itself is broken."
mapfile -t qml < <(ours '*.qml' | sort -u)

# Layout of the code.
clang-format-19 --dry-run -Werror "${sources[@]}" || breach "clang-format: run clang-format-19 -i on the files above."

# Length: a longer file is telling about a missing piece.
for file in "${sources[@]}" "${qml[@]}"; do
    case $file in
    src/*)
        lines=$(wc -l <"$file")
        [ "$lines" -le 400 ] || breach "$file: $lines lines; files in src have 400 at most."
        ;;
    esac
done

# Looks: colours, sizes, spaces and times come from presentation/tokens. Hairlines below five pixels are left alone.
colour='"#[0-9a-fA-F]{3,8}"|Qt\.(rgba|hsla|hsva|darker|lighter|tint)\(|"(transparent|black|white)"|[cC]olor: *"[a-z]+"'
measure='(margins|Margin|[sS]pacing|[pP]adding|radius|pixelSize|pointSize): *-?([5-9]|[1-9][0-9])|(duration|delay): *[1-9]'
size='(size|[hH]eight|[wW]idth)(: *| *[<>]=? *)([^,"]*\? *)?([5-9]|[1-9][0-9]+)\b|: ([5-9]|[1-9][0-9]+)$|\bopacity: .*\b0\.'
for file in "${qml[@]}"; do
    literals=$(grep -nE "$colour|$measure|$size" "$file" | sed "s,^,$file:,")
    [ -z "$literals" ] || breach "$literals"$'\n'"$file: colours and measures are tokens."
done

# QML is typed: a property that holds a model names its class. These take what has no one class, such as a value or null.
untyped='controls/(PrimaryFilledButtonStyle|SheetLoader)|dialogs/BulkFilePickerView|dashboard/EnhancedEmptyStateView'
# What is made from a component sees its surroundings by their ids alone, as the compiler does. A Loader of Qt 6.4 cannot
# make such a component: there, a Repeater of one or none serves.
component='(delegate|sourceComponent): |(Component|Repeater|Instantiator) \{|^ *component '
for file in "${qml[@]}"; do
    [[ $file =~ $untyped ]] || ! grep -nE 'property (QtObject|var|variant) ' "$file" /dev/null ||
        breach "$file: the properties above name a class."
    ! grep -qE "$component" "$file" || grep -q '^pragma ComponentBehavior: Bound' "$file" ||
        breach "$file: begins with pragma ComponentBehavior: Bound."
    ! grep -qE '^ *Loader \{' "$file" || breach "$file: a Loader cannot make a bound component."
    for header in src/*/"$(basename "$file" .qml)".h src/*/*/"$(basename "$file" .qml)".h; do
        [ ! -f "$header" ] ||
            breach "$header: a class has another name than a QML file, such as $(basename "$file" .qml)Model."
    done
done

# Every file says its licence.
while read -r file; do
    head -5 "$file" | grep -q 'SPDX-License-Identifier: ' || breach "$file: has no SPDX line."
done < <(printf '%s\n' "${sources[@]}" "${qml[@]}"; ours '*CMakeLists.txt' '*.cmake' '*.py' '*.sh' run test 'tools/*/run' 'fuzz/run')

# Tests: each is in a target, and none may be passed over. A test that cannot run fails.
while read -r file; do
    folder=$(dirname "$file")
    grep -qw -- "$(basename "${file%.*}")" "$folder"/CMakeLists.txt "$folder"/*/CMakeLists.txt 2>/dev/null ||
        breach "$file: no target in $folder/CMakeLists.txt lists it."
done < <(ours 'tests/*.cpp' 'tests/*_test.py' 'fuzz/*.cpp' 'bench/*.cpp')
skips='GTEST_SKIP|DISABLED_|QSKIP|unittest\.skip|SkipTest|skipTest|SKIP_RETURN_CODE'
skipped=$(grep -nE "$skips" $(ours 'tests/*.cpp' 'tests/*.h' 'tests/*.py' '*CMakeLists.txt' '*.cmake') /dev/null)
[ -z "$skipped" ] || breach "$skipped"$'\n'"Tests are not skipped."

# Every symbol of a shared instance stands in one place.
elsewhere=$(grep -nE '^[A-Za-z]+ &[A-Za-z]+::shared\(\)' $(ours 'src/*.cpp') /dev/null | grep -v '^src/SharedInstances.cpp')
[ -z "$elsewhere" ] || breach "$elsewhere"$'\n'"shared() is defined in src/SharedInstances.cpp alone."

# Every key of the settings is spelled in one place.
keys=$(grep -oE 'etting<[^;]*\{"[A-Za-z]+"' src/settings/Settings.h | grep -oE '[A-Za-z]+"$' | sort -u | paste -sd'|' | tr -d '"')
[ -n "$keys" ] || breach "src/settings/Settings.h: no keys were found."
spelled=$(grep -nE "Literal\(\"($keys)\"\)|QLatin1String\(\"($keys)\"\)" $(ours 'src/*.cpp' 'src/*.h') /dev/null | grep -v '^src/settings/Settings.h')
[ -z "$spelled" ] || breach "$spelled"$'\n'"Keys of the settings are spelled in src/settings/Settings.h alone."

[ $breaches -eq 0 ] || { echo "$breaches conventions are broken."; exit 1; }
echo "All conventions hold over ${#sources[@]} C++ and ${#qml[@]} QML files."
