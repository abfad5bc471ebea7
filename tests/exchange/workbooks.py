"""Makes test workbooks and reads workbooks for tests.

Serves one client: each line of input is a JSON array of a command and its arguments, and each is
answered by a line of JSON, the command's result.

cells FILE DESCRIPTION     a workbook written part by part from a description
openpyxl FILE DESCRIPTION  the texts of the description saved by openpyxl as it saves them
rich FILE                  all that is kept of a template, as openpyxl itself saves it
template FILE              a formatted workbook of several sheets, as office programs save it
extras FILE                the same with what the reading library passes over
damage FILE WAY            a workbook of two rows, damaged in one of the ways of DAMAGES
odd FILE WAY               a workbook of two rows, odd in one of the ways of ODDITIES
oddities                   the names of these ways
rows FILE COUNT            a workbook of so many rows
read FILE                  cells and formatting as openpyxl reads them

The description: {"writer": "excel" or "libreoffice", "active": index of the active sheet,
"sheets": [{"name": ..., "cells": {"A2": cell}, "merged": ["A2:B2"], "dimension": "A1:B2"}]}.
A cell is a text (a shared string) or [kind, value]; the kinds are those of Writer.cell.
"""
import base64
import datetime
import io
import json
import re
import sys
import zipfile
from xml.sax.saxutils import escape

import openpyxl
from openpyxl.chart import BarChart, Reference
from openpyxl.comments import Comment
from openpyxl.drawing.image import Image
from openpyxl.formatting.rule import CellIsRule
from openpyxl.styles import Alignment, Border, Font, PatternFill, Side
from openpyxl.workbook.defined_name import DefinedName
from openpyxl.worksheet.datavalidation import DataValidation

MAIN = "http://schemas.openxmlformats.org/spreadsheetml/2006/main"
RELS = "http://schemas.openxmlformats.org/officeDocument/2006/relationships"
PACKAGE = "http://schemas.openxmlformats.org/package/2006"
COMPATIBILITY = "http://schemas.openxmlformats.org/markup-compatibility/2006"
XML = '<?xml version="1.0" encoding="UTF-8" standalone="yes"?>\n'
TYPES = "application/vnd.openxmlformats-officedocument.spreadsheetml"

# Number formats by the index of the cell style: General, a date, a date with time, a time.
STYLES = [0, 14, 22, 21]


class Writer:
    """One workbook, written without any library, so that every attribute is the test's own."""

    def __init__(self, description):
        self.description = description
        self.libre = description.get("writer") == "libreoffice"
        self.strings = []

    def shared(self, xml):
        self.strings.append(xml)
        return len(self.strings) - 1

    def cell(self, name, cell):
        kind, value = cell if isinstance(cell, list) else ["shared", cell]
        number = ' t="n"' if self.libre else ""
        plain = {
            "number": (number, 0, f"<v>{value}</v>"),
            "date": (number, 1, f"<v>{value}</v>"),
            "datetime": (number, 2, f"<v>{value}</v>"),
            "time": (number, 3, f"<v>{value}</v>"),
            "bool": (' t="b"', 0, f"<v>{int(bool(value))}</v>"),
            "error": (' t="e"', 0, f"<v>{value}</v>"),
            "blank": ("", 0, ""),
            "blankdate": ("", 1, ""),
        }
        if kind in plain:
            attributes, style, content = plain[kind]
        elif kind == "shared":
            text = self.shared('<t xml:space="preserve">' + escape(value) + "</t>")
            attributes, style, content = ' t="s"', 0, f"<v>{text}</v>"
        elif kind == "rich":
            runs = "".join(f"<r><rPr><b/></rPr><t>{escape(run)}</t></r>" for run in value)
            attributes, style, content = ' t="s"', 0, f"<v>{self.shared(runs)}</v>"
        elif kind == "inline":
            attributes, style = ' t="inlineStr"', 0
            content = f"<is><t>{escape(value)}</t></is>"
        elif kind == "inlinerich":
            runs = "".join(f"<r><t>{escape(run)}</t></r>" for run in value)
            attributes, style, content = ' t="inlineStr"', 0, f"<is>{runs}</is>"
        elif kind == "formula":
            formula, cached = value
            attributes = ' t="str"' if isinstance(cached, str) else number
            style, content = 0, f"<f>{escape(formula)}</f><v>{escape(str(cached))}</v>"
        elif kind == "raw":
            return value
        else:
            raise ValueError(kind)
        return f'<c r="{name}" s="{style}"{attributes}>{content}</c>'

    def sheet(self, index, sheet):
        rows = {}
        for name, cell in sheet["cells"].items():
            rows.setdefault(int(re.sub("[A-Z]", "", name)), {})[name] = cell
        data = "".join(
            f'<row r="{row}">'
            + "".join(self.cell(name, cells[name])
                      for name in sorted(cells, key=lambda n: (len(n), n)))
            + "</row>"
            for row, cells in sorted(rows.items()))
        merged = "".join(f'<mergeCell ref="{ref}"/>' for ref in sheet.get("merged", []))
        if merged:
            merged = f'<mergeCells count="{len(sheet["merged"])}">{merged}</mergeCells>'
        dimension = sheet.get("dimension", "")
        if dimension:
            dimension = f'<dimension ref="{dimension}"/>'
        selected = ' tabSelected="1"' if index == self.description.get("active", 0) else ""
        return (f'{XML}<worksheet xmlns="{MAIN}" xmlns:r="{RELS}">{dimension}<sheetViews>'
                f'<sheetView{selected} workbookViewId="0"/></sheetViews>'
                f'{sheet.get("head", "")}'
                f"<sheetData>{data}</sheetData>{merged}{sheet.get('tail', '')}</worksheet>")

    def styles(self):
        apply = "true" if self.libre else "1"
        xfs = "".join(
            f'<xf numFmtId="{f}" fontId="0" fillId="0" borderId="0" xfId="0"'
            + (f' applyNumberFormat="{apply}"' if f else "") + "/>" for f in STYLES)
        return (f'{XML}<styleSheet xmlns="{MAIN}"><fonts count="1"><font><sz val="11"/>'
                '<name val="Calibri"/></font></fonts><fills count="1"><fill>'
                '<patternFill patternType="none"/></fill></fills><borders count="1"><border/>'
                '</borders><cellStyleXfs count="1"><xf numFmtId="0" fontId="0" fillId="0" '
                f'borderId="0"/></cellStyleXfs><cellXfs count="{len(STYLES)}">{xfs}</cellXfs>'
                "</styleSheet>")

    def parts(self):
        sheets = self.description["sheets"]
        yield "_rels/.rels", (
            f'{XML}<Relationships xmlns="{PACKAGE}/relationships"><Relationship Id="rId1" '
            f'Type="{RELS}/officeDocument" Target="xl/workbook.xml"/></Relationships>')
        tabs = "".join(f'<sheet name="{escape(s["name"])}" sheetId="{i + 1}" r:id="rId{i + 1}"/>'
                       for i, s in enumerate(sheets))
        yield "xl/workbook.xml", (
            f'{XML}<workbook xmlns="{MAIN}" xmlns:r="{RELS}"><bookViews><workbookView '
            f'activeTab="{self.description.get("active", 0)}"/></bookViews><sheets>{tabs}</sheets>'
            f'{self.description.get("workbook", "")}</workbook>')
        links = "".join(f'<Relationship Id="rId{i + 1}" Type="{RELS}/worksheet" '
                        f'Target="worksheets/sheet{i + 1}.xml"/>' for i in range(len(sheets)))
        yield "xl/_rels/workbook.xml.rels", (
            f'{XML}<Relationships xmlns="{PACKAGE}/relationships">{links}<Relationship '
            f'Id="rIdStyles" Type="{RELS}/styles" Target="styles.xml"/><Relationship '
            f'Id="rIdStrings" Type="{RELS}/sharedStrings" Target="sharedStrings.xml"/>'
            "</Relationships>")
        yield "xl/styles.xml", self.styles()
        for i, sheet in enumerate(sheets):
            yield f"xl/worksheets/sheet{i + 1}.xml", self.sheet(i, sheet)
        yield "xl/sharedStrings.xml", shared_strings(self.strings)
        overrides = "".join(
            f'<Override PartName="/xl/worksheets/sheet{i + 1}.xml" '
            f'ContentType="{TYPES}.worksheet+xml"/>' for i in range(len(sheets)))
        yield "[Content_Types].xml", (
            f'{XML}<Types xmlns="{PACKAGE}/content-types"><Default Extension="rels" '
            'ContentType="application/vnd.openxmlformats-package.relationships+xml"/>'
            '<Default Extension="xml" ContentType="application/xml"/><Override '
            f'PartName="/xl/workbook.xml" ContentType="{TYPES}.sheet.main+xml"/>{overrides}'
            f'<Override PartName="/xl/styles.xml" ContentType="{TYPES}.styles+xml"/><Override '
            f'PartName="/xl/sharedStrings.xml" ContentType="{TYPES}.sharedStrings+xml"/></Types>')

    def save(self, path):
        with zipfile.ZipFile(path, "w", zipfile.ZIP_DEFLATED) as book:
            for name, text in self.parts():
                book.writestr(name, text)


