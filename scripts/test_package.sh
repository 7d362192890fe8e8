#!/usr/bin/env bash
# Builds the Debian package, installs it with what it depends on into a clean root, and starts both programs
# there on a new survey. As root; needs debootstrap and the network.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

cmake --preset release
cmake --build --preset release --target all
rm -rf build/package
cpack --config build/release/CPackConfig.cmake -B build/package
package="$(ls build/package/brenlox_*.deb)"
dpkg-deb --info "$package"

root="${1:-build/clean_root}"
# shellcheck disable=SC2086  # no mirror, no argument
[ -e "$root/usr/bin/dpkg" ] || debootstrap --variant=minbase bookworm "$root" ${DEBIAN_MIRROR:-}
cp "$package" "$root/tmp/brenlox.deb"
cp /etc/resolv.conf "$root/etc/resolv.conf"
in_root() { chroot "$root" /usr/bin/env -i PATH=/usr/sbin:/usr/bin:/sbin:/bin HOME=/root LC_ALL=C.UTF-8 DEBIAN_FRONTEND=noninteractive "$@"; }
in_root apt-get update -q
in_root apt-get install -y -q --no-install-recommends --reinstall /tmp/brenlox.deb

in_root sh -euc '
  cd /tmp
  rm -rf survey && mkdir survey && cd survey
  brenlox_batch new survey.mdb
  QT_QPA_PLATFORM=offscreen brenlox survey.mdb --screenshots pictures
  test -s pictures/main_window.png
  brenlox --version
'
echo "The installed package starts and works in $root"
