"""Writes the workbooks of Python's libraries into the folder given, and those made part by part."""
import datetime
import json
import pathlib
import re
import sys
import zipfile

import openpyxl
import xlsxwriter
from openpyxl.cell import WriteOnlyCell
from openpyxl.styles import Font, PatternFill

HERE = pathlib.Path(__file__).parent
CONTENT = json.loads((HERE / "content.json").read_text())
TARGET = pathlib.Path(sys.argv[1])
BOLD = Font(name="Arial", size=14, bold=True)
GREY = PatternFill("solid", fgColor="FFDDDDDD")


def rows():
    for *texts, day, hours in CONTENT["rows"]:
        yield [*texts, datetime.date.fromisoformat(day), hours]


def by_openpyxl():
    book = openpyxl.Workbook()
    sheet = book.active
    sheet.title = CONTENT["sheet"]
    sheet.append([CONTENT["title"]])
    sheet.append(CONTENT["headings"])
    for row in rows():
        sheet.append(row)
    sheet["A1"].font = BOLD
    for cell in sheet[2]:
        cell.fill = GREY
    for row in (3, 4):
        sheet.cell(row, 4).number_format = "dd.mm.yyyy"
    sheet.merge_cells("A1:E1")
    sheet.column_dimensions["B"].width = 30
    sheet.row_dimensions[1].height = 30
    book.save(TARGET / "openpyxl.xlsx")


def by_openpyxl_write_only():
    book = openpyxl.Workbook(write_only=True)
    sheet = book.create_sheet(CONTENT["sheet"])
    sheet.column_dimensions["B"].width = 30
    sheet.row_dimensions[1].height = 30
    title = WriteOnlyCell(sheet, CONTENT["title"])
    title.font = BOLD
    sheet.append([title])
    headings = [WriteOnlyCell(sheet, text) for text in CONTENT["headings"]]
    for cell in headings:
        cell.fill = GREY
    sheet.append(headings)
    for row in rows():
        cells = [WriteOnlyCell(sheet, value) for value in row]
        cells[3].number_format = "dd.mm.yyyy"
        sheet.append(cells)
    sheet.merged_cells.add("A1:E1")
    book.save(TARGET / "openpyxl_write_only.xlsx")


def by_xlsxwriter(name, options):
    book = xlsxwriter.Workbook(str(TARGET / name), options)
    sheet = book.add_worksheet(CONTENT["sheet"])
    bold = book.add_format({"bold": True, "font_name": "Arial", "font_size": 14})
    grey = book.add_format({"bg_color": "#DDDDDD"})
    day = book.add_format({"num_format": "dd.mm.yyyy"})
    sheet.set_column("B:B", 30)
    sheet.set_row(0, 30)
    if options.get("constant_memory"):
        sheet.write("A1", CONTENT["title"], bold)
    else:
        sheet.merge_range("A1:E1", CONTENT["title"], bold)
    for column, text in enumerate(CONTENT["headings"]):
        sheet.write(1, column, text, grey)
    for number, row in enumerate(rows(), 2):
        for column, value in enumerate(row):
            if column == 3:
                sheet.write_datetime(number, column, value, day)
            else:
                sheet.write(number, column, value)
    book.close()


def parts_of(name):
    with zipfile.ZipFile(TARGET / name) as book:
        return {part: book.read(part).decode() for part in book.namelist()}


def save(name, parts, encode=str.encode):
    with zipfile.ZipFile(TARGET / name, "w", zipfile.ZIP_DEFLATED) as book:
        for part, text in parts.items():
            book.writestr(part, text if isinstance(text, bytes) else encode(text))


STRICT = [
    ("http://schemas.openxmlformats.org/officeDocument/2006/relationships",
     "http://purl.oclc.org/ooxml/officeDocument/relationships"),
    ("http://schemas.openxmlformats.org/spreadsheetml/2006/main",
     "http://purl.oclc.org/ooxml/spreadsheetml/main"),
    ("http://schemas.openxmlformats.org/drawingml/2006/main",
     "http://purl.oclc.org/ooxml/drawingml/main"),
    ("http://schemas.openxmlformats.org/officeDocument/2006/extended-properties",
     "http://purl.oclc.org/ooxml/officeDocument/extendedProperties"),
]
SHEET = "xl/worksheets/sheet1.xml"
LINKS = "xl/worksheets/_rels/sheet1.xml.rels"
COMPATIBILITY = "http://schemas.openxmlformats.org/markup-compatibility/2006"
RELATIONS = "http://schemas.openxmlformats.org/officeDocument/2006/relationships"
DRAWING = "http://schemas.openxmlformats.org/drawingml/2006"
PACKAGE = "http://schemas.openxmlformats.org/package/2006/relationships"


def strict(text):
    for old, new in STRICT:
        text = text.replace(old, new)
    # Days are written as such.
    for number, day in (("36959", "2001-03-09"), ("36525", "1999-12-31")):
        text = re.sub(rf'(<c r="D\d" s="\d+")><v>{number}</v>',
                      rf'\1 t="d"><v>{day}T00:00:00</v>', text)
    return text


def in_utf16(text):
    return text.replace('encoding="UTF-8"', 'encoding="UTF-16"').encode("utf-16")


