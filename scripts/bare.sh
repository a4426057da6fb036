#!/usr/bin/env bash
# Usage: bare.sh [MIRROR]
# Runs the README's two commands on a bare Debian 12 in a folder of its own: from a tarball, in a
# path with blanks, as a user who has only sudo. Fails if one of them fails or if the second run of
# siputil prints more than its result. Shows the time that each takes.
set -euo pipefail

cd "$(dirname "$0")/.."
[ "$(id -u)" -eq 0 ] || exec sudo scripts/bare.sh "$@"
scripts/need.sh debootstrap
mapfile -t commands < <(sed -n 's,^    \(\./dev .*\),\1,p' README.md)
[ ${#commands[@]} -eq 2 ]

root=$(mktemp -d) folder='/home/visitor/lib siputility/of a tarball'
trap 'rm -rf --one-file-system "$root"' EXIT
chmod 755 "$root"
# Mounts end with the namespace of the command that made them.
unshare --mount debootstrap --variant=minbase --include=sudo bookworm "$root" "$@"
echo "127.0.0.1 localhost $(hostname)" >"$root/etc/hosts"
chroot "$root" useradd --create-home visitor
echo 'visitor ALL=(ALL) NOPASSWD: ALL' >"$root/etc/sudoers.d/visitor"
mkdir -p "$root$folder"
scripts/sources.sh '*' | tar -c --null -T - | tar -x -C "$root$folder"
chroot "$root" chown -R visitor: /home/visitor

visit() { # COMMAND: runs it in the folder as the user
  # shellcheck disable=SC2016  # for the inner shell
  unshare --pid --fork --kill-child --mount-proc="$root/proc" bash -c '
    mount -t devpts -o newinstance,ptmxmode=666,mode=620,gid=5 devpts "$0/dev/pts"
    exec chroot --userspec=visitor "$0" env -i HOME=/home/visitor PATH=/usr/bin:/bin bash -c "$1"
  ' "$root" "cd '$folder' && $1"
}
TIMEFORMAT='%0R seconds, %0U of a processor'
for command in "${commands[@]}"; do
  echo "+ $command"
  time visit "$command"
done
echo "+ ${commands[0]}"
time [ -z "$(visit "${commands[0]} 2>&1 >/dev/null")" ]
