"""Every text of the companion programs is translated, and every translation has its text.

    tst_translations.py SOURCE_DIR

scripts/update-translations looks at the sources; it must find nothing to change. First the test tries
itself on texts with faults.
"""

import re
import shutil
import subprocess
import sys
import tempfile
import xml.etree.ElementTree as ElementTree
from pathlib import Path

PLACE = re.compile(r"%(?:\d+|n)")


def forms_of(translation):
    return [form.text or "" for form in translation.findall("numerusform")] or [translation.text or ""]


def faults_of(message):
    source = message.find("source").text
    translation = message.find("translation")
    if "type" in translation.attrib:
        return [translation.get("type")]
    found = []
    for form in forms_of(translation):
        if not form:
            found.append("empty")
        elif sorted(PLACE.findall(source)) != sorted(PLACE.findall(form)):
            found.append("has other places to fill")
        elif source.endswith("\n") != form.endswith("\n"):
            found.append("ends otherwise")
    return found


def faults_in(text):
    found = []
    for context in ElementTree.fromstring(text).findall("context"):
        for message in context.findall("message"):
            place = f"{context.find('name').text}: {message.find('source').text!r}"
            found += [f"{place}: {fault}" for fault in faults_of(message)]
    return found


def try_itself():
    message = "<message><source>{}</source>{}</message>"
    texts = {
        "good": ("%1 of %2", "<translation>из %2 — %1</translation>"),
        "numbers": ("%n", "<translation><numerusform>%n</numerusform><numerusform>%n</numerusform></translation>"),
        "Unfinished": ("a", '<translation type="unfinished">а</translation>'),
        "Vanished": ("a", '<translation type="vanished">а</translation>'),
        "Empty": ("a", "<translation></translation>"),
        "Place": ("%1 of %2", "<translation>%1 из %1</translation>"),
        "Form": ("%n", "<translation><numerusform>%n</numerusform><numerusform></numerusform></translation>"),
        "End": ("a\n", "<translation>а</translation>"),
    }
    for name, content in texts.items():
        text = f"<TS><context><name>{name}</name>{message.format(*content)}</context></TS>"
        if bool(faults_in(text)) != name[0].isupper():
            sys.exit(f"the test itself is wrong: {name}")


def changes(root, files):
    """What an update of the translations says or changes."""
    with tempfile.TemporaryDirectory() as directory:
        for file in files:
            shutil.copy(file, directory)
        run = subprocess.run([root / "scripts" / "update-translations", directory], text=True,
                             stdout=subprocess.PIPE, stderr=subprocess.STDOUT)
        found = run.stdout.splitlines()
        if run.returncode:
            found.append(f"scripts/update-translations ends with {run.returncode}")
        for file in files:
            if (Path(directory) / file.name).read_bytes() != file.read_bytes():
                found.append(f"{file.name}: not what scripts/update-translations makes of the sources")
        return found


def main():
    try_itself()
    root = Path(sys.argv[1])
    files = sorted((root / "translations").glob("*.ts"))
    if [file.name for file in files] != ["zelvora_en.ts", "zelvora_ru.ts"]:
        sys.exit("not the two files that the programs carry")
    found = changes(root, files)
    for file in files:
        found += [f"{file.name}: {fault}" for fault in faults_in(file.read_text(encoding="utf-8"))]
    print("\n".join(found))
    sys.exit(1 if found else 0)


if __name__ == "__main__":
    main()
