"""Arrows go down only: no source includes a header of a folder above its own.

    tst_layers.py SOURCE_DIR

First the test tries itself on a small tree with arrows that go up.
"""

import re
import sys
import tempfile
from pathlib import Path

INCLUDE = re.compile(r'^\s*#\s*include\s*"((?:[\w-]+/)+)[\w.-]+"', re.MULTILINE)

# The folders of the system, which include each other as they need it.
SYSTEM = ("app", "store", "forms", "documents", "blanks", "render", "exchange")

# What stands on the system, from below; each line may include its own folders and all above it.
LAYERS = (SYSTEM, ("translations",), ("preflight",), ("printing",), ("sample",), ("tools", "batch"))

# Side by side at the top: neither of them knows the other.
OTHER_TOP = {"tools": "batch/", "batch": "tools/"}

# Parts of the render folder: what each of them may include of the folder and its parts.
RENDER_PARTS = {
    "render/vector": ("render/vector",),
    # What QrEncoder is made of works on its type, which stands with the prescribed headers.
    "render/qr": ("render/qr", "render/QrEncoder.h"),
    "render/page": ("render",),
}

PROGRAMS_AND_TESTS = ("tests", "benchmarks", "scripts", "packaging")


def layer_of(path):
    folder = path.split("/")[0]
    return next((rank for rank, folders in enumerate(LAYERS) if folder in folders), None)


def part_of(path):
    return next((part for part in RENDER_PARTS if path.startswith(part + "/")), None)


def is_allowed(source, included):
    """Whether a source of the product may include a header; both are paths from the root."""
    if included.split("/")[0] in PROGRAMS_AND_TESTS:
        return False
    part = part_of(source)
    if part and included.startswith("render/"):
        return included.startswith(RENDER_PARTS[part])
    if included.startswith(OTHER_TOP.get(source.split("/")[0], ())):
        return False
    rank = layer_of(included)
    return rank is None or rank <= layer_of(source)


def arrows_up(root):
    found = []
    for layer in LAYERS:
        for folder in layer:
            for path in sorted((root / folder).rglob("*")):
                if path.suffix not in (".h", ".cpp"):
                    continue
                source = path.relative_to(root).as_posix()
                text = path.read_text(encoding="utf-8")
                for match in INCLUDE.finditer(text):
                    included = match[0].split('"')[1]
                    if not is_allowed(source, included):
                        found.append(f"{source} includes {included}")
    return found


def try_itself():
    tree = {
        "app/Good.cpp": '#include "store/DataBase.h"\n#include <QString>\n#include "ui_Form.h"\n',
        "render/Up.cpp": '#include "preflight/Finding.h"\n',
        "preflight/Good.cpp": '#include "preflight/Finding.h"\n#include "render/TagExpansion.h"\n',
        "preflight/Up.cpp": '  #  include "printing/PdfFile.h"\n',
        "printing/calibration/Up.h": '#include "tools/UserLanguage.h"\n',
        "sample/Up.cpp": '#include "tools/UserLanguage.h"\n',
        "render/vector/Up.cpp": '#include "render/page/PageStyle.h"\n',
        "render/qr/Good.cpp": '#include "render/QrEncoder.h"\n',
        "render/qr/Up.cpp": '#include "render/QrPixmap.h"\n',
        "render/page/Good.cpp": '#include "render/vector/PagedPainting.h"\n',
        "tools/Good.cpp": '#include "sample/SampleDirectory.h"\n',
        "tools/batch/Up.cpp": '#include "batch/BatchWindow.h"\n',
        "batch/Up.cpp": '#include "tools/PrintWords.h"\n',
        "tools/Up.cpp": '#include "tests/support/Process.h"\n',
    }
    with tempfile.TemporaryDirectory() as directory:
        root = Path(directory)
        for name, text in tree.items():
            (root / name).parent.mkdir(parents=True, exist_ok=True)
            (root / name).write_text(text, encoding="utf-8")
        found = {line.split()[0] for line in arrows_up(root)}
    wanted = {name for name in tree if "/Up." in name}
    if found != wanted:
        sys.exit(f"the test itself is wrong: it finds {sorted(found ^ wanted)} otherwise")


def main():
    try_itself()
    root = Path(sys.argv[1])
    for layer in LAYERS:
        for folder in layer:
            if not any((root / folder).rglob("*.cpp")):
                sys.exit(f"no sources in {folder}: the layers that the test knows have changed")
    found = arrows_up(root)
    print("\n".join(found))
    sys.exit(1 if found else 0)


if __name__ == "__main__":
    main()
