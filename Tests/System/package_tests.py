#!/usr/bin/python3
"""The Debian package, made of what the build has, and what becomes of it on a user's machine: held
against Debian's rules, installed into a root of its own, started there, removed again.

    package_tests.py --list                  the names of all tests
    package_tests.py PROGRAMS NAME…          runs these tests, with the package of that build folder

The first test makes the package, in the folder `package` beside the programs.
"""

import configparser
import gzip
import json
import os
import re
import shutil
import subprocess
import sys
import tempfile
import time
from datetime import datetime
from difflib import unified_diff
from pathlib import Path
from xml.etree import ElementTree

ROOT = Path(__file__).resolve().parents[2]
sys.path.insert(0, str(ROOT / "Scripts"))
sys.dont_write_bytecode = True

from desk import Desk  # noqa: E402

NAME = "org.brenlow.tarvane"
# dpkg wants the administrator's tools on the path, where an ordinary user doesn't have them.
ENVIRONMENT = {"PATH": f"{os.environ['PATH']}:/usr/sbin:/sbin", "LC_ALL": "C.UTF-8"}

TESTS = {}


def test(function):
    head, *rest = function.__name__.split("_")
    TESTS[head + "".join(word.capitalize() for word in rest)] = function
    return function


def expect(condition, what):
    assert condition, what


def run(*command, variables=None, **options):
    """What the command printed; fails with it."""
    ended = subprocess.run([str(part) for part in command], env=ENVIRONMENT | (variables or {}),
                           text=True, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                           stderr=subprocess.STDOUT, **options)
    expect(ended.returncode == 0, f"{command[0]} failed:\n{ended.stdout}")
    return ended.stdout


class Package:
    def __init__(self, programs):
        self.build = programs.parent
        self.folder = self.build / "package"

    def make(self, folder, **options):
        """As the build's target `package` does, without a look at whether all is built."""
        run("cpack", "--config", self.build / "CPackConfig.cmake", "-B", folder, **options)
        made = list(folder.glob("*.deb"))
        expect(len(made) == 1, f"{made} were made")
        return made[0]

    @property
    def file(self):
        return next(self.folder.glob("*.deb"))

    def field(self, name):
        return run("dpkg-deb", "--field", self.file, name).strip()

    def files(self):
        """Path to permissions and owner, of all that is in it."""
        lines = run("dpkg-deb", "--contents", self.file).splitlines()
        return {path.removeprefix("./"): (permissions, owner)
                for permissions, owner, *_, path in (line.split(None, 5) for line in lines)
                if path != "./"}

    def unpacked(self):
        """A folder with what is in it, that vanishes with the object that is returned."""
        folder = tempfile.TemporaryDirectory(prefix="tarvane-package-")
        run("dpkg-deb", "--extract", self.file, folder.name)
        return folder


# Two people and places that make something, as far apart as one machine has them: of two umasks, time
# zones and languages, and in memory too, a file system that keeps a folder's files in another order, and
# folders in another size. Neither has a compiler's cache, which would answer one with the other's, and
# there Python takes no text for UTF-8 that it isn't told to be.
HERE = {"umask": 0o022, "variables": {"TZ": "East-14", "CCACHE_DISABLE": "1"}}
THERE = {"umask": 0o077, "variables": {"TZ": "West12", "CCACHE_DISABLE": "1", "LC_ALL": "C",
                                       "PYTHONUTF8": "0", "PYTHONCOERCECLOCALE": "0",
                                       "DPKG_DEB_THREADS_MAX": "1"}}


def folder_elsewhere():
    """One that vanishes with the object that is returned, in memory if there is half a GB of it."""
    memory = "/dev/shm"
    there = os.access(memory, os.W_OK) and shutil.disk_usage(memory).free > 1 << 29
    return tempfile.TemporaryDirectory(prefix="tarvane-elsewhere-", dir=memory if there else None)


@test
def it_is_the_same_whoever_makes_it(package):
    shutil.rmtree(package.folder, ignore_errors=True)
    first = package.make(package.folder, **HERE)
    with folder_elsewhere() as folder:
        second = package.make(Path(folder), **THERE)
        if first.read_bytes() != second.read_bytes():
            shown = [run("ar", "tv", made) + run("dpkg-deb", "--field", made) +
                     run("dpkg-deb", "--contents", made) for made in (first, second)]
            raise AssertionError("two makes differ:\n" + "\n".join(
                unified_diff(*(text.splitlines() for text in shown), "first", "second", lineterm="")))
    for path, (permissions, owner) in package.files().items():
        expect(owner == "root/root", f"{path} is {owner}'s")
        usual = "drwxr-xr-x" if path.endswith("/") else (
            "-rwxr-xr-x" if "/bin/" in path else "-rw-r--r--")
        expect(permissions == usual, f"{path} is {permissions}")


