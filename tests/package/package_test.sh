#!/bin/bash
# Installs a build, moves what was installed, and uses it as another project would: the examples and a consumer of the
# test's own, by find_package and by pkg-config, each public header alone, and the products themselves.
#
#   package_test.sh SOURCE_FOLDER BUILD_FOLDER CMAKE CXX_COMPILER
#
# All of it happens in a fresh folder with a blank in its name. Where GTEST_OUTPUT asks for a report, one is written.
set -u
# shellcheck source=tests/support/checks.sh
source "$(dirname "${BASH_SOURCE[0]}")/../support/checks.sh"
# Ninja is what the project itself builds with; make need not be there.
export CMAKE_GENERATOR=Ninja
export LC_ALL=C.UTF-8
unset DISPLAY CMAKE_PREFIX_PATH Nelva_DIR CPATH CPLUS_INCLUDE_PATH LIBRARY_PATH

source=$(cd "$1" && pwd) || exit 1
build=$(cd "$2" && pwd) || exit 1
cmake=$3
compiler=$4

scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
mkdir "$scratch/away from the tree"
cd "$scratch/away from the tree" || exit 1
warnings=(-Wall -Wextra -Wpedantic -Werror)

# ---- Checking ----

# works NAME COMMAND...: its output is shown only if it fails.
works() {
    local name=$1
    shift
    cases=$((cases + 1))
    "$@" >log.txt 2>&1 && return 0
    complain "$name: $*"
    tail -n 40 log.txt
    return 1
}

finish() {
    case ${GTEST_OUTPUT-} in
        xml:*) printf '<?xml version="1.0" encoding="UTF-8"?>\n<testsuites tests="%d" failures="%d" errors="0"/>\n' \
            "$cases" "$failures" >"${GTEST_OUTPUT#xml:}" ;;
    esac
    report
}

# Without a package nothing else can be looked at.
stop_here() {
    finish
    exit 1
}

# names FOLDER PATTERN: what a folder holds, on one line.
# shellcheck disable=SC2086 # the pattern is to be filled in
names() { (cd "$1" && printf '%s\n' $2 | paste -sd' '); }

cached() { sed -n "s/^$1:[A-Z]*=//p" "$build/CMakeCache.txt"; }

# ---- The library ----

works install_devel "$cmake" --install "$build" --prefix "$PWD/made here" --component devel || stop_here
mv 'made here' 'moved there'
prefix="$PWD/moved there"
include=$prefix/include/nelva
same devel_holds_the_library_alone 'include lib share' "$(names "$prefix" '*')"
same devel_libraries 'libnelva-pcre.a libnelva-pcrecpp.a libnelva.a' "$(names "$prefix/lib" '*.a')"
same devel_has_the_licence_of_pcre 1 "$(grep -c 'PCRE is a library of functions' "$prefix/share/doc/nelva/licences/pcre-LICENCE")"

# no_paths NAME FOLDER: no file knows where it was built or first installed. With debug information, libraries do.
no_paths() {
    local text_only=-I
    [ "$(cached CMAKE_BUILD_TYPE)" == Release ] && text_only=-a
    same "$1" '' "$(cd "$2" && grep -rlF "$text_only" -e "$source" -e "$build" -e "$(cached NELVA_DEPS)" -e 'made here' .)"
}
no_paths devel_knows_no_path "$prefix"

# Standing alone, without a warning, and without any header of this tree.
while IFS= read -r header; do
    printf '#include "%s"\n#include "%s"\n' "$header" "$header" >alone.cpp
    works "header_alone: $header" "$compiler" -std=c++20 "${warnings[@]}" -fsyntax-only -I "$include" -isystem "$include/pcre" \
        alone.cpp
done < <(cd "$include" && find . -name '*.h' ! -path './pcre/*' | sed 's/..//' | sort)
for header in text/textencoding.h text/qm_stringutils.h speechtext/speechtext.h speechtext/ssml_encoder.h \
    regexp/regexp.h regexp/replacer.h fragments/spvtextfrags_to_ssml.h platform/win32.h platform/com.h platform/sapi.h \
    nelva_version.h; do
    same "has_header: $header" yes "$([ -f "$include/$header" ] && echo yes)"
