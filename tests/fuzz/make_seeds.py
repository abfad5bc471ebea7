#!/usr/bin/env python3
"""Writes first inputs for the fuzz targets: make_seeds.py CORPUS_FOLDER"""

import json
import pathlib
import struct
import sys
import tempfile
import zipfile


def byte_array(data):
    return struct.pack(">I", len(data)) + data


def string(text):
    if text is None:
        return struct.pack(">I", 0xFFFFFFFF)
    return byte_array(text.encode("utf-16-be"))


def dump(value):
    return json.dumps(value, ensure_ascii=False).encode()


def package(version, *parts):
    out = byte_array(dump({"update_version": version}))
    for part, payload in parts:
        out += byte_array(dump(part)) + string(None) + string(payload)
    return out


def sql(version, statement, **more):
    return {"version": version, "type": "sqlQuery", **more}, statement


def migration(version, fields, **more):
    return {"version": version, "type": "cppFunction", "function_name": "crutchFrdoA", **more}, fields


def update_packages():
    insert = "INSERT INTO lists (LIST_NAME, LIST_ITEMS) VALUES ('Пол', '{}')"
    fields = '[{"tag": "#SEX", "name": "Пол", "type": 1, "list": IDL_SEX}, {"tag": "#NOTE", "type": 5}]'
    broken = "UPDATE nothing SET a = 1"
    whole = package("1.2.0.0", sql("1.1.0.0", insert), migration("1.2.0.0", fields))
    return {
        "header": package("1.0.0.0"),
        "equal": package("0.0.0.0", sql("1.0.0.0", insert)),
        "whole": whole,
        "cut": whole[:-7],
        "skipped": package("2", sql("0", broken), sql("1", insert)),
        "fails": package("2", sql("1", insert), sql("1", broken)),
        "ignored": package("2", sql("1", broken, ignore_errors=True), sql("1", insert)),
        "migration_list": package("2", migration("1", "[IDL_YES_NO]")),
        "migration_missing_list": package("2", migration("1", '[{"list": IDL_CITIZEN}]')),
        "migration_broken": package("2", migration("1", "[{]")),
        "migration_apostrophe": package("2", migration("1", '[{"tag": "#A", "name": "\'"}]')),
        "unknown_function": package("2", ({"version": "1", "type": "cppFunction", "function_name": "x"}, "")),
        "unknown_type": package("2", ({"version": "1", "type": "x", "ignore_errors": True}, "")),
        "no_type": package("2", ({"version": "1", "type": ""}, insert)),
        "stamp": package("1'", sql("1", insert)),
        "stamp_gone": package("2", sql("1", "DROP TABLE zvsys")),
        "update": package("2", sql("1", "UPDATE docs SET CONTENT = '{}' WHERE ID < 3"), sql("1", "")),
        "broken_header": byte_array(b"{") + byte_array(b"{}") + string("") + string(""),
        "odd_string": byte_array(dump({"update_version": "2"})) + byte_array(b"{}") + byte_array(b"abc"),
        "huge_length": byte_array(dump({"update_version": "2"})) + b"\x7f\xff\xff\xff{}",
    }


FIELDS = [
    {"tag": "#SPECIALTY", "name": "Специальность", "type": 0},
    {"tag": "#SEX", "name": "Пол", "type": 1, "list": 1},
    {"tag": "#LOST", "name": "Без списка", "type": 1, "list": 77},
    {"tag": "#HOURS", "name": "Часы", "type": 2},
    {"tag": "#DATE", "name": "Дата", "type": 3, "format": "dd.MM.yyyy"},
    {"tag": "#GRADES", "name": "Оценки", "type": 4, "content": [
        {"name": "Предмет", "typeID": "0", "edtColumnW": "150"},
        {"name": "Пол", "typeID": "1", "listID": "1"},
        {"name": "Часы", "typeID": "2"},
        {"name": "Дата", "typeID": "3"}]},
    {"tag": "#NOTE", "name": "Примечание", "type": 5, "extra": [1, None, True]},
]