def save_cells(path, description):
    Writer(description).save(path)


def save_by_openpyxl(path, description):
    book = openpyxl.Workbook()
    for name, value in description["sheets"][0]["cells"].items():
        book.active[name] = value
    book.save(path)


def officialize(path):
    """Rewrites what openpyxl saves as office programs save it: part names of relationships are
    relative, texts are shared, and a cell's format says which of its parts apply."""
    with zipfile.ZipFile(path) as book:
        parts = {name: book.read(name) for name in book.namelist()}
    for name in parts:
        if name.endswith(".rels"):
            folder = name[:name.index("_rels/")]
            text = parts[name].decode()
            text = re.sub(r'Target="/([^"]*)"', lambda m: 'Target="%s"' % relative(m[1], folder),
                          text)
            parts[name] = text.encode()
    strings = []
    for name in parts:
        if name.startswith("xl/worksheets/sheet"):
            parts[name] = re.sub(
                r't="inlineStr"><is>(.*?)</is>',
                lambda m: strings.append(m[1]) or f't="s"><v>{len(strings) - 1}</v>',
                parts[name].decode()).encode()
    parts["xl/sharedStrings.xml"] = shared_strings(strings).encode()
    add_to_part(parts, "xl/_rels/workbook.xml.rels", "</Relationships>",
                f'<Relationship Id="rIdStrings" Type="{RELS}/sharedStrings" '
                'Target="sharedStrings.xml"/>')
    add_to_part(parts, "[Content_Types].xml", "</Types>",
                f'<Override PartName="/xl/sharedStrings.xml" '
                f'ContentType="{TYPES}.sharedStrings+xml"/>')
    styles = parts["xl/styles.xml"].decode()
    head, xfs, tail = re.match(r"(.*<cellXfs[^>]*>)(.*)(</cellXfs>.*)", styles, re.S).groups()
    xfs = re.sub(r' apply\w+="\w+"', "", xfs)
    xfs = re.sub(r"<xf ([^>]*?)(/?)>",
                 r'<xf \1 applyNumberFormat="1" applyFont="1" applyFill="1" applyBorder="1"\2>',
                 xfs)
    xfs = re.sub(r"(<xf [^>]*[^/])>(\s*<alignment)", r'\1 applyAlignment="1">\2', xfs)
    parts["xl/styles.xml"] = (head + xfs + tail).encode()
    with zipfile.ZipFile(path, "w", zipfile.ZIP_DEFLATED) as book:
        for name, data in parts.items():
            book.writestr(name, data)


