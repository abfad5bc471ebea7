#!/usr/bin/env python3
"""Makes pages for a browser of the user guide: one of each chapter, and its pictures.

    make-guide.py SOURCE_DIR OUTPUT_DIR

The table of contents becomes index.html. A link to a paper that is not part of the guide stays a text.
"""
import html
import re
import shutil
import sys
from pathlib import Path

from markdown_it import MarkdownIt

PAGE = """<!DOCTYPE html>
<html lang="ru">
<head>
<meta charset="utf-8">
<meta name="viewport" content="width=device-width">
<title>{title}</title>
<style>
body {{ max-width: 48em; margin: 2em auto; padding: 0 1em; font: 16px/1.5 "Segoe UI", sans-serif;
       color: #222; background: #fff; }}
h1, h2, h3 {{ line-height: 1.25; }}
img {{ max-width: 100%; }}
table {{ border-collapse: collapse; }}
th, td {{ border: 1px solid #bbb; padding: 0.3em 0.6em; text-align: left; vertical-align: top; }}
code {{ background: #f2f2f2; }}
pre {{ background: #f2f2f2; padding: 0.6em; overflow-x: auto; }}
</style>
</head>
<body>
{contents}{body}
</body>
</html>
"""
CONTENTS = '<p><a href="index.html">Оглавление</a></p>\n'


def slug(heading):
    """The anchor of a heading, as viewers of Markdown make it."""
    return re.sub(r"[^\w\- ]", "", heading.strip().lower()).replace(" ", "-")


def page_name(paper):
    return "index.html" if paper.name == "README.md" else paper.stem + ".html"


class Guide:
    def __init__(self, source, output):
        self.folder = source / "docs" / "guide"
        self.output = output
        self.papers = sorted(self.folder.glob("*.md"))
        self.parser = MarkdownIt("commonmark").enable("table")

    def link(self, target):
        """Where a link leads; nothing if the paper isn't part of the guide."""
        if re.match(r"[a-z]+:", target):
            return target
        path, hash_sign, anchor = target.partition("#")
        paper = (self.folder / path).resolve()
        if path and paper not in self.papers:
            return None
        return (page_name(paper) if path else "") + hash_sign + anchor

    def picture(self, target):
        picture = (self.folder / target).resolve()
        images = self.output / "images"
        images.mkdir(exist_ok=True)
        copy = images / picture.name
        if copy.exists() and copy.read_bytes() != picture.read_bytes():
            raise SystemExit(f"two pictures are called {picture.name}")
        shutil.copyfile(picture, copy)
        return f"images/{picture.name}"

    def lead(self, tokens):
        """Turns the links and pictures of an inline text to what is in the guide's folder."""
        for token in tokens:
            if token.type == "image":
                token.attrs["src"] = self.picture(token.attrs["src"])
            elif token.type == "link_open":
                target = self.link(self.parser.normalizeLinkText(token.attrs.pop("href")))
                if target is not None:
                    token.attrs["href"] = target

    def write(self, paper):
        tokens = self.parser.parse(paper.read_text(encoding="utf-8"))
        headings = [(tag, text.content) for tag, text in zip(tokens, tokens[1:])
                    if tag.type == "heading_open"]
        for tag, text in headings:
            tag.attrs["id"] = slug(text)
        for token in tokens:
            self.lead(token.children or [])
        name = page_name(paper)
        page = PAGE.format(title=html.escape(headings[0][1]),
                           body=self.parser.renderer.render(tokens, self.parser.options, {}),
                           contents="" if name == "index.html" else CONTENTS)
        (self.output / name).write_text(page, encoding="utf-8")


def main():
    source, output = Path(sys.argv[1]).resolve(), Path(sys.argv[2])
    output.mkdir(parents=True, exist_ok=True)
    guide = Guide(source, output)
    for paper in guide.papers:
        guide.write(paper)


if __name__ == "__main__":
    main()
