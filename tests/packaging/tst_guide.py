"""The papers in Markdown: every link and picture leads somewhere, every picture of the user guide is
shown, and every option that the guide names is one of the companion programs'. The version has one
place.

    tst_guide.py SOURCE_DIR ZELVORA_PRINT ZELVORA_DB
"""

import os
import re
import subprocess
import sys
from pathlib import Path

LINK = re.compile(r"!?\[[^\]]*\]\(([^)\s]+)\)")
HEADING = re.compile(r"^#+ +(.*)$", re.MULTILINE)
FENCE = re.compile(r"^ *```.*?^ *```", re.MULTILINE | re.DOTALL)
CODE = re.compile(r"`[^`]*`")
OPTION = re.compile(r"(?<![\w-])--[a-z][a-z-]*")

# Where the versions that were released stand, the newest first.
RELEASES = {"CHANGELOG.md": r"^## (?!Unreleased)(\S+)",
            "packaging/debian/changelog": r"^zelvora \(([\d.]+)-",
            "packaging/linux/org.example.zelvora.metainfo.xml": r'<release version="([\d.]+)"'}
TEXTS = {".cpp", ".h", ".ui", ".md", ".txt", ".cmake", ".in", ".rc", ".manifest", ".nsi", ".py", ".sh"}


def anchors(text):
    """The anchors that a Markdown viewer makes of headings."""
    return {re.sub(r"[^\w\- ]", "", heading.strip().lower()).replace(" ", "-")
            for heading in HEADING.findall(FENCE.sub("", text))}


def broken_links(paper):
    text = paper.read_text(encoding="utf-8")
    for target in LINK.findall(FENCE.sub("", text)):
        if re.match(r"[a-z]+:", target):
            continue
        path, _, anchor = target.partition("#")
        file = paper.parent / path if path else paper
        if not file.exists():
            yield f"{paper}: no file {target}"
        elif anchor and anchor not in anchors(file.read_text(encoding="utf-8")):
            yield f"{paper}: no heading {target}"


def unused_pictures(guide):
    shown = {(paper.parent / target).resolve() for paper in guide.glob("*.md")
             for target in LINK.findall(paper.read_text(encoding="utf-8"))}
    for picture in sorted((guide / "images").iterdir()):
        if picture.resolve() not in shown:
            yield f"{picture}: no page shows it"


def unknown_options(guide, programs):
    environment = {**os.environ, "LC_ALL": "C.UTF-8", "QT_QPA_PLATFORM": "offscreen"}
    known = set()
    for program in programs:
        help_text = subprocess.run([program, "--help"], env=environment, capture_output=True, text=True,
                                   check=True).stdout
        known |= set(OPTION.findall(help_text))
    for paper in sorted(guide.glob("*.md")):
        text = paper.read_text(encoding="utf-8")
        for code in FENCE.findall(text) + CODE.findall(FENCE.sub("", text)):
            of_another = re.match(r"`?(?!zelvora-print)[a-z]", code)
            for option in OPTION.findall(code):
                if option not in known and not of_another:
                    yield f"{paper}: no program has {option}"


def stray_versions(source):
    """The version has its one place in the project; the newest entry of each list of releases is of
    it, and no other file repeats it."""
    version = re.search(r"^project\(Zelvora VERSION ([\d.]+)", (source / "CMakeLists.txt").read_text(),
                        re.MULTILINE)[1]
    for name, entry in RELEASES.items():
        newest = re.search(entry, (source / name).read_text(encoding="utf-8"), re.MULTILINE)
        if not newest or newest[1] != version:
            yield f"{name}: the newest release is not {version}"
    numbers = re.compile(rf"(?<![\d.]){version.replace('.', '[.,] ?')}(?![\d.])")
    for path in sorted(source.rglob("*")):
        name = path.relative_to(source).as_posix()
        if name in RELEASES or name.startswith((".", "build/", "run-dir/", "tests/")) or \
                name == "CMakeLists.txt" or path.suffix not in TEXTS or not path.is_file():
            continue
        if numbers.search(path.read_text(encoding="utf-8")):
            yield f"{name}: the version stands in CMakeLists.txt"


def main():
    source, programs = Path(sys.argv[1]), sys.argv[2:]
    guide = source / "docs/guide"
    papers = [*source.glob("*.md"), *source.glob("docs/**/*.md")]
    faults = [fault for paper in papers for fault in broken_links(paper)]
    faults += [*unused_pictures(guide), *unknown_options(guide, programs),
               *stray_versions(source)]
    print("\n".join(faults) or f"{len(papers)} papers are sound")
    return 1 if faults or not papers else 0


sys.exit(main())
