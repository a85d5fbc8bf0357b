#!/bin/sh
# Uses the development package in directory $2 as a page author does, with the compiler $CXX: builds
# the example pages, which the manual page quotes, with CMake, the manual's own example with
# pkg-config, and overloads.cpp in directory $1 for every C++ standard. No library name may clash
# with a page's own.
# shellcheck disable=SC2086 # flags are words
set -eu
tree=$(mktemp -d)
trap 'rm -rf "$tree"' EXIT
dpkg-deb -x "$2"/libcgilib-dev_*.deb "$tree"
usr=$tree/usr
library=$(find "$usr" -name libcgilib.a)
flags=$(PKG_CONFIG_PATH=${library%/*}/pkgconfig pkg-config --cflags --libs cgilib)

# The pages keep their own standard, and it is sufficient.
documents=$usr/share/doc/libcgilib-dev
cmake -G Ninja -S "$documents/examples/pages" -B "$tree/pages" -DCMAKE_PREFIX_PATH="$usr" \
    -DCMAKE_CXX_COMPILER="$CXX" -DCMAKE_CXX_STANDARD=11
cmake --build "$tree/pages"
grep -q std=gnu++11 "$tree/pages/build.ninja"

gzip -dc "$usr/share/man/man3/cgilib.3.gz" >"$tree/manual"
sed -n '/^#include/,/^\.Ed/{/^\.Ed/d; s/\\e/\\/g; p;}' "$tree/manual" >"$tree/greeting.cpp"
"$CXX" "$tree/greeting.cpp" -o "$tree/greeting" $flags
REQUEST_METHOD=GET QUERY_STRING='name=%22%3E%3Cscript%3E' ${KESTO_EMULATOR:-} "$tree/greeting" \
    >"$tree/page.html"
grep 'Hello.*&quot;&gt;&lt;script&gt;' "$tree/page.html"
sed -n '/^\(void\|bool\|std::string\) .*)$/,/^}/{s/\\e/\\/g; p;}' "$tree/manual" >"$tree/quoted"
cat "$documents"/examples/pages/*_page.cpp >"$tree/pages.cpp"
grep -q Set-Cookie "$tree/quoted"
if grep -vxFf "$tree/pages.cpp" "$tree/quoted"; then exit 1; fi

for standard in ${KESTO_STANDARDS:-11 14 17 20 2b}; do
    for compiler in "$CXX" $(command -v clang++ || true); do
        "$compiler" -std=c++$standard -I"$usr/include" -fsyntax-only "$1/overloads.cpp"
    done
done
"$CXX" -std=c++11 "$1/overloads.cpp" -o "$tree/overloads" $flags
${KESTO_EMULATOR:-} "$tree/overloads"

# The whole library can be linked into a shared object, which shows the names that it defines.
"$CXX" -shared -o "$tree/all.so" -Wl,--whole-archive "$library" -Wl,--no-whole-archive
"$NM" -DC --defined-only "$tree/all.so" >"$tree/names"
grep -q ' cCGI::ParseData()$' "$tree/names"
own='cCGI::|(vtable|typeinfo|typeinfo name) for cCGI$|Htoi\(|Escape(Html|Url)\(|GetCookie\('
own="$own|operator<<\(std::ostream&, cCGI const&\)$"
foreign=$(sed 's/^[0-9a-f]* . //' "$tree/names" | grep -vE "^($own|(void )?std::)" || true)
[ -z "$foreign" ] || { echo "These names may clash with a page's own: $foreign" >&2 && exit 1; }

# The packages can be installed and purged twice, and leave nothing behind either time.
mkdir -p "$tree/root/var/lib/dpkg/info" "$tree/root/var/lib/dpkg/updates"
touch "$tree/root/var/lib/dpkg/status"
manage="dpkg --root=$tree/root --log=/dev/null --force-not-root --force-bad-path --force-depends"
manage="$manage --force-architecture"
for _ in first second; do
    $manage -i "$2"/*.deb
    test -x "$tree/root/usr/lib/cgi-bin/query"
    $manage -P kesto-query libcgilib-dev
    test -z "$(find "$tree/root" -path '*/var/lib/dpkg' -prune -o -type f -print)"
done
