"""What can be told of the packages for Windows without the cross compiler: every program has its line,
the guide is whole, and the comparison of pages sees what it has to see.

    tst_windows.py SOURCE_DIR
"""

import re
import subprocess
import sys
import tempfile
from pathlib import Path
from urllib.parse import unquote

from PIL import Image, ImageDraw

SOURCE = Path(sys.argv[1])
WINDOWS = SOURCE / "packaging" / "windows"


def lines_of(path):
    text = path.read_text(encoding="utf-8")
    return [line for line in text.splitlines() if line and not line.startswith("#")]


def faults_of_programs():
    """Each installed program has a line of resources; the application alone asks for rights."""
    built = {name for listing in SOURCE.glob("*/CMakeLists.txt")
             for name in re.findall(r"^zelvora_add_program\(([\w-]+)", listing.read_text(encoding="utf-8"),
                                    re.MULTILINE)}
    text = (WINDOWS / "ZelvoraWindows.cmake").read_text(encoding="utf-8")
    levels = dict(re.findall(r"^zelvora_windows_program\(([\w-]+) (\w+)", text, re.MULTILINE))
    if not built or built != set(levels):
        yield f"programs: {sorted(built)} are built, {sorted(levels)} have resources"
    elevated = [name for name, level in levels.items() if level != "asInvoker"]
    if elevated != ["zelvora"] or levels["zelvora"] != "requireAdministrator":
        yield f"rights: {levels}"


def faults_of_installer():
    """The installer names what is there, and nothing of the user's is removed."""
    text = (WINDOWS / "zelvora.nsi").read_text(encoding="utf-8")
    for name in re.findall(r'MUI_(?:UN)?ICON "([^"]+)"', text):
        if not (WINDOWS / name).is_file():
            yield f"zelvora.nsi: no file {name}"
    removed = re.findall(r'^ *(?:Delete|RMDir /r) "\$INSTDIR\\([^"]*)"', text, re.MULTILINE)
    if sorted(removed) != ["dbUpdate.bin", "uninstall.exe"]:
        yield f"zelvora.nsi removes {removed} besides its list"
    silent = [line for line in text.splitlines() if "MessageBox" in line and "/SD" not in line]
    if silent:
        yield f"zelvora.nsi would wait in a silent run: {silent}"


def faults_of_libraries():
    names = lines_of(WINDOWS / "system-libraries.txt")
    if len(set(names)) != len(names) or any(name != name.lower() for name in names):
        yield "system-libraries.txt: a name twice, or in capitals"


def faults_of_guide(folder):
    """Every chapter is a page, and every link and picture of a page leads somewhere."""
    subprocess.run([sys.executable, WINDOWS / "make-guide.py", SOURCE, folder], check=True)
    papers = list((SOURCE / "docs" / "guide").glob("*.md"))
    pages = {page.name: page.read_text(encoding="utf-8") for page in folder.glob("*.html")}
    if len(pages) != len(papers) or "index.html" not in pages:
        yield f"the guide: {len(papers)} chapters, {len(pages)} pages"
    for name, text in pages.items():
        for target in re.findall(r'(?:href|src)="([^"]*)"', text):
            path, _, anchor = unquote(target).partition("#")
            if not (folder / (path or name)).is_file():
                yield f"{name}: nothing at {target}"
            elif anchor and f'id="{anchor}"' not in pages[path or name]:
                yield f"{name}: no heading {target}"


def page(path, left):
    """A page of paper with a rule that begins at a place in hundredths of a millimetre."""
    picture = Image.new("L", (3000, 2000), 255)
    ImageDraw.Draw(picture).rectangle((left, 500, left + 1000, 530), fill=0)
    picture.save(path, resolution=2540)


def faults_of_comparison(folder):
    compare = SOURCE / "tests" / "packaging" / "compare_pages.py"
    page(folder / "one.pdf", 500)
    for shift, expected in ((0, 0), (5, 0), (40, 1)):
        page(folder / "other.pdf", 500 + shift)
        status = subprocess.run([sys.executable, compare, folder / "one.pdf", folder / "other.pdf"],
                                stdout=subprocess.DEVNULL).returncode
        if status != expected:
            yield f"compare_pages.py: {status} for a shift of {shift / 100} mm"


def main():
    with tempfile.TemporaryDirectory() as guide, tempfile.TemporaryDirectory() as pages:
        faults = [*faults_of_programs(), *faults_of_installer(), *faults_of_libraries(),
                  *faults_of_guide(Path(guide)), *faults_of_comparison(Path(pages))]
    print("\n".join(faults) or "sound")
    return 1 if faults else 0


sys.exit(main())
