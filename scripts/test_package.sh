#!/usr/bin/env bash
# Builds the Debian packages, installs them in a clean root, works there with what they bring, and removes them again.
# As root; needs debootstrap and the network, and takes some minutes.
#
#   scripts/test_package.sh [--fresh] [--pictures FOLDER]
#
# The bare system is kept as build/clean_root.tar for the next time; --fresh builds it again. DEBIAN_MIRROR names the
# mirror; without it the one that apt uses here is taken.
# shellcheck disable=SC2016,SC1091  # apt fills in its own names; the release is not known here
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

fail() { echo "FAILED: $*" >&2; exit 1; }
step() { printf '== %s\n' "$*"; }

fresh=no
pictures=build/package_pictures
while [ $# -gt 0 ]; do
  case "$1" in
    --fresh) fresh=yes ;;
    --pictures) pictures="${2:?--pictures needs a folder}"; shift ;;
    *) sed -n '2,8s/^# \{0,1\}//p' "$0"; exit 2 ;;
  esac
  shift
done

[ "$(id -u)" -eq 0 ] || fail "this installs packages in a root of its own: run it as root"
for tool in cmake cpack debootstrap dpkg-shlibdeps unshare; do
  command -v "$tool" >/dev/null || fail "$tool is missing (packages: cmake, debootstrap, dpkg-dev, util-linux)"
done

step "Building the packages"
cmake --preset release >/dev/null
cmake --build --preset release --target brenlox brenlox_batch brenlox_make_samples brenlox_python
rm -rf build/package
cpack --config build/release/CPackConfig.cmake -B build/package
package="$(ls build/package/brenlox_*.deb)"
python_package="$(ls build/package/python3-brenlox_*.deb)"
dpkg-deb --info "$package"
dpkg-deb --info "$python_package"
if command -v lintian >/dev/null; then
  # The developers have no mail address, and the package is for no archive.
  lintian --fail-on error,warning --suppress-tags \
    bogus-mail-host,bogus-mail-host-in-debian-changelog,initial-upload-closes-no-bugs "$package" "$python_package" ||
    fail "lintian finds fault with the packages"
else
  echo "lintian isn't there and isn't asked"
fi

# Mounts and processes in the root live in namespaces of their own: they end with the command, however it ends.
apart() { unshare --mount --pid --fork --kill-child "$@"; }
base=build/clean_root.tar
work="$(realpath "$(mktemp -d build/package_test.XXXXXX)")"
root="$work/root"
log="$work/apt.log"
mkdir "$root"
trap 'rm -rf --one-file-system "$work"' EXIT
trap 'exit 130' INT TERM

mirror_of_apt() {
  apt-get indextargets --format '$(SITE)' 'Identifier: Packages' "Codename: $1" | sed -n 1p
}
if [ "$fresh" = yes ] || [ ! -f "$base" ]; then
  step "Making a bare system"
  release="$(. /etc/os-release && echo "$VERSION_CODENAME")"
  mirror="${DEBIAN_MIRROR:-$(mirror_of_apt "$release")}"
  [ -n "$mirror" ] || fail "apt has no mirror of $release here: name one as DEBIAN_MIRROR"
  apart debootstrap --variant=minbase "$release" "$root" "$mirror"
  # More of the same system as here: the package is built against its updates.
  apt-get indextargets --format 'deb $(SITE) $(RELEASE) $(COMPONENT)' 'Identifier: Packages' | sort -u |
    grep " $release" >"$root/etc/apt/sources.list.d/host.list" || true
  apt-config dump Acquire | grep -iE '^Acquire::(http|https|Check)' >"$root/etc/apt/apt.conf.d/90host" || true
  rm -f "$root"/var/cache/apt/archives/*.deb
  tar -C "$root" --one-file-system -cf "$work/base.tar" .
  mv "$work/base.tar" "$base"
else
  tar -C "$root" -xf "$base"
fi
cp /etc/resolv.conf "$root/etc/resolv.conf"

clean_environment=(PATH=/usr/sbin:/usr/bin:/sbin:/bin LC_ALL=C.UTF-8 DEBIAN_FRONTEND=noninteractive)
as_root() {
  apart --mount-proc="$root/proc" chroot "$root" /usr/bin/env -i "${clean_environment[@]}" HOME=/root "$@"
}
as_user() {  # in the user's home, as a desktop would start a program
  apart --mount-proc="$root/proc" chroot --userspec=1000:1000 "$root" /usr/bin/env -i "${clean_environment[@]}" \
    HOME=/home/surveyor XDG_RUNTIME_DIR=/home/surveyor/run "$@"
}
install() { as_root apt-get install -y -q --no-install-recommends "$@" >>"$log" 2>&1; }
apt_failed() { tail -n 20 "$log" >&2; fail "$1"; }

step "Installing it with what it depends on"
as_root useradd --uid 1000 --create-home surveyor
as_user mkdir -m 700 /home/surveyor/run
cp "$package" "$root/tmp/brenlox.deb"
cp "$python_package" "$root/tmp/python3-brenlox.deb"
as_root apt-get update -q >>"$log" 2>&1 || apt_failed "apt reaches no mirror"
install /tmp/brenlox.deb || apt_failed "the package can't be installed"

step "Working without a window"
cp scripts/package_checks.sh "$root/tmp/"
as_user bash /tmp/package_checks.sh work || fail "the installed programs don't do their work"

step "Working from Python"
install /tmp/python3-brenlox.deb || apt_failed "the package for Python can't be installed"
as_user bash /tmp/package_checks.sh python || fail "the package for Python doesn't do its work"

step "Opening a survey from a desktop"
install desktop-file-utils imagemagick libglib2.0-bin shared-mime-info x11-utils xdg-utils xvfb ||
  apt_failed "the desktop's tools can't be installed"
as_user bash /tmp/package_checks.sh desktop || fail "the survey doesn't open from a desktop"
mkdir -p "$pictures"
cp -r "$root/home/surveyor/pictures/." "$pictures"

step "Removing them"
as_root apt-get purge -y -q brenlox python3-brenlox >>"$log" 2>&1 || apt_failed "the packages can't be removed"
rm -rf "$root/home/surveyor" "$root/tmp/brenlox.deb" "$root/tmp/python3-brenlox.deb"
as_root bash /tmp/package_checks.sh removed || fail "something of them stays behind"
echo "The packages install, work and go. Pictures of its windows: $pictures"
