#!/usr/bin/env bash
# Builds the Debian package and leaves it in build/. With --check it builds it twice, in two folders
# and two environments, wants the same bytes both times, has lintian look at it, installs it into an
# empty root, runs it there, and removes it.
set -euo pipefail
cd "$(dirname "$0")/.."
source scripts/need.sh
need git g++ cmake make dpkg scdoc gzip
export SOURCE_DATE_EPOCH=${SOURCE_DATE_EPOCH:-$(git log -1 --format=%ct)}
umask 022  # the members of the archive get it

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

fault() {
  echo "$*" >&2
  exit 1
}

# Builds the tree as it stands here in a copy of its own, $work/$1, and leaves the package there.
build() {
  local copy=$work/$1
  mkdir -p "$copy"
  git ls-files -coz --exclude-standard | xargs -0 cp --parents -t "$copy"
  (cd "$copy" && cmake --preset package && cmake --build --preset package &&
    cpack --config build/package/CPackConfig.cmake -B "$copy") >"$copy.log" 2>&1 ||
    fault "$(cat "$copy.log")"
}

build one
package=$(basename "$work"/one/*.deb)
mkdir -p build
rm -f build/tivelo_*.deb
cp "$work/one/$package" build/
ls -l "build/$package"
[ "${1:-}" = --check ] || exit 0

need lintian mandoc
(TZ=Pacific/Auckland LC_ALL=C.UTF-8 build another/place)
for made in build/package/tivelo build/package/tivelo.1 "$package"; do
  cmp "$work/one/$made" "$work/another/place/$made"
done
# As raw bytes: a path may stand anywhere in them.
! grep -qaF "$work" "$work/one/build/package/tivelo" || fault "the program names the folder it was built in"
dpkg-deb -c "build/$package" | awk '{ print $6 }' | LC_ALL=C sort -c
echo "the same bytes in two folders"

lintian --allow-root --fail-on error,warning "build/$package"

# An empty root. Who is not root becomes it in a name space of their own.
root=$work/root
as_root() { if [ "$(id -u)" -eq 0 ]; then "$@"; else unshare -r "$@"; fi; }
manage() { PATH=$PATH:/usr/sbin:/sbin as_root dpkg --root="$root" --log="$work/dpkg.log" "$@" >>"$work/dpkg.out"; }
inside() { as_root chroot "$root" /usr/bin/tivelo "$@"; }
mkdir -p "$root"/var/lib/dpkg/{info,updates}
touch "$root"/var/lib/dpkg/{status,available}

manage --install "build/$package"
manage --verify tivelo
[ -n "$(find "$root/usr" -name '*.so*' -o -path '*/bin/*' ! -name tivelo)" ] && fault "not empty"
value=1606938044258990275541962092341162602522202993782792835301376
[ "$(inside -e '2^200')" = $value ] || fault "it does not run in an empty root"
zcat "$root/usr/share/man/man1/tivelo.1.gz" >"$work/tivelo.1"
mandoc -T lint "$work/tivelo.1"
[[ $(mandoc -T ascii "$work/tivelo.1" | col -b) == *'tivelo - exact calculator'* ]] || fault "no manual page"
manage --purge tivelo
left=$(find "$root" -mindepth 1 ! -path "$root/var*")
[ -z "$left" ] || fault "left behind: $left"
echo "installed, run and removed in an empty root"