done

# ---- Programs on it ----

# build_project FOLDER OPTION...: configures and builds against the package, in FOLDER/build.
build_project() {
    local name=$1
    shift
    works "$name: configure" "$cmake" -S "$name" -B "$name/build" -DCMAKE_BUILD_TYPE=Release \
        -DCMAKE_CXX_COMPILER="$compiler" -DCMAKE_CXX_FLAGS="${warnings[*]}" -DCMAKE_PREFIX_PATH="$prefix" \
        -DCMAKE_FIND_USE_PACKAGE_REGISTRY=OFF "$@" &&
        works "$name: build" "$cmake" --build "$name/build" || return 1
    same "$name: takes the moved package" "$prefix/lib/cmake/Nelva" \
        "$(sed -n 's/^Nelva_DIR:PATH=//p' "$name/build/CMakeCache.txt")"
}

# runs NAME PROGRAM EXPECTED-FILE
runs() {
    "$2" >out.txt 2>err.txt
    same "$1: exit status" 0 "$?"
    same "$1: output" "$(cat "$3")" "$(cat out.txt)"
    same "$1: error output" '' "$(cat err.txt)"
}

mkdir programs
cp -r "$source"/examples/*/ programs
rm -rf programs/tone-engine # no program on the library but a synthesiser; tests/engine_check builds it
cd programs || stop_here
examples=$(names . '*/' | tr -d /)
same there_are_examples 3 "$(wc -w <<<"$examples")"
for example in $examples; do
    build_project "$example" && runs "$example" "$example/build/$example" "$example/expected.txt"
done

cp -r "$source/tests/package/consumer" .
version=$(cached CMAKE_PROJECT_VERSION)
printf '%s\nA &lt; É\n shrd lbrry\nde\n' "$version" >consumer/expected.txt
build_project consumer -DVERSION_OF_THE_PROJECT="$version" && runs consumer consumer/build/consumer consumer/expected.txt

if command -v pkg-config >/dev/null; then
    export PKG_CONFIG_PATH=$prefix/lib/pkgconfig
    same pkg_config_version "$version" "$(pkg-config --modversion nelva)"
    # The shell has to read what pkg-config quotes.
    compile_flags=() link_flags=()
    eval "compile_flags=($(pkg-config --cflags nelva)) link_flags=($(pkg-config --libs nelva))"
    for example in $examples; do
        works "$example: by pkg-config" "$compiler" -std=c++20 "${warnings[@]}" "${compile_flags[@]}" "$example/$example.cpp" \
            "${link_flags[@]}" -o by-pkg-config && runs "$example by pkg-config" ./by-pkg-config "$example/expected.txt"
    done
fi

cd ..

# ---- The products ----

works install_all "$cmake" --install "$build" --prefix "$PWD/made here" || stop_here
mv 'made here' 'everything'
same all_holds_both 'bin include lib share' "$(names everything '*')"
no_paths all_knows_no_path everything
mkdir elsewhere
cd elsewhere || stop_here
say=../everything/bin/nelva-say
same voices_come_along "$(names "$source/data/tokens" '*.json' | sed 's/\.json\>//g')" \
    "$("$say" --list-voices | sed 's/\t.*/.json/' | sort | sed 's/\.json$//' | paste -sd' ')"
works installed_program_speaks "$say" --voice nelva-en-us -o out.wav 'Hello, world.'
cases=$((cases + 1))
[ "$(tail -c +45 out.wav | tr -d '\0' | head -c 10000 | wc -c)" == 10000 ] || complain installed_program_is_not_silent
same products_have_their_licences 0 "$(for name in sonic expat espeak-ng; do
    [ -s "../everything/share/doc/nelva/licences/$name-COPYING" ] || echo "$name"
done | wc -l)"

finish