def add_to_part(parts, name, end, xml):
    text = parts[name].decode()
    if "sharedStrings" not in text:
        parts[name] = text.replace(end, xml + end).encode()


def shared_strings(strings):
    items = "".join(f"<si>{xml}</si>" for xml in strings)
    return (f'{XML}<sst xmlns="{MAIN}" count="{len(strings)}" uniqueCount="{len(strings)}">'
            f"{items}</sst>")


def relative(target, folder):
    if not folder or target.startswith(folder):
        return target[len(folder):]
    return "../" + target.split("/", 1)[1]


def save_template(path):
    book = openpyxl.Workbook()
    sheet = book.active
    sheet.title = "Выдача"
    sheet.sheet_view.tabSelected = True
    thin = Side(style="thin", color="FF7C99FF")
    sheet["A1"] = "Книга регистрации"
    sheet["A1"].font = Font(name="Arial", size=16, bold=True, color="FF123456")
    sheet.merge_cells("A1:D1")
    sheet["A1"].alignment = Alignment(horizontal="center")
    for column, text in zip("ABCD", ["Фамилия", "Имя", "Дата", "Отметка"]):
        cell = sheet[column + "2"]
        cell.value = text
        cell.font = Font(name="Calibri", size=11, bold=True)
        cell.fill = PatternFill("solid", fgColor="FFEEF2FF")
        cell.border = Border(bottom=thin)
    for row in range(3, 6):
        for column in "ABCD":
            sheet[f"{column}{row}"].border = Border(left=thin, right=thin, top=thin, bottom=thin)
            sheet[f"{column}{row}"].font = Font(name="Calibri", size=11, italic=True)
    for column, width in zip("ABCD", [31.5, 22, 14, 9.25]):
        sheet.column_dimensions[column].width = width
    sheet.row_dimensions[1].height = 40
    sheet["F1"] = "=COUNTA(A3:A999)"
    check = DataValidation(type="list", formula1='"Оригинал,Дубликат"')
    check.add("D3:D99")
    sheet.add_data_validation(check)
    sheet.conditional_formatting.add(
        "D3:D99", CellIsRule(operator="equal", formula=['"Дубликат"'],
                             fill=PatternFill("solid", bgColor="FFF46060")))
    other = book.create_sheet("Справка")
    other["B2"] = "Не менять"
    other["B2"].fill = PatternFill("solid", fgColor="FFFFFF00")
    other["B3"] = 1234.5
    other["B3"].number_format = "#,##0.00"
    other.column_dimensions["B"].width = 44
    hidden = book.create_sheet("Служебный")
    hidden["A1"] = "код"
    hidden.sheet_state = "hidden"
    book.save(path)
    officialize(path)


def save_extras(path):
    """A template with what a workbook can have beside cells."""
    save_template(path)
    book = openpyxl.load_workbook(path)
    sheet = book["Выдача"]
    sheet.freeze_panes = "A3"
    sheet.auto_filter.ref = "A2:D9"
    sheet.page_setup.orientation = "landscape"
    sheet["A2"].comment = Comment("Как в паспорте", "канцелярия")
    sheet.print_title_rows = "1:2"
    book.save(path)
    officialize(path)


def save_rich(path):
    """All that the library keeps of a template, as openpyxl itself saves it."""
    book = openpyxl.Workbook()
    sheet = book.active
    sheet.title = "Выдача"
    sheet.sheet_view.tabSelected = True
    thin = Side(style="thin", color="FF7C99FF")
    for row in range(1, 7):
        for column in "ABCD":
            cell = sheet[f"{column}{row}"]
            cell.value = f"{column}{row}" if column != "D" else row * 1.5
            cell.font = Font(name="Arial", size=9 + row, bold=row % 2 == 0, italic=column == "A",
                             color="FF123456")
            cell.fill = PatternFill("solid", fgColor=f"FFEE{row}{row}FF")
            cell.border = Border(bottom=thin)
            cell.alignment = Alignment(horizontal="center", vertical="top", wrap_text=column == "B")
            if column == "D":
                cell.number_format = "#,##0.000"
    sheet["C2"] = datetime.date(2001, 3, 9)
    sheet["C2"].number_format = "dd.mm.yyyy"
    sheet["C3"] = True
    sheet["C4"] = "=SUM(D1:D6)"
    sheet["C5"] = "ссылка"
    sheet["C5"].hyperlink = "https://school.example/?a=1&b=2"
    sheet.merge_cells("A1:B1")
    sheet.column_dimensions["A"].width = 31.5
    sheet.column_dimensions["C"].hidden = True
    sheet.row_dimensions[1].height = 40
    sheet.row_dimensions[9].height = 12.5
    check = DataValidation(type="list", formula1='"да,нет"', allow_blank=True)
    check.add("D3:D99")
    check.add("F1")
    sheet.add_data_validation(check)
    sheet.conditional_formatting.add("D3:D99", CellIsRule(
        operator="greaterThan", formula=["5"], fill=PatternFill("solid", bgColor="FFF46060")))
    sheet.add_image(Image(io.BytesIO(PICTURE)), "F3")
    chart = BarChart()
    chart.title = "Часы"
    chart.add_data(Reference(sheet, min_col=4, min_row=1, max_row=6))
    sheet.add_chart(chart, "H3")
    other = book.create_sheet("Скрытый")
    other["B2"] = 1234.5
    other.sheet_state = "hidden"
    for name, scope in (("Ставка", None), ("Свой", 1)):
        book.defined_names.append(DefinedName(name, localSheetId=scope, attr_text="Скрытый!$B$2"))
    book.save(path)


PLAIN = {"sheets": [{"name": "Лист1", "cells": {"A2": "нет", "B2": "Иванов",
                                               "A3": "нет", "B3": "Петров"}}]}
SHEET = "xl/worksheets/sheet1.xml"


def plain_parts():
    return {name: text.encode() for name, text in Writer(PLAIN).parts()}