def commit_date():
    """In seconds since 1970; None in an archive."""
    if not (ROOT / ".git").exists():
        return None
    return int(run("git", "-c", f"safe.directory={ROOT}", "log", "-1", "--format=%ct", cwd=ROOT))


def copy_without_git(folder):
    """The tree as an archive has it: the project's files, with the commit's date."""
    names = run("bash", "-c", "source Scripts/common.sh && tracked_files '*'", cwd=ROOT).splitlines()
    date = commit_date()
    for name in names:
        if (ROOT / name).is_file():
            (folder / name).parent.mkdir(parents=True, exist_ok=True)
            shutil.copy2(ROOT / name, folder / name)
            if date:
                os.utime(folder / name, (date, date))


def package_date(tree):
    """The one that all of a package bears, in seconds since 1970."""
    told = (tree / "build/release/Packaging/PackageDate.cmake").read_text()
    return int(re.search(r"EPOCH} (\d+)", told)[1])


@test
def an_archive_without_git_makes_the_same_in_another_folder(package):
    # A source with contract checks, which name the place that they stand in, and what is installed
    # beside the program.
    source = "TarvaneKit/CMakeFiles/TarvaneKit.dir/DSP/WeightingFilter.cpp.o"
    made = []
    with tempfile.TemporaryDirectory(prefix="tarvane-archive-") as first, folder_elsewhere() as second:
        for tree, person in (Path(first), HERE), (Path(second) / "deeper", THERE):
            copy_without_git(tree)
            build, documents = tree / "build/release", tree / "build/release/Packaging"
            run("cmake", "--preset", "release", cwd=tree, **person)
            run("cmake", "--build", build, "--target", source, "tarvane-documents", **person)
            files = [build / source, *(path for path in documents.iterdir()
                                       if path.suffix in (".gz", ".png", ".xml"))]
            made.append({str(path.relative_to(build)): path.read_bytes() for path in files})
            date = package_date(tree)
            expected = commit_date() or int((ROOT / "CHANGELOG.md").stat().st_mtime)
            expect(date == expected, f"it is of {date}, the tree of {expected}")
            manual = gzip.decompress((documents / "tarvane.1.gz").read_bytes()).decode()
            version = package.field("Version")
            expect(f'"Tarvane {version}"' in manual, f"the manual isn't of {version}: {manual[:80]}")
    # With three documents and nine sizes of the icon.
    expect(len(made[0]) == 13 and made[0].keys() == made[1].keys(), f"{list(made[0])} were made")
    different = [name for name, content in made[0].items() if content != made[1][name]]
    expect(not different, f"{different} differ")


@test
def a_new_commit_is_a_new_date_in_a_build_folder_that_is_there(_package):
    with tempfile.TemporaryDirectory(prefix="tarvane-commits-") as folder:
        tree = Path(folder)
        copy_without_git(tree)
        run("git", "init", "--quiet", cwd=tree)
        for date, build in (
                (1_000_000_000, ["--preset", "release"]),
                (1_100_000_000, ["--build", "build/release", "--target", "Packaging/tarvane.1.gz"])):
            run("git", "-c", "user.name=somebody", "-c", "user.email=somebody@tarvane.example",
                "commit", "--quiet", "--allow-empty", "--message", "A change", cwd=tree,
                variables={"GIT_COMMITTER_DATE": f"@{date} +0000"})
            run("cmake", *build, cwd=tree)
            expect(package_date(tree) == date, f"it is of {package_date(tree)}, the commit of {date}")
        manual = gzip.decompress((tree / "build/release/Packaging/tarvane.1.gz").read_bytes())
        expect(b"2004-11-09" in manual, f"{manual[:80]}")


@test
def lintian_finds_nothing(package):
    # It warns of its being run by root, who builds in containers.
    as_root = ["--allow-root"] if os.geteuid() == 0 else []
    said = run("lintian", *as_root, "--tag-display-limit", "0", "--fail-on", "error,warning",
               package.file)
    expect(not said.strip(), said)


