"""Every oddity that is listed as kept has its comment, and every comment its place in the list.

    tst_kept.py SOURCE_DIR

The list is the section "Odd on purpose" of docs/architecture.md. It names a file as often as "kept:" stands
there. First the test tries itself.
"""

import re
import sys
from collections import Counter
from pathlib import Path

FOLDERS = ("app", "store", "forms", "documents", "blanks", "render", "exchange", "translations",
           "preflight", "printing", "sample", "batch", "tools")
NAMED = re.compile(r"`((?:\w+/)+\w+\.(?:cpp|h))`")


def named_in(text):
    section = re.search(r"^## Odd on purpose$(.*?)^## ", text, re.MULTILINE | re.DOTALL)
    return Counter(NAMED.findall(section[1]))


def comments_in(root):
    found = Counter()
    for folder in FOLDERS:
        for path in sorted((root / folder).rglob("*")):
            if path.suffix in (".h", ".cpp"):
                count = len(re.findall(r"//.*\bkept: ", path.read_text(encoding="utf-8")))
                if count:
                    found[path.relative_to(root).as_posix()] = count
    return found


def differences(named, comments):
    return [f"{file}: {comments[file]} comments \"kept:\", named {named[file]} times"
            for file in sorted(named | comments) if named[file] != comments[file]]


def try_itself():
    text = "## Odd on purpose\n- One: `a/A.cpp`. Two\n  (`a/A.cpp`).\n- `B`: `b/c/B.h`\n## End\n`a/Other.h`\n"
    named = named_in(text)
    if named != Counter({"a/A.cpp": 2, "b/c/B.h": 1}):
        sys.exit("the test itself is wrong: it reads the list otherwise")
    if differences(named, named) or len(differences(named, Counter({"a/A.cpp": 1, "z/Z.h": 1}))) != 3:
        sys.exit("the test itself is wrong: it compares otherwise")


def main():
    try_itself()
    root = Path(sys.argv[1])
    named = named_in((root / "docs" / "architecture.md").read_text(encoding="utf-8"))
    found = differences(named, comments_in(root))
    print("\n".join(found))
    sys.exit(1 if found or not named else 0)


if __name__ == "__main__":
    main()