def zipped(parts):
    out = io.BytesIO()
    with zipfile.ZipFile(out, "w", zipfile.ZIP_DEFLATED) as book:
        for name, data in parts.items():
            book.writestr(name, data)
    return out.getvalue()


def with_part(name, change):
    """A workbook one part of which was changed."""
    parts = plain_parts()
    parts[name] = change(parts[name].decode()).encode()
    return zipped(parts)


def with_replaced(name, old, new):
    def change(text):
        assert old in text
        return text.replace(old, new)
    return with_part(name, change)


def directory_entry(data, name):
    """Where the directory tells of the part."""
    at = data.index(b"PK\x01\x02")
    while data[at + 46:at + 46 + len(name)] != name.encode():
        at = data.index(b"PK\x01\x02", at + 1)
    return at


def patched(name, offset, value, size=4):
    """A sound archive but for one number in the directory."""
    data = bytearray(zipped(plain_parts()))
    at = directory_entry(data, name) + offset
    data[at:at + size] = value.to_bytes(size, "little")
    return bytes(data)


def with_flipped_bit():
    data = bytearray(zipped(plain_parts()))
    at = int.from_bytes(data[directory_entry(data, SHEET) + 42:][:4], "little")
    data[at + 30 + len(SHEET) + 200] ^= 4
    return bytes(data)


def with_second_part(name):
    parts = plain_parts()
    parts[name] = parts[SHEET]
    return zipped(parts)


def bomb(declared=None):
    parts = plain_parts()
    parts[SHEET] = parts[SHEET].replace(b"</row>", b" " * (160 << 20) + b"</row>", 1)
    data = bytearray(zipped(parts))
    if declared is not None:
        at = directory_entry(data, SHEET) + 24
        data[at:at + 4] = declared.to_bytes(4, "little")
    return bytes(data)


DAMAGES = {
    "text file": lambda: "Фамилия;Имя\nИванов;Иван\n".encode(),
    "empty file": lambda: b"",
    "cut in the middle": lambda: zipped(plain_parts())[:1500],
    "cut at the end": lambda: zipped(plain_parts())[:-10],
    "another zip": lambda: zipped({"readme.txt": b"no workbook"}),
    "flipped bit": with_flipped_bit,
    "part behind the end": lambda: patched(SHEET, 42, 0x7fffffff),
    "declared size too large": lambda: patched(SHEET, 24, 0xfffffff0),
    "encrypted": lambda: patched(SHEET, 8, 1, 2),
    "unknown method": lambda: patched(SHEET, 10, 99, 2),
    "bomb": bomb,
    "bomb that denies it": lambda: bomb(2000),
    "two parts of one name": lambda: with_second_part(SHEET.upper()),
    "sheet without a part": lambda: zipped(
        {name: data for name, data in plain_parts().items() if name != SHEET}),
    "sheet without a relation": lambda: with_replaced("xl/workbook.xml", 'r:id="rId1"',
                                                      'r:id="rId77"'),
    "sheet in another vocabulary": lambda: with_replaced(
        SHEET, "spreadsheetml/2006/main", "wordprocessingml/2006/main"),
    "texts cut": lambda: with_part("xl/sharedStrings.xml", lambda text: text[:-9]),
    "formats cut": lambda: with_part("xl/styles.xml", lambda text: text[:-9]),
    "relations cut": lambda: with_part("xl/_rels/workbook.xml.rels", lambda text: text[:-9]),
    "unknown encoding": lambda: with_replaced(SHEET, "UTF-8", "klingon-1"),
    "row that no sheet has": lambda: with_replaced(SHEET, '<row r="3">', '<row r="1048577">'),
    "sheet cut": lambda: with_part(SHEET, lambda text: text[:text.index("</row>") + 30]),
    "tags crossed": lambda: with_replaced(SHEET, "</c></row>", "</row></c>"),
    "validation cut": lambda: with_replaced(
        SHEET, "</worksheet>", "<dataValidations count='1'><dataValidation type='list'>"),
    "entities": lambda: with_replaced(
        SHEET, "<worksheet", '<!DOCTYPE x [<!ENTITY a "aaaaaaaa">]><worksheet'),
    "cell that no sheet has": lambda: with_replaced(SHEET, 'r="B3"', 'r="ZZZ9999999"'),
    "dialog sheet": lambda: with_replaced("xl/_rels/workbook.xml.rels",
                                          'relationships/worksheet"',
                                          'relationships/dialogsheet"'),
}


def many(count, text):
    return "".join(text.format(i) for i in range(count))