@test
def the_desktop_finds_name_icons_and_program(package):
    files = package.files()
    with package.unpacked() as folder:
        share = Path(folder) / "usr/share"
        desktop_file = share / f"applications/{NAME}.desktop"
        said = run("desktop-file-validate", desktop_file)
        expect(not said, said)
        parser = configparser.ConfigParser(interpolation=None)
        parser.optionxform = str
        parser.read(desktop_file)
        entry = parser["Desktop Entry"]
        expect(f"usr/bin/{entry['Exec']}" in files, f"there is no program {entry['Exec']}")
        for size in (16, 22, 24, 32, 48, 64, 128, 256, 512):
            icon = share / f"icons/hicolor/{size}x{size}/apps/{entry['Icon']}.png"
            # Width and height stand behind the signature and the head of the first chunk.
            head = icon.read_bytes()[:24]
            told = tuple(int.from_bytes(head[at:at + 4], "big") for at in (16, 20))
            expect(head[1:4] == b"PNG" and told == (size, size), f"{icon} is {told}")
        for icon in (f"scalable/apps/{entry['Icon']}.svg",
                     f"symbolic/apps/{entry['Icon']}-symbolic.svg"):
            ElementTree.parse(share / "icons/hicolor" / icon)


@test
def metadata_changelog_and_manual_tell_the_version(package):
    version = package.field("Version")
    project = re.search(r"project\(Tarvane VERSION (\S+)", (ROOT / "CMakeLists.txt").read_text())
    expect(version == project[1], f"the package's version is {version}, the project's {project[1]}")
    with package.unpacked() as folder:
        share = Path(folder) / "usr/share"
        metadata = share / f"metainfo/{NAME}.metainfo.xml"
        run("appstreamcli", "validate", "--no-net", metadata)
        component = ElementTree.parse(metadata).getroot()
        expect(component.findtext("id") == NAME, "the metadata are of another program")
        launched = component.findtext("launchable")
        expect((share / "applications" / launched).exists(), f"there is no {launched}")
        newest = component.find("releases/release")
        # The program's own release notes are of the same version and day.
        note = re.search(r'\{"([0-9.]+)",\s*"([^"]+)",',
                         (ROOT / "TarvaneApp/Shell/Help/ReleaseNote.cpp").read_text())
        noted = datetime.strptime(note[2], "%B %d, %Y").strftime("%Y-%m-%d")
        told = newest.get("version"), newest.get("date"), newest.get("type")
        expect(told == (note[1], noted, "stable"), f"the newest release is {told}, not {noted}'s")
        releases = [release.get("version") for release in component.iter("release")]
        expect(releases[0] == version, f"the newest release is {releases[0]}")
        told = re.findall(r"^## (?:(\S+) \(|Unreleased)", (ROOT / "CHANGELOG.md").read_text(), re.M)
        expect(releases == [number or version for number in told],
               f"the metadata tell of {releases}, CHANGELOG.md of {told}")

        changelog = gzip.decompress((share / "doc/tarvane/changelog.gz").read_bytes()).decode()
        expect(changelog.startswith(f"tarvane ({version}) "), changelog[:40])
        manual = share / "man/man1/tarvane.1.gz"
        text = gzip.decompress(manual.read_bytes()).decode()
        expect(f'"Tarvane {version}"' in text, text[:80])
        said = run("man", "--warnings", "--local-file", manual)
        expect("warning" not in said and "FILES" in said, said)


class CleanRoot:
    """A root with a package database of its own, in which the packages that ours depends on count as
    installed as far as they are on this machine."""

    def __init__(self, package, folder):
        self.path = Path(folder)
        self._package = package
        self.database = self.path / "var/lib/dpkg"
        for name in ("info", "updates", "triggers"):
            (self.database / name).mkdir(parents=True)
        (self.path / "log").mkdir()
        (self.database / "status").write_text(self._needed())
        self.before = self.files()

    def _needed(self):
        names = set(re.findall(r"(?:^|[,|])\s*([a-z0-9][a-z0-9+.-]+)",
                               self._package.field("Depends")))
        here = run("dpkg-query", "--show", "--showformat",
                   "${db:Status-Abbrev}|${Package}|${Architecture}|${Version}|${Multi-Arch}\n")
        entries = []
        for line in here.splitlines():
            state, name, architecture, version, multi_arch = line.split("|")
            if name in names and state.startswith("ii"):
                entries.append(f"Package: {name}\nStatus: install ok installed\n"
                               f"Architecture: {architecture}\nVersion: {version}\n"
                               f"Multi-Arch: {multi_arch or 'no'}\nMaintainer: nobody\n"
                               "Description: on this machine\n")
                suffix = f":{architecture}" if multi_arch == "same" else ""
                (self.database / f"info/{name}{suffix}.list").write_text("/.\n")
        return "\n".join(entries)

    def dpkg(self, *command):
        # Ordinary users can't give files to root; the machine's own rules of what is left out and
        # its log are not for this root.
        return run("dpkg", f"--root={self.path}", f"--log={self.path}/log/dpkg.log",
                   "--force-not-root", "--path-include=*", *command)

    def files(self):
        """All outside the package database."""
        return {str(path.relative_to(self.path)) for path in self.path.rglob("*")
                if self.database not in path.parents and path.parent != self.path / "log"}


