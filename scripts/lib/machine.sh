# shellcheck shell=bash
# An emulated 32-bit ARM board with Debian's kernel and a root file system with systemd. To be sourced after progress.sh.
# Nothing is registered on this machine: packages for ARM are unpacked in folders, and run in a namespace of their own.

machine=build-board-arm
mirror=${KORVEL_MIRROR:-http://deb.debian.org/debian}
keys=/usr/share/keyrings/debian-archive-keyring.gpg
# systemd and what the tests use. cmake brings ctest.
root_packages=systemd,systemd-sysv,dbus,udev,procps,kmod,bubblewrap,cmake,strace,faketime,busybox,python3
root_packages+=,libseccomp2,libtomlplusplus3,openssh-client,dropbear-bin,netbase,iproute2
# virtio-rng saves the machine from waiting for random numbers.
modules=(virtio_mmio virtio_blk ext4 9pnet_virtio 9p fuse virtio-rng)

# arm_apt COMMAND...: asks the archive about packages for ARM, with lists of its own.
arm_apt() {
    local apt=$machine_folder/apt command=$1
    shift
    mkdir -p "$apt/lists/partial" "$apt/state"
    touch "$apt/status"
    echo "deb [signed-by=$keys] $mirror bookworm main" > "$apt/sources.list"
    "$command" -o Dir::Etc::SourceList="$apt/sources.list" -o Dir::Etc::SourceParts=/dev/null \
        -o Dir::State="$apt/state" -o Dir::State::Lists="$apt/lists" -o Dir::State::Status="$apt/status" \
        -o Dir::Cache="$apt" -o APT::Architecture=armhf -o APT::Architectures=armhf -o APT::Sandbox::User=root "$@"
}

# The static busybox is for the initial root.
get_kernel() (
    set -e
    arm_apt apt-get update
    name=$(arm_apt apt-cache depends linux-image-armmp-lpae | sed -n 's/.*Depends: \(linux-image-[0-9].*\)/\1/p')
    rm -rf "$machine_folder"/{debs,kernel.part}
    mkdir -p "$machine_folder/debs"
    cd "$machine_folder/debs"
    arm_apt apt-get download "$name" busybox-static
    for package in *.deb; do dpkg-deb -x "$package" ../kernel.part; done
    depmod -b ../kernel.part "${name#linux-image-}"
    cp ../kernel.part/boot/vmlinuz-* ../kernel.part/vmlinuz
    mv ../kernel.part ../kernel
)

# The initial root has busybox, the modules in the order of their dependencies, and tests/board/boot as its first program.
make_initial_root() (
    set -e
    folder=$machine_folder/initial
    release=$(ls "$machine_folder/kernel/lib/modules")
    rm -rf "$folder"
    mkdir -p "$folder"/{bin,dev,modules,proc,root}
    cp "$machine_folder/kernel/bin/busybox" "$folder/bin"
    for name in sh mount umount insmod usleep switch_root; do ln -s busybox "$folder/bin/$name"; done
    install tests/board/boot "$folder/init"
    number=100
    for name in "${modules[@]}"; do modprobe -S "$release" -d "$machine_folder/kernel" --show-depends "$name"; done |
        awk '!seen[$2]++ { print $2 }' | while read -r module; do
            number=$((number + 1))
            cp "$module" "$folder/modules/$number-${module##*/}"
        done
    cd "$folder"
    find . | cpio --quiet -o -H newc | gzip > ../initial.gz
)

# How the kernel recognises programs for 32-bit ARM, and what runs them.
arm_programs=':arm:M::\x7fELF\x01\x01\x01\0\0\0\0\0\0\0\0\0\x02\0\x28\0'
arm_programs+=':\xff\xff\xff\xff\xff\xff\xff\0\xff\xff\xff\xff\xff\xff\xff\xff\xfe\xff\xff\xff:/usr/bin/qemu-arm-static:FC'

# Waits until its user namespace has users, because the next program is root only then. Runs $@ with ARM's programs.
# shellcheck disable=SC2016 # the started shells expand the texts
wait_for_users='while [ -z "$(cat /proc/self/uid_map)" ]; do sleep 0.1; done; exec "$@"'
# shellcheck disable=SC2016
register_arm='
    mount --make-rprivate /
    mount -t proc proc /proc
    mount -t binfmt_misc binfmt_misc /proc/sys/fs/binfmt_misc
    printf "%s" "$1" > /proc/sys/fs/binfmt_misc/register
    shift
    exec "$@"'

# in_arm_namespace COMMAND...: only there, the kernel starts programs for ARM by an emulator. It needs root: files of
# the new root file system have several owners.
in_arm_namespace() {
    local child map
    unshare --user --mount --pid --fork --kill-child sh -euc "$wait_for_users" sh \
        sh -euc "$register_arm" sh "$arm_programs" "$@" < /dev/null &
    child=$!
    until [ "$(readlink "/proc/$child/ns/user")" != "$(readlink /proc/self/ns/user)" ]; do sleep 0.1; done
    for map in uid_map gid_map; do echo '0 0 65536' > "/proc/$child/$map"; done
    wait "$child"
}

make_root() {
    rm -rf --one-file-system "$machine/root.part"
    in_arm_namespace mmdebstrap --mode=root --skip=check/qemu --format=directory --architectures=armhf \
        --variant=minbase --dpkgopt=force-unsafe-io --include="$root_packages" \
        bookworm "$machine/root.part" "deb $mirror bookworm main"
    mv "$machine/root.part" "$machine/root"
}

# make_disk NAME FOLDER FREE: a disk image with the folder's files, and FREE MiB of free space
make_disk() {
    local used
    used=$(du -sm "$2" | cut -f 1)
    rm -f "$machine/$1.img"
    mke2fs -q -t ext4 -L "$1" -m 0 -d "$2" "$machine/$1.img" "$((used * 5 / 4 + $3))M" > /dev/null
}

make_root_disk() {
    local root=$machine/root
    install -m 644 tests/board/job.service "$root/etc/systemd/system"
    mkdir -p "$root/etc/systemd/system/graphical.target.wants"
    ln -sf ../job.service "$root/etc/systemd/system/graphical.target.wants/job.service"
    # The limits are for a machine that is busy with other work.
    local patient=x-systemd.device-timeout=10min,x-systemd.mount-timeout=10min
    printf '%s\n' '/dev/vda / ext4 defaults 0 0' \
        "share /share 9p trans=virtio,version=9p2000.L,msize=131072,$patient 0 0" \
        "LABEL=flash /ffs ext4 nofail,$patient 0 0" > "$root/etc/fstab"
    echo board > "$root/etc/hostname"
    make_disk root "$root" 512
}

# Makes what is missing.
make_machine() {
    mkdir -p "$machine"
    machine_folder=$PWD/$machine
    [ -e "$machine/kernel" ] || with_progress "$machine/kernel.log" "Downloading a kernel for ARM" get_kernel
    [ -e "$machine/root" ] || with_progress "$machine/root.log" "Making a root file system for ARM" make_root
    make_initial_root
    make_root_disk
}

# begin_job NAME: the next start of the machine runs tests/board/NAME. Sets `share` to what is the machine's /share.
begin_job() {
    share=$machine/share-$1
    rm -rf "$share"
    mkdir -p "$share"
    cp "tests/board/$1" "$share/job"
}

job_passed() { [ "$(cat "$share/status" 2> /dev/null)" = 0 ]; }

# run_machine SECONDS DISK: prints the console. The changes on the disk stay, those on the root disk do not. A machine
# that hangs is ended. virt numbers its disks backwards: the last one becomes vda.
run_machine() {
    timeout --kill-after=10 "$1" qemu-system-arm -M virt,gic-version=2 -cpu cortex-a15 -smp 2 -m 2048 \
        -accel tcg,thread=multi,tb-size=256 -nodefaults -nographic -serial stdio \
        -kernel "$machine/kernel/vmlinuz" -initrd "$machine/initial.gz" \
        -append 'console=ttyAMA0 quiet nowatchdog panic=-1 systemd.mask=serial-getty@ttyAMA0.service' \
        -fsdev "local,id=share,path=$share,security_model=none" -device virtio-9p-device,fsdev=share,mount_tag=share \
        -device virtio-rng-device \
        -drive "file=$machine/$2.img,format=raw,if=none,id=disk" -device virtio-blk-device,drive=disk \
        -drive "file=$machine/root.img,format=raw,if=none,id=root,snapshot=on" -device virtio-blk-device,drive=root
    local ended=$?
    [ "$ended" -ne 124 ] || echo "The machine was ended after $1 seconds."
    [ "$ended" -eq 0 ] && job_passed
}
