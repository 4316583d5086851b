#!/usr/bin/env bash
# Makes a private root with the libraries of another Debian architecture, to compile and link against
# and to run test programs in under qemu. Nothing of this machine's own packages changes: the security
# archive does not carry mipsel, so packages of two architectures would want different versions.
#
#     make_sysroot.sh ARCHITECTURE SYSROOT               e.g.  make_sysroot.sh mipsel build/sysroot/mipsel
#
# The mirror and the release are those of the machine's own apt configuration.
set -euo pipefail
architecture=$1
sysroot=$2
packages=(libc6-dev libstdc++-12-dev libcurl4-openssl-dev libmbedtls-dev libcjson-dev libssl-dev
          libgtest-dev nlohmann-json3-dev)
keyring=/usr/share/keyrings/debian-archive-keyring.gpg

[ "$(cat "$sysroot/packages" 2> /dev/null)" = "${packages[*]}" ] && exit
work=$(mktemp -d)
trap 'rm -r "$work"' EXIT
mkdir -p "$work"/{lists/partial,archives/partial,state} "$sysroot"

# The machine's first Debian archive: its address and the release.
mirror=$(apt-get indextargets --format '$(SITE) $(RELEASE) $(COMPONENT)' 'Created-By: Packages' |
  awk '$2 !~ /security|updates/ && $3 == "main" && $1 ~ /debian/ { print $1, $2; exit }')
[ -n "$mirror" ] || { echo "apt knows no Debian archive" >&2; exit 1; }
echo "deb [signed-by=$keyring] $mirror main" > "$work/sources.list"
: > "$work/status"

apt_private() {
  apt-get -q -o Dir::Etc::sourcelist="$work/sources.list" -o Dir::Etc::sourceparts=/dev/null \
    -o Dir::Etc::preferencesparts=/dev/null -o Dir::State="$work/state" \
    -o Dir::State::lists="$work/lists" -o Dir::State::status="$work/status" \
    -o Dir::Cache="$work" -o APT::Architecture="$architecture" \
    -o APT::Architectures="$architecture" -o APT::Install-Recommends=false \
    -o Debug::NoLocking=true -o APT::Sandbox::User=root -o DPkg::Post-Invoke= \
    -o APT::Update::Post-Invoke= -o APT::Update::Post-Invoke-Success= "$@"
}
apt_private update > "$work/log" && apt_private install -y --download-only "${packages[@]}" \
  >> "$work/log" || { cat "$work/log" >&2; exit 1; }
for package in "$work"/archives/*.deb; do
  dpkg-deb -x "$package" "$sysroot"
done

# Absolute links would leave the root.
find "$sysroot" -type l -lname '/*' | while read -r link; do
  target=$sysroot$(readlink "$link")
  ln -sfn "$(realpath -ms --relative-to="$(dirname "$link")" "$target")" "$link"
done
echo "${packages[*]}" > "$sysroot/packages"
