#!/bin/sh
# SPDX-License-Identifier: GPL-3.0-or-later
# Run by scripts/test-package in the fresh system.
set -eu
export DEBIAN_FRONTEND=noninteractive LC_ALL=C.UTF-8
here=/opt/luma

# All files but those of the user, the package lists and caches.
listing() {
    find / -xdev \( -path /proc -o -path /sys -o -path /dev -o -path /tmp -o -path /run -o -path /home -o -path /opt \
        -o -path /var/cache -o -path /var/log -o -path /var/lib/apt -o -path /var/lib/dpkg \) -prune -o -print | sort
}

listing >/tmp/before
echo "== Install"
apt-get install -y -qq --no-install-recommends "$here/luma.deb" >/tmp/install.log 2>&1 || { cat /tmp/install.log; exit 1; }
luma --version
dpkg -L luma | sort >/tmp/own

echo "== Use"
useradd --create-home tester
mkdir -p /dev/shm /tmp/.X11-unix
chmod 1777 /dev/shm /tmp/.X11-unix
# A namespace in which the web engine could make its sandbox isn't certain here.
runuser -u tester -- env QTWEBENGINE_DISABLE_SANDBOX=1 sh "$here/private-session" python3 -B "$here/use.py"

echo "== Remove"
apt-get purge -y -qq luma >/tmp/remove.log 2>&1 || { cat /tmp/remove.log; exit 1; }
apt-get autoremove -y -qq --purge >>/tmp/remove.log 2>&1
listing >/tmp/after
comm -13 /tmp/before /tmp/after >/tmp/more
left=$(comm -12 /tmp/own /tmp/more; grep -i luma /tmp/more || true)
[ -z "$left" ] || { echo "left by LUMA:"; echo "$left"; exit 1; }
echo "Nothing of LUMA is left. Of the packages that it needs: $(wc -l </tmp/more) files and folders."