# Beyond what is read at all.
EXCESSES = {
    "too many cells": lambda: with_part(SHEET, lambda text: re.sub(
        "<sheetData>.*</sheetData>", "<sheetData>" + many(1001, "<row>" + '<c t="b"><v>1</v></c>'
                                                          * 1000 + "</row>") + "</sheetData>",
        text)),
    "too wide for its rows": lambda: with_part(SHEET, lambda text: re.sub(
        "<sheetData>.*</sheetData>", '<sheetData><row r="1"><c r="XFD1"><v>1</v></c></row>'
        + many(7000, "<row><c><v>1</v></c></row>") + "</sheetData>", text)),
    "text that all cells share": lambda: zipped({
        **plain_parts(),
        "xl/sharedStrings.xml": shared_strings(["<t>" + "x" * 300000 + "</t>"]).encode(),
        SHEET: re.sub("<sheetData>.*</sheetData>", "<sheetData><row>" + '<c t="s"><v>0</v></c>'
                      * 1000 + "</row></sheetData>", plain_parts()[SHEET].decode()).encode()}),
    "rows far apart on many sheets": lambda: changed(
        changed(plain_parts(), SHEET, "</sheetData>", '<row r="1048576"><c><v>1</v></c></row>'
                                                      "</sheetData>"),
        "xl/workbook.xml", "</sheets>",
        many(200, '<sheet name="s{0}" sheetId="{0}" r:id="rId1"/>') + "</sheets>"),
    "too many elements": lambda: with_replaced(
        SHEET, "</worksheet>", "<mergeCells>" + "<a/>" * 5000001 + "</mergeCells></worksheet>"),
    "too many fonts": lambda: with_replaced("xl/styles.xml", "</fonts>",
                                            "<font/>" * 65536 + "</fonts>"),
    "too many pictures": lambda: drawn(ANCHOR.format(PIC) * 10001),
    "too many workbooks": lambda: with_replaced(
        "xl/workbook.xml", "</workbook>",
        "<externalReferences>" + "<externalReference/>" * 1001 + "</externalReferences></workbook>"),
    "too many sheets": lambda: with_replaced(
        "xl/workbook.xml", "</sheets>",
        many(1000, '<sheet name="s{0}" sheetId="{0}" r:id="rId1"/>') + "</sheets>"),
    "too many formats": lambda: with_part(
        "xl/styles.xml", lambda text: text.replace("</cellXfs>", "<xf/>" * 65537 + "</cellXfs>")),
    "too many parts": lambda: zipped({**plain_parts(), **{f"x{i}": b"" for i in range(10000)}}),
    "nested too deep": lambda: with_replaced(SHEET, "</worksheet>",
                                             "<a>" * 200 + "</a>" * 200 + "</worksheet>"),
    "too many attributes": lambda: with_replaced(
        SHEET, "<sheetViews>", "<a " + many(100000, 'a{0}="" ') + "/><sheetViews>"),
    "attributes behind a quoted bracket": lambda: with_replaced(
        SHEET, "<sheetViews>", "<a " + many(100000, 'a{0}=">" ') + "/><sheetViews>"),
    "attributes behind a comment": lambda: with_replaced(
        SHEET, "<sheetViews>",
        "<!-- \" --><a " + many(100000, "a{0}='' ") + "/><!-- \" --><sheetViews>"),
    "too many namespaces": lambda: with_replaced(
        SHEET, "<sheetViews>", "".join(f"<a {many(200, f'xmlns:p{d}x{{0}}=%s ' % quoted('u'))}>"
                                       for d in range(20)) + "</a>" * 20 + "<sheetViews>"),
}


def quoted(text):
    return f'"{text}"'


def save_damaged(path, way):
    write_made(path, {**DAMAGES, **EXCESSES}[way]())


def write_made(path, made):
    with open(path, "wb") as file:
        file.write(made if isinstance(made, bytes) else zipped(made))

PICTURE = base64.b64decode(
    "iVBORw0KGgoAAAANSUhEUgAAAAEAAAABCAYAAAAfFcSJAAAADUlEQVR42mNk+M9QDwADhgGAWjR9awAAAABJRU5ErkJg"
    "gg==")
DRAWING = "http://schemas.openxmlformats.org/drawingml/2006"
ANCHOR = ("<xdr:twoCellAnchor><xdr:from><xdr:col>0</xdr:col><xdr:row>0</xdr:row></xdr:from>"
          "<xdr:to><xdr:col>3</xdr:col><xdr:row>3</xdr:row></xdr:to>{}<xdr:clientData/>"
          "</xdr:twoCellAnchor>")
PIC = '<xdr:pic><xdr:blipFill><a:blip r:embed="rId1"/></xdr:blipFill></xdr:pic>'
FRAME = ('<xdr:graphicFrame><a:graphic><a:graphicData><c:chart r:id="rId1"/></a:graphicData>'
         "</a:graphic></xdr:graphicFrame>")
CHART = ('<c:chartSpace xmlns:c="%s/chart" xmlns:a="%s/main"><c:chart><c:plotArea><c:layout/>'
         '<c:barChart><c:barDir val="col"/><c:ser><c:val><c:numRef><c:f>Лист1!$A$2:$A$3</c:f>'
         '</c:numRef></c:val></c:ser><c:axId val="1"/><c:axId val="2"/></c:barChart><c:catAx>'
         '<c:axId val="1"/><c:axPos val="b"/><c:crossAx val="2"/></c:catAx><c:valAx>'
         '<c:axId val="2"/><c:axPos val="l"/><c:crossAx val="1"/></c:valAx></c:plotArea>'
         "</c:chart></c:chartSpace>" % (DRAWING, DRAWING))
DRAWN_SHEET = "xl/worksheets/_rels/sheet1.xml.rels"


def relations(*each):
    return (f'{XML}<Relationships xmlns="{PACKAGE}/relationships">' + "".join(
        f'<Relationship Id="rId{i + 1}" Type="{RELS}/{kind}" Target="{target}"/>'
        for i, (kind, target) in enumerate(each)) + "</Relationships>").encode()


def drawn(objects, **more):
    """A workbook with a drawing of these objects; further parts by their names below xl/."""
    parts = plain_parts()
    parts[SHEET] = parts[SHEET].replace(b"</worksheet>", b'<drawing r:id="rId1"/></worksheet>')
    parts[DRAWN_SHEET] = relations(("drawing", "../drawings/drawing1.xml"))
    parts["xl/drawings/drawing1.xml"] = (
        f'{XML}<xdr:wsDr xmlns:xdr="{DRAWING}/spreadsheetDrawing" xmlns:a="{DRAWING}/main" '
        f'xmlns:c="{DRAWING}/chart" xmlns:r="{RELS}">{objects}</xdr:wsDr>').encode()
    parts["xl/drawings/_rels/drawing1.xml.rels"] = more.pop("links", relations())
    for name, data in more.pop("parts", {}).items():
        parts["xl/" + name] = data
    return parts


def pictured(picture=PICTURE, name="media/image1.png"):
    return drawn(ANCHOR.format(PIC), links=relations(("image", "../" + name)),
                 parts={name: picture})


def charted(chart=CHART):
    return drawn(ANCHOR.format(FRAME), links=relations(("chart", "../charts/chart1.xml")),
                 parts={"charts/chart1.xml": chart.encode()})