def with_objects(parts):
    """Form controls and OLE objects, with the alternatives that office programs write."""
    controls = (
        f'<mc:AlternateContent xmlns:mc="{COMPATIBILITY}"><mc:Choice Requires="x14"><controls>'
        f'<mc:AlternateContent><mc:Choice Requires="x14"><control shapeId="1025" r:id="rId4" '
        'name="Check"><controlPr defaultSize="0" autoFill="0"><anchor><from>'
        f'<xdr:col xmlns:xdr="{DRAWING}/spreadsheetDrawing">1</xdr:col></from></anchor>'
        "</controlPr></control></mc:Choice></mc:AlternateContent></controls></mc:Choice>"
        "</mc:AlternateContent>")
    objects = (
        f'<oleObjects><mc:AlternateContent xmlns:mc="{COMPATIBILITY}"><mc:Choice Requires="x14">'
        '<oleObject progId="Package" shapeId="1026" r:id="rId5"><objectPr defaultSize="0">'
        f'<anchor><from><xdr:col xmlns:xdr="{DRAWING}/spreadsheetDrawing">2</xdr:col></from>'
        "</anchor></objectPr></oleObject></mc:Choice><mc:Fallback>"
        '<oleObject progId="Package" shapeId="1026" r:id="rId5"/></mc:Fallback>'
        "</mc:AlternateContent></oleObjects>")
    parts[SHEET] = parts[SHEET].replace(
        "</worksheet>", f'<legacyDrawing r:id="rId2"/>{objects}{controls}</worksheet>')
    parts[LINKS] = (
        f'<Relationships xmlns="{PACKAGE}">'
        f'<Relationship Id="rId2" Type="{RELATIONS}/vmlDrawing" '
        'Target="../drawings/vmlDrawing1.vml"/>'
        f'<Relationship Id="rId4" Type="{RELATIONS}/ctrlProp" '
        'Target="../ctrlProps/ctrlProp1.xml"/>'
        f'<Relationship Id="rId5" Type="{RELATIONS}/oleObject" '
        'Target="../embeddings/oleObject1.bin"/></Relationships>')
    parts["xl/drawings/vmlDrawing1.vml"] = (
        '<xml xmlns:v="urn:schemas-microsoft-com:vml"><v:shape id="_x0000_s1025"><v:textbox>'
        "<div>two<br>lines</div></v:textbox></v:shape></xml>")
    parts["xl/ctrlProps/ctrlProp1.xml"] = (
        '<formControlPr xmlns="http://schemas.microsoft.com/office/spreadsheetml/2009/9/main" '
        'objectType="CheckBox"/>')
    parts["xl/embeddings/oleObject1.bin"] = b"\xd0\xcf\x11\xe0"
    return parts


def with_comments(parts):
    """A comment with its place in markup that is no XML."""
    parts[SHEET] = parts[SHEET].replace("</worksheet>", '<legacyDrawing r:id="rId1"/></worksheet>')
    parts[LINKS] = (
        f'<Relationships xmlns="{PACKAGE}"><Relationship Id="rId1" Type="{RELATIONS}/vmlDrawing" '
        'Target="../drawings/vmlDrawing1.vml"/>'
        f'<Relationship Id="rId2" Type="{RELATIONS}/comments" Target="../comments1.xml"/>'
        "</Relationships>")
    parts["xl/drawings/vmlDrawing1.vml"] = "<xml><v:shape><br></v:shape></xml>"
    parts["xl/comments1.xml"] = (
        '<comments xmlns="http://schemas.openxmlformats.org/spreadsheetml/2006/main"><authors>'
        '<author>x</author></authors><commentList><comment ref="A2" authorId="0"><text><t>y</t>'
        "</text></comment></commentList></comments>")
    return parts


def by_hand():
    base = "xlsxwriter.xlsx"
    save("strict.xlsx", {part: strict(text) for part, text in parts_of(base).items()})
    save("byte_order_mark.xlsx", parts_of(base), lambda text: text.encode("utf-8-sig"))
    save("utf16.xlsx", parts_of(base), in_utf16)
    save("objects.xlsx", with_objects(parts_of(base)))
    save("comments_vml.xlsx", with_comments(parts_of(base)))
    parts = parts_of(base)
    prefixed = re.sub(r"<(/?)(?=[a-zA-Z])", r"<\1x:", parts[SHEET])
    save("prefixes.xlsx", {**parts, SHEET: prefixed.replace("xmlns=", "xmlns:x=")})
    alternative = (f'<mc:AlternateContent xmlns:mc="{COMPATIBILITY}"><mc:Choice Requires="x14ac">'
                   "<sheetData/></mc:Choice><mc:Fallback>")
    save("alternatives.xlsx", {**parts, SHEET: parts[SHEET].replace(
        "<sheetData>", alternative + "<sheetData>").replace(
            "</sheetData>", "</sheetData></mc:Fallback></mc:AlternateContent>")})


by_openpyxl()
by_openpyxl_write_only()
by_xlsxwriter("xlsxwriter.xlsx", {})
by_xlsxwriter("xlsxwriter_constant_memory.xlsx", {"constant_memory": True})
by_hand()
