#!/usr/bin/env bash
# Runs in a clean root: installs the packages beside it, runs their tests as somebody without
# privileges, removes them, and compares what is there with what was.
set -euo pipefail
cd "$(dirname "$0")"
export DEBIAN_FRONTEND=noninteractive LC_ALL=C.UTF-8

say() { echo "--- $*"; }

# Every path with its kind and owner, but for the logs and records of the package manager.
list_files() {
  find / -xdev \( -path /proc -o -path /sys -o -path /dev -o -path /tmp -o -path /root/in \
    -o -path /var/lib/dpkg -o -path /var/lib/apt -o -path /var/log -o -path /var/cache \) -prune \
    -o -printf '%y %m %u %p %l\n' | sort
}

apt-get update -qq
apt-get satisfy -y -qq --no-install-recommends "$(cat needed)" > apt.log 2>&1 || { cat apt.log; exit 1; }
grep -qs localhost /etc/hosts || echo "127.0.0.1 localhost" >> /etc/hosts
useradd --create-home visitor
list_files > before

say "installing"
dpkg -i ./*.deb > dpkg.log 2>&1 || { cat dpkg.log; exit 1; }
dpkg -l 'vx-cloud-*' | awk '/^ii/ { print $2, $3 }'
for program in $(dpkg -L vx-cloud-lab vx-cloud-agent-sim vx-cloud-dev | grep '^/usr/bin/.'); do
  "$program" --version
done

for test in $(sed -n 's/^Tests: //p' tests/control); do
  say "test $test"
  folder=$(mktemp -d)
  cp "tests/$test" "$folder"
  chown -R visitor: "$folder"
  runuser -u visitor -- env HOME=/home/visitor AUTOPKGTEST_TMP="$folder" "$folder/$test"
done

say "removing"
dpkg --purge $(dpkg-query -W -f '${Package}\n' 'vx-cloud-*') > dpkg.log 2>&1 || { cat dpkg.log; exit 1; }
list_files > after
diff before after || { echo "something is left"; exit 1; }
echo "$(wc -l < after) paths, as before"
