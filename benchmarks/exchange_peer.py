"""The jobs of bench_export and bench_import in Python: openpyxl with sqlite3.

exchange_peer.py export DATABASE TEMPLATE ITEMS OUT  the same steps and statements as ours
exchange_peer.py lean DATABASE TEMPLATE ITEMS OUT    one query for all documents, cells by number
exchange_peer.py import DATABASE WORKBOOK ITEMS LAST a commit for each row
exchange_peer.py check WORKBOOK                      the cells' texts, to compare two results

ITEMS is a JSON array of [column, tag]. Prints the seconds that the job took by the clock and of the
processor; the start of the interpreter and its libraries does not count.
"""
import datetime
import json
import re
import sqlite3
import sys
import time

import openpyxl

MONTHS = ["", "января", "февраля", "марта", "апреля", "мая", "июня", "июля", "августа",
          "сентября", "октября", "ноября", "декабря"]
DATES = {"#ISSUE_DATE", "#EDIT_DATE", "#BIRTH_DATE"}
TAG = re.compile("#[A-Z0-9_#]*")
FIXED = ["#BLANK_SER", "#BLANK_NO", "#FNAME", "#LNAME", "#MNAME", "#BIRTH_DATE", "#DOC_GROUP",
         "#ISSUE_DATE", "#EDIT_DATE", "#DUPLICATE"]


def parse_date(text, notation):
    try:
        return datetime.datetime.strptime(text, notation).date()
    except (TypeError, ValueError):
        return None


def expand_tag(tag, values, content):
    if tag in DATES:
        day = parse_date(values[tag], "%Y-%m-%d")
        return f"{day.day} {MONTHS[day.month]} {day.year}" if day else "0  0"
    if tag in values:
        return values[tag]
    if tag in content:
        return str(content[tag].get("value", ""))
    return tag


def expand(text, values, content):
    result = TAG.sub(lambda found: expand_tag(found[0], values, content), text)
    return result.replace("^", "").replace("\\n", "\n")


def tag_values(row):
    return {"#" + name: str(row[name]) for name in row.keys() if name != "CONTENT"}


def expand_for_document(connection, text, identifier):
    row = connection.execute(f"SELECT * FROM docs WHERE ID = {identifier};").fetchone()
    return expand(text, tag_values(row), json.loads(row["CONTENT"]))


def cell_text(tag, row, forms, expanded):
    if tag == "#DUPLICATE":
        return "Дубликат" if row["DUPLICATE"] else "Оригинал"
    if tag in DATES:
        day = parse_date(row[tag[1:]], "%Y-%m-%d")
        return day.strftime("%d.%m.%Y") if day else ""
    if tag == "#DOC_NAME":
        return forms.get(row["DOC_TYPE"], "")
    return expanded(tag)


def open_export(database, template):
    connection = sqlite3.connect(database)
    connection.row_factory = sqlite3.Row
    forms = dict(connection.execute("SELECT ID, FORM_NAME FROM forms;").fetchall())
    return connection, forms, openpyxl.load_workbook(template)


def export(database, template, items, out):
    connection, forms, book = open_export(database, template)
    sheet = book.worksheets[0]
    line = 2
    for row in connection.execute("SELECT * FROM docs WHERE docs.TEMPLATE = 0;"):
        expanded = lambda tag: expand_for_document(connection, tag, row["ID"])
        for column, tag in items:
            sheet[f"{column}{line}"] = cell_text(tag, row, forms, expanded)
        line += 1
    book.save(out)


def export_lean(database, template, items, out):
    connection, forms, book = open_export(database, template)
    sheet = book.worksheets[0]
    columns = [(openpyxl.utils.column_index_from_string(column), tag) for column, tag in items]
    line = 2
    for row in connection.execute("SELECT * FROM docs WHERE docs.TEMPLATE = 0;"):
        values = tag_values(row)
        content = json.loads(row["CONTENT"])
        expanded = lambda tag: expand(tag, values, content)
        for column, tag in columns:
            sheet.cell(line, column).value = cell_text(tag, row, forms, expanded)
        line += 1
    book.save(out)


def import_rows(database, workbook, items, last):
    connection = sqlite3.connect(database)
    fields = json.loads(connection.execute("SELECT FIELDS FROM forms WHERE ID = 1;")
                        .fetchone()[0])["fields"]
    sheet = openpyxl.load_workbook(workbook).worksheets[0]
    columns = [(openpyxl.utils.column_index_from_string(column), tag) for column, tag in items]
    tags = {field["tag"] for field in fields}
    for line in range(2, int(last) + 1):
        content = {field["tag"]: {"type": field["type"], "name": field["name"]}
                   for field in fields}
        values = {}
        for column, tag in columns:
            value = sheet.cell(line, column).value
            if value is None:
                break
            if tag in ("#BIRTH_DATE", "#ISSUE_DATE"):
                day = parse_date(value, "%d.%m.%Y")
                value = day.isoformat() if day else ""
            elif tag == "#DUPLICATE":
                value = int(str(value).lower() == "дубликат")
            values[tag] = str(value)
            if tag in tags:
                content[tag]["value"] = str(value)
        connection.execute(
            "INSERT INTO docs (BLANK_SER, BLANK_NO, FNAME, LNAME, MNAME, BIRTH_DATE, DOC_GROUP, "
            "ISSUE_DATE, EDIT_DATE, DUPLICATE, DOC_TYPE, TEMPLATE, TEMPLATE_NAME, CONTENT) "
            "VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, 1, 0, '', ?);",
            [values.get(tag, "") for tag in FIXED]
            + [json.dumps(content, indent=4, ensure_ascii=False)])
        connection.commit()
    connection.close()


def check(workbook):
    sheet = openpyxl.load_workbook(workbook).worksheets[0]
    print(json.dumps([[cell or "" for cell in row] for row in sheet.values]))


JOBS = {"export": export, "lean": export_lean, "import": import_rows}


def main():
    job, *arguments = sys.argv[1:]
    if job == "check":
        check(*arguments)
        return
    arguments[2] = json.loads(arguments[2])
    begin = time.perf_counter()
    begin_processor = time.process_time()
    JOBS[job](*arguments)
    print(time.perf_counter() - begin, time.process_time() - begin_processor)


if __name__ == "__main__":
    main()
