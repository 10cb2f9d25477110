"""Packs the Windows build of a directory: package-windows.py <build directory>

The same files give the same bytes: sorted names, one fixed time, one fixed kind of file. Fails where the work of others
went into the executable and the package does not tell on what terms.
"""
import re
import subprocess
import sys
import zipfile
from pathlib import Path

from windows_notices import Origin, findMissing, findUnknown, notices

ROOT = Path(__file__).resolve().parents[1]
LIBRARIES = ROOT / "build/windows-deps"
TIME = (1980, 1, 1, 0, 0, 0)  # the first one a zip file can hold
# By name and not as a whole: a run in the tree leaves its output directory in examples/.
DOCUMENTS = ("README.md", "CHANGELOG.md", "docs/*.md", "docs/images/*.png", "examples/README.md", "examples/*/*.xml",
             "examples/*/nodes/*")


def versionOf(buildDirectory):
    cache = (buildDirectory / "CMakeCache.txt").read_text(encoding="utf-8")
    return re.search(r"^CMAKE_PROJECT_VERSION:STATIC=(.+)$", cache, re.MULTILINE).group(1)


def filesOf(buildDirectory, root):
    """From name in the package to bytes."""
    places = [(buildDirectory, "Vadelclip.exe"), (buildDirectory, "locale/*/LC_MESSAGES/VD2D.mo"),
              *((root, pattern) for pattern in DOCUMENTS)]
    return {path.relative_to(place).as_posix(): path.read_bytes()
            for place, pattern in places for path in place.glob(pattern)}


def partsOf(buildDirectory):
    """The files of others that went into the executable: the headers of its sources, and what the linker took."""
    compiled = subprocess.run(["ninja", "-C", buildDirectory, "-t", "deps"], check=True, capture_output=True, text=True)
    paths = set()
    for entry in compiled.stdout.split("\n\n"):
        # Of sources in src/ alone: the tests have a library of their own.
        if entry.startswith("src/"):
            paths.update((buildDirectory / line.strip()).resolve() for line in entry.splitlines()[1:])
    linked = (buildDirectory / "Vadelclip.map").read_text(encoding="utf-8", errors="replace")
    # Start-up files as a whole, and archives that something was taken from.
    taken = re.findall(r"^LOAD (\S.*\.o)$|^(\S.*\.a)\(.+\)$", linked, re.MULTILINE)
    paths.update((buildDirectory / (start or archive)).resolve() for start, archive in taken)
    return sorted(str(path) for path in paths
                  if path.is_relative_to(LIBRARIES) or not path.is_relative_to(ROOT))


def pack(name, files, package):
    with zipfile.ZipFile(package, "w") as output:
        for entry in sorted(files):
            information = zipfile.ZipInfo(f"{name}/{entry}", TIME)
            information.compress_type = zipfile.ZIP_DEFLATED
            information.create_system = 0
            output.writestr(information, files[entry], compresslevel=9)


def check(name, package, buildDirectory):
    """Reads the package back."""
    with zipfile.ZipFile(package) as packed:
        files = {entry.removeprefix(f"{name}/"): packed.read(entry) for entry in packed.namelist()}
    wrong = findMissing(files) + findUnknown(partsOf(buildDirectory))
    if wrong:
        package.unlink()
        sys.exit("\n".join(["The terms of the work of others are not complete:", *wrong]))


def main(buildDirectory):
    name = f"Vadelclip-{versionOf(buildDirectory)}-windows-x64"
    package = buildDirectory / f"{name}.zip"
    origin = Origin(LIBRARIES, ROOT / "packaging/copyright")
    title = f"Vadelclip {versionOf(buildDirectory)} for 64-bit Windows"
    pack(name, filesOf(buildDirectory, ROOT) | notices(title, origin), package)
    check(name, package, buildDirectory)
    print(f"{package}: {package.stat().st_size} bytes")


if __name__ == "__main__":
    main(Path(sys.argv[1]).resolve())