def changed(parts, name, old, new):
    old, new = (text if isinstance(text, bytes) else text.encode() for text in (old, new))
    assert old in parts[name], (name, old)
    return {**parts, name: parts[name].replace(old, new)}


def in_sheet(old, new):
    return changed(plain_parts(), SHEET, old, new)


def behind_cells(xml):
    return in_sheet("</worksheet>", xml + "</worksheet>")


def in_styles(old, new):
    return changed(plain_parts(), "xl/styles.xml", old, new)


def in_book(old, new):
    return changed(plain_parts(), "xl/workbook.xml", old, new)


def two_sheets(kind="worksheet", target="worksheets/sheet1.xml", first=False):
    tab = '<sheet name="Второй" sheetId="2" r:id="rId9"/>'
    old = "<sheets>" if first else "</sheets>"
    parts = in_book(old, old + tab if first else tab + old)
    return changed(parts, "xl/_rels/workbook.xml.rels", "</Relationships>",
                   f'<Relationship Id="rId9" Type="{RELS}/{kind}" Target="{target}"/>'
                   "</Relationships>")


def encoded(encoding, mark=b""):
    def encode(data):
        text = data.decode().replace('encoding="UTF-8"', f'encoding="{encoding}"')
        return mark + text.encode(encoding)
    return {name: encode(data) for name, data in plain_parts().items()}


def renamed(change):
    """All parts under other names; their relations follow."""
    return {change(name): data for name, data in plain_parts().items()}


FIRST_XF = '<cellXfs count="4"><xf numFmtId="0" fontId="0" fillId="0" borderId="0"'

