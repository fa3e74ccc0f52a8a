# Sourced by the other scripts. "need THING..." makes sure that commands, headers and files are there:
# where the user is root and has apt-get it installs what is missing, elsewhere it names it.
# "want THING..." does the same for what one can do without, and never fails.
# Builds and tests that follow run as many jobs as the machine has processors, unless told otherwise.

JOBS=$(nproc 2>/dev/null || echo 2)
export CMAKE_BUILD_PARALLEL_LEVEL=${CMAKE_BUILD_PARALLEL_LEVEL:-$JOBS}
export CTEST_PARALLEL_LEVEL=${CTEST_PARALLEL_LEVEL:-$JOBS}

declare -A PACKAGE=([clang++]=clang [gtest/gtest.h]=libgtest-dev [gmp.h]=libgmp-dev
                    [histedit.h]=libedit-dev [benchmark/benchmark.h]=libbenchmark-dev [/usr/share/i18n/locales]=locales
                    [aarch64-linux-gnu-g++]=g++-aarch64-linux-gnu [qemu-aarch64]=qemu-user
                    [dpkg-deb]=dpkg [apt-get]=apt)

have() {
  case $1 in
    /*) [ -e "$1" ] ;;
    *.h) echo "#include <$1>" | g++ -E -x c++ - >/dev/null 2>&1 ;;
    *) command -v "$1" >/dev/null ;;
  esac
}

need() {
  local thing missing=()
  for thing in "$@"; do
    have "$thing" || missing+=("${PACKAGE[$thing]:-$thing}")
  done
  [ ${#missing[@]} -eq 0 ] && return
  if [ "$(id -u)" -eq 0 ] && command -v apt-get >/dev/null; then
    apt-get -q update
    DEBIAN_FRONTEND=noninteractive apt-get -q install -y --no-install-recommends "${missing[@]}"
  else
    echo "Missing: ${missing[*]}. On Debian: sudo apt-get install ${missing[*]}" >&2
    exit 1
  fi
}

want() { (need "$@") || echo "Going on without: $*" >&2; }
