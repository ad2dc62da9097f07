"""A minimal Debian 12 system in a folder, with git and sudo, and how commands run in it.

It is made once, by debootstrap from the mirror that this machine uses, and kept as an archive in build/deep.
"""
import os
import shutil
import subprocess

from stage import WORK

RELEASE = "bookworm"
ARCHIVE = WORK / "roots" / f"{RELEASE}.tar"
DEFAULT_MIRROR = "http://deb.debian.org/debian/"
SYSTEM_PATH = "/usr/local/sbin:/usr/local/bin:/usr/sbin:/usr/bin:/sbin:/bin"

# Everything is mounted in a name space of its own and goes with it, as do the processes.
NAMESPACE = ["unshare", "--mount", "--pid", "--ipc", "--fork", "--kill-child"]
MOUNTS = """set -e
mount -t proc proc "$0/proc"
mount -t sysfs -o ro sysfs "$0/sys"
mount -t devpts -o ptmxmode=0666 devpts "$0/dev/pts"
mount -t tmpfs tmpfs "$0/dev/shm"
if [ -n "$1" ]; then mount --bind "$1" "$0/var/cache/apt/archives"; fi
shift
exec chroot "$0" "$@" """


def obstacle():
    """Why no such system can be made here; empty if it can."""
    for tool in ("debootstrap", "unshare", "chroot"):
        if shutil.which(tool) is None:
            return f"there is no {tool}"
    if os.geteuid() != 0:
        return "only root may make a system in a folder and enter it"
    tried = subprocess.run([*NAMESPACE, "sh", "-c", "mount -t tmpfs tmpfs /mnt"], stdout=subprocess.DEVNULL,
                           stderr=subprocess.DEVNULL, check=False)
    return "" if tried.returncode == 0 else "even root may not mount here"


def sources():
    """The lines of this machine's own Debian sources: address, suite, component."""
    form = "$(ORIGIN)|$(REPO_URI)|$(RELEASE)|$(COMPONENT)"
    listed = subprocess.run(["apt-get", "indextargets", "--format", form], stdout=subprocess.PIPE,
                            stderr=subprocess.DEVNULL, text=True, check=False).stdout
    rows = {tuple(line.split("|")[1:]) for line in listed.splitlines() if line.startswith("Debian|")}
    return sorted(row for row in rows if row[1].startswith(RELEASE) and row[2] == "main")


def make_archive(log):
    """Whether the archive is there."""
    if ARCHIVE.is_file():
        return True
    ARCHIVE.parent.mkdir(parents=True, exist_ok=True)
    root = ARCHIVE.parent / RELEASE
    part = ARCHIVE.with_suffix(".part")
    shutil.rmtree(root, ignore_errors=True)
    found = sources()
    mirror = next((address for address, suite, _ in found if suite == RELEASE), DEFAULT_MIRROR)
    with open(log, "wb") as words:
        made = subprocess.run(["debootstrap", "--variant=minbase", "--include=git,sudo", RELEASE, root, mirror],
                              stdout=words, stderr=words, check=False).returncode == 0
    if not made:
        return False
    lines = [f"deb {' '.join(row)}" for row in found] or [f"deb {mirror} {RELEASE} main"]
    (root / "etc/apt/sources.list").write_text("\n".join(lines) + "\n")
    shutil.copy("/etc/resolv.conf", root / "etc/resolv.conf")
    subprocess.run(["tar", "-C", root, "--numeric-owner", "-cf", part, "."], check=True)
    part.rename(ARCHIVE)
    shutil.rmtree(root)
    return True


def unpack(root):
    """A new system in the folder `root`."""
    shutil.rmtree(root, ignore_errors=True)
    root.mkdir(parents=True)
    subprocess.run(["tar", "-C", root, "--numeric-owner", "-xpf", ARCHIVE], check=True)
    os.chmod(root, 0o755)


def enter(root, script, user="root", packages="", **options):
    """Runs the shell script as a login of `user` in the system, with nobody at the keyboard. `packages` is a
    folder of this machine in which apt keeps what it loads."""
    command = [*NAMESPACE, "sh", "-c", MOUNTS, str(root), str(packages),
               "env", "-i", f"PATH={SYSTEM_PATH}", "TERM=dumb",
               "setsid", "--wait", "runuser", "--login", user, "--command", script]
    return subprocess.run(command, stdin=subprocess.DEVNULL, check=False, **options)