# What the reading library does not survive, or misunderstands, and what a good reader does.
ODDITIES = {
    "packed size too large": lambda: patched(SHEET, 20, 0x7fffffff),
    "cells without names": lambda: {**plain_parts(), SHEET: re.sub(
        rb' r="[AB]\d"', b"", plain_parts()[SHEET])},
    "rows without numbers": lambda: {**plain_parts(), SHEET: re.sub(
        rb' r="\w+"', b"", plain_parts()[SHEET]).replace(b"<sheetData>", b"<sheetData><row/>")},
    "dimension without cells": lambda: in_sheet("<sheetViews>", '<dimension ref=""/><sheetViews>'),
    "dimension that lies": lambda: in_sheet("<sheetViews>", '<dimension ref="A1"/><sheetViews>'),
    "dimension of a whole sheet": lambda: in_sheet(
        "<sheetViews>", '<dimension ref="A1:XFD1048576"/><sheetViews>'),
    "endless columns": lambda: in_sheet(
        "<sheetData>", '<cols><col min="1" max="2147483647" width="9"/></cols><sheetData>'),
    "columns below one": lambda: in_sheet(
        "<sheetData>", '<cols><col min="-2147483648" max="3" width="9"/></cols><sheetData>'),
    "columns without end": lambda: in_sheet(
        "<sheetData>", "<cols>" + '<col min="1" max="2"/><col min="2" max="16384"/>' * 100000
                       + "</cols><sheetData>"),
    "links without end": lambda: {
        **behind_cells("<hyperlinks>" + many(40000, '<hyperlink ref="A{0}" r:id="rId39999"/>')
                       + "</hyperlinks>"),
        DRAWN_SHEET: relations(*[("hyperlink", "x")] * 40000)},
    "areas without end": lambda: behind_cells(
        '<dataValidations><dataValidation sqref="' + "A1 " * 1000000 + '"/></dataValidations>'),
    "columns that overlap": lambda: in_sheet(
        "<sheetData>", '<cols><col min="1" max="5" width="9"/><col min="1" max="16384"/></cols>'
                       "<sheetData>"),
    "name of a missing sheet": lambda: in_book(
        "</workbook>", '<definedNames><definedName name="x" localSheetId="7">1</definedName>'
                       '<definedName name="y" localSheetId="-1">1</definedName>'
                       "</definedNames></workbook>"),
    "name with elements in it": lambda: in_book(
        "</workbook>", '<definedNames><definedName name="x">1<b/></definedName></definedNames>'
                       "</workbook>"),
    "active sheet that is none": lambda: in_book('activeTab="0"', 'activeTab="99999"'),
    "active sheet below zero": lambda: in_book('activeTab="0"', 'activeTab="-5"'),
    "negative font": lambda: in_styles(FIRST_XF, FIRST_XF.replace(
        'fontId="0"', 'applyFont="1" fontId="-9999999"')),
    "negative fill": lambda: in_styles(FIRST_XF, FIRST_XF.replace(
        'fillId="0"', 'fillId="-9999999"')),
    "negative border": lambda: in_styles(FIRST_XF, FIRST_XF.replace(
        'borderId="0"', 'applyBorder="1" borderId="-9999999"')),
    "font that is none": lambda: in_styles(FIRST_XF, FIRST_XF.replace('fontId="0"', 'fontId="7"')),
    "number format beyond all": lambda: in_styles(
        "<fonts", '<numFmts><numFmt numFmtId="2147483647" formatCode="0"/></numFmts><fonts'),
    "formats before their fonts": lambda: {**plain_parts(), "xl/styles.xml": re.sub(
        rb"(<fonts.*</fonts>)(.*)(</styleSheet>)", rb"\2\1\3", plain_parts()["xl/styles.xml"])},
    "format of a cell that is none": lambda: in_sheet('s="0"', 's="99999"'),
    "rule without areas": lambda: behind_cells(
        '<conditionalFormatting sqref=""><cfRule type="cellIs" dxfId="-7" priority="1">'
        "<formula>1</formula></cfRule></conditionalFormatting>"),
    "rule with a missing format": lambda: behind_cells(
        '<conditionalFormatting sqref="A1"><cfRule type="cellIs" dxfId="-7" priority="1">'
        "<formula>1<b/></formula></cfRule></conditionalFormatting>"),
    "bar without ends": lambda: behind_cells(
        '<conditionalFormatting sqref="A1"><cfRule type="dataBar" priority="1"><dataBar/></cfRule>'
        "</conditionalFormatting>"),
    "check with elements in it": lambda: behind_cells(
        '<dataValidations count="1"><dataValidation type="list" sqref="A1"><formula1>1<b/>2'
        "</formula1></dataValidation></dataValidations>"),
    "check without areas": lambda: behind_cells(
        '<dataValidations count="1"><dataValidation type="list" sqref="-"/></dataValidations>'),
    "merged cells that are none": lambda: behind_cells(
        '<mergeCells count="2"><mergeCell ref="ZZZZ1:B2"/><mergeCell/></mergeCells>'),
    "link of an area": lambda: behind_cells(
        '<hyperlinks><hyperlink ref="A1:B2" location="Лист1!A1"/></hyperlinks>'),
    "link without a relation": lambda: behind_cells(
        '<hyperlinks><hyperlink ref="A1" r:id="rId77"/></hyperlinks>'),
    "shared formula without a first": lambda: in_sheet(
        "</sheetData>", '<row r="9"><c r="A9"><f t="shared" si="5"/><v>1</v></c></row></sheetData>'),
    "shared formula without an area": lambda: in_sheet(
        "</sheetData>", '<row r="9"><c r="A9"><f t="shared" si="5">1</f><v>1</v></c></row>'
                        "</sheetData>"),
    "formula with elements in it": lambda: in_sheet(
        "</sheetData>", '<row r="9"><c r="A9"><f>1<b/></f><v>1<b/></v></c></row></sheetData>'),
    "text that is none": lambda: in_sheet(
        "</sheetData>", '<row r="9"><c r="A9" t="s"><v>-9</v></c><c r="B9" t="s"><v>99</v></c>'
                        "</row></sheetData>"),
    "number beyond all": lambda: in_sheet(
        "</sheetData>", '<row r="9"><c r="A9" s="1"><v>1e300</v></c><c r="B9" s="1" t="n">'
                        "<v>-1e300</v></c></row></sheetData>"),
    "empty text": lambda: changed(plain_parts(), "xl/sharedStrings.xml", "</sst>", "<si/></sst>"),
    "cells in cells": lambda: in_sheet('<row r="3">', '<row r="3"><c r="C3"><c r="D3"/></c>'),
    "dialog sheet beside": lambda: two_sheets("dialogsheet"),
    "dialog sheet before": lambda: two_sheets("dialogsheet", first=True),
    "macro sheet before": lambda: two_sheets("xlMacrosheet", first=True),
    "chart sheet without a chart": lambda: two_sheets("chartsheet", first=True),
    "sheet twice": lambda: two_sheets(),
    "sheets of one name": lambda: changed(two_sheets(), "xl/workbook.xml", "Второй", "Лист1"),
    "link to a workbook that is none": lambda: in_book(
        "</workbook>", '<externalReferences><externalReference r:id="rId77"/></externalReferences>'
                       "</workbook>"),
    "drawing without a part": lambda: {name: data for name, data in pictured().items()
                                       if name != "xl/drawings/drawing1.xml"},
    "drawing without a relation": lambda: behind_cells('<drawing r:id="rId77"/>'),
    "picture without a relation": lambda: drawn(ANCHOR.format(PIC)),
    "picture without a part": lambda: drawn(ANCHOR.format(PIC), links=relations(
        ("image", "../media/image1.png"))),
    "picture without a picture": lambda: drawn(ANCHOR.format("<xdr:pic/>")),
    "empty picture": lambda: pictured(b""),
    "place without an object": lambda: drawn(ANCHOR.format("")),
    "shape": lambda: drawn(ANCHOR.format('<xdr:sp macro=""><xdr:txBody/></xdr:sp>')),
    "group": lambda: drawn(ANCHOR.format(f"<xdr:grpSp>{PIC}</xdr:grpSp>"), links=relations(
        ("image", "../media/image1.png")), parts={"media/image1.png": PICTURE}),
    "chart without a relation": lambda: drawn(ANCHOR.format(FRAME)),
    "chart of an unknown kind": lambda: charted(CHART.replace("barChart", "radarChart")),
    "chart of no kind": lambda: charted(CHART.replace("barChart", "xChart")),
    "chart in a chart": lambda: charted(CHART.replace("<c:layout/>", "<c:barChart/>")),
    "axis that never ends": lambda: charted(CHART.replace(
        '<c:axPos val="b"/>', "<c:title><c:overlay><c:title/></c:overlay></c:title>")),
    "drawing of two sheets": lambda: changed(
        {**changed(pictured(), "xl/workbook.xml", "</sheets>",
                   '<sheet name="Второй" sheetId="2" r:id="rId9"/></sheets>'),
         "xl/worksheets/sheet2.xml": pictured()[SHEET],
         "xl/worksheets/_rels/sheet2.xml.rels": pictured()[DRAWN_SHEET]},
        "xl/_rels/workbook.xml.rels", "</Relationships>",
        f'<Relationship Id="rId9" Type="{RELS}/worksheet" Target="worksheets/sheet2.xml"/>'
        "</Relationships>"),
    "parts without an ending": lambda: {
        name.replace("media/image1.png", "media/image"): data.replace(b"image1.png", b"image")
        for name, data in pictured().items()},
    "parts in another case": lambda: renamed(str.upper),
    "parts with backslashes": lambda: renamed(lambda name: name.replace("/", "\\")),
    "parts under other names": lambda: {
        **{name: data for name, data in plain_parts().items() if name != SHEET},
        "sheet": plain_parts()[SHEET], "xl/_rels/workbook.xml.rels": relations(
            ("worksheet", "/sheet"), ("styles", "../xl/./styles.xml"),
            ("sharedStrings", "%73haredStrings.xml"))},
    "elements with a prefix": lambda: {**plain_parts(), SHEET: re.sub(
        rb"<(/?)(?=[a-zA-Z])", rb"<\1x:", plain_parts()[SHEET]).replace(b"xmlns=", b"xmlns:x=")},
    "relations with another prefix": lambda: {
        **plain_parts(), "xl/workbook.xml": plain_parts()["xl/workbook.xml"].replace(
            b"xmlns:r=", b"xmlns:rel=").replace(b"r:id", b"rel:id")},
    "alternatives": lambda: in_sheet(
        '<row r="3">',
        f'<mc:AlternateContent xmlns:mc="{COMPATIBILITY}"><mc:Choice Requires="x14"><row r="3">'
        '<c r="B3"><v>7</v></c></row></mc:Choice><mc:Fallback><row r="9"/></mc:Fallback>'
        '</mc:AlternateContent><row r="3">'),
    "byte order mark": lambda: encoded("UTF-8", b"\xef\xbb\xbf"),
    "UTF-16": lambda: encoded("UTF-16"),
    "UTF-16 without a mark": lambda: encoded("UTF-16BE"),
    "another encoding": lambda: encoded("windows-1251"),
    "form controls": lambda: drawn(
        f'<mc:AlternateContent xmlns:mc="{COMPATIBILITY}"><mc:Choice Requires="a14">'
        + ANCHOR.format("<xdr:sp/>") + "</mc:Choice><mc:Fallback/></mc:AlternateContent>"),
    "ill-formed comments": lambda: {**plain_parts(), "xl/drawings/vmlDrawing1.vml": b"<xml><br></xml>",
                                    "xl/comments1.xml": b"<comments><"},
    "OLE object": lambda: behind_cells(
        '<oleObjects><oleObject progId="x" shapeId="1"><objectPr><anchor xmlns:xdr="'
        f'{DRAWING}/spreadsheetDrawing"><from><xdr:col>1</xdr:col></from></anchor></objectPr>'
        "</oleObject></oleObjects>"),
    "unknown parts": lambda: {**plain_parts(), "xl/calcChain.xml": b"<", "custom.xml": b"<a"},
}