def form_fields():
    seeds = {f"type_{field['tag'][1:].lower()}": dump({"fields": [field]}) for field in FIELDS}
    seeds.update({
        "whole": dump({"fields": FIELDS, "more": 1}),
        "empty": b'{\n\t"fields":\n\t\t[\n\t\t]\n}',
        "no_object": b"[]",
        "no_array": b'{"fields": {"tag": "#A"}}',
        "no_fields": b"{}",
        "elements": dump({"fields": [1, "a", None, [], {}, {"type": "4"}, {"type": 77, "tag": 5}]}),
        "same_tag": dump({"fields": [FIELDS[0], FIELDS[0], {"name": "Без метки", "type": 3}]}),
        "format": dump({"fields": [{"tag": "#D", "type": 3, "format": "dddd d MMMM yyyy 'г.' hh:mm:ss.zzz AP t"}]}),
        "cut": dump({"fields": FIELDS})[:200],
    })
    return seeds


def blank_contents():
    text = {"type": 0, "value": "#LNAME #FNAME^!", "pos_x": 10, "pos_y": 10.5, "size_w": 120,
            "size_h": 40, "h_align": 0, "v_align": 1, "font": "Liberation Serif", "font_size": 14,
            "line_spacing": "1,15"}
    qr = {"type": 1, "value": "#LNAME", "pos_x": 200, "pos_y": 10, "size_w": 98, "size_h": 98}
    table = {"type": 2, "value": "#TABLE", "pos_x": 10, "pos_y": 60, "size_w": 300, "size_h": 150,
             "columns_width": [150, 40], "columns_align": [0, 2], "row_from": 1, "row_to": 3, "f_cut": 1}
    return {
        "text": dump({"fields": [text]}),
        "qr": dump({"fields": [qr]}),
        "table": dump({"fields": [table]}),
        "whole": dump({"fields": [text, qr, table, {**text, "value": "#TEXT", "f_cut": 1, "unknown": {"a": []}}]}),
        "stroke": dump({"fields": [{**text, "f_cut": 1}]}),
        "numbers": dump({"fields": [{**text, "pos_x": -1e308, "size_w": 1e308, "size_h": -5, "font_size": 2147483647}]}),
        "strings": dump({"fields": [{key: str(value) for key, value in text.items()}]}),
        "elements": dump({"fields": [1, "a", None, [], {}]}),
        "huge_qr": dump({"fields": [{**qr, "size_w": 1e9, "size_h": 1e9}]}),
        "rows": dump({"fields": [{**table, "row_from": 3, "row_to": 1}, {**table, "columns_width": [-1, 4, 99999, 7]}]}),
        "markup": dump({"fields": [{**text, "value": "<table border=1><tr><td>#COUNT</table>&nbsp;\\n"}]}),
        "no_object": b"[]",
        "broken": b'{"fields": [{"type": 0',
    }


def document_contents():
    entries = {
        "#A": {"name": "Строка", "type": 0, "value": "Информационные системы"},
        "#B": {"name": "Пол", "type": 1, "list": 1, "value": "М"},
        "#C": {"name": "Часы", "type": 2, "value": 144},
        "#D": {"name": "Дата", "type": 3, "format": "dd.MM.yyyy", "value": "15.06.2024"},
        "#E": {"name": "Текст", "type": 5, "value": "строка\nстрока ^ \\n"},
        "#F": {"name": "Оценки", "type": 4, "columns": FIELDS[5]["content"],
               "value": [["Алгебра", "М", "5", "01.02.2024"], ["Физика"], [], 7]},
        "#G": {"name": "После таблицы", "type": 0, "value": "г"},
    }
    seeds = {f"type_{entry['type']}": dump({tag: entry}) for tag, entry in entries.items()}
    seeds.update({
        "whole": dump(entries),
        "empty": b"{}",
        "no_object": b"[]",
        "values": dump({"#A": 1, "": {}, "b": None, "#C": {"type": 2, "value": "5"}, "#D": {"type": 3}}),
        "list": dump({"#B": {"type": 1, "list": 1, "value": "нет такого"}, "#L": {"type": 1, "list": -1, "value": 5}}),
        "table": dump({"#F": {"type": 4, "columns": [], "value": [[1]]}, "#G": {"type": 4}}),
        "columns": dump({"#F": {"type": 4, "columns": [1, {}, {"typeID": "9", "edtColumnW": "-5"}], "value": [["a", 1, None, "b"]]}}),
        "broken": b'{"#A": {',
    })
    return seeds