@test
def it_is_installed_started_and_removed_without_a_trace(package):
    with tempfile.TemporaryDirectory(prefix="tarvane-root-") as folder:
        root = CleanRoot(package, folder)
        root.dpkg("--install", package.file)
        expected = {path.rstrip("/") for path in package.files()}
        expect(root.files() - root.before == expected, "other files are there than are in the package")

        with Desk(package.build / "bin") as desk:
            desk.plug_in("--tone", "1000:-20")
            desk.build = root.path / "usr/bin"
            desk.env["XDG_DATA_DIRS"] = f"{root.path}/usr/share:/usr/share"
            program = desk.launch()
            # How a desktop knows a window for one of the program that its menu has started.
            entry = (root.path / f"usr/share/applications/{NAME}.desktop").read_text()
            name = re.search(r"^StartupWMClass=(.*)$", entry, re.M)[1]
            expect(program.window_id() in desk.xdotool_output(
                "search", "--onlyvisible", "--class", f"^{name}$").split(),
                f"the window isn't of {name}, which the menu's entry names")
            program.start()
            # A sine's RMS lies 10 log10(2) dB under its peak.
            shown = program.settled_level("SPL A Fast")
            expect(abs(shown + 23.01) <= 0.1, f"it reads {shown}")
            program.quit()
            settings = desk.settings_file().read_bytes()
            root.dpkg("--purge", "tarvane")
            expect(desk.settings_file().read_bytes() == settings, "the user's settings are changed")
        left = root.files() - root.before
        expect(not left, f"{left} stays behind")
        expect("Package: tarvane\n" not in (root.database / "status").read_text(), "it is still known")


@test
def the_flatpak_manifest_is_whole(_package):
    manifest = json.loads((ROOT / f"Packaging/{NAME}.json").read_text())
    expect(manifest["id"] == NAME and manifest["command"] == "tarvane", "it is of another program")
    expect(manifest["runtime"] == "org.kde.Platform" and manifest["sdk"] == "org.kde.Sdk" and
           manifest["runtime-version"].startswith("6."), "its runtime has no Qt 6")
    permissions = set(manifest["finish-args"])
    for needed in ("--filesystem=xdg-run/pipewire-0", "--socket=wayland", "--socket=fallback-x11"):
        expect(needed in permissions, f"it lacks {needed}")
    # No update feed is set there, and nothing else of the program uses the network.
    told = " ".join(option for module in manifest["modules"]
                    for option in module.get("config-opts", []))
    expect("TARVANE_UPDATE_FEED" not in told and "--share=network" not in permissions,
           "it has the network, or a feed without it")
    *libraries, program = manifest["modules"]
    for module in libraries:
        expect(module["name"] and module["buildsystem"] in ("cmake-ninja", "simple"), f"{module}")
        for source in module["sources"]:
            expect(source["type"] == "archive" and source["url"].startswith("https://") and
                   re.fullmatch("[0-9a-f]{64}", source["sha256"]), f"{source} isn't pinned")
    expect(program["sources"] == [{"type": "dir", "path": "..", "skip": ["build"]}], "it builds another tree")


def main():
    if sys.argv[1:] == ["--list"]:
        print("\n".join(TESTS))
        return
    package, names = Package(Path(sys.argv[1]).resolve()), sys.argv[2:] or list(TESTS)
    for name in names:
        began = time.monotonic()
        TESTS[name](package)
        print(f"{name} passed in {time.monotonic() - began:.1f} s")


if __name__ == "__main__":
    main()