def save_odd(path, way):
    write_made(path, ODDITIES[way]())


def save_rows(path, count):
    parts = plain_parts()
    rows = "".join(f'<row r="{row}"><c r="A{row}" t="s"><v>0</v></c>'
                   f'<c r="B{row}"><v>{row}</v></c></row>' for row in range(1, count + 1))
    parts[SHEET] = re.sub("<sheetData>.*</sheetData>", f"<sheetData>{rows}</sheetData>",
                          parts[SHEET].decode()).encode()
    with open(path, "wb") as file:
        file.write(zipped(parts))


def read(path):
    book = openpyxl.load_workbook(path)
    return {
        "active": book.active.title,
        "sheets": [sheet.title for sheet in book],
        "hidden": [sheet.title for sheet in book if sheet.sheet_state != "visible"],
        "selected": [sheet.title for sheet in book if sheet.sheet_view.tabSelected],
        "names": [[n.name, n.localSheetId, n.attr_text] for n in book.defined_names.definedName],
        "content": {sheet.title: read_sheet(sheet) for sheet in book},
    }


def read_sheet(sheet):
    cells = [cell for row in sheet.iter_rows() for cell in row]
    return {
        "cells": {c.coordinate: c.value for c in cells if c.value is not None},
        "types": {c.coordinate: c.data_type for c in cells if c.value is not None},
        "links": {c.coordinate: c.hyperlink.target for c in cells if c.hyperlink},
        "bold": [c.coordinate for c in cells if c.font.b],
        "italic": [c.coordinate for c in cells if c.font.i],
        "fonts": {c.coordinate: [c.font.name, c.font.sz, c.font.color and c.font.color.rgb]
                  for c in cells if c.font.sz != 11},
        "fills": {c.coordinate: c.fill.fgColor.rgb for c in cells if c.fill.patternType == "solid"},
        "borders": [c.coordinate for c in cells if c.border.bottom.style == "thin"],
        "centered": [c.coordinate for c in cells if c.alignment.horizontal == "center"],
        "formats": {c.coordinate: c.number_format for c in cells if c.number_format != "General"},
        "widths": {k: d.width for k, d in sorted(sheet.column_dimensions.items())},
        "heights": {k: d.height for k, d in sheet.row_dimensions.items() if d.height},
        "merged": [str(r) for r in sheet.merged_cells.ranges],
        "validations": [[str(v.sqref), v.formula1] for v in sheet.data_validations.dataValidation],
        "conditional": [str(r.sqref) for r in sheet.conditional_formatting],
        "freeze": sheet.freeze_panes,
        "filter": sheet.auto_filter.ref,
        "orientation": sheet.page_setup.orientation,
        "comments": [c.coordinate for c in cells if c.comment],
        "titles": sheet.print_title_rows,
        "hidden columns": [k for k, d in sheet.column_dimensions.items() if d.hidden],
        "wrapped": [c.coordinate for c in cells if c.alignment.wrap_text],
        "upper": [c.coordinate for c in cells if c.alignment.vertical == "top"],
        "images": [base64.b64encode(i._data()).decode() for i in sheet._images],
        "charts": [[type(c).__name__, [s.val.numRef.f for s in c.series],
                    c.anchor._from.col, c.anchor._from.row] for c in sheet._charts],
    }


COMMANDS = {"cells": save_cells, "openpyxl": save_by_openpyxl, "template": save_template,
            "extras": save_extras, "rich": save_rich, "damage": save_damaged, "odd": save_odd,
            "oddities": lambda: list(ODDITIES), "rows": save_rows, "read": read}

if __name__ == "__main__":
    for line in sys.stdin:
        command, *arguments = json.loads(line)
        print(json.dumps(COMMANDS[command](*arguments), default=str), flush=True)