def tag_texts():
    values = dump({"#LNAME": "Иванова", "#DUPLICATE": "1", "#ISSUE_DATE": "2024-06-15", "#ID": "7"})
    content = dump({"#A": {"type": 0, "value": "а^б\\n"}, "#C": {"type": 2, "value": 5},
                    "#T": {"type": 4, "value": []}, "#LNAME": {"type": 0, "value": "тень"}, "#N": 5})
    texts = ["#LNAME #ISSUE_DATE #DUPLICATE", "#LNAME,", "#LNAME, ", "#LNAME#A", "#A^#C", "#T#", "##", "x", "",
             "#ORG_DIRECTOR_SHORT #ORG_DIRECTOR #ORG_NAME_1x", "\\n^\\^n", "2024-06-15", "Иванов Иван Иванович",
             "#BIRTH_DATE. #N #ID", "Ж#a#LNAMEж"]
    return {f"text_{i:02}": text.encode() + b"\0" + values + b"\0" + content for i, text in enumerate(texts)}


def markup_values():
    table = "<table><tr><td>"
    texts = {
        "plain": "Иванов & сыновья < 5",
        "words": "<b>А</b><i>Б<br>В</i>&nbsp;&#1046;",
        "table": "<table border=1 width='100%'><tr><td colspan=2>a<tr><td rowspan=3>b<th>c</table>",
        "tables": table * 4 + "x",
        "too_many_tables": table * 300 + "x",
        "floats": "<table style='float:left'><tr><td>x</table>" * 60,
        "bold": "<b>" * 3000 + "x",
        "columns": "<table><tr><td colspan='&#50;0000'>x",
        "lists": "<ul><li>a<ol type=A><li>b</ol></ul><dl><dt>c<dd>d</dl>",
        "styles": "<style>@import url(a.css); b{color:red}</style><link type='text/css' href='a.css'/><b>x</b>",
        "pictures": "<img src=/dev/zero><img src='//a/b' align=left><img src=':/splash.png' width=20 height=9999>",
        "data": "<img src='data:image/bmp;base64,Qk0='><td background='data:,x'>",
        "backgrounds": "<p style=\"line-height: 1; background-image: url(file:///dev/zero)\">x",
        "broken": "<b <i <!-- <td title='><table>\" &#x; </p></table> </td>",
    }
    return {name: text.encode() for name, text in texts.items()}


def qr_texts():
    # Level, version and mask stand one, one and two above the argument that they give.
    def call(level, version, extend, mask, text):
        return bytes([level + 1, version + 1, extend, mask + 2]) + text

    return {
        "numeric": call(1, 0, 1, -1, b"107704 0012345"),
        "mixed": call(0, 1, 1, 0, b"12A34abc"),
        "cyrillic": call(1, 12, 1, -1, "Иванов Пётр Ильич № 5".encode()),
        "kanji": call(2, 0, 1, 3, "漢字".encode("shift-jis") + b"\x81"),
        "pairs": call(1, 0, 0, 7, b"\xe0\x40" * 12),
        "largest": call(0, 40, 0, 5, b"7" * 4096),
        "version_40": call(3, 40, 1, 2, b"A" * 300),
        "too_long": call(3, 1, 0, -1, b"a" * 20),
        "empty": call(1, 12, 1, -1, b""),
        "zero": call(1, 0, 1, 4, b"\0abc"),
        "version_7": call(2, 7, 0, 6, b"HTTPS://"),
        "wrong_level": call(4, 1, 1, 1, b"1"),
    }


def workbooks():
    """The parts of workbooks as office programs and libraries write them, and with what those of
    tests/exchange have beside; without colours and properties, which are long and say little."""
    tests = pathlib.Path(__file__).parent.parent / "exchange"
    sys.path.insert(0, str(tests))
    import workbooks as made

    def parts_of(archive):
        with zipfile.ZipFile(archive) as book:
            return {name: book.read(name) for name in book.namelist()
                    if "theme" not in name and "docProps" not in name}

    def seed(parts):
        return b"".join(b"\x1d" + name.encode() + b"\n" + data for name, data in parts.items())

    seeds = {path.stem: seed(parts_of(path)) for path in (tests / "writers").glob("*.xlsx")
             if path.stem in ("openpyxl", "exceljs", "gnumeric", "strict", "objects", "utf16")}
    with tempfile.TemporaryDirectory() as folder:
        made.save_extras(folder + "/x.xlsx")
        seeds["extras"] = seed(parts_of(folder + "/x.xlsx"))
    for name in ("chart", "picture"):
        seeds[name] = seed(made.charted() if name == "chart" else made.pictured())
    for name in ("rule without areas", "check with elements in it", "merged cells that are none",
                 "link of an area", "shared formula without an area", "name of a missing sheet",
                 "link to a workbook that is none", "columns that overlap", "alternatives",
                 "drawing of two sheets", "dialog sheet beside", "bar without ends"):
        seeds[name.replace(" ", "_")] = seed(made.ODDITIES[name]())
    return {name: data for name, data in seeds.items() if len(data) <= 16384}


def exchange_fields():
    items = [{"col": "A", "tag": "#DUPLICATE"}, {"col": "B", "tag": "#LNAME"},
             {"col": "C", "tag": "#HOURS"}, {"col": "AA", "tag": "#BIRTH_DATE"}]
    return {
        "whole": dump({"items": items}),
        "empty": dump({"items": []}),
        "no_object": b"[]",
        "columns": dump({"items": [{"col": col, "tag": "#DAY"}
                                   for col in ("", "$B", "колонка excel", "XFD", "ZZZ", "A1", "a")]}),
        "one_cell": dump({"items": [{"col": "A", "tag": tag} for tag in ("#LNAME", "#KIND", "", "#X")]}),
        "values": dump({"items": [1, None, {}, {"col": 5, "tag": []}, [items]]}),
        "broken": b'{"items": [{"col": "A"',
    }


def org_data():
    data = {"nameFormat1": "Школу № 5", "nameFormat2": "Школе № 5", "region": "Тверская область",
            "locality": "г. Тверь", "director": "Петров Пётр Петрович"}
    return {
        "whole": dump(data),
        "tags": dump({**data, "director": "#ORG_DIRECTOR #LNAME^x", "region": "<b>Тверь"}),
        "names": dump({"director": " Ли  Б "}),
        "kinds": dump({"director": 5, "region": None, "locality": ["a"]}),
        "no_object": b"[]",
        "broken": b'{"director": "',
        "empty": b"",
    }


def markup_values():
    return {
        "plain": "Иванова Анна".encode(),
        "bold": "<b>Иванова</b> <i>Анна</i><br/>".encode(),
        "styled": b'<p style="font-size:20pt; line-height:50%; margin-left:-9px">a<span>b</span></p>',
        "table": b'<table border="1" width="100%"><tr><td colspan="3">a</td><td>b</td></tr></table>',
        "list": b"<ul><li>a<ol><li>b</li></ol></li></ul><hr/>",
        "picture": b'<img src="nowhere.png" width="99999" height="-1"/>',
        "background": b'<body background="x.png"><div style="background-image:url(y.png)">a</div></body>',
        "style": b"<style>@import url(z.css); b { color: red }</style><b>a</b>",
        "deep": b"<b>" * 100 + b"a",
        "tables": b"<table><tr><td>" * 5 + b"a",
        "signs": b"&nbsp;&#x0;&#1114112;&lt;b&gt;<!-- <b>",
        "tags": "#LNAME^#TEXT\n<b>".encode(),
    }


def main():
    corpora = {
        "fuzz_markup_value": markup_values(),
        "fuzz_exchange_fields": exchange_fields(),
        "fuzz_org_data": org_data(),
        "fuzz_workbook": workbooks(),
        "fuzz_blank_content": blank_contents(),
        "fuzz_document_content": document_contents(),
        "fuzz_form_fields": form_fields(),
        "fuzz_markup": markup_values(),
        "fuzz_qr_text": qr_texts(),
        "fuzz_tag_expansion": tag_texts(),
        "fuzz_update_package": update_packages(),
    }
    for target, seeds in corpora.items():
        folder = pathlib.Path(sys.argv[1]) / target
        folder.mkdir(parents=True, exist_ok=True)
        for name, data in seeds.items():
            (folder / name).write_bytes(data)


main()
